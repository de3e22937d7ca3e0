#include "platform/common/section_file.h"

#include <cerrno>
#include <chrono>
#include <exception>
#include <system_error>
#include <thread>
#include <utility>

#include "base/paths.h"
#include "base/whole_file.h"

namespace velumar {

namespace fs = std::filesystem;

namespace {

fs::path WithEnding(const fs::path& file, const std::string& ending) {
  fs::path other = file;
  other += ending;
  return other;
}

// New folders are for this user alone.
void MakeFolders(const fs::path& folder) {
  if (folder.empty() || fs::is_directory(folder)) return;
  MakeFolders(folder.parent_path());
  std::error_code error;
  if (fs::create_directory(folder, error)) fs::permissions(folder, fs::perms::owner_all, error);
  if (error) throw FileError(folder, "can't be made", error.default_error_condition().value());
}

// Waits up to five seconds for another process. A folder in which nothing can be locked is used
// without a lock.
FileLock WaitForLock(const fs::path& file) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + std::chrono::seconds(5);
  while (true) {
    FileLock lock(file);
    if (lock.Held() != FileLock::State::kHeldByAnother) return lock;
    if (Clock::now() >= end) {
      throw std::system_error(EBUSY, std::generic_category(),
                              PathText(file) + " is locked by another program");
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

fs::path FreeNameAside(const fs::path& file) {
  int number = 1;
  fs::path aside;
  do {
    aside = WithEnding(file, ".damaged-" + std::to_string(number++));
  } while (fs::exists(fs::symlink_status(aside)));
  return aside;
}

}  // namespace

SectionFile::SectionFile(fs::path file) : file_(std::move(file)) { Refresh(); }

const Sections& SectionFile::Current() {
  Refresh();
  return sections_;
}

bool SectionFile::Blocked() {
  Refresh();
  return blocked_;
}

void SectionFile::Change(const std::function<void(Sections&)>& change) {
  MakeFolders(file_.parent_path());
  const FileLock lock = WaitForLock(WithEnding(file_, ".lock"));
  Refresh();
  if (blocked_) {
    throw std::system_error(EBUSY, std::generic_category(),
                            PathText(file_) + " is damaged and can't be put aside");
  }
  Sections changed = sections_;
  change(changed);
  if (changed == sections_) return;
  ReplaceWholeFile(file_, FormatSections(changed), FileAccess::kUserAlone);
  sections_ = std::move(changed);
  stamp_ = StateOf(file_);
}

std::vector<std::string> SectionFile::TakeProblems() { return std::exchange(problems_, {}); }

void SectionFile::Refresh() {
  const FileState stamp = StateOf(file_);
  if (stamp != stamp_) Load(stamp);
}

// A change between the stamp and the reading is seen by the next look, since its stamp differs.
void SectionFile::Load(const FileState& stamp) {
  blocked_ = false;
  stamp_ = stamp;
  sections_.clear();
  if (stamp.size == FileState::kNoFile) return;
  try {
    sections_ = ParseSections(ReadWholeFile(file_, kLargest));
  } catch (const FileError& error) {
    // Another process may have put it aside just now.
    if (error.code() == std::errc::no_such_file_or_directory) return;
    blocked_ = !KeepAside(error.Reason());
  } catch (const std::invalid_argument& error) {
    blocked_ = !KeepAside(error.what());
  }
}

bool SectionFile::KeepAside(const std::string& why) {
  // Another process may have put it aside and begun a sound one.
  if (StateOf(file_) != stamp_) return true;
  const fs::path aside = FreeNameAside(file_);
  std::error_code error;
  fs::rename(file_, aside, error);
  if (error) {
    problems_.push_back(PathText(file_) + " can't be read (" + why + ") and can't be renamed (" +
                        error.message() + "). Until it's gone, nothing is saved to it.");
    return false;
  }
  problems_.push_back(PathText(file_) + " can't be read (" + why + "). It was kept as " +
                      PathText(aside.filename()) + ", and a new one begins.");
  stamp_ = {};
  return true;
}

}  // namespace velumar
