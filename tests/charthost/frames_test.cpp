#include "charthost/frames.h"

#include <gmock/gmock.h>

#include <random>

#include "charthost/bar_text.h"
#include "charthost/made_series.h"
#include "support/scratch.h"

namespace velumar {
namespace {

// A bar that opens at `price` and closes one above it.
Bar At(int date, int time, float price) {
  return {date, time, price, price + 3, price - 2, price + 1, 10, 0};
}

// "20261126 1000 O10 H14 L8 C12 V20"; an unfinished last bar ends with "?".
std::vector<std::string> TextsOf(const BarSeries& series) {
  std::vector<std::string> texts;
  for (int i = 0; i < series.size(); ++i) {
    const auto whole = [i](const std::vector<float>& values) {
      return std::to_string(static_cast<int>(values[i]));
    };
    texts.push_back(std::to_string(series.dates[i]) + " " + std::to_string(series.times[i] / 100) +
                    " O" + whole(series.opens) + " H" + whole(series.highs) + " L" +
                    whole(series.lows) + " C" + whole(series.closes) + " V" +
                    whole(series.volumes));
  }
  if (series.newest_unfinished) texts.back() += "?";
  return texts;
}

TEST(Frames, AreThoseThatTheIntervalDivides) {
  const std::vector<std::pair<int, const char*>> cases = {
      {1, "stored 5 10 15 30 60 120 240 day week month "},
      {5, "stored 10 15 30 60 120 240 day week month "},
      {60, "stored 120 240 day week month "},
      {0, "stored day week month "},
      {-1, "stored week month quarter "}};
  for (const auto& [interval, expected] : cases) {
    std::string names;
    for (const Frame frame : FramesOf(interval)) {
      EXPECT_EQ(FrameFromName(FrameName(frame)), frame);
      names += FrameName(frame) + " ";
    }
    EXPECT_EQ(names, expected) << interval;
  }
  EXPECT_EQ(FrameFromName("77"), Frame());
  EXPECT_EQ(FrameTitle({Frame::Unit::kMinutes, 60}, 5), "60 minutes");
  EXPECT_EQ(FrameTitle({Frame::Unit::kMinutes, 240}, 5), "4 hours");
  EXPECT_EQ(FrameTitle({}, 5), "5 minutes");
}

struct Built {
  const char* name;
  Frame frame;
  int interval;
  std::vector<Bar> stored;
  std::vector<std::string> expected;
};

TEST(Frames, HoldTheBarsOfTheirHoursDaysAndMonths) {
  const std::vector<Built> cases = {
      {"hours start on the full hour, whenever the day begins, and none crosses a date",
       {Frame::Unit::kMinutes, 60},
       30,
       {At(20261126, 93000, 10), At(20261126, 100000, 20), At(20261126, 103000, 15),
        At(20261127, 103000, 30), At(20261127, 110000, 40)},
       {"20261126 930 O10 H13 L8 C11 V10", "20261126 1000 O20 H23 L13 C16 V20",
        "20261127 1030 O30 H33 L28 C31 V10", "20261127 1100 O40 H43 L38 C41 V10?"}},
      {"the last bar of an hour finishes it",
       {Frame::Unit::kMinutes, 60},
       30,
       {At(20261127, 110000, 40), At(20261127, 113000, 41)},
       {"20261127 1100 O40 H44 L38 C42 V20"}},
      {"the last bar before midnight finishes a day",
       {Frame::Unit::kDay},
       60,
       {At(20261126, 220000, 1), At(20261126, 230000, 2)},
       {"20261126 0 O1 H5 L-1 C3 V20"}},
      {"days change with the date, and the newest may get more bars",
       {Frame::Unit::kDay},
       60,
       {At(20261126, 150000, 1), At(20261127, 90000, 2), At(20261127, 100000, 3)},
       {"20261126 0 O1 H4 L-1 C2 V10", "20261127 0 O2 H6 L0 C4 V20?"}},
      {"weeks begin on Monday and end on Sunday",
       {Frame::Unit::kWeek},
       -1,
       {At(20261127, 0, 10), At(20261129, 0, 11), At(20261130, 0, 20), At(20261206, 0, 21)},
       {"20261127 0 O10 H14 L8 C12 V20", "20261130 0 O20 H24 L18 C22 V20"}},
      {"months and years",
       {Frame::Unit::kMonth},
       -1,
       {At(20251231, 0, 10), At(20260102, 0, 20), At(20260130, 0, 30)},
       {"20251231 0 O10 H13 L8 C11 V10", "20260102 0 O20 H33 L18 C31 V20?"}},
      {"quarters, of which the last one ends",
       {Frame::Unit::kQuarter},
       -1,
       {At(20260331, 0, 10), At(20260401, 0, 20), At(20260630, 0, 30)},
       {"20260331 0 O10 H13 L8 C11 V10", "20260401 0 O20 H33 L18 C31 V20"}},
      {"dates that no calendar has",
       {Frame::Unit::kWeek},
       -1,
       {At(20260230, 0, 10), At(99999999, 0, 20)},
       {"20260230 0 O10 H13 L8 C11 V10", "99999999 0 O20 H23 L18 C21 V10?"}}};
  for (const Built& built : cases) {
    FrameBars bars(built.frame, built.interval);
    bars.Follow(SeriesOfBars(built.stored));
    EXPECT_EQ(TextsOf(bars.Bars()), built.expected) << built.name;
  }
}

// A replay goes on, steps back and jumps.
TEST(Frames, FollowEveryStepAsIfBuiltFromTheStart) {
  const std::vector<Bar> all = IntradayBars(900, 5);
  std::mt19937 random(7);
  for (const Frame frame : FramesOf(5)) {
    if (frame == Frame()) continue;
    FrameBars followed(frame, 5);
    int count = 400;
    for (int step = 0; step < 60; ++step) {
      count = std::clamp(count + static_cast<int>(random() % 61) - 30, 0, 900);
      std::vector<Bar> stored(all.begin(), all.begin() + count);
      if (count > 0 && step % 7 == 0) stored.back().close = stored.back().high;
      followed.Follow(SeriesOfBars(stored));
      FrameBars fresh(frame, 5);
      fresh.Follow(SeriesOfBars(stored));
      ASSERT_EQ(TextsOf(followed.Bars()), TextsOf(fresh.Bars())) << FrameName(frame);
      ASSERT_EQ(followed.Bars().starts, fresh.Bars().starts);
      for (int bar = 0; bar < count; ++bar) {
        const std::optional<int> place = BarOfStored(followed.Bars(), bar);
        ASSERT_TRUE(place.has_value());
        ASSERT_LE(followed.Bars().starts[*place], bar);
      }
      EXPECT_EQ(BarOfStored(followed.Bars(), count), std::nullopt);
    }
  }
}

}  // namespace
}  // namespace velumar
