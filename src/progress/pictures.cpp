#include "progress/pictures.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "progress/result_unit.h"

namespace velumar {

namespace {

using Shape = NumberPicture::Shape;
using Tone = NumberPicture::Tone;
using Selected = std::span<const std::int32_t>;

constexpr const char* kNoTrades = "No closed trades";

std::optional<double> NetOf(const ResultUnit& unit, const PlayedTrade& trade) {
  return unit.Of(trade, trade.Net());
}

// Values in the order of x, split into those that gain and those that lose.
void AddBySign(NumberPicture::Pane& pane, Shape shape, const std::vector<double>& x,
               const std::vector<double>& y, const std::vector<double>& sign) {
  for (const bool gain : {true, false}) {
    NumberPicture::Series series{shape, gain ? Tone::kGain : Tone::kLoss, {}, {}};
    for (std::size_t i = 0; i < x.size(); ++i) {
      if ((sign[i] >= 0) != gain) continue;
      series.x.push_back(x[i]);
      series.y.push_back(y[i]);
    }
    if (!series.x.empty()) pane.series.push_back(std::move(series));
  }
}

std::vector<double> CountedFrom0(std::size_t count) {
  std::vector<double> numbers(count);
  for (std::size_t i = 0; i < count; ++i) numbers[i] = static_cast<double>(i);
  return numbers;
}

NumberPicture EquityPicture(const EquityCurve& curve) {
  NumberPicture picture{.x_title = "Bars played"};
  std::vector<double> bars = CountedFrom0(curve.equity.size() + 1);
  std::vector<double> equity{curve.starting_money};
  equity.insert(equity.end(), curve.equity.begin(), curve.equity.end());
  std::vector<double> fall{0};
  for (const double below : DrawdownOf(curve)) fall.push_back(-below);
  picture.panes.push_back({"Equity", {{Shape::kLine, Tone::kPlain, bars, std::move(equity)}}});
  picture.panes.push_back({"Drawdown", {{Shape::kArea, Tone::kLoss, bars, std::move(fall)}}});
  return picture;
}

// The bins of a distribution of R are half an R wide, and 0 is between two of them.
NumberPicture ResultsPicture(const Played& played, Selected selection) {
  constexpr double kWidestInR = 15;
  constexpr double kBins = 24;
  const ResultUnit unit(played, selection);
  std::vector<double> results;
  for (const std::int32_t place : selection) {
    if (const auto net = NetOf(unit, played.TradeAt(place))) results.push_back(*net);
  }
  NumberPicture picture{.x_title = "Result of a trade, " + unit.Name()};
  if (results.empty()) return picture;
  double width = 0.5;
  const auto [low, high] = std::ranges::minmax(results);
  if (!unit.in_r) width = std::max((high - low) / kBins, 1e-6);
  std::map<double, double> bins;
  for (double result : results) {
    if (unit.in_r) result = std::clamp(result, -kWidestInR, kWidestInR);
    bins[(std::floor(result / width) + 0.5) * width] += 1;
  }
  std::vector<double> x;
  std::vector<double> counts;
  for (const auto& [middle, count] : bins) {
    x.push_back(middle);
    counts.push_back(count);
  }
  NumberPicture::Pane pane{"Trades", {}};
  AddBySign(pane, Shape::kBars, x, counts, x);
  picture.panes.push_back(std::move(pane));
  return picture;
}

// Against the trade to the left, for it to the right.
NumberPicture ExcursionsPicture(const Played& played, Selected selection) {
  const ResultUnit unit(played, selection);
  NumberPicture picture{.x_title = "Against the trade (left) and for it (right), " + unit.Name()};
  NumberPicture::Series against{Shape::kPoints, Tone::kLoss, {}, {}};
  NumberPicture::Series in_favour{Shape::kPoints, Tone::kGain, {}, {}};
  for (const std::int32_t place : selection) {
    const PlayedTrade& trade = played.TradeAt(place);
    const auto net = NetOf(unit, trade);
    if (!net || !trade.adverse || !trade.favourable) continue;
    const double money = trade.quantity * trade.money_per_point;
    against.x.push_back(-unit.Of(trade, double{*trade.adverse} * money).value_or(0));
    in_favour.x.push_back(unit.Of(trade, double{*trade.favourable} * money).value_or(0));
    against.y.push_back(*net);
    in_favour.y.push_back(*net);
  }
  if (against.x.empty()) {
    picture.hint = "The bars of these trades were not recorded";
    return picture;
  }
  picture.panes.push_back({"Result, " + unit.Name(), {std::move(against), std::move(in_favour)}});
  return picture;
}

// Trades that belong together, by a number that orders them.
using Groups = std::map<int, std::pair<std::string, std::vector<std::int32_t>>>;

template <typename Of>
Groups GroupsOf(const Played& played, Selected selection, const Of& of) {
  Groups groups;
  for (const std::int32_t place : selection) {
    const std::optional<std::pair<int, std::string>> group = of(played.TradeAt(place));
    if (!group) continue;
    auto& [name, trades] = groups[group->first];
    name = group->second;
    trades.push_back(place);
  }
  return groups;
}

// The average result of trades, and how many have one.
struct Average {
  double result = 0;
  int count = 0;
};

Average AverageOf(const Played& played, const ResultUnit& unit, Selected trades) {
  Average average;
  for (const std::int32_t place : trades) {
    const auto net = NetOf(unit, played.TradeAt(place));
    average.result += net.value_or(0);
    average.count += net ? 1 : 0;
  }
  if (average.count > 0) average.result /= average.count;
  return average;
}

// The average result of each group, and how many trades it has.
NumberPicture GroupsPicture(const Played& played, Selected selection, const Groups& groups) {
  const ResultUnit unit(played, selection);
  NumberPicture picture;
  std::vector<double> averages;
  for (const auto& [number, group] : groups) {
    const Average average = AverageOf(played, unit, group.second);
    if (average.count == 0) continue;
    picture.labels.push_back(group.first + " (" + std::to_string(average.count) + ")");
    averages.push_back(average.result);
  }
  if (averages.empty()) return picture;
  NumberPicture::Pane pane{"Average result, " + unit.Name(), {}};
  AddBySign(pane, Shape::kBars, CountedFrom0(averages.size()), averages, averages);
  picture.panes.push_back(std::move(pane));
  return picture;
}

std::optional<std::pair<int, std::string>> SetupOf(const Played& played, const PlayedTrade& trade) {
  if (trade.setup == kAbsent) return std::pair(kAbsent, std::string("none"));
  return std::pair(trade.setup, played.SetupAt(trade.setup));
}

std::optional<std::pair<int, std::string>> WeekdayOf(const PlayedTrade& trade) {
  if (trade.weekday == kAbsent) return std::nullopt;
  static constexpr std::array kNames{"Mon", "Tue", "Wed", "Thu", "Fri", "Sat", "Sun"};
  return std::pair(int{trade.weekday}, kNames.at(static_cast<std::size_t>(trade.weekday)));
}

std::optional<std::pair<int, std::string>> HourOf(const PlayedTrade& trade) {
  if (trade.hour == kAbsent) return std::nullopt;
  return std::pair(int{trade.hour}, std::to_string(trade.hour) + ":00");
}

// Held for 1 bar, 2, 3 to 4, 5 to 8, and so on.
std::optional<std::pair<int, std::string>> HoldingOf(const PlayedTrade& trade) {
  if (trade.entry_bar == kAbsent || trade.exit_bar < trade.entry_bar) return std::nullopt;
  const int bars = trade.exit_bar - trade.entry_bar;
  if (bars == 0) return std::pair(-1, std::string("0"));
  int most = 1;
  int group = 0;
  for (; most < bars; most *= 2) ++group;
  const int least = most / 2 + 1;
  return std::pair(group, least >= most ? std::to_string(most)
                                        : std::to_string(least) + "-" + std::to_string(most));
}

NumberPicture ConfidencePicture(const Played& played, Selected selection) {
  const Groups groups = GroupsOf(played, selection, [](const PlayedTrade& trade) {
    return trade.confidence == 0
               ? std::nullopt
               : std::optional(std::pair(int{trade.confidence}, std::to_string(trade.confidence)));
  });
  NumberPicture picture = GroupsPicture(played, selection, groups);
  picture.x_title = "Confidence before the trade, 1 to 5";
  if (picture.panes.empty()) {
    picture.hint = "No trade has a plan with a confidence";
    return picture;
  }
  const ResultUnit unit(played, selection);
  std::vector<double> rates;
  for (const auto& [number, group] : groups) {
    const auto& trades = group.second;
    if (AverageOf(played, unit, trades).count == 0) continue;
    const auto wins = std::ranges::count_if(
        trades, [&](std::int32_t place) { return played.TradeAt(place).Net() > 0; });
    rates.push_back(100.0 * static_cast<double>(wins) / static_cast<double>(trades.size()));
  }
  NumberPicture::Series bars{Shape::kBars, Tone::kPlain, CountedFrom0(rates.size()), rates};
  picture.panes.insert(picture.panes.begin(), {"Won, percent", {std::move(bars)}});
  return picture;
}

NumberPicture SessionsPicture(const Played& played, Selected selection) {
  constexpr std::size_t kAveraged = 5;
  const ResultUnit unit(played, selection);
  std::vector<double> sums;
  for (const SelectedSession& session : BySession(played, selection)) {
    double sum = 0;
    for (const std::int32_t place : session.trades) {
      sum += NetOf(unit, played.TradeAt(place)).value_or(0);
    }
    sums.push_back(sum);
  }
  NumberPicture picture{.x_title = "Session; the line is the average of five"};
  if (sums.empty()) return picture;
  NumberPicture::Pane pane{"Result, " + unit.Name(), {}};
  AddBySign(pane, Shape::kBars, CountedFrom0(sums.size()), sums, sums);
  NumberPicture::Series average;
  for (std::size_t i = kAveraged - 1; i < sums.size(); ++i) {
    double sum = 0;
    for (std::size_t j = i + 1 - kAveraged; j <= i; ++j) sum += sums[j];
    average.x.push_back(static_cast<double>(i));
    average.y.push_back(sum / static_cast<double>(kAveraged));
  }
  if (!average.x.empty()) pane.series.push_back(std::move(average));
  picture.panes.push_back(std::move(pane));
  return picture;
}

NumberPicture LuckPicture(const SkillOrLuck* skill) {
  constexpr int kBins = 40;
  NumberPicture picture;
  if (skill == nullptr || skill->random_results.empty()) {
    picture.hint = skill == nullptr ? "Computing ..." : "No trades to compare with random ones";
    return picture;
  }
  const Histogram histogram = HistogramOf(skill->random_results, kBins);
  const double width = (histogram.high - histogram.low) / kBins;
  NumberPicture::Series bars{Shape::kBars, Tone::kPlain, {}, {}};
  for (std::size_t i = 0; i < histogram.counts.size(); ++i) {
    bars.x.push_back(histogram.low + (static_cast<double>(i) + 0.5) * width);
    bars.y.push_back(histogram.counts[i]);
    if (width <= 0) break;  // all random traders did the same
  }
  picture.panes.push_back({"Random traders", {std::move(bars)}});
  picture.x_title = "Usual moves in the trades' direction; the line is these trades";
  picture.mark = skill->compared;
  return picture;
}

NumberPicture Drawn(ProgressPicture kind, const Played& played, Selected selection,
                    const EquityCurve& curve, const SkillOrLuck* skill) {
  const auto groups = [&](const auto& of, const char* x_title = "", const char* hint = kNoTrades) {
    NumberPicture picture = GroupsPicture(played, selection, GroupsOf(played, selection, of));
    picture.x_title = x_title;
    if (picture.panes.empty()) picture.hint = hint;
    return picture;
  };
  switch (kind) {
    case ProgressPicture::kEquity:
      return EquityPicture(curve);
    case ProgressPicture::kResults:
      return ResultsPicture(played, selection);
    case ProgressPicture::kExcursions:
      return ExcursionsPicture(played, selection);
    case ProgressPicture::kBySetup:
      return groups([&](const PlayedTrade& trade) { return SetupOf(played, trade); });
    case ProgressPicture::kByWeekday:
      return groups(WeekdayOf);
    case ProgressPicture::kByHour:
      return groups(HourOf, "", "Daily bars have no hours");
    case ProgressPicture::kByHolding:
      return groups(HoldingOf, "Bars held");
    case ProgressPicture::kByConfidence:
      return ConfidencePicture(played, selection);
    case ProgressPicture::kBySession:
      return SessionsPicture(played, selection);
    case ProgressPicture::kLuck:
      break;
  }
  return LuckPicture(skill);
}

}  // namespace

NumberPicture PictureOf(ProgressPicture kind, const Played& played,
                        std::span<const std::int32_t> selection, const EquityCurve& curve,
                        const SkillOrLuck* skill) {
  NumberPicture picture =
      selection.empty() ? NumberPicture() : Drawn(kind, played, selection, curve, skill);
  picture.title = kProgressPictures.at(static_cast<std::size_t>(kind));
  if (picture.panes.empty() && picture.hint.empty()) picture.hint = kNoTrades;
  return picture;
}

}  // namespace velumar
