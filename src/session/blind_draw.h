#pragma once

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "marketdata/index_cache.h"
#include "session/blind_mask.h"

namespace velumar {

// Bars after the start of a run that is drawn at random.
inline constexpr int kBarsAfterStart = 100;

// A day to start a run at, with at least 250 bars before its first bar and `bars_after` after it.
// `days` are the dates of the bars, yyyymmdd, oldest first. Nothing if there is no such day.
std::optional<std::int32_t> RandomStartDay(const std::vector<std::int32_t>& days,
                                           std::mt19937_64& random,
                                           int bars_after = kBarsAfterStart);

// The setting that keeps the prices of blind runs, and its value.
inline constexpr std::string_view kBlindPricesSetting = "BlindPrices";
inline constexpr std::string_view kRealPrices = "real";

// What a blind run may be of.
struct BlindWish {
  std::string directory;
  std::string symbol;    // empty: any
  std::string interval;  // "D" or minutes
  bool scales = true;    // prices
  // Symbols that earlier runs have shown, the newest last. One of them is drawn only if the
  // directory has no other, and then the one that was shown the longest ago.
  std::vector<std::string> shown = {};
  int bars_after = kBarsAfterStart;
};

// Draws a security of the directory and a start day for it, at random but the same for the same
// state of `random`. Throws MetaLibError if no series can be played blind.
BlindKey DrawBlind(const BlindWish& wish, IndexCache& cache, std::mt19937_64& random);

}  // namespace velumar
