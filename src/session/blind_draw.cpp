#include "session/blind_draw.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_error.h"
#include "marketdata/metalib_reader.h"
#include "session/run_source.h"

namespace velumar {

namespace {

constexpr std::ptrdiff_t kBarsBefore = 250;

struct Candidate {
  std::string symbol;
  std::string name;
};

// In the order in which they are tried.
std::vector<Candidate> CandidatesFor(const BlindWish& wish, IndexCache& cache,
                                     std::mt19937_64& random) {
  std::vector<Candidate> all;
  for (const SecurityInfo& security : SecuritiesOf(wish.directory, cache)) {
    const bool wanted = wish.symbol.empty() ? UpperCased(security.symbol) == security.symbol
                                            : security.symbol == wish.symbol;
    const bool long_enough = security.bars > kBarsBefore + wish.bars_after;
    if (!wanted || !long_enough ||
        std::to_string(security.interval) != IntervalToMatch(wish.interval)) {
      continue;
    }
    // A run plays the first series of a symbol.
    if (std::ranges::find(all, security.symbol, &Candidate::symbol) == all.end()) {
      all.push_back({security.symbol, security.name});
    }
  }
  std::ranges::shuffle(all, random);
  // How lately each was shown: 0 for never.
  const auto lately = [&wish](const Candidate& candidate) {
    const auto last = std::ranges::find(wish.shown.rbegin(), wish.shown.rend(), candidate.symbol);
    return wish.shown.rend() - last;
  };
  std::ranges::stable_sort(all, std::less(), lately);
  return all;
}

std::optional<BlindKey> KeyOf(const BlindWish& wish, const Candidate& candidate, IndexCache& cache,
                              std::mt19937_64& random) {
  try {
    const BarArrays bars =
        ReadReplayable({wish.directory, candidate.symbol, wish.interval, 0}, cache);
    const auto day = RandomStartDay(bars.dates, random, wish.bars_after);
    if (!day) return std::nullopt;
    const auto start = std::ranges::lower_bound(bars.dates, *day) - bars.dates.begin();
    const auto mask = MaskOf(bars, static_cast<std::size_t>(start - 1), wish.scales);
    if (!mask) return std::nullopt;
    return BlindKey{candidate.symbol, candidate.name, *day, *mask,
                    static_cast<std::uint32_t>(random() & 0xFFFFU)};
  } catch (const MetaLibError&) {
    return std::nullopt;
  }
}

}  // namespace

std::optional<std::int32_t> RandomStartDay(const std::vector<std::int32_t>& days,
                                           std::mt19937_64& random, int bars_after) {
  const std::ptrdiff_t high = std::ssize(days) - 1 - bars_after;
  if (high < kBarsBefore) return std::nullopt;
  const auto bar = std::uniform_int_distribution<std::ptrdiff_t>(kBarsBefore, high)(random);
  // A run starts with the first bar of a day.
  const std::int32_t day = days[static_cast<std::size_t>(bar)];
  const auto begin = std::ranges::lower_bound(days, day);
  if (begin - days.begin() >= kBarsBefore) return day;
  const auto next = std::upper_bound(begin, days.end(), day);
  if (next - days.begin() > high) return std::nullopt;
  return *next;
}

BlindKey DrawBlind(const BlindWish& wish, IndexCache& cache, std::mt19937_64& random) {
  for (const Candidate& candidate : CandidatesFor(wish, cache, random)) {
    if (auto key = KeyOf(wish, candidate, cache, random)) return *std::move(key);
  }
  throw MetaLibError(kNotReplayable,
                     (wish.symbol.empty() ? "No series" : "The series " + wish.symbol) +
                         " at interval " + wish.interval + " in \"" + wish.directory + "\" " +
                         (wish.symbol.empty() ? "can" : "can't") +
                         " be played blind, which takes " + std::to_string(kBarsBefore) +
                         " bars before the start and " + std::to_string(wish.bars_after) +
                         " after it. Choose another security, interval or directory.");
}

}  // namespace velumar
