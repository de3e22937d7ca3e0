#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "marketdata/bar.h"

namespace velumar {

// Symbol of every series that is played blind.
inline constexpr std::string_view kBlindSymbol = "BLIND";

// How a blind run changes its series, so that neither dates nor prices give the security away:
// dates move by whole weeks, so weekdays and times of day stay, and prices are multiplied. Volume
// and open interest stay.
struct BlindMask {
  int weeks = 0;  // later
  double factor = 1;

  // The date must be real.
  std::int32_t Date(std::int32_t real) const;
  std::int32_t RealDate(std::int32_t shown) const;
  float Price(float real) const;
  void Hide(BarArrays& bars) const;

  bool operator==(const BlindMask&) const = default;
};

// The mask for a run whose newest bar at the start is `first_shown`: that bar falls in the week of
// 3 January 2061, which is later than any history and early enough for every length of it, and its
// close becomes 100 (or -100). If `scales` is false, prices stay. Nothing if a date is not real, if
// that close is 0, or if a price would become 0 or too large for a data file.
std::optional<BlindMask> MaskOf(const BarArrays& bars, std::size_t first_shown, bool scales);

// What a blind run hides.
struct BlindKey {
  std::string symbol;
  std::string name;
  std::int32_t start_day = 0;
  BlindMask mask;
  // A random number, part of the name under which the series is shown: a chart program keeps
  // drawings by symbol and name, and those of one session must not appear in the next.
  std::uint32_t code = 0;

  std::string ShownName() const;  // "BLIND 0A3F"

  bool operator==(const BlindKey&) const = default;
};

// The key as a text that doesn't give anything away to whoever looks at the ledger by accident.
// This is not encryption: everyone who reads the code can decode it. Decoding returns nothing for
// any other text.
std::string Encoded(const BlindKey& key);
std::optional<BlindKey> Decoded(std::string_view text);

}  // namespace velumar
