#include "session/blind_mask.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <random>
#include <vector>

#include "base/checksum.h"
#include "base/dates.h"
#include "base/number_text.h"

namespace velumar {

namespace {

constexpr int kDaysOfWeek = 7;
constexpr std::int32_t kFirstShownMonday = 20610103;
constexpr double kFirstShownClose = 100;
constexpr double kPriceLimit = 0x1p127;  // of a data file
constexpr std::string_view kKeyVersion = "1";
constexpr char kBetween = '\n';
constexpr int kHex = 16;

std::array<const std::vector<float>*, 4> PricesOf(const BarArrays& bars) {
  return {&bars.opens, &bars.highs, &bars.lows, &bars.closes};
}

bool Scales(const BarArrays& bars, double factor) {
  return std::ranges::all_of(PricesOf(bars), [factor](const std::vector<float>* prices) {
    return std::ranges::all_of(*prices, [factor](float price) {
      const double scaled = std::abs(double{price} * factor);
      return price == 0 || (scaled >= FLT_MIN && scaled < kPriceLimit);
    });
  });
}

std::uint32_t ShortChecksum(std::string_view text) {
  return static_cast<std::uint32_t>(Checksum(text));
}

// Scrambles a text, or restores it.
std::string Scrambled(std::string text, std::uint32_t seed) {
  std::mt19937 stream(seed);
  for (char& c : text) c = static_cast<char>(static_cast<unsigned char>(c) ^ (stream() >> 24));
  return text;
}

std::string HexText(std::uint32_t number, int digits) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (int i = digits - 1; i >= 0; --i) text += kDigits[number >> (4 * i) & 0xFU];
  return text;
}

std::optional<std::uint32_t> HexNumber(std::string_view text) {
  std::uint32_t number = 0;
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number, kHex);
  if (error != std::errc() || rest != text.data() + text.size()) return std::nullopt;
  return number;
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines(1);
  for (const char c : text) {
    if (c == kBetween) {
      lines.emplace_back();
    } else {
      lines.back() += c;
    }
  }
  return lines;
}

}  // namespace

std::int32_t BlindMask::Date(std::int32_t real) const {
  return DaysLater(real, weeks * kDaysOfWeek);
}

std::int32_t BlindMask::RealDate(std::int32_t shown) const {
  return DaysLater(shown, -weeks * kDaysOfWeek);
}

float BlindMask::Price(float real) const { return static_cast<float>(double{real} * factor); }

void BlindMask::Hide(BarArrays& bars) const {
  for (std::int32_t& date : bars.dates) date = Date(date);
  for (auto* prices : {&bars.opens, &bars.highs, &bars.lows, &bars.closes}) {
    for (float& price : *prices) price = Price(price);
  }
}

std::optional<BlindMask> MaskOf(const BarArrays& bars, std::size_t first_shown, bool scales) {
  if (!std::ranges::all_of(bars.dates, IsRealDate)) return std::nullopt;
  const std::int32_t day = bars.dates.at(first_shown);
  const std::int64_t days = DayNumber(kFirstShownMonday) + Weekday(day) - DayNumber(day);
  BlindMask mask{.weeks = static_cast<int>(days / kDaysOfWeek)};
  if (!scales) return mask;
  const double close = std::abs(double{bars.closes.at(first_shown)});
  if (close == 0) return std::nullopt;
  mask.factor = kFirstShownClose / close;
  return Scales(bars, mask.factor) ? std::optional(mask) : std::nullopt;
}

std::string BlindKey::ShownName() const {
  return std::string(kBlindSymbol) + " " + HexText(code & 0xFFFFU, 4);
}

std::string Encoded(const BlindKey& key) {
  std::string text(kKeyVersion);
  for (const std::string& part :
       {key.symbol, key.name, std::to_string(key.start_day), std::to_string(key.mask.weeks),
        ExactText(key.mask.factor), std::to_string(key.code)}) {
    text += kBetween + part;
  }
  const std::uint32_t sum = ShortChecksum(text);
  std::string encoded = HexText(sum, 8);
  for (const char c : Scrambled(text, sum)) encoded += HexText(static_cast<unsigned char>(c), 2);
  return encoded;
}

std::optional<BlindKey> Decoded(std::string_view text) {
  constexpr std::size_t kSumSize = 8;
  const auto sum = HexNumber(text.substr(0, kSumSize));
  if (!sum || text.size() % 2 != 0 || text.size() <= kSumSize) return std::nullopt;
  std::string bytes;
  for (std::size_t at = kSumSize; at < text.size(); at += 2) {
    const auto byte = HexNumber(text.substr(at, 2));
    if (!byte) return std::nullopt;
    bytes += static_cast<char>(*byte);
  }
  bytes = Scrambled(bytes, *sum);
  const std::vector<std::string> parts = Lines(bytes);
  if (ShortChecksum(bytes) != *sum || parts.size() != 7 || parts[0] != kKeyVersion)
    return std::nullopt;
  const auto start_day = ExactNumber<std::int32_t>(parts[3]);
  const auto weeks = ExactNumber<int>(parts[4]);
  const auto factor = ExactNumber<double>(parts[5]);
  const auto code = ExactNumber<std::uint32_t>(parts[6]);
  if (!start_day || !weeks || !factor || !code) return std::nullopt;
  return BlindKey{parts[1], parts[2], *start_day, {*weeks, *factor}, *code};
}

}  // namespace velumar
