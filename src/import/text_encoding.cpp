#include "import/text_encoding.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace velumar {

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr char32_t kReplacement = 0xFFFD;

void AppendCodePoint(char32_t point, std::string& text) {
  const auto byte = [&](char32_t value) { text += static_cast<char>(value); };
  if (point < 0x80) {
    byte(point);
  } else if (point < 0x800) {
    byte(0xC0 | point >> 6);
    byte(0x80 | (point & 0x3F));
  } else if (point < 0x10000) {
    byte(0xE0 | point >> 12);
    byte(0x80 | (point >> 6 & 0x3F));
    byte(0x80 | (point & 0x3F));
  } else {
    byte(0xF0 | point >> 18);
    byte(0x80 | (point >> 12 & 0x3F));
    byte(0x80 | (point >> 6 & 0x3F));
    byte(0x80 | (point & 0x3F));
  }
}

char32_t ByteAt(std::string_view bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes[at]);
}

char32_t UnitAt(std::string_view bytes, std::size_t at, Encoding encoding) {
  return encoding == Encoding::kUtf16Little ? ByteAt(bytes, at) | ByteAt(bytes, at + 1) << 8
                                            : ByteAt(bytes, at) << 8 | ByteAt(bytes, at + 1);
}

bool IsHighHalf(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLowHalf(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

// The length of the character at the start of `text`, 0 if it is none.
std::size_t CharacterLength(std::string_view text) {
  const char32_t first = ByteAt(text, 0);
  if (first < 0x80) return 1;
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < length) return 0;
  char32_t point = first & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((ByteAt(text, i) & 0xC0) != 0x80) return 0;
    point = point << 6 | (ByteAt(text, i) & 0x3F);
  }
  constexpr std::array<char32_t, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = point >= 0xD800 && point < 0xE000;
  return point < kSmallest[length] || point > 0x10FFFF || surrogate ? 0 : length;
}

}  // namespace

EncodingStart RecogniseEncoding(std::string_view start) {
  if (start.starts_with(kUtf8Mark)) return {Encoding::kUtf8, kUtf8Mark.size()};
  if (start.starts_with("\xFF\xFE")) return {Encoding::kUtf16Little, 2};
  if (start.starts_with("\xFE\xFF")) return {Encoding::kUtf16Big, 2};
  constexpr std::size_t kEnough = 256;
  start = start.substr(0, kEnough);
  std::array<std::size_t, 2> zeros{};
  for (std::size_t i = 0; i < start.size(); ++i) {
    if (start[i] == '\0') ++zeros[i % 2];
  }
  const std::size_t most = start.size() / 2;
  if (zeros[0] == 0 && zeros[1] > most * 3 / 4) return {Encoding::kUtf16Little, 0};
  if (zeros[1] == 0 && zeros[0] > most * 3 / 4) return {Encoding::kUtf16Big, 0};
  return {};
}

std::size_t AppendUtf16(std::string_view bytes, Encoding encoding, std::string& text) {
  std::size_t at = 0;
  for (; at + 1 < bytes.size(); at += 2) {
    const char32_t unit = UnitAt(bytes, at, encoding);
    if (!IsHighHalf(unit)) {
      AppendCodePoint(IsLowHalf(unit) ? kReplacement : unit, text);
      continue;
    }
    if (at + 3 >= bytes.size()) break;
    const char32_t next = UnitAt(bytes, at + 2, encoding);
    if (!IsLowHalf(next)) {
      AppendCodePoint(kReplacement, text);
      continue;
    }
    AppendCodePoint(0x10000 + ((unit & 0x3FF) << 10 | (next & 0x3FF)), text);
    at += 2;
  }
  return at;
}

bool IsAscii(std::string_view text) {
  std::uint64_t seen = 0;
  std::size_t at = 0;
  for (; at + sizeof(seen) <= text.size(); at += sizeof(seen)) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, text.data() + at, sizeof(eight));
    seen |= eight;
  }
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  return (seen & kHighBits) == 0 &&
         std::ranges::all_of(text.substr(at), [](char c) { return (c & 0x80) == 0; });
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

void AppendWindows1252(std::string_view bytes, std::string& text) {
  // The characters 0x80 to 0x9F; the others are those of Latin-1.
  static constexpr std::array<char32_t, 32> kOwn = {
      0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
      0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
      0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const char32_t byte = ByteAt(bytes, i);
    AppendCodePoint(byte >= 0x80 && byte < 0xA0 ? kOwn[byte - 0x80] : byte, text);
  }
}

}  // namespace velumar
