#include "results/session_result.h"

#include <algorithm>
#include <cmath>
#include <random>

#include "base/number_text.h"

namespace velumar {

namespace {

// What an order adds to the net holding.
struct Change {
  int bar = 0;
  double quantity = 0;  // negative: sold
};

std::vector<Change> ChangesOf(const std::vector<RunOrder>& orders, int first, int last) {
  std::vector<Change> changes;
  for (const RunOrder& order : orders) {
    if (!order.bar || *order.bar < first || *order.bar > last) continue;
    const bool wiped = order.kind == RunOrder::Kind::kWiped;
    const bool buys = order.is_long == (order.kind == RunOrder::Kind::kEntry);
    const double quantity = wiped ? order.held : order.quantity.value_or(0);
    changes.push_back({*order.bar, buys ? quantity : -quantity});
  }
  return changes;
}

std::string Signed(double value) {
  const std::string text = PatternText(static_cast<float>(value), kWholePattern);
  return value >= 0.5 ? "+" + text : text;
}

}  // namespace

SessionResult ResultOfSession(const std::vector<RunOrder>& orders, const std::vector<float>& closes,
                              int first, int last, double money_per_point, std::uint64_t seed) {
  const std::vector<Change> changes = ChangesOf(orders, first, last);
  const auto close = [&closes](int bar) {
    return double{closes.at(static_cast<std::size_t>(bar))};
  };
  double holding = 0;
  double largest = 0;
  int begin = last;
  int end = first;
  for (const Change& change : changes) {
    holding += change.quantity;
    if (std::abs(holding) > std::abs(largest)) largest = holding;
    begin = std::min(begin, change.bar);
    end = std::max(end, change.bar);
  }
  if (std::abs(holding) > kExactQuantity * std::abs(largest)) end = last;
  // What the trades make if they begin that many bars later.
  const auto made = [&](int later) {
    double points = holding * close(end + later);
    for (const Change& change : changes) points -= change.quantity * close(change.bar + later);
    return points * money_per_point;
  };
  SessionResult result;
  const double move = close(last) - close(first);
  result.held = std::abs(largest) * move * money_per_point;
  result.moved = close(first) == 0 ? 0 : move / std::abs(close(first)) * 100;
  if (changes.empty()) return result;
  result.played = made(0);
  std::mt19937_64 random(seed);
  std::uniform_int_distribution<int> later(first - begin, last - end);
  for (int i = 0; i < kChanceDraws; ++i) result.chance += made(later(random)) / kChanceDraws;
  return result;
}

std::string ResultText(const SessionResult& result) {
  return "Your trades: " + Signed(result.played) + " before costs.\n" +
         "Bought at the start and held: " + Signed(result.held) + " (the price moved by " +
         PatternText(static_cast<float>(result.moved), kTwoDecimalsPattern) + " %).\n" +
         "The same trades begun at random bars: " + Signed(result.chance) + " on average of " +
         PatternText(std::int32_t{kChanceDraws}, kWholePattern) + " draws.";
}

}  // namespace velumar
