#include "marketdata/index_record.h"

#include <algorithm>
#include <cstring>

#include "marketdata/number_format.h"
#include "marketdata/stored_text.h"

namespace velumar {

namespace {

// Where things stand in a record. A long name, where there is one, wins over the short one.
struct RecordPlaces {
  std::size_t size;
  std::size_t symbol, symbol_size;
  std::size_t name, name_size;
  std::size_t time_frame, minutes;
  char padding;
};

constexpr RecordPlaces kMasterPlaces = {53, 36, 14, 7, 16, 33, 34, ' '};
constexpr RecordPlaces kEmasterPlaces = {192, 11, 14, 32, 16, 60, 62, '\0'};
constexpr RecordPlaces kXmasterPlaces = {150, 1, 15, 16, 46, 62, 63, '\0'};

namespace master {
constexpr std::size_t kNumber = 0, kFileType = 1, kRecordSize = 3, kFields = 4, kFirstDate = 25,
                      kLastDate = 29, kBlanks = 50;
constexpr std::byte kFileTypeMark{0x65};
}  // namespace master

namespace emaster {
constexpr std::size_t kMark = 0, kNumber = 2, kFields = 6, kBits = 7, kBlank = 9, kFirstDate = 64,
                      kFirstTime = 68, kLastDate = 72, kLastTime = 76, kWholeFirstDate = 126,
                      kLongName = 139, kLongNameSize = 45;
constexpr std::int32_t kAnyFirstDate = 19000101;
}  // namespace emaster

namespace xmaster {
constexpr std::size_t kMark = 0, kNumber = 65, kBits = 70, kEarlyLastDate = 80,
                      kCollectionDate = 104, kFirstDate = 108, kFirstTime = 112, kLastDate = 116,
                      kLastTime = 120;
constexpr std::size_t kCount = 10, kCountAgain = 14, kNextNumber = 18;
constexpr std::array kHeaderMark = {std::byte{0x5D}, std::byte{0xFE}, std::byte{'X'},
                                    std::byte{'M'}};
}  // namespace xmaster

constexpr int kFieldsWithoutBits = 7;
constexpr std::int32_t kCentury = 1000000;

const RecordPlaces& PlacesOf(IndexKind kind) {
  switch (kind) {
    case IndexKind::kMaster:
      return kMasterPlaces;
    case IndexKind::kEmaster:
      return kEmasterPlaces;
    case IndexKind::kXmaster:
      break;
  }
  return kXmasterPlaces;
}

int ByteAt(ByteView record, std::size_t offset) { return std::to_integer<int>(record[offset]); }

std::string TextAt(ByteView record, std::size_t offset, std::size_t size) {
  const char* const start = reinterpret_cast<const char*>(record.data() + offset);
  std::string_view text(start, strnlen(start, size));
  while (text.ends_with(' ')) text.remove_suffix(1);
  return TextFromFile(text);
}

void SetTextAt(ByteSpan record, std::size_t offset, std::size_t size, std::string_view utf8,
               char padding) {
  std::string bytes = TextForFile(utf8);
  bytes.resize(size, padding);
  std::memcpy(record.data() + offset, bytes.data(), size);
}

float MbfAt(ByteView record, std::size_t offset) {
  return FloatFromMbf(LoadAt<std::uint32_t>(record, offset));
}

void SetMbfDate(ByteSpan record, std::size_t offset, std::int32_t date) {
  const std::uint32_t word = MbfFromFloat(StoredDate(date).value_or(0)).value_or(0);
  StoreAt<std::uint32_t>(record, offset, word);
}

BarLayout MasterLayout(ByteView record, bool intraday) {
  const BarLayout layout = BarLayout::FromCount(ByteAt(record, master::kFields), intraday);
  if (!layout.Empty()) return layout;
  return BarLayout::FromCount(ByteAt(record, master::kRecordSize) / 4, intraday);
}

BarLayout EmasterLayout(ByteView record, bool intraday) {
  const auto bits = std::to_integer<std::uint8_t>(record[emaster::kBits]);
  const BarLayout layout = BarLayout::FromBits(bits);
  if (!layout.Empty()) return layout;
  return BarLayout::FromCount(ByteAt(record, emaster::kFields), intraday);
}

BarLayout XmasterLayout(ByteView record, bool intraday) {
  const auto bits = std::to_integer<std::uint8_t>(record[xmaster::kBits]);
  const BarLayout layout = BarLayout::FromBits(bits);
  return layout.Empty() ? BarLayout::FromCount(kFieldsWithoutBits, intraday) : layout;
}

void ReadMaster(ByteView record, IndexRecord& told) {
  told.layout = MasterLayout(record, told.IsIntraday());
  told.first_date = DateFromStored(MbfAt(record, master::kFirstDate));
  told.last_date = DateFromStored(MbfAt(record, master::kLastDate));
}

void ReadEmaster(ByteView record, IndexRecord& told) {
  told.layout = EmasterLayout(record, told.IsIntraday());
  told.first_date = DateFromStored(LoadAt<float>(record, emaster::kFirstDate));
  told.last_date = DateFromStored(LoadAt<float>(record, emaster::kLastDate));
  std::string long_name = TextAt(record, emaster::kLongName, emaster::kLongNameSize);
  if (!long_name.empty()) told.name = std::move(long_name);
}

std::int32_t WholeDateAt(ByteView record, std::size_t offset) {
  const auto date = LoadAt<std::int32_t>(record, offset);
  return StoredDate(date) ? date : 0;
}

void ReadXmaster(ByteView record, IndexRecord& told) {
  told.layout = XmasterLayout(record, told.IsIntraday());
  told.first_date = WholeDateAt(record, xmaster::kFirstDate);
  told.last_date = WholeDateAt(record, xmaster::kLastDate);
  if (told.last_date == 0) told.last_date = WholeDateAt(record, xmaster::kEarlyLastDate);
}

void SetEmasterEnds(ByteSpan record, const SeriesEnds& ends) {
  const auto set = [&](std::size_t offset, std::optional<float> value) {
    StoreAt<float>(record, offset, value.value_or(0));
  };
  set(emaster::kFirstDate, StoredDate(ends.first_date));
  set(emaster::kFirstTime, StoredTime(ends.first_time));
  set(emaster::kLastDate, StoredDate(ends.last_date));
  set(emaster::kLastTime, StoredTime(ends.last_time));
  const auto whole = LoadAt<std::int32_t>(record, emaster::kWholeFirstDate);
  if (whole != 0 && whole != emaster::kAnyFirstDate && ends.first_date != 0) {
    StoreAt<std::int32_t>(record, emaster::kWholeFirstDate, ends.first_date);
  }
}

void SetXmasterEnds(ByteSpan record, const SeriesEnds& ends) {
  const auto at = [&](std::size_t offset) { return LoadAt<std::int32_t>(record, offset); };
  const auto set = [&](std::size_t offset, std::int32_t value) {
    StoreAt<std::int32_t>(record, offset, value);
  };
  // Some files keep the date of collection there, which is none of our business.
  if (at(xmaster::kCollectionDate) == at(xmaster::kFirstDate)) {
    set(xmaster::kCollectionDate, ends.first_date);
  }
  if (at(xmaster::kEarlyLastDate) != 0) set(xmaster::kEarlyLastDate, ends.last_date);
  set(xmaster::kFirstDate, ends.first_date);
  set(xmaster::kFirstTime, ends.first_time);
  set(xmaster::kLastDate, ends.last_date);
  set(xmaster::kLastTime, ends.last_time);
}

void SetMasterIdentity(ByteSpan record, const IndexRecord& told) {
  record[master::kNumber] = static_cast<std::byte>(told.file_number);
  record[master::kRecordSize] = static_cast<std::byte>(told.layout.RecordSize());
  record[master::kFields] = static_cast<std::byte>(told.layout.Columns());
}

void SetEmasterIdentity(ByteSpan record, const IndexRecord& told) {
  record[emaster::kNumber] = static_cast<std::byte>(told.file_number);
  record[emaster::kFields] = static_cast<std::byte>(told.layout.Columns());
  record[emaster::kBits] = static_cast<std::byte>(told.layout.Bits());
}

void SetXmasterIdentity(ByteSpan record, const IndexRecord& told) {
  StoreAt<std::uint16_t>(record, xmaster::kNumber, static_cast<std::uint16_t>(told.file_number));
  record[xmaster::kBits] = static_cast<std::byte>(told.layout.Bits());
}

void SetName(IndexKind kind, ByteSpan record, const std::string& name) {
  const RecordPlaces& places = PlacesOf(kind);
  SetTextAt(record, places.name, places.name_size, name, places.padding);
  if (kind == IndexKind::kEmaster) {
    const bool is_long = TextForFile(name).size() > places.name_size;
    SetTextAt(record, emaster::kLongName, emaster::kLongNameSize, is_long ? name : "", '\0');
  }
}

}  // namespace

std::string_view IndexFileName(IndexKind kind) {
  switch (kind) {
    case IndexKind::kMaster:
      return "MASTER";
    case IndexKind::kEmaster:
      return "EMASTER";
    case IndexKind::kXmaster:
      break;
  }
  return "XMASTER";
}

std::size_t IndexRecordSize(IndexKind kind) { return PlacesOf(kind).size; }

std::string DataFileName(IndexKind kind, int file_number) {
  return "F" + std::to_string(file_number) + (kind == IndexKind::kXmaster ? ".MWD" : ".DAT");
}

std::size_t IndexRecordCount(IndexKind kind, ByteView file) {
  const std::size_t size = IndexRecordSize(kind);
  if (file.size() < size) return 0;
  const std::size_t told =
      LoadAt<std::uint16_t>(file, kind == IndexKind::kXmaster ? xmaster::kCount : 0);
  return std::min(told, file.size() / size - 1);
}

int FileNumberOf(IndexKind kind, ByteView record) {
  switch (kind) {
    case IndexKind::kMaster:
      return ByteAt(record, master::kNumber);
    case IndexKind::kEmaster:
      return ByteAt(record, emaster::kNumber);
    case IndexKind::kXmaster:
      break;
  }
  return LoadAt<std::uint16_t>(record, xmaster::kNumber);
}

IndexRecord ReadIndexRecord(IndexKind kind, ByteView record) {
  const RecordPlaces& places = PlacesOf(kind);
  IndexRecord told;
  told.symbol = TextAt(record, places.symbol, places.symbol_size);
  told.name = TextAt(record, places.name, places.name_size);
  told.file_number = FileNumberOf(kind, record);
  told.time_frame = static_cast<char>(record[places.time_frame]);
  told.minutes = LoadAt<std::uint16_t>(record, places.minutes);
  if (kind == IndexKind::kMaster) ReadMaster(record, told);
  if (kind == IndexKind::kEmaster) ReadEmaster(record, told);
  if (kind == IndexKind::kXmaster) ReadXmaster(record, told);
  if (told.last_date != 0 && told.first_date > told.last_date) told.first_date -= kCentury;
  return told;
}

void SetIndexEnds(IndexKind kind, ByteSpan record, const SeriesEnds& ends) {
  switch (kind) {
    case IndexKind::kMaster:
      SetMbfDate(record, master::kFirstDate, ends.first_date);
      SetMbfDate(record, master::kLastDate, ends.last_date);
      break;
    case IndexKind::kEmaster:
      SetEmasterEnds(record, ends);
      break;
    case IndexKind::kXmaster:
      SetXmasterEnds(record, ends);
      break;
  }
}

void ClearIndexDates(IndexKind kind, ByteSpan record) {
  SetIndexEnds(kind, record, {});
  if (kind == IndexKind::kEmaster) StoreAt<std::int32_t>(record, emaster::kWholeFirstDate, 0);
  if (kind == IndexKind::kXmaster) StoreAt<std::int32_t>(record, xmaster::kCollectionDate, 0);
}

void SetIndexMinutes(IndexKind kind, ByteSpan record, int minutes) {
  StoreAt<std::uint16_t>(record, PlacesOf(kind).minutes, static_cast<std::uint16_t>(minutes));
}

void SetIndexIdentity(IndexKind kind, ByteSpan record, const IndexRecord& told) {
  const RecordPlaces& places = PlacesOf(kind);
  SetTextAt(record, places.symbol, places.symbol_size, told.symbol, places.padding);
  // The short name beside an unchanged long one may be another, and stays.
  if (ReadIndexRecord(kind, record).name != told.name) SetName(kind, record, told.name);
  record[places.time_frame] = static_cast<std::byte>(told.time_frame);
  SetIndexMinutes(kind, record, told.minutes);
  if (kind == IndexKind::kMaster) SetMasterIdentity(record, told);
  if (kind == IndexKind::kEmaster) SetEmasterIdentity(record, told);
  if (kind == IndexKind::kXmaster) SetXmasterIdentity(record, told);
}

std::vector<std::byte> NewIndexRecord(IndexKind kind) {
  std::vector<std::byte> record(IndexRecordSize(kind));
  switch (kind) {
    case IndexKind::kMaster:
      record[master::kFileType] = master::kFileTypeMark;
      record[master::kBlanks] = record[master::kBlanks + 1] = std::byte{' '};
      break;
    case IndexKind::kEmaster:
      record[emaster::kMark] = std::byte{'3'};
      record[emaster::kMark + 1] = std::byte{'0'};
      record[emaster::kBlank] = std::byte{' '};
      break;
    case IndexKind::kXmaster:
      record[xmaster::kMark] = std::byte{1};
      break;
  }
  return record;
}

std::vector<std::byte> NewIndexHeader(IndexKind kind) {
  std::vector<std::byte> header(IndexRecordSize(kind));
  if (kind == IndexKind::kXmaster) std::ranges::copy(xmaster::kHeaderMark, header.begin());
  return header;
}

void SetIndexCount(IndexKind kind, ByteSpan header, std::size_t records, int highest_number) {
  const auto set = [&](std::size_t offset, std::size_t value) {
    StoreAt<std::uint16_t>(header, offset, static_cast<std::uint16_t>(value));
  };
  if (kind != IndexKind::kXmaster) {
    set(0, records);
    set(2, static_cast<std::size_t>(highest_number));
    return;
  }
  set(xmaster::kCount, records);
  set(xmaster::kCountAgain, records);
  set(xmaster::kNextNumber, static_cast<std::size_t>(std::min(highest_number + 1, kHighestNumber)));
}

}  // namespace velumar
