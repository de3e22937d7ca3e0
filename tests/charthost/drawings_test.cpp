// What a trader draws, without a window: places in time, shapes, undo and the file.
#include <gmock/gmock.h>

#include <cmath>
#include <random>

#include "charthost/drawings/drawing_book.h"
#include "charthost/drawings/drawing_shape.h"
#include "charthost/frames.h"
#include "charthost/made_series.h"
#include "support/matchers.h"
#include "support/scratch.h"

namespace velumar {
namespace {

using testing::Not;
using testing::UnorderedElementsAre;

// The bars of a chart in some frame.
struct Chart {
  Chart(const std::vector<Bar>& bars, int count, int minutes, Frame shown)
      : stored(SeriesOfBars({bars.begin(), bars.begin() + count})),
        frame(shown, minutes),
        interval(minutes) {
    frame.Follow(stored);
  }
  TimeAxis Axis() const { return {stored, frame.Bars().starts, interval}; }

  BarSeries stored;
  FrameBars frame;
  int interval;
};

constexpr Frame kHours{Frame::Unit::kMinutes, 60};
constexpr Frame kStoredFrame{};
constexpr Frame kDays{Frame::Unit::kDay, 0};
constexpr Frame kWeeks{Frame::Unit::kWeek, 0};

TEST(TimeAxis, KeepsEachPlaceInItsFrameAndFindsItInOthers) {
  const std::vector<Bar> bars = IntradayBars(400, 5);  // twenty a day, from 10:00 to 11:35
  for (const Frame frame : {kStoredFrame, kHours, kDays, kWeeks}) {
    const Chart chart(bars, 315, 5, frame);
    for (int place = -40; place < chart.Axis().Bars() + 40; ++place) {
      const TimeAnchor anchor = chart.Axis().At(place);
      EXPECT_EQ(chart.Axis().PlaceOf(anchor), place) << FrameName(frame);
    }
  }
  const Chart stored(bars, 315, 5, kStoredFrame);
  const Chart hours(bars, 315, 5, kHours);
  const Chart days(bars, 315, 5, kDays);
  const TimeAnchor late_bar = stored.Axis().At(219);
  EXPECT_EQ(hours.Axis().PlaceOf(late_bar), 21) << "two hours a day";
  EXPECT_EQ(days.Axis().PlaceOf(late_bar), 10);
  EXPECT_EQ(stored.Axis().PlaceOf(days.Axis().At(10)), 200) << "a day begins with its first bar";
  EXPECT_EQ(stored.Axis().PlaceOf({.date = bars[200].date}), 200) << "a drawing of daily bars";
}

TEST(TimeAxis, AFutureAnchorMeetsTheBarThatItWasDrawnAt) {
  const std::vector<Bar> bars = IntradayBars(600, 5);
  for (const Frame frame : {kStoredFrame, kHours, kDays}) {
    const Chart before(bars, 310, 5, frame);
    for (const int ahead : {1, 2, 7}) {
      const int place = before.Axis().Bars() - 1 + ahead;
      const TimeAnchor anchor = before.Axis().At(place);
      for (const int count : {311, 330, 400, 600}) {
        const Chart later(bars, count, 5, frame);
        EXPECT_EQ(later.Axis().PlaceOf(anchor), place) << FrameName(frame) << " " << count;
      }
      // In the stored bars it lies in the same part of the day.
      const Chart all(bars, 600, 5, kStoredFrame);
      const Chart framed(bars, 600, 5, frame);
      EXPECT_EQ(framed.Axis().PlaceOf(all.Axis().At(all.Axis().PlaceOf(anchor))), place);
    }
  }
  // Daily bars of the same security: forty bars of five minutes are two days.
  const Chart minutes(bars, 310, 5, kStoredFrame);
  const Chart daily(DailyBars(30), 16, -1, kStoredFrame);
  const TimeAnchor two_days_later = minutes.Axis().At(309 + 40);
  EXPECT_EQ(daily.Axis().PlaceOf(two_days_later), 17);
}

TEST(TimeAxis, KnowsADailyBarOnlyAtTheEndOfItsDay) {
  const Chart day(DailyBars(10), 10, -1, kStoredFrame);  // up to the 10th
  const Chart morning(IntradayBars(400, 5), 181, 5, kStoredFrame);
  const Chart before(IntradayBars(400, 5), 180, 5, kStoredFrame);
  const Chart next_day(IntradayBars(400, 5), 201, 5, kStoredFrame);
  EXPECT_LT(morning.Axis().Known(), day.Axis().Known());
  EXPECT_LT(day.Axis().Known(), next_day.Axis().Known());
  EXPECT_LT(before.Axis().Known(), morning.Axis().Known());
  EXPECT_EQ(Chart({}, 0, 5, kStoredFrame).Axis().Known(), 0);
}

class Shapes : public testing::Test {
 protected:
  Anchor At(double place, double price) const { return {chart.Axis().At(place), price}; }
  Shape Of(DrawingKind kind, std::vector<Anchor> anchors) const {
    return ShapeOf({.kind = kind, .anchors = std::move(anchors), .text = "gap"}, scene);
  }
  static std::string Text(const Segment& line) {
    const auto text = [](Point point) {
      return std::to_string(std::lround(point.x)) + "," + std::to_string(std::lround(point.y));
    };
    return text(line.from) + " " + text(line.to);
  }
  static std::vector<std::string> Lines(const Shape& shape) {
    std::vector<std::string> lines;
    for (const Segment& line : shape.lines) lines.push_back(Text(line));
    return lines;
  }

