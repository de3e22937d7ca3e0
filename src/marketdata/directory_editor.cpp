#include "marketdata/directory_editor.h"

#include <algorithm>
#include <array>
#include <memory>
#include <set>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <tuple>
#include <utility>

#include "base/paths.h"
#include "base/text.h"
#include "marketdata/directory_lock.h"
#include "marketdata/index_cache.h"
#include "marketdata/index_file.h"
#include "marketdata/metalib_error.h"
#include "marketdata/series_file.h"
#include "marketdata/stored_text.h"

namespace velumar {

namespace {

constexpr std::size_t kLongestSymbol = 14;
constexpr int kLongestInterval = 24 * 60;
constexpr int kFirstXmasterNumber = kHighestMasterNumber + 1;
constexpr int kDailyFields = 7;
constexpr int kIntradayFields = 8;

// The fields that a daily series (interval -1) or an intraday one is stored with.
BarLayout WantedLayout(int interval) {
  const bool intraday = interval != -1;
  return BarLayout::FromCount(intraday ? kIntradayFields : kDailyFields, intraday);
}

[[noreturn]] void ThrowBadIdentity(const std::string& text) {
  throw MetaLibError(MetaLibError::kNotStorable, text);
}

bool HasControls(std::string_view text) {
  return std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

std::string BytesOf(std::string_view text) {
  try {
    return TextForFile(text);
  } catch (const std::invalid_argument& error) {
    ThrowBadIdentity(error.what());
  }
}

BarField DifferingField(const BarLayout& layout, const Bar& a, const Bar& b) {
  if (a.date != b.date) return BarField::kDate;
  if (a.time != b.time) return BarField::kTime;
  return *std::ranges::find_if(layout.Fields(), [&](BarField field) {
    const auto member = FloatField(field);
    return member != nullptr && a.*member != b.*member;
  });
}

void CheckBars(const NewSecurity& security, const std::vector<Bar>& bars, std::string_view place) {
  const BarLayout layout = WantedLayout(security.interval);
  std::array<std::byte, 4 * kBarFields> buffer{};
  const ByteSpan record = std::span(buffer).first(layout.RecordSize());
  for (const Bar& bar : bars) {
    const auto refused = EncodeBar(layout, bar, record);
    if (refused) ThrowNotStorable(place, security.symbol, bar, *refused);
    const Bar stored = DecodeBar(layout, record);
    if (stored != bar) {
      ThrowNotStorable(place, security.symbol, bar, DifferingField(layout, stored, bar));
    }
  }
}

std::shared_ptr<DirectoryIndex> LoadOrStart(IndexCache& cache, std::string_view directory) {
  try {
    return cache.Load(directory);
  } catch (const MetaLibError& error) {
    if (error.Number() != MetaLibError::kNoData) throw;
  }
  const std::filesystem::path path = NativePath(directory);
  return std::make_shared<DirectoryIndex>(path, DirectoryListing::Read(path));
}

bool IsHigh(IndexKind kind) { return kind == IndexKind::kXmaster; }

bool HoldsAll(const BarLayout& layout, const BarLayout& wanted) {
  return std::ranges::all_of(wanted.Fields(), [&](BarField field) { return layout.Has(field); });
}

SeriesEnds EndsOf(const std::vector<Bar>& bars) {
  if (bars.empty()) return {};
  const auto [first, last] = std::ranges::minmax_element(
      bars, {}, [](const Bar& bar) { return std::tuple(bar.date, bar.time); });
  return {.first_date = first->date,
          .first_time = first->time,
          .last_date = last->date,
          .last_time = last->time};
}

// Adds or replaces one security in a directory that is locked. Everything new is first written next
// to the files in use and flushed to the disk; then renames put it in place, the data file before
// the index files. A security whose records change their shape moves to a data file with a new
// number, so no index record ever describes a file of another shape.
class SecurityStorage {
 public:
  // Only plans. Throws MetaLibError; kDirectoryFull if no file number is left.
  SecurityStorage(DirectoryIndex& index, const NewSecurity& security)
      : index_(index), found_(index.FindSeries(security.symbol, security.interval)) {
    for (const IndexKind kind : kIndexKinds) {
      if (!index_.IndexPath(kind).empty()) UseImage(kind);
    }
    if (images_.empty()) {
      UseImage(IndexKind::kMaster);
      UseImage(IndexKind::kEmaster);
    }
    DescribeSecurity(security);
    const BarLayout wanted = WantedLayout(security.interval);
    moves_ = found_ == nullptr || !HoldsAll(layout_, wanted) || IsShared(*found_);
    if (moves_) Move(security);
  }

  void Store(std::vector<Bar> bars) {
    const SeriesEnds ends = EndsOf(bars);
    SeriesFile data({.path = index_.DataPathForWriting(home_, record_.file_number),
                     .symbol = record_.symbol,
                     .layout = layout_,
                     .is_intraday = record_.IsIntraday()});
    data.Stage(std::move(bars));
    ChangeImages(ends);
    std::vector<FileReplacement> staged = StageImages();
    data.FlushStaged();
    for (FileReplacement& file : staged) file.Flush();
    data.CommitStaged();
    FlushFolder(index_.Path());
    for (FileReplacement& file : staged) file.Commit();
    FlushFolder(index_.Path());
    if (moves_) RemoveOldData();
  }

 private:
  void UseImage(IndexKind kind) { images_.emplace_back(kind, index_.IndexPath(kind)); }

  bool Uses(IndexKind kind) const {
    return std::ranges::find(images_, kind, &IndexImage::Kind) != images_.end();
  }

  void DescribeSecurity(const NewSecurity& security) {
    if (found_ != nullptr) {
      record_ = found_->record;
      home_ = found_->listed_in;
      layout_ = index_.LayoutOf(*found_);
    }
    const bool intraday = security.interval != -1;
    if (found_ == nullptr) record_.name = security.symbol;
    record_.symbol = security.symbol;
    record_.time_frame = intraday ? 'I' : 'D';
    record_.minutes = intraday ? security.interval : 0;
    const std::string name = NameAsStored(security.name);
    if (!name.empty()) record_.name = name;
  }

  void Move(const NewSecurity& security) {
    layout_ = record_.layout = WantedLayout(security.interval);
    const bool stays_high = found_ != nullptr && IsHigh(home_);
    record_.file_number = stays_high ? 0 : FreeMasterNumber();
    if (record_.file_number != 0) {
      home_ = IndexKind::kMaster;
      return;
    }
    home_ = IndexKind::kXmaster;
    if (!Uses(home_)) UseImage(home_);
    record_.file_number = FreeNumber(home_, kFirstXmasterNumber, kHighestNumber);
    if (record_.file_number != 0) return;
    throw MetaLibError(MetaLibError::kDirectoryFull, "\"" + PathText(index_.Path()) +
                                                         "\": no file number is left for \"" +
                                                         security.symbol + "\"");
  }

  // 0 if none is left, or if there is neither MASTER nor EMASTER. A listed security needs no new
  // record.
  int FreeMasterNumber() const {
    const auto has_room = [&](const IndexImage& image) {
      return found_ != nullptr || IsHigh(image.Kind()) || image.Records() < kMostMasterRecords;
    };
    const bool has_index = Uses(IndexKind::kMaster) || Uses(IndexKind::kEmaster);
    if (!has_index || !std::ranges::all_of(images_, has_room)) return 0;
    return FreeNumber(IndexKind::kMaster, 1, kHighestMasterNumber);
  }

  // The number after the highest in use, else the lowest unused one; 0 if none is left. A file that
  // is in no index is not overwritten.
  int FreeNumber(IndexKind home, int lowest, int highest) const {
    const std::set<int> used = UsedNumbers(home);
    const auto is_free = [&](int number) {
      return !used.contains(number) && !index_.HasFilesOf(home, number);
    };
    const int next = used.empty() ? lowest : std::max(lowest, *used.rbegin() + 1);
    for (int number = next; number <= highest; ++number) {
      if (is_free(number)) return number;
    }
    for (int number = lowest; number <= highest; ++number) {
      if (is_free(number)) return number;
    }
    return 0;
  }

  std::set<int> UsedNumbers(IndexKind home) const {
    std::set<int> used;
    for (const IndexImage& image : images_) {
      if (IsHigh(image.Kind()) != IsHigh(home)) continue;
      const std::vector<int> numbers = image.FileNumbers();
      used.insert(numbers.begin(), numbers.end());
    }
    return used;
  }

  bool IsShared(const IndexedSecurity& security) const {
    return std::ranges::count_if(index_.Securities(), [&](const IndexedSecurity& other) {
             return other.record.file_number == security.record.file_number &&
                    IsHigh(other.listed_in) == IsHigh(security.listed_in);
           }) > 1;
  }

  std::int64_t OldOffset(IndexKind kind) const {
    return found_ == nullptr ? IndexedSecurity::kNotListed
                             : found_->offsets[static_cast<std::size_t>(kind)];
  }

  void ChangeImages(const SeriesEnds& ends) {
    for (IndexImage& image : images_) {
      const std::int64_t offset = OldOffset(image.Kind());
      const bool is_listed = offset != IndexedSecurity::kNotListed;
      if (IsHigh(image.Kind()) != IsHigh(home_)) {
        if (is_listed) image.RemoveAt(offset);
        continue;
      }
      const ByteSpan record = is_listed ? image.RecordAt(offset) : image.AddRecord();
      SetIndexIdentity(image.Kind(), record, record_);
      SetIndexEnds(image.Kind(), record, ends);
    }
  }

  // XMASTER comes first: while a security moves there, readers find its old entry before the new
  // one.
  std::vector<FileReplacement> StageImages() {
    std::ranges::sort(images_, std::ranges::greater(),
                      [](const IndexImage& image) { return IsHigh(image.Kind()); });
    std::vector<FileReplacement> staged;
    for (IndexImage& image : images_) {
      std::filesystem::path path = index_.IndexPath(image.Kind());
      if (path.empty()) path = index_.Path() / index_.Files().Styled(IndexFileName(image.Kind()));
      staged.emplace_back(ReplacementOf(path)).Write(image.Finished());
    }
    return staged;
  }

  void RemoveOldData() const {
    if (found_ == nullptr || IsShared(*found_)) return;
    std::error_code ignored;
    for (const auto& path : {index_.DataPath(*found_), index_.ColumnsPath(*found_)}) {
      if (path) std::filesystem::remove(*path, ignored);
    }
  }

  DirectoryIndex& index_;
  const IndexedSecurity* const found_;  // the one to replace, or null
  std::vector<IndexImage> images_;      // of the index files in use or to be created
  IndexRecord record_;                  // of the security, as it will be
  BarLayout layout_;
  IndexKind home_ = IndexKind::kMaster;
  bool moves_ = false;
};

// Returns true if it did not exist.
bool CreateFolder(const std::filesystem::path& path) {
  std::error_code error;
  const bool is_new = std::filesystem::create_directories(path, error);
  if (!error) return is_new;
  throw MetaLibError(MetaLibError::kWriteFailed,
                     "The folder \"" + PathText(path) + "\" can't be created: " + error.message());
}

bool HasOnlyTheLock(const std::filesystem::path& path) {
  const std::filesystem::directory_iterator files(path);
  return std::ranges::all_of(files, [](const std::filesystem::directory_entry& file) {
    return file.path().filename() == DirectoryLock::kFileName;
  });
}

DirectoryLock Hold(const std::filesystem::path& path, std::chrono::milliseconds patience) {
  constexpr std::chrono::milliseconds kBetweenTries(5);
  const auto until = std::chrono::steady_clock::now() + patience;
  while (true) {
    if (std::optional<DirectoryLock> lock = DirectoryLock::TryHold(path)) return std::move(*lock);
    if (std::chrono::steady_clock::now() >= until) ThrowInUse(path);
    std::this_thread::sleep_for(kBetweenTries);
  }
}

}  // namespace

void RequireStorable(const NewSecurity& security) {
  const std::string quoted = "\"" + security.symbol + "\"";
  const std::size_t size = BytesOf(security.symbol).size();
  if (size == 0 || size > kLongestSymbol || HasControls(security.symbol) ||
      Trimmed(security.symbol) != security.symbol) {
    ThrowBadIdentity("The symbol " + quoted +
                     " can't be stored: a symbol has 1 to 14 characters and no blanks around it");
  }
  NameAsStored(security.name);
  if (security.interval != -1 && (security.interval < 1 || security.interval > kLongestInterval)) {
    ThrowBadIdentity(quoted + ": an interval of " + std::to_string(security.interval) +
                     " minutes can't be stored");
  }
}

std::string NameAsStored(const std::string& name) {
  if (HasControls(name)) ThrowBadIdentity("The name \"" + name + "\" can't be stored");
  return Trimmed(TextFromFile(BytesOf(name).substr(0, kLongestSecurityName)));
}

HeldDirectory::HeldDirectory(std::string_view directory, std::chrono::milliseconds patience)
    : directory_(directory),
      path_(NativePath(directory)),
      is_new_(CreateFolder(path_)),
      lock_(Hold(path_, patience)) {
  // Another writer may have created it at the same time, and stored something.
  is_new_ = is_new_ && HasOnlyTheLock(path_);
}

HeldDirectory::~HeldDirectory() {
  if (!is_new_) return;
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
  // On Windows, an open file may keep its folder.
  lock_.reset();
  std::filesystem::remove(path_, ignored);
}

void HeldDirectory::Store(const NewSecurity& security, std::vector<Bar> bars, IndexCache& cache) {
  RequireStorable(security);
  CheckBars(security, bars, directory_);
  SecurityStorage(*LoadOrStart(cache, directory_), security).Store(std::move(bars));
  is_new_ = false;
}

void StoreSecurity(std::string_view directory, const NewSecurity& security,
                   const std::vector<Bar>& bars, IndexCache& cache) {
  HeldDirectory(directory).Store(security, bars, cache);
}

}  // namespace velumar
