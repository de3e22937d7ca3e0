#include "marketdata/new_security.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "base/text.h"
#include "marketdata/bar_codec.h"
#include "marketdata/metalib_error.h"
#include "marketdata/series_error.h"
#include "marketdata/stored_text.h"

namespace velumar {

namespace {

constexpr std::size_t kLongestSymbol = 14;
constexpr std::size_t kLongestName = 45;
constexpr int kLongestInterval = 24 * 60;
constexpr int kDailyFields = 7;
constexpr int kIntradayFields = 8;

[[noreturn]] void ThrowBadIdentity(const std::string& text) {
  throw MetaLibError(MetaLibError::kNotStorable, text);
}

bool HasControls(std::string_view text) {
  return std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

std::size_t StoredSize(std::string_view text) {
  try {
    return TextForFile(text).size();
  } catch (const std::invalid_argument& error) {
    ThrowBadIdentity(error.what());
  }
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

}  // namespace

BarLayout WantedLayout(int interval) {
  const bool intraday = interval != -1;
  return BarLayout::FromCount(intraday ? kIntradayFields : kDailyFields, intraday);
}

std::string StoredName(const std::string& name) {
  StoredSize(name);
  return Trimmed(TextFromFile(TextForFile(name).substr(0, kLongestName)));
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

void CheckBars(const NewSecurity& security, const std::vector<Bar>& bars, std::string_view place) {
  const BarLayout layout = WantedLayout(security.interval);
  std::array<std::byte, 4 * kBarFields> buffer{};
  const ByteSpan record = std::span(buffer).first(layout.RecordSize());
  for (const Bar& bar : bars) {
    const auto refused = EncodeBar(layout, bar, record);
    if (refused) ThrowNotStorable(place, security.symbol, bar, *refused);
    const Bar stored = DecodeBar(layout, record);
    if (stored != bar) {
      ThrowNotStorable(place, security.symbol, bar, DifferingField(stored, bar));
    }
  }
}

}  // namespace velumar