  // Ten pixels a bar, one a price unit from 200 down.
  Chart chart{DailyBars(300), 100, -1, kStoredFrame};
  TimeAxis axis = chart.Axis();
  Scene scene{.time = axis,
              .area = {0, 0, 1000, 200},
              .to_pixel =
                  [](double place, double price) {
                    return Point{place * 10, 200 - price};
                  },
              .price_text = [](double price) { return std::to_string(std::lround(price)); },
              .text_size =
                  [](const std::string& text) {
                    return Point{8.0 * static_cast<double>(text.size()), 12};
                  }};
};

TEST_F(Shapes, HaveTheirLinesWithinTheArea) {
  using enum DrawingKind;
  EXPECT_THAT(Lines(Of(kHorizontalLine, {At(5, 50)})), ElementsAre("0,150 1000,150"));
  EXPECT_THAT(Lines(Of(kTrendLine, {At(10, 50), At(20, 60)})), ElementsAre("100,150 200,140"));
  EXPECT_THAT(Lines(Of(kRay, {At(10, 50), At(20, 60)})), ElementsAre("100,150 1000,60"));
  EXPECT_THAT(Lines(Of(kRay, {At(20, 60), At(10, 50)})), ElementsAre("200,140 0,160"));
  EXPECT_THAT(Lines(Of(kRay, {At(20, 60), At(20, 70)})), ElementsAre("200,140 200,0"));
  EXPECT_THAT(Lines(Of(kChannel, {At(10, 50), At(20, 60), At(12, 72)})),
              ElementsAre("100,150 200,140", "100,130 200,120"));
  const Shape box = Of(kRectangle, {At(20, 60), At(110, -50)});
  EXPECT_THAT(Lines(box), ElementsAre("200,140 1000,140", "200,200 200,140"));
  EXPECT_EQ(box.fill, (Box{200, 140, 1000, 200}));
  const Shape retracement = Of(kFibonacci, {At(10, 0), At(20, 110)});
  EXPECT_EQ(Lines(retracement)[5], "100,158 200,158");
  const auto labels = [](const Shape& shape) {
    std::vector<std::string> texts;
    for (const Shape::Label& label : shape.labels) texts.push_back(label.text);
    return texts;
  };
  EXPECT_THAT(labels(retracement),
              UnorderedElementsAre("0 %  110", "23.6 %  84", "38.2 %  68", "50 %  55", "61.8 %  42",
                                   "78.6 %  24", "100 %  0"));
  EXPECT_THAT(labels(Of(kFibonacci, {At(10, 100), At(20, 130)})),
              UnorderedElementsAre("0 %  130", "50 %  115", "100 %  100"))
      << "labels of 12 pixels don't cover each other";
  EXPECT_THAT(labels(Of(kFibonacci, {At(10, 50), At(20, 50)})), ElementsAre("0 %  50"));
  EXPECT_TRUE(Of(kArrow, {At(10, 50), At(20, 60)}).arrow_head);
  EXPECT_EQ(Of(kText, {At(10, 50)}).labels[0].box, (Box{100, 150, 124, 162}));
  EXPECT_THAT(Lines(Of(kTrendLine, {At(10, 50)})), IsEmpty()) << "half drawn";
  EXPECT_THAT(Lines(Of(kTrendLine, {At(10, 1e300), At(20, -1e300)})), Not(IsEmpty()));
  EXPECT_THAT(Lines(Of(kTrendLine, {At(110, 50), At(120, 60)})), IsEmpty()) << "out of view";
  // On a logarithmic axis a price below 0 has no place.
  scene.to_pixel = [](double place, double price) { return Point{place, std::log(price)}; };
  EXPECT_THAT(Of(kTrendLine, {At(10, 50), At(20, -1)}).handles, IsEmpty());
}

// A point on a line hits it, whatever its direction; one farther away than the reach does not.
TEST_F(Shapes, AreHitWhereTheyAre) {
  std::mt19937 random(7);
  const auto number = [&random](double least, double most) {
    return std::uniform_real_distribution<double>(least, most)(random);
  };
  for (int i = 0; i < 500; ++i) {
    const Segment line{{number(0, 1000), number(0, 200)}, {number(0, 1000), number(0, 200)}};
    const Shape shape{.lines = {line}};
    const double share = number(0, 1);
    const double dx = line.to.x - line.from.x;
    const double dy = line.to.y - line.from.y;
    const double length = std::hypot(dx, dy);
    const auto at_distance = [&](double distance) {
      return Point{line.from.x + share * dx - distance * dy / length,
                   line.from.y + share * dy + distance * dx / length};
    };
    EXPECT_TRUE(HitAt({&shape, 1}, at_distance(4.9), 5));
    EXPECT_FALSE(HitAt({&shape, 1}, at_distance(5.1), 5));
  }
  const std::vector<Shape> shapes = {Of(DrawingKind::kTrendLine, {At(10, 50), At(20, 60)}),
                                     Of(DrawingKind::kTrendLine, {At(10, 60), At(20, 50)})};
  EXPECT_EQ(HitAt(shapes, {150, 145}, 5)->shape, 1U) << "the one in front";
  EXPECT_EQ(HitAt(shapes, {201, 141}, 5)->shape, 0U);
  EXPECT_EQ(HitAt(shapes, {201, 141}, 5)->handle, 1U);
  EXPECT_FALSE(HitAt(shapes, {150, 145}, 5)->handle);
}

TEST(SnappedPrice, IsTheClosestWithinReach) {
  const std::vector<float> bar = {50, 60, 40, 55};
  const auto to_y = [](double price) { return 200 - price; };
  EXPECT_EQ(SnappedPrice(bar, 147, 8, to_y), 55);
  EXPECT_EQ(SnappedPrice(bar, 149, 8, to_y), 50);
  EXPECT_EQ(SnappedPrice(bar, 136, 8, to_y), 60);
  EXPECT_EQ(SnappedPrice(bar, 120, 8, to_y), std::nullopt);
}

Drawing Line(double price, std::int64_t known = 0) {
  return {.kind = DrawingKind::kHorizontalLine,
          .anchors = {{{.date = 20200102}, price}},
          .known = known};
}

// Random edits, compared with a history of copies.
TEST(DrawingList, UndoAndRedoWalkThroughItsHistory) {
  std::mt19937 random(3);
  DrawingList list;
  std::vector<std::vector<Drawing>> history = {{}};
  std::size_t now = 0;
  for (int step = 0; step < 500; ++step) {
    const auto choice = random() % 6;
    const std::size_t size = list.All().size();
    const std::size_t index = size == 0 ? 0 : random() % size;
    if (choice == 0 && list.CanUndo(0)) {
      list.Undo(0);
      --now;
    } else if (choice == 1 && list.CanRedo(0)) {
      list.Redo(0);
      ++now;
    } else {
      if (choice < 4 || size == 0) list.Add(Line(step));
      if (choice == 4 && size > 0) list.Change(index, Line(step));
      if (choice == 5 && size > 0) list.Remove(index);
      history.resize(++now);
      history.push_back(list.All());
    }
    ASSERT_EQ(list.All(), history[now]) << step;
  }
}

TEST(DrawingList, ShowsWhatWasKnownThen) {
  const DrawingList list({Line(1, 30), Line(2, 10), Line(3, 20)});
  EXPECT_THAT(list.ShownAt(9), IsEmpty());
  EXPECT_THAT(list.ShownAt(20), ElementsAre(1, 2));
  EXPECT_THAT(list.ShownAt(30), ElementsAre(0, 1, 2));
  DrawingList full(std::vector<Drawing>(DrawingList::kMost, Line(1)));
  EXPECT_FALSE(full.Add(Line(2)));
}

TEST(DrawingList, UndoAndRedoLeaveTheHiddenAlone) {
  DrawingList list({Line(1, 10)});
  list.Change(0, Line(1, 10));
  EXPECT_FALSE(list.CanUndo(10)) << "nothing has changed";
  list.Add(Line(2, 30));
  EXPECT_FALSE(list.CanUndo(20));
  list.Undo(20);
  EXPECT_EQ(list.All().size(), 2U);
  list.Change(0, Line(3, 20));
  list.Undo(20);
  EXPECT_THAT(list.All(), ElementsAre(Line(1, 10), Line(2, 30)));
  list.Undo(30);
  EXPECT_FALSE(list.CanRedo(20));
  EXPECT_TRUE(list.CanRedo(30));
  list.Change(0, Line(1, 30));  // moved at a later bar
  EXPECT_FALSE(list.CanUndo(20));
  list.Undo(30);
  EXPECT_THAT(list.All(), ElementsAre(Line(1, 10)));
}

TEST(DrawingFile, KeepsEachKindAndRefusesEverythingElse) {
  DrawingsBySecurity all;
  for (const DrawingRow& row : DrawingCatalogue()) {
    Drawing drawing{.kind = row.kind, .colour = Drawing::kColours - 1, .known = 29085120000};
    for (std::size_t i = 0; i < row.anchors; ++i) {
      const int later = static_cast<int>(row.kind == DrawingKind::kRay ? -i : i);
      drawing.anchors.push_back({{20200102, 93000, later, 5, 62.25}, 1.19978});
    }
    drawing.anchors[0].time = {.date = 20200102};
    if (row.kind == DrawingKind::kText) drawing.text = "gap \u00e9";
    all[{"SCB", "Bank"}].push_back(drawing);
  }
  const std::string good = DrawingsText(all);
  EXPECT_EQ(ReadDrawings(good), all);
  const std::vector<std::pair<std::string, std::string>> damages = {
      {"\"version\": 1", "\"version\": 2"},
      {"\"trend\"", "\"trendy\""},
      {"\"colour\": 7", "\"colour\": 8"},
      {"\"colour\": 7", "\"colour\": 3.5"},
      {"\"price\": 1.19978", "\"price\": 1e400"},
      {"\"price\": 1.19978", "\"price\": null"},
      {"20200102", "18446744073709551615"},
      {"\"later\": 1", "\"later\": 2000000"},
      {"62.25", "0"},
      {"gap", "gap\\n"},
      {"\"symbol\"", "\"Symbol\""},
      {"\"anchors\": [", "\"anchors\": [[],"},
      {"{", "["},
      {"{", std::string(100000, '[')}};
  for (const auto& [text, damage] : damages) {
    std::string bad = good;
    const std::size_t at = bad.find(text);
    ASSERT_NE(at, std::string::npos) << text;
    EXPECT_THROW(ReadDrawings(bad.replace(at, text.size(), damage)), DrawingFileError) << damage;
  }
  for (std::size_t size = 0; size + 2 < good.size(); size += 53) {
    EXPECT_THROW(ReadDrawings(good.substr(0, size)), DrawingFileError) << size;
  }
}

TEST(DrawingBook, KeepsOtherSecuritiesAndNeverOverwritesADamagedFile) {
  const ScratchFolder folder;
  const auto file = folder / "settings/drawings.json";
  DrawingBook book(file);
  DrawingBook other_program(file);
  book.Of({"SCB", "Bank"}).Add(Line(1));
  other_program.Of({"ADVANC", ""}).Add(Line(2));
  other_program.Save({"ADVANC", ""});
  book.Save({"SCB", "Bank"});
  EXPECT_EQ(book.Problem(), "");
  EXPECT_THAT(LoadDrawings(file), testing::SizeIs(2));
  EXPECT_THAT(DrawingBook(file).Of({"SCB", "Bank"}).All(), ElementsAre(Line(1)));
  EXPECT_THAT(DrawingBook(file).Of({"SCB", "SCB x100"}).All(), IsEmpty());
  // Both programs change the same security.
  DrawingList& list = other_program.Of({"SCB", "Bank"});
  list.Add(Line(4));
  list.Remove(0);
  other_program.Save({"SCB", "Bank"});
  book.Of({"SCB", "Bank"}).Add(Line(5));
  book.Save({"SCB", "Bank"});
  EXPECT_THAT(book.Of({"SCB", "Bank"}).All(), ElementsAre(Line(4), Line(5)));
  book.Of({"SCB", "Bank"}).Remove(0);
  book.Of({"SCB", "Bank"}).Change(0, Line(1));
  book.Save({"SCB", "Bank"});

  const std::string good = ReadFile(file);
  const std::string bad = good.substr(0, good.size() / 2);
  WriteFile(file, bad);
  DrawingBook damaged(file);
  damaged.Of({"SCB", "Bank"}).Add(Line(3));
  EXPECT_THAT(damaged.Problem(), AllOf(HasSubstr("drawings.json"), HasSubstr("is damaged")));
  damaged.Save({"SCB", "Bank"});
  EXPECT_THAT(damaged.Problem(), HasSubstr("not saved until"));
  EXPECT_EQ(ReadFile(file), bad);
  // Repaired: what it holds joins what was drawn since.
  WriteFile(file, good);
  damaged.Save({"SCB", "Bank"});
  EXPECT_EQ(damaged.Problem(), "");
  EXPECT_THAT(DrawingBook(file).Of({"SCB", "Bank"}).All(), ElementsAre(Line(1), Line(3)));
  damaged.Of({"SCB", "Bank"}).Change(1, Line(1e300));
  damaged.Save({"SCB", "Bank"});
  EXPECT_THAT(damaged.Problem(), HasSubstr("out of its range"));
  EXPECT_THAT(DrawingBook(file).Of({"SCB", "Bank"}).All(), ElementsAre(Line(1), Line(3)));
  for (int i = 0; i < 2; ++i) damaged.Of({"SCB", "Bank"}).Remove(0);
  damaged.Save({"SCB", "Bank"});
  EXPECT_THAT(LoadDrawings(file), testing::SizeIs(1));
}

TEST(DrawingText, IsOneLineOfBoundedLength) {
  EXPECT_EQ(KeptText("  a\n b\t"), "a  b");
  EXPECT_EQ(KeptText(" \n"), "");
  std::string accents = "x";
  for (int i = 0; i < 150; ++i) accents += "\u00e9";
  EXPECT_EQ(KeptText(accents), accents.substr(0, 199)) << "no half letter";
}

}  // namespace
}  // namespace velumar
