#include "marketdata/directory_editor.h"

#include <algorithm>
#include <array>
#include <memory>
#include <set>
#include <system_error>
#include <thread>
#include <tuple>
#include <utility>

#include "base/paths.h"
#include "marketdata/directory_lock.h"
#include "marketdata/index_cache.h"
#include "marketdata/index_file.h"
#include "marketdata/metalib_error.h"
#include "marketdata/series_file.h"

namespace velumar {

namespace {

constexpr int kFirstXmasterNumber = kHighestMasterNumber + 1;
constexpr int kDailyFields = 7;
constexpr int kIntradayFields = 8;

// The fields that a daily series (interval -1) or an intraday one is stored with.
BarLayout WantedLayout(int interval) {
  const bool intraday = interval != -1;
  return BarLayout::FromCount(intraday ? kIntradayFields : kDailyFields, intraday);
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

// Adds or replaces securities in a directory that is locked. Everything new is first written next
// to the files in use and flushed to the disk; then renames put it in place, the data files before
// the index files. A security whose records change their shape moves to a data file with a new
// number, so no index record ever describes a file of another shape.
class SecurityStorage {
 public:
  explicit SecurityStorage(DirectoryIndex& index) : index_(index) {
    for (const IndexKind kind : kIndexKinds) {
      if (!index_.IndexPath(kind).empty()) UseImage(kind);
    }
    if (images_.empty()) {
      UseImage(IndexKind::kMaster);
      UseImage(IndexKind::kEmaster);
    }
  }

  // False if the security depends on one that was added: commit those, and begin anew. A listed
  // security that moves to another number is added alone.
  bool CanAdd(const NewSecurity& security) {
    const IndexedSecurity* const found = index_.FindSeries(security.symbol, security.interval);
    if (staged_.empty() || found == nullptr) return !moved_;
    return !moved_ && replaced_.count(found) == 0 && !Moves(Described(security), security);
  }

  // Writes the security next to the files in use. Throws MetaLibError; kDirectoryFull if no file
  // number is left.
  void Add(const NewSecurity& security, std::vector<Bar> bars) {
    Place place = Described(security);
    const bool moves = Moves(place, security);
    if (moves) Move(place, security);
    const SeriesEnds ends = EndsOf(bars);
    SeriesFile data({.path = index_.DataPathForWriting(place.home, place.record.file_number),
                     .symbol = place.record.symbol,
                     .layout = place.layout,
                     .is_intraday = place.record.IsIntraday()});
    data.Stage(std::move(bars));
    staged_.push_back(std::move(data));
    ChangeImages(place, ends);
    if (place.found == nullptr) return;
    replaced_.insert(place.found);
    if (moves) moved_ = place.found;
  }

  // Puts the added securities in place. If it throws, each is as before or as added.
  void Commit() {
    std::vector<FileReplacement> indexes = StageImages();
    for (SeriesFile& data : staged_) data.FlushStaged();
    for (FileReplacement& file : indexes) file.Flush();
    for (SeriesFile& data : staged_) data.CommitStaged();
    FlushFolder(index_.Path());
    for (FileReplacement& file : indexes) file.Commit();
    FlushFolder(index_.Path());
    if (moved_) RemoveOldData(*moved_);
  }

 private:
  // Where a security is stored.
  struct Place {
    const IndexedSecurity* found = nullptr;  // the one to replace, or null
    IndexRecord record;                      // as it will be
    BarLayout layout;
    IndexKind home = IndexKind::kMaster;
  };

  void UseImage(IndexKind kind) { images_.emplace_back(kind, index_.IndexPath(kind)); }

  bool Uses(IndexKind kind) const {
    return std::ranges::find(images_, kind, &IndexImage::Kind) != images_.end();
  }

  Place Described(const NewSecurity& security) {
    Place place;
    place.found = index_.FindSeries(security.symbol, security.interval);
    IndexRecord& record = place.record;
    if (place.found != nullptr) {
      record = place.found->record;
      place.home = place.found->listed_in;
      place.layout = index_.LayoutOf(*place.found);
    }
    const bool intraday = security.interval != -1;
    if (place.found == nullptr) record.name = security.symbol;
    record.symbol = security.symbol;
    record.time_frame = intraday ? 'I' : 'D';
    record.minutes = intraday ? security.interval : 0;
    const std::string name = NameAsStored(security.name);
    if (!name.empty()) record.name = name;
    return place;
  }

  // True if the security gets a new file number.
  bool Moves(const Place& place, const NewSecurity& security) const {
    const BarLayout wanted = WantedLayout(security.interval);
    return place.found == nullptr || !HoldsAll(place.layout, wanted) || IsShared(*place.found);
  }

  void Move(Place& place, const NewSecurity& security) {
    place.layout = place.record.layout = WantedLayout(security.interval);
    const bool is_listed = place.found != nullptr;
    place.record.file_number = is_listed && IsHigh(place.home) ? 0 : FreeMasterNumber(is_listed);
    place.home = place.record.file_number != 0 ? IndexKind::kMaster : IndexKind::kXmaster;
    if (place.record.file_number != 0) return;
    place.record.file_number = FreeNumber(place.home, kFirstXmasterNumber, kHighestNumber);
    if (place.record.file_number != 0) return;
    throw MetaLibError(MetaLibError::kDirectoryFull, "\"" + PathText(index_.Path()) +
                                                         "\": no file number is left for \"" +
                                                         security.symbol + "\"");
  }

  // 0 if none is left, or if there is neither MASTER nor EMASTER. A listed security needs no new
  // record.
  int FreeMasterNumber(bool is_listed) const {
    const auto has_room = [&](const IndexImage& image) {
      return is_listed || IsHigh(image.Kind()) || image.Records() < kMostMasterRecords;
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

  static std::int64_t OldOffset(const Place& place, IndexKind kind) {
    return place.found == nullptr ? IndexedSecurity::kNotListed
                                  : place.found->offsets[static_cast<std::size_t>(kind)];
  }

  void ChangeImages(const Place& place, const SeriesEnds& ends) {
    if (IsHigh(place.home) && !Uses(place.home)) UseImage(place.home);
    for (IndexImage& image : images_) {
      const std::int64_t offset = OldOffset(place, image.Kind());
      const bool is_listed = offset != IndexedSecurity::kNotListed;
      if (IsHigh(image.Kind()) != IsHigh(place.home)) {
        if (is_listed) image.RemoveAt(offset);
        continue;
      }
      const ByteSpan record = is_listed ? image.RecordAt(offset) : image.AddRecord();
      SetIndexIdentity(image.Kind(), record, place.record);
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

  void RemoveOldData(const IndexedSecurity& moved) const {
    if (IsShared(moved)) return;
    std::error_code ignored;
    for (const auto& path : {index_.DataPath(moved), index_.ColumnsPath(moved)}) {
      if (path) std::filesystem::remove(*path, ignored);
    }
  }

  DirectoryIndex& index_;
  std::vector<IndexImage> images_;  // of the index files in use or to be created
  std::vector<SeriesFile> staged_;
  std::set<const IndexedSecurity*> replaced_;
  const IndexedSecurity* moved_ = nullptr;  // the only one that was added
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

std::vector<std::optional<MetaLibError>> HeldDirectory::Store(std::vector<NewSeries> all,
                                                              IndexCache& cache) {
  Problems problems(all.size());
  for (std::size_t next = 0; next < all.size();) next = StoreSome(all, next, cache, problems);
  return problems;
}

// Stores those from `first` on that can be stored together. Returns where the others begin.
std::size_t HeldDirectory::StoreSome(std::vector<NewSeries>& all, std::size_t first,
                                     IndexCache& cache, Problems& problems) {
  std::size_t next = first;
  std::vector<std::size_t> added;
  try {
    const std::shared_ptr<DirectoryIndex> index = LoadOrStart(cache, directory_);
    SecurityStorage storage(*index);
    for (; next < all.size(); ++next) {
      NewSeries& series = all[next];
      try {
        RequireStorable(series.security);
        if (!storage.CanAdd(series.security)) break;
        CheckBars(series.security, series.bars, directory_);
        storage.Add(series.security, std::move(series.bars));
        added.push_back(next);
      } catch (const MetaLibError& error) {
        problems[next] = error;
      }
    }
    if (added.empty()) return next;
    storage.Commit();
    is_new_ = false;
  } catch (const MetaLibError& error) {
    for (const std::size_t one : added) problems[one] = error;
    if (next == first) problems[next++] = error;
  }
  return next;
}

void StoreSecurity(std::string_view directory, const NewSecurity& security,
                   const std::vector<Bar>& bars, IndexCache& cache) {
  HeldDirectory held(directory);
  const auto problem = held.Store({{security, bars}}, cache).front();
  if (problem) throw MetaLibError(*problem);
}

}  // namespace velumar
