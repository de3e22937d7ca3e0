#include "marketdata/index_record.h"

#include <algorithm>
#include <cstring>

#include "marketdata/stored_text.h"

namespace velumar {

namespace {

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

std::uint8_t BitsAt(ByteView record, std::size_t offset) {
  return std::to_integer<std::uint8_t>(record[offset]);
}

BarLayout FirstUsable(const BarLayout& layout, const BarLayout& otherwise) {
  return layout.Empty() ? otherwise : layout;
}

void ReadMaster(ByteView record, IndexRecord& read) {
  const bool intraday = read.IsIntraday();
  read.layout =
      FirstUsable(BarLayout::FromCount(ByteAt(record, master::kFields), intraday),
                  BarLayout::FromCount(ByteAt(record, master::kRecordSize) / 4, intraday));
  read.first_date = DateFromStored(MbfAt(record, master::kFirstDate));
  read.last_date = DateFromStored(MbfAt(record, master::kLastDate));
}

void ReadEmaster(ByteView record, IndexRecord& read) {
  read.layout =
      FirstUsable(BarLayout::FromBits(BitsAt(record, emaster::kBits)),
                  BarLayout::FromCount(ByteAt(record, emaster::kFields), read.IsIntraday()));
  read.first_date = DateFromStored(LoadAt<float>(record, emaster::kFirstDate));
  read.last_date = DateFromStored(LoadAt<float>(record, emaster::kLastDate));
  std::string long_name = TextAt(record, emaster::kLongName, emaster::kLongNameSize);
  if (!long_name.empty()) read.name = std::move(long_name);
}

std::int32_t WholeDateAt(ByteView record, std::size_t offset) {
  const auto date = LoadAt<std::int32_t>(record, offset);
  return StoredDate(date) ? date : 0;
}

void ReadXmaster(ByteView record, IndexRecord& read) {
  read.layout = FirstUsable(BarLayout::FromBits(BitsAt(record, xmaster::kBits)),
                            BarLayout::FromCount(kFieldsWithoutBits, read.IsIntraday()));
  read.first_date = WholeDateAt(record, xmaster::kFirstDate);
  read.last_date = WholeDateAt(record, xmaster::kLastDate);
  if (read.last_date == 0) read.last_date = WholeDateAt(record, xmaster::kEarlyLastDate);
}

void SetMasterEnds(ByteSpan record, const SeriesEnds& ends) {
  SetMbfDate(record, master::kFirstDate, ends.first_date);
  SetMbfDate(record, master::kLastDate, ends.last_date);
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
  // Some files keep the date of collection there.
  if (at(xmaster::kCollectionDate) == at(xmaster::kFirstDate)) {
    set(xmaster::kCollectionDate, ends.first_date);
  }
  if (at(xmaster::kEarlyLastDate) != 0) set(xmaster::kEarlyLastDate, ends.last_date);
  set(xmaster::kFirstDate, ends.first_date);
  set(xmaster::kFirstTime, ends.first_time);
  set(xmaster::kLastDate, ends.last_date);
  set(xmaster::kLastTime, ends.last_time);
}

void SetMasterIdentity(ByteSpan record, const IndexRecord& security) {
  record[master::kNumber] = static_cast<std::byte>(security.file_number);
  record[master::kRecordSize] = static_cast<std::byte>(security.layout.RecordSize());
  record[master::kFields] = static_cast<std::byte>(security.layout.Columns());
}

void SetEmasterIdentity(ByteSpan record, const IndexRecord& security) {
  record[emaster::kNumber] = static_cast<std::byte>(security.file_number);
  record[emaster::kFields] = static_cast<std::byte>(security.layout.Columns());
  record[emaster::kBits] = static_cast<std::byte>(security.layout.Bits());
}

void SetXmasterIdentity(ByteSpan record, const IndexRecord& security) {
  StoreAt<std::uint16_t>(record, xmaster::kNumber,
                         static_cast<std::uint16_t>(security.file_number));
  record[xmaster::kBits] = static_cast<std::byte>(security.layout.Bits());
}

// What the three kinds differ in. A long name, where there is one, replaces the short one.
struct IndexFormat {
  std::string_view file_name;
  std::size_t size;
  std::size_t symbol, symbol_size;
  std::size_t name, name_size;
  std::size_t time_frame, minutes;
  char padding;
  void (*read)(ByteView record, IndexRecord& read);
  void (*set_ends)(ByteSpan record, const SeriesEnds& ends);
  void (*set_identity)(ByteSpan record, const IndexRecord& security);
};

constexpr std::array<IndexFormat, 3> kFormats = {{
    {"MASTER", 53, 36, 14, 7, 16, 33, 34, ' ', ReadMaster, SetMasterEnds, SetMasterIdentity},
    {"EMASTER", 192, 11, 14, 32, 16, 60, 62, '\0', ReadEmaster, SetEmasterEnds, SetEmasterIdentity},
    {"XMASTER", 150, 1, 15, 16, 46, 62, 63, '\0', ReadXmaster, SetXmasterEnds, SetXmasterIdentity},
}};

const IndexFormat& FormatOf(IndexKind kind) { return kFormats[static_cast<std::size_t>(kind)]; }

void SetName(IndexKind kind, ByteSpan record, const std::string& name) {
  const IndexFormat& format = FormatOf(kind);
  SetTextAt(record, format.name, format.name_size, name, format.padding);
  if (kind == IndexKind::kEmaster) {
    const bool is_long = TextForFile(name).size() > format.name_size;
    SetTextAt(record, emaster::kLongName, emaster::kLongNameSize, is_long ? name : "", '\0');
  }
}

}  // namespace

std::string_view IndexFileName(IndexKind kind) { return FormatOf(kind).file_name; }

std::size_t IndexRecordSize(IndexKind kind) { return FormatOf(kind).size; }

std::string DataFileName(IndexKind kind, int file_number) {
  return "F" + std::to_string(file_number) + (kind == IndexKind::kXmaster ? ".MWD" : ".DAT");
}

std::size_t IndexRecordCount(IndexKind kind, ByteView file) {
  const std::size_t size = IndexRecordSize(kind);
  if (file.size() < size) return 0;
  const std::size_t count =
      LoadAt<std::uint16_t>(file, kind == IndexKind::kXmaster ? xmaster::kCount : 0);
  return std::min(count, file.size() / size - 1);
}

int FileNumberOf(IndexKind kind, ByteView record) {
  if (kind == IndexKind::kXmaster) return LoadAt<std::uint16_t>(record, xmaster::kNumber);
  return ByteAt(record, kind == IndexKind::kMaster ? master::kNumber : emaster::kNumber);
}

IndexRecord ReadIndexRecord(IndexKind kind, ByteView record) {
  const IndexFormat& format = FormatOf(kind);
  IndexRecord read;
  read.symbol = TextAt(record, format.symbol, format.symbol_size);
  read.name = TextAt(record, format.name, format.name_size);
  read.file_number = FileNumberOf(kind, record);
  read.time_frame = static_cast<char>(record[format.time_frame]);
  read.minutes = LoadAt<std::uint16_t>(record, format.minutes);
  format.read(record, read);
  if (read.last_date != 0 && read.first_date > read.last_date) read.first_date -= kCentury;
  return read;
}

void SetIndexEnds(IndexKind kind, ByteSpan record, const SeriesEnds& ends) {
  FormatOf(kind).set_ends(record, ends);
}

void ClearIndexDates(IndexKind kind, ByteSpan record) {
  SetIndexEnds(kind, record, {});
  if (kind == IndexKind::kEmaster) StoreAt<std::int32_t>(record, emaster::kWholeFirstDate, 0);
  if (kind == IndexKind::kXmaster) StoreAt<std::int32_t>(record, xmaster::kCollectionDate, 0);
}

void SetIndexMinutes(IndexKind kind, ByteSpan record, int minutes) {
  StoreAt<std::uint16_t>(record, FormatOf(kind).minutes, static_cast<std::uint16_t>(minutes));
}

void SetIndexIdentity(IndexKind kind, ByteSpan record, const IndexRecord& security) {
  const IndexFormat& format = FormatOf(kind);
  SetTextAt(record, format.symbol, format.symbol_size, security.symbol, format.padding);
  // The short name of an unchanged long one may be a different text, and stays.
  if (ReadIndexRecord(kind, record).name != security.name) SetName(kind, record, security.name);
  record[format.time_frame] = static_cast<std::byte>(security.time_frame);
  SetIndexMinutes(kind, record, security.minutes);
  format.set_identity(record, security);
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
