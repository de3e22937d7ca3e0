#include "resultchart/number_plot.h"

#include <cmath>
#include <limits>

#include "progress/pictures.h"
#include "support/matchers.h"

namespace velumar {
namespace {

// Trades of two sessions at several hours and confidences; with or without stops.
Played MadeOf(int count, bool intraday, bool with_risk) {
  Played played;
  played.symbols = {"ABC"};
  played.setups = {"gap", "a setup with a name that is long"};
  for (int i = 0; i < 2; ++i) {
    PlayedSession& session = played.sessions.emplace_back();
    session.interval = intraday ? 15 : kAbsent;
    session.starting_money = 1000;
    session.closes.assign(200, 10);
  }
  for (int i = 0; i < count; ++i) {
    PlayedTrade& trade = played.trades.emplace_back();
    trade.session = 2 * i / count;
    trade.setup = i % 3 - 1;
    trade.entry_bar = i % 100;
    trade.exit_bar = i % 100 + i * i % 40;
    trade.weekday = static_cast<std::int8_t>(i % 5);
    trade.hour = static_cast<std::int8_t>(intraday ? i % 24 : kAbsent);
    trade.confidence = static_cast<std::uint8_t>(i % 6);
    trade.quantity = trade.money_per_point = 1;
    trade.money = count == 3 ? -5 - i : 7.0 * std::sin(i);  // or losses alone
    trade.risk = with_risk && i % 4 != 0 ? 3 : 0;
    if (i % 2 == 0) trade.adverse = trade.favourable = 2;
  }
  return played;
}

// Every number of the picture is within the axes, and bars don't cover each other.
void ExpectShown(NumberPlot& plot, const NumberPicture& picture) {
  plot.toPixmap(300, 280);
  double left = std::numeric_limits<double>::infinity();
  double distance = left;
  std::vector<double> bars;
  for (int i = 0; i < plot.plottableCount(); ++i) {
    QCPAbstractPlottable* const shown = plot.plottable(i);
    bool found = false;
    const QCPRange x = shown->getKeyRange(found);
    const QCPRange y = shown->getValueRange(found);
    ASSERT_TRUE(found) << picture.title;
    EXPECT_TRUE(shown->keyAxis()->range().contains(x.lower)) << picture.title;
    EXPECT_TRUE(shown->keyAxis()->range().contains(x.upper)) << picture.title;
    EXPECT_TRUE(shown->valueAxis()->range().contains(y.lower)) << picture.title;
    EXPECT_TRUE(shown->valueAxis()->range().contains(y.upper)) << picture.title;
    if (const auto* const bar = qobject_cast<QCPBars*>(shown)) {
      left = std::min(left, bar->width());
      EXPECT_TRUE(bar->valueAxis()->range().contains(0)) << picture.title;
      if (shown->valueAxis()->axisRect() != plot.axisRect(0)) continue;
      for (const QCPBarsData& one : *bar->data()) bars.push_back(one.key);
    }
  }
  std::ranges::sort(bars);
  for (std::size_t i = 1; i < bars.size(); ++i)
    distance = std::min(distance, bars[i] - bars[i - 1]);
  EXPECT_LE(bars.empty() ? 0 : left, distance) << picture.title;
  if (!picture.labels.empty()) {
    EXPECT_EQ(bars.size(), picture.labels.size()) << picture.title;
  }
}

TEST(NumberPlot, ShowsAllOfEveryPicture) {
  NumberPlot plot;
  for (const int count : {0, 1, 3, 150}) {
    for (const bool intraday : {false, true}) {
      for (const bool with_risk : {false, true}) {
        const Played played = MadeOf(count, intraday, with_risk);
        Selection all(played.trades.size());
        std::iota(all.begin(), all.end(), 0);
        const EquityCurve curve = ChainEquity(played, all);
        RoundOptions options;
        options.count = 200;
        const auto skills = CompareWithRandomTraders(played, {{"all", all}}, options);
        for (std::size_t kind = 0; kind < kProgressPictures.size(); ++kind) {
          const auto picture = std::make_shared<const NumberPicture>(
              PictureOf(static_cast<ProgressPicture>(kind), played, all, curve, &skills.front()));
          plot.SetPicture(picture);
          ExpectShown(plot, *picture);
          EXPECT_EQ(picture->panes.empty(), !picture->hint.empty()) << picture->title;
          if (count == 150 && intraday && with_risk) {
            EXPECT_EQ(picture->hint, "");
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace velumar
