#include "marketdata/directory_editor.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <system_error>
#include <tuple>
#include <utility>

#include "base/paths.h"
#include "base/text.h"
#include "marketdata/bar_codec.h"
#include "marketdata/directory_lock.h"
#include "marketdata/index_entries.h"
#include "marketdata/index_image.h"
#include "marketdata/metalib_error.h"
#include "marketdata/replacement_file.h"
#include "marketdata/series_error.h"
#include "marketdata/series_file.h"

namespace velumar {

namespace {

constexpr std::size_t kLongestSymbol = 14;
constexpr std::size_t kLongestName = 45;
constexpr int kLongestInterval = 24 * 60;
constexpr int kDailyFields = 7;
constexpr int kIntradayFields = 8;
constexpr int kFirstXmasterNumber = kHighestMasterNumber + 1;

[[noreturn]] void ThrowBadIdentity(const std::string& text) {
  throw MetaLibError(MetaLibError::kNotStorable, text);
}

bool HasControls(std::string_view text) {
  return std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

std::size_t StoredSize(std::string_view text) {
  try {
    return Utf8ToLatin1(text).size();
  } catch (const std::invalid_argument& error) {
    ThrowBadIdentity(error.what());
  }
}

std::string CutName(const std::string& name) {
  StoredSize(name);
  return Trimmed(Latin1ToUtf8(Utf8ToLatin1(name).substr(0, kLongestName)));
}

void CheckIdentity(const NewSecurity& security) {
  const std::string quoted = "\"" + security.symbol + "\"";
  const std::size_t size = StoredSize(security.symbol);
  if (size == 0 || size > kLongestSymbol || HasControls(security.symbol) ||
      Trimmed(security.symbol) != security.symbol) {
    ThrowBadIdentity("The symbol " + quoted +
                     " can't be stored: a symbol has 1 to 14 characters and no blanks around it");
  }
  if (HasControls(security.name)) {
    ThrowBadIdentity(quoted + ": the name \"" + security.name + "\" can't be stored");
  }
  if (security.interval != -1 && (security.interval < 1 || security.interval > kLongestInterval)) {
    ThrowBadIdentity(quoted + ": an interval of " + std::to_string(security.interval) +
                     " minutes can't be stored");
  }
}

BarLayout WantedLayout(int interval) {
  const bool intraday = interval != -1;
  return BarLayout::FromCount(intraday ? kIntradayFields : kDailyFields, intraday);
}

bool HoldsAll(const BarLayout& layout, const BarLayout& wanted) {
  return std::ranges::all_of(wanted.Fields(), [&](BarField field) { return layout.Has(field); });
}

// The first field in which the bars differ; they do differ.
BarField DifferingField(const Bar& a, const Bar& b) {
  if (a.date != b.date) return BarField::kDate;
  if (a.time != b.time) return BarField::kTime;
  if (a.open != b.open) return BarField::kOpen;
  if (a.high != b.high) return BarField::kHigh;
  if (a.low != b.low) return BarField::kLow;
  if (a.close != b.close) return BarField::kClose;
  return a.volume != b.volume ? BarField::kVolume : BarField::kOpenInterest;
}

void CheckStorable(const NewSecurity& security, const std::vector<Bar>& bars,
                   std::string_view directory) {
  const BarLayout layout = WantedLayout(security.interval);
  std::array<std::byte, 4 * kBarFields> buffer{};
  const ByteSpan record = std::span(buffer).first(layout.RecordSize());
  for (const Bar& bar : bars) {
    const auto refused = EncodeBar(layout, bar, record);
    if (refused) ThrowNotStorable(directory, security.symbol, bar, *refused);
    const Bar stored = DecodeBar(layout, record);
    if (stored != bar) {
      ThrowNotStorable(directory, security.symbol, bar, DifferingField(stored, bar));
    }
  }
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

// A directory that was missing; it goes again, unless Keep is called.
class MadeDirectory {
 public:
  explicit MadeDirectory(const std::filesystem::path& path) : path_(path) {
    std::error_code error;
    made_ = std::filesystem::create_directories(path_, error);
    if (error) {
      throw MetaLibError(MetaLibError::kWriteFailed, "The folder \"" + PathText(path_) +
                                                         "\" can't be made: " + error.message());
    }
  }
  ~MadeDirectory() {
    std::error_code ignored;
    if (made_) std::filesystem::remove_all(path_, ignored);
  }
  MadeDirectory(const MadeDirectory&) = delete;
  MadeDirectory& operator=(const MadeDirectory&) = delete;

  void Keep() { made_ = false; }

 private:
  std::filesystem::path path_;
  bool made_ = false;
};

std::shared_ptr<DirectoryIndex> LoadOrStart(IndexCache::Entries& cache,
                                            std::string_view directory) {
  try {
    return cache.Load(directory);
  } catch (const MetaLibError& error) {
    if (error.Number() != MetaLibError::kNoData) throw;
  }
  const std::filesystem::path path = NativePath(directory);
  return std::make_shared<DirectoryIndex>(path, DirectoryListing::Read(path));
}

// One addition or replacement. First everything new is written beside the files in use, then
// renames put it in place: the data file, then the index files one by one. A security whose record
// size changes moves to a file of a new number, so that no index record ever tells of a file of
// another shape.
class SecurityStorage {
 public:
  SecurityStorage(DirectoryIndex& index, const NewSecurity& security)
      : index_(index),
        security_(security),
        found_(index.FindSeries(security.symbol, security.interval)) {
    for (const IndexKind kind : kIndexKinds) {
      if (!index_.IndexPath(kind).empty()) UseImage(kind);
    }
    if (images_.empty()) {
      UseImage(IndexKind::kMaster);
      UseImage(IndexKind::kEmaster);
    }
    Plan();
  }

  void Store(std::vector<Bar> bars) {
    const SeriesEnds ends = EndsOf(bars);
    SeriesFile data({.path = DataPath(),
                     .symbol = told_.symbol,
                     .layout = layout_,
                     .is_intraday = told_.IsIntraday(),
                     .ordered = {}});
    data.Stage(std::move(bars));
    ChangeImages(ends);
    std::vector<ReplacementFile> staged = StageImages();
    data.CommitStaged();
    for (ReplacementFile& file : staged) file.Commit();
    if (found_ != nullptr && moves_) RemoveOldData();
  }

 private:
  struct Image {
    IndexKind kind;
    IndexImage bytes;
  };

  void UseImage(IndexKind kind) {
    images_.push_back({.kind = kind, .bytes = IndexImage(kind, index_.IndexPath(kind))});
  }

  Image* ImageOf(IndexKind kind) {
    const auto found = std::ranges::find(images_, kind, &Image::kind);
    return found == images_.end() ? nullptr : &*found;
  }

  void Plan() {
    const bool intraday = security_.interval != -1;
    if (found_ != nullptr) told_ = found_->told;
    told_.symbol = security_.symbol;
    const std::string name = CutName(security_.name);
    if (!name.empty()) told_.name = name;
    told_.time_frame = intraday ? 'I' : 'D';
    told_.minutes = intraday ? security_.interval : 0;
    layout_ = found_ == nullptr ? BarLayout() : index_.LayoutOf(*found_);
    moves_ = found_ == nullptr || !HoldsAll(layout_, WantedLayout(security_.interval)) ||
             IsShared(*found_);
    if (found_ != nullptr) home_ = found_->listed_in;
    if (moves_) Move();
  }

  void Move() {
    layout_ = WantedLayout(security_.interval);
    told_.layout = layout_;
    const bool was_low = found_ != nullptr && home_ != IndexKind::kXmaster;
    const int low = FreeMasterNumber(was_low);
    const bool stays_high = found_ != nullptr && home_ == IndexKind::kXmaster;
    home_ = low != 0 && !stays_high ? IndexKind::kMaster : IndexKind::kXmaster;
    if (home_ == IndexKind::kXmaster && ImageOf(home_) == nullptr) UseImage(home_);
    told_.file_number = home_ == IndexKind::kMaster ? low : FreeXmasterNumber();
  }

  // 0: none, or no index for it. A security that is listed already needs no record more.
  int FreeMasterNumber(bool is_listed) {
    std::size_t most = 0;
    bool has_index = false;
    for (Image& image : images_) {
      if (image.kind == IndexKind::kXmaster) continue;
      has_index = true;
      most = std::max(most, image.bytes.Records());
    }
    if (!has_index || (!is_listed && most >= kMostMasterRecords)) return 0;
    return FreeNumber(IndexKind::kMaster, 1, kHighestMasterNumber);
  }

  int FreeXmasterNumber() {
    const int number = FreeNumber(IndexKind::kXmaster, kFirstXmasterNumber, kHighestNumber);
    if (number == 0) {
      throw MetaLibError(MetaLibError::kDirectoryFull, "\"" + PathText(index_.Path()) +
                                                           "\": no file number is left for \"" +
                                                           security_.symbol + "\"");
    }
    return number;
  }

  // The one behind the highest in use, so that gaps are filled last; 0 where there is none.
  int FreeNumber(IndexKind home, int lowest, int highest) {
    std::set<int> used;
    for (Image& image : images_) {
      if ((image.kind == IndexKind::kXmaster) != (home == IndexKind::kXmaster)) continue;
      const std::vector<int> numbers = image.bytes.FileNumbers();
      used.insert(numbers.begin(), numbers.end());
    }
    const auto is_free = [&](int number) {
      return !used.contains(number) && index_.Files().Find(DataFileName(home, number)).empty();
    };
    const int behind = used.empty() ? lowest : std::max(lowest, *used.rbegin() + 1);
    for (int number = behind; number <= highest; ++number) {
      if (is_free(number)) return number;
    }
    for (int number = lowest; number < std::min(behind, highest + 1); ++number) {
      if (is_free(number)) return number;
    }
    return 0;
  }

  bool IsShared(const IndexedSecurity& security) {
    const bool high = security.listed_in == IndexKind::kXmaster;
    return std::ranges::count_if(index_.Securities(), [&](const IndexedSecurity& other) {
             return other.told.file_number == security.told.file_number &&
                    (other.listed_in == IndexKind::kXmaster) == high;
           }) > 1;
  }

  std::filesystem::path DataPath() const {
    IndexedSecurity home;
    home.told = told_;
    home.listed_in = home_;
    return index_.DataPathToBe(home);
  }

  void ChangeImages(const SeriesEnds& ends) {
    for (Image& image : images_) {
      const bool is_home = (image.kind == IndexKind::kXmaster) == (home_ == IndexKind::kXmaster);
      const std::int64_t offset = found_ == nullptr
                                      ? IndexedSecurity::kNowhere
                                      : found_->offsets[static_cast<std::size_t>(image.kind)];
      const bool is_listed = offset != IndexedSecurity::kNowhere;
      if (!is_home) {
        if (is_listed) image.bytes.RemoveAt(offset);
        continue;
      }
      const ByteSpan record = is_listed ? image.bytes.RecordAt(offset) : image.bytes.AddRecord();
      SetIndexIdentity(image.kind, record, told_);
      SetIndexEnds(image.kind, record, ends);
    }
  }

  // XMASTER first: while a security moves there, the old entry is found before the new one.
  std::vector<ReplacementFile> StageImages() {
    std::vector<ReplacementFile> staged;
    std::ranges::sort(images_, std::ranges::greater(),
                      [](const Image& image) { return image.kind == IndexKind::kXmaster; });
    for (Image& image : images_) {
      std::filesystem::path path = index_.IndexPath(image.kind);
      if (path.empty()) path = index_.Path() / index_.Files().Styled(IndexFileName(image.kind));
      staged.emplace_back(path).Write(image.bytes.Sealed());
    }
    return staged;
  }

  void RemoveOldData() {
    if (IsShared(*found_)) return;
    std::error_code ignored;
    const auto data = index_.DataPath(*found_);
    if (data) std::filesystem::remove(*data, ignored);
    const auto columns = index_.ColumnsPath(*found_);
    if (columns) std::filesystem::remove(*columns, ignored);
  }

  DirectoryIndex& index_;
  const NewSecurity& security_;
  const IndexedSecurity* found_;
  std::vector<Image> images_;
  IndexRecord told_;
  BarLayout layout_;
  IndexKind home_ = IndexKind::kMaster;
  bool moves_ = true;
};

}  // namespace

void StoreSecurity(std::string_view directory, const NewSecurity& security,
                   const std::vector<Bar>& bars, IndexCache& cache) {
  CheckIdentity(security);
  CheckStorable(security, bars, directory);
  const std::filesystem::path path = NativePath(directory);
  MadeDirectory made(path);
  const auto lock = DirectoryLock::TryHold(path);
  if (!lock) ThrowInUse(path);
  const auto index = LoadOrStart(cache.Kept(), directory);
  SecurityStorage(*index, security).Store(bars);
  made.Keep();
}

}  // namespace velumar
