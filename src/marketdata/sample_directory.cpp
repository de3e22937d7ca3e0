#include "marketdata/sample_directory.h"

#include <algorithm>
#include <filesystem>
#include <random>
#include <set>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "base/paths.h"
#include "marketdata/directory_editor.h"
#include "marketdata/directory_lock.h"
#include "marketdata/metalib_error.h"
#include "marketdata/raw_file.h"
#include "marketdata/replacement_file.h"
#include "marketdata/sample_market.h"

namespace velumar {

namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t kSeed = 20000103;
constexpr int kMorning = 9 * 60 + 30;
constexpr int kAfternoon = 16 * 60;

std::vector<SampleSecurity> Securities() {
  constexpr int kDay = 24 * 60;
  return {
      {"ALBRUN",
       "Albrun Rail Works",
       24.5,
       100,
       0.014,
       0.12,
       1.8e6,
       0,
       kMorning,
       kAfternoon,
       {5, 15, 30, 60}},
      {"BRAMOL", "Bramol Foods", 61.2, 100, 0.010, 0.05, 9e5, 0, kMorning, kAfternoon, {15}},
      {"CINDAR", "Cindar Copper", 11.8, 100, 0.022, 0.18, 2.4e6, 0, kMorning, kAfternoon, {30}},
      {"DRUMLO", "Drumlo Shipping", 38.4, 100, 0.018, 0.03, 6e5, 0, kMorning, kAfternoon, {}},
      {"ELVERN", "Elvern 40 Index", 1450, 100, 0.010, 0.04, 4e6, 0, kMorning, kAfternoon, {60}},
      {"FARROK", "Farrok Software", 94, 100, 0.027, -0.1, 3e6, 0, kMorning, kAfternoon, {5}},
      {"GRELIN",
       "Grelin Wheat Future",
       312.5,
       4,
       0.013,
       0.06,
       4.2e4,
       1.6e5,
       9 * 60,
       15 * 60,
       {30, 60}},
      {"HOLMIR", "Holmir Pharma", 47.3, 100, 0.012, 0.08, 1.1e6, 0, kMorning, kAfternoon, {}},
      {"IRSOLT", "Irsolt Oil Future", 25.7, 100, 0.019, 0.16, 8.5e4, 3.1e5, 9 * 60, 17 * 60, {15}},
      {"JORVEK", "Jorvek Bank", 72.1, 100, 0.014, 0.02, 1.5e6, 0, kMorning, kAfternoon, {}},
      {"KESTOR", "Kestor Crown Rate", 1.185, 10000, 0.006, 0, 5.5e4, 0, 0, kDay, {15, 60}},
      {"LUNDEK", "Lundek Mining", 3.4, 100, 0.030, 0.1, 4.5e6, 0, kMorning, kAfternoon, {}},
  };
}

// So many that a series of any interval has a few thousand bars.
int DaysOf(int minutes) { return minutes == 5 ? 50 : minutes == 15 ? 120 : 250; }

int StoreAll(const std::string& directory, IndexCache& cache) {
  int stored = 0;
  for (const SampleSecurity& security : Securities()) {
    const SampleMarket market(security, kSeed + static_cast<std::uint64_t>(stored));
    NewSecurity series{std::string(security.symbol), std::string(security.name), -1};
    StoreSecurity(directory, series, market.Daily(), cache);
    ++stored;
    for (const int minutes : security.intraday) {
      series.interval = minutes;
      StoreSecurity(directory, series, market.Intraday(minutes, DaysOf(minutes)), cache);
      ++stored;
    }
  }
  return stored;
}

// A new folder among the system's temporary ones, gone with the object.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::random_device random;
    do {
      path_ = fs::temp_directory_path() / ("velumar-sample-" + std::to_string(random()));
    } while (!fs::create_directory(path_));
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const fs::path& Path() const { return path_; }

 private:
  fs::path path_;
};

struct SampleFile {
  std::string name;
  std::vector<std::byte> bytes;

  bool IsIndex() const { return name.find("MASTER") != std::string::npos; }
};

std::vector<std::byte> BytesOf(const fs::path& path) {
  const RawFile file(path, RawFile::Mode::kRead);
  std::vector<std::byte> bytes(static_cast<std::size_t>(file.Size()));
  bytes.resize(file.ReadAt(0, bytes));
  return bytes;
}

// Data files first, so that a directory whose index is there is whole.
std::vector<SampleFile> FilesOf(const fs::path& folder) {
  std::vector<SampleFile> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    const std::string name = PathText(entry.path().filename());
    if (name != DirectoryLock::kFileName) files.push_back({name, BytesOf(entry.path())});
  }
  std::ranges::sort(files, {}, [](const SampleFile& file) {
    return std::pair(file.IsIndex(), std::string_view(file.name));
  });
  return files;
}

[[noreturn]] void RefuseForeign(const fs::path& target, const std::string& name) {
  throw MetaLibError(MetaLibError::kWriteFailed,
                     PathText(target) + " holds data of its own (" + name +
                         "); choose a new or an empty directory for the sample data");
}

// The files that a directory lacks to hold the sample data. Throws where it holds another version
// of one, or anything else while one is missing.
std::vector<SampleFile> MissingFiles(const std::vector<SampleFile>& files, const fs::path& target) {
  std::vector<SampleFile> missing;
  std::set<std::string> known = {std::string(DirectoryLock::kFileName)};
  for (const SampleFile& file : files) {
    const fs::path path = target / NativePath(file.name);
    known.insert({file.name, file.name + ".new"});
    if (!fs::exists(path)) {
      missing.push_back(file);
    } else if (!fs::is_regular_file(path) || BytesOf(path) != file.bytes) {
      RefuseForeign(target, file.name);
    }
  }
  if (missing.empty() || !fs::exists(target)) return missing;
  for (const fs::directory_entry& entry : fs::directory_iterator(target)) {
    const std::string name = PathText(entry.path().filename());
    if (!known.contains(name)) RefuseForeign(target, name);
  }
  return missing;
}

void Complete(const fs::path& target, const std::vector<SampleFile>& missing) {
  fs::create_directories(target);
  const auto lock = DirectoryLock::TryHold(target);
  if (!lock) {
    throw MetaLibError(MetaLibError::kDirectoryInUse,
                       PathText(target) + " is in use by another program");
  }
  for (const SampleFile& file : missing) {
    ReplacementFile replacement(target / NativePath(file.name));
    replacement.Write(file.bytes);
    replacement.Commit();
  }
}

}  // namespace

int WriteSampleDirectory(std::string_view directory, IndexCache& cache) {
  try {
    const TemporaryFolder workshop;
    const int series = StoreAll(PathText(workshop.Path()), cache);
    const fs::path target = NativePath(directory);
    const std::vector<SampleFile> missing = MissingFiles(FilesOf(workshop.Path()), target);
    if (!missing.empty()) Complete(target, missing);
    return series;
  } catch (const fs::filesystem_error& error) {
    throw MetaLibError(MetaLibError::kWriteFailed,
                       PathText(error.path1()) + ": " + error.code().message());
  }
}

}  // namespace velumar
