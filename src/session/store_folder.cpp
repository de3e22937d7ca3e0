#include "session/store_folder.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <vector>

#include "base/ignoring.h"
#include "base/paths.h"
#include "base/raw_file.h"
#include "base/text.h"
#include "marketdata/index_file.h"
#include "marketdata/metalib_error.h"
#include "session/earlier_store.h"
#include "session/store_system.h"

namespace velumar {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kMarkText =
    "The working store of a replay: each run empties this folder.\n";
constexpr std::string_view kChartFiles = "MSSmart";
constexpr std::uintmax_t kLargestChartFile = 64 << 20;  // bytes
constexpr std::string_view kMoveIt = "Move or rename it, then start the run again.";

std::string Quoted(const fs::path& path) { return "\"" + PathText(path) + "\""; }

[[noreturn]] void Refuse(const fs::path& store, const std::string& why, std::string_view advice) {
  throw StoreError("The folder " + Quoted(store) +
                   " can't be the working store, whose files each run deletes: " + why + ". " +
                   std::string(advice));
}

[[noreturn]] void RefuseUnusable(const fs::path& store, const std::string& why) {
  throw StoreError("The working store " + Quoted(store) + " can't be used: " + why +
                   ". A run needs to write there.");
}

// Without a closing separator, which would follow a link.
fs::path FolderPath(std::string_view text) {
  fs::path path = fs::absolute(NativePath(text));
  while ((!path.has_filename() || path.filename() == ".") && path != path.root_path()) {
    path = path.parent_path();
  }
  return path;
}

// How many levels `inner` is below `outer`: 0 for the same folder, -1 if it isn't below.
int LevelsBelow(const fs::path& inner, const fs::path& outer) {
  int levels = 0;
  for (fs::path at = fs::weakly_canonical(inner);; at = at.parent_path(), ++levels) {
    std::error_code missing;
    if (fs::equivalent(at, outer, missing)) return levels;
    if (!at.has_relative_path()) return -1;
  }
}

bool IsOurs(const fs::path& entry) { return PathText(entry.filename()).starts_with('.'); }

// "26 files (EMASTER, F1.DAT, F2.DAT, ...)"
std::string Holding(const fs::path& folder) {
  constexpr std::size_t kNamed = 3;
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (!IsOurs(entry.path())) names.push_back(PathText(entry.path().filename()));
  }
  std::ranges::sort(names);
  std::string list;
  for (std::size_t i = 0; i < std::min(names.size(), kNamed); ++i) {
    list += (i == 0 ? "" : ", ") + names[i];
  }
  if (names.size() > kNamed) list += ", ...";
  return std::to_string(names.size()) + (names.size() == 1 ? " file" : " files") + " (" + list +
         ")";
}

bool IsMarked(const fs::path& folder) {
  const fs::path mark = folder / StoreFolder::kMark;
  return fs::is_regular_file(mark) && !IsLink(mark);
}

void RequirePlace(const fs::path& store, const fs::path& data) {
  const int below = LevelsBelow(store, data);
  if (below == 0) {
    Refuse(store, "it is the market data directory of this run",
           "Choose another market data directory.");
  }
  if (below > 1) {
    Refuse(
        store, "it is deep inside the market data directory " + Quoted(data),
        "Restart Velumar with that directory, or choose a store directly inside it or outside it.");
  }
  if (LevelsBelow(data, store) > 0) {
    Refuse(store, "it contains the market data directory " + Quoted(data),
           "Choose another market data directory or another store.");
  }
}

void RequireNoLink(const fs::path& store) {
  if (IsLink(store)) Refuse(store, "it is a link to another place", kMoveIt);
}

void RequireOurs(const fs::path& store) {
  if (!fs::exists(store)) return;
  if (!fs::is_directory(store)) Refuse(store, "it is a file", kMoveIt);
  if (IsMarked(store) || IsEarlierStore(store)) return;
  Refuse(store, "it holds " + Holding(store) + " that no run has put there", kMoveIt);
}

// A missing data directory, perhaps on an unmounted disk, is not created.
void Make(const fs::path& store, const fs::path& data) {
  if (store.parent_path() != data) fs::create_directories(store.parent_path());
  fs::create_directory(store);
}

// Changes nothing, except that a missing folder is created.
fs::path Checked(std::string_view store_text, std::string_view data) {
  const fs::path store = FolderPath(store_text);
  try {
    RequireNoLink(store);
    RequirePlace(store, FolderPath(data));
    RequireOurs(store);
    Make(store, FolderPath(data));
  } catch (const fs::filesystem_error& error) {
    RefuseUnusable(store, error.code().message());
  }
  return store;
}

std::string HolderOf(const fs::path& mark) {
  std::string text(kMarkText.size() + 256, '\0');
  IgnoringErrors([&] {
    const RawFile file(mark, RawFile::Mode::kRead);
    text.resize(file.ReadAt(0, std::as_writable_bytes(std::span(text))));
  });
  const std::string name = text.substr(std::min(kMarkText.size(), text.size()));
  const std::size_t end = name.find('\n');
  return end == 0 || end == std::string::npos ? "another program" : name.substr(0, end);
}

DirectoryLock Held(const fs::path& store) {
  std::optional<DirectoryLock> lock;
  try {
    lock = DirectoryLock::TryHold(store, StoreFolder::kMark);
    const std::string contents = std::string(kMarkText) + ThisProgram() + "\n";
    if (lock) lock->Write(std::as_bytes(std::span(contents)));
  } catch (const MetaLibError& error) {
    RefuseUnusable(store, error.what());
  }
  if (lock) return std::move(*lock);
  throw StoreError("The working store " + Quoted(store) + " is in use by " +
                   HolderOf(store / StoreFolder::kMark) +
                   ". Close that program, then start the run again.");
}

std::vector<fs::path> FilesIn(const fs::path& folder) {
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    std::error_code unreadable;
    if (!IsOurs(entry.path()) && !entry.is_directory(unreadable)) files.push_back(entry.path());
  }
  return files;
}

fs::path ChartFilesOf(const fs::path& data) {
  for (const fs::directory_entry& entry : fs::directory_iterator(data)) {
    const std::string name = PathText(entry.path().filename());
    if (UpperCased(name) == UpperCased(kChartFiles) && entry.is_directory()) return entry.path();
  }
  return {};
}

// The old file is removed first, so that nothing is written through a link.
void CopyFresh(const fs::path& from, const fs::path& to) {
  if (IsLink(to)) return;
  IgnoringErrors([&] { fs::remove(to); });
  CopyWritable(from, to);
}

}  // namespace

StoreFolder::StoreFolder(std::string_view store, std::string_view data)
    : path_(Checked(store, data)), data_(FolderPath(data)), lock_(Held(path_)) {}

void StoreFolder::Require(std::string_view store, std::string_view data) { Checked(store, data); }

void StoreFolder::Clear() const {
  std::string left;
  try {
    // Since the claim the chart program has started, and the folder may have been moved.
    RequireNoLink(path_);
    RequireOurs(path_);
    for (const fs::path& file : FilesIn(path_)) {
      std::error_code error;
      fs::remove(file, error);
      const std::string name = PathText(file.filename());
      if (error && IsSeriesFile(UpperCased(name))) left = name + ": " + error.message();
    }
  } catch (const fs::filesystem_error& error) {
    RefuseUnusable(path_, error.code().message());
  }
  if (left.empty()) return;
  throw StoreError("The working store " + Quoted(path_) +
                   " still holds bars of an earlier run, since a file can't be deleted (" + left +
                   "). Close the program that has it open, then start the run again.");
}

void StoreFolder::CopyIndexes() const { CopyIndexFiles(data_, path_); }

void StoreFolder::CopyChartFiles() const {
  const fs::path to = path_ / kChartFiles;
  if (IsLink(to)) return;
  IgnoringErrors([&] {
    fs::create_directory(to);
    const fs::path from = ChartFilesOf(data_);
    if (from.empty()) return;
    for (const fs::directory_entry& entry : fs::directory_iterator(from)) {
      IgnoringErrors([&] {
        if (!entry.is_regular_file() || entry.file_size() > kLargestChartFile) return;
        CopyFresh(entry.path(), to / entry.path().filename());
      });
    }
  });
}

void StoreFolder::ClearChartFiles() const {
  const fs::path folder = path_ / kChartFiles;
  std::error_code missing;
  if (IsLink(folder) || !fs::is_directory(folder, missing)) return;
  for (const fs::path& file : FilesIn(folder)) fs::remove(file);
}

bool IsSeriesFile(std::string_view upper_name) {
  constexpr std::size_t kEndingSize = 4;
  if (!upper_name.starts_with('F') || upper_name.size() < kEndingSize + 2) return false;
  const std::string_view number = upper_name.substr(1, upper_name.size() - kEndingSize - 1);
  return number.find_first_not_of("0123456789") == std::string_view::npos &&
         (upper_name.ends_with(".DAT") || upper_name.ends_with(".MWD"));
}

}  // namespace velumar
