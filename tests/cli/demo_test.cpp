#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>

#include "cli/sandbox.h"
#include "marketdata/csv_series.h"

namespace velumar {
namespace {

namespace fs = std::filesystem;

bool IsWeekday(std::int32_t date) {
  const std::chrono::year_month_day day{std::chrono::year(date / 10000),
                                        std::chrono::month(date / 100 % 100),
                                        std::chrono::day(date % 100)};
  return std::chrono::weekday(std::chrono::sys_days(day)).iso_encoding() <= 5;
}

// What a trader would stumble over in a chart.
void ExpectPlausible(const std::vector<Bar>& bars) {
  float before = bars.front().open;
  for (const Bar& bar : bars) {
    ASSERT_FALSE(PricesContradict(bar)) << bar.date << ' ' << bar.time;
    ASSERT_TRUE(IsWeekday(bar.date)) << bar.date;
    ASSERT_GT(bar.low, 0);
    ASSERT_GT(bar.volume, 0);
    ASSERT_LT(std::fabs(bar.open / before - 1), 0.35) << bar.date;
    before = bar.close;
  }
}

// One sample directory serves all tests that only look at it.
class Demo : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    shared_ = std::make_unique<Sandbox>();
    ASSERT_EQ(shared_->Run({"demo", shared_->At("demo")}).code, 0);
  }
  static void TearDownTestSuite() { shared_.reset(); }

  static Sandbox& Shared() { return *shared_; }

  static std::vector<Bar> Dumped(const std::string& symbol, const std::string& interval) {
    const auto answer = shared_->Run({"dump", shared_->At("demo"), symbol, interval});
    return ReadCsvSeries(answer.out, CsvDateFormat()).bars;
  }

  static void CopyInto(const Sandbox& box) {
    fs::copy(shared_->At("demo"), box.At("demo"), fs::copy_options::recursive);
  }

 private:
  static inline std::unique_ptr<Sandbox> shared_;
};

TEST_F(Demo, HasSeriesOfEveryIntervalThatLookLikeMarkets) {
  const auto listed =
      nlohmann::json::parse(Shared().Run({"list", Shared().At("demo"), "--json"}).out);
  std::set<int> intervals;
  bool open_interest = false;
  for (const auto& security : listed) {
    const int interval = security.at("interval");
    intervals.insert(interval);
    const auto bars =
        Dumped(security.at("symbol"), interval == -1 ? "D" : std::to_string(interval));
    ASSERT_EQ(bars.size(), security.at("bars").get<std::size_t>());
    EXPECT_GE(bars.size(), 1500U);
    ExpectPlausible(bars);
    open_interest |= bars.back().open_interest > 0;
  }
  EXPECT_EQ(intervals, (std::set<int>{-1, 5, 15, 30, 60}));
  EXPECT_TRUE(open_interest);
  EXPECT_EQ(listed.at(0).at("interval"), -1);
  EXPECT_EQ(listed.at(0).at("first"), 20000103);
  EXPECT_EQ(listed.at(0).at("last"), 20071231);
}

// The charts of one security tell one story: the bars of a day add up to its daily bar.
TEST_F(Demo, AddsUpFromMinutesToDays) {
  const Bar day = Dumped("ALBRUN", "D").back();
  for (const std::string interval : {"5", "15", "30", "60"}) {
    const auto bars = Dumped("ALBRUN", interval);
    const auto first = std::ranges::find(bars, day.date, &Bar::date);
    EXPECT_EQ(first->time, 93000);
    EXPECT_EQ(first->open, day.open);
    EXPECT_EQ(bars.back().close, day.close);
    EXPECT_EQ(std::ranges::max_element(first, bars.end(), {}, &Bar::high)->high, day.high);
    EXPECT_EQ(std::ranges::min_element(first, bars.end(), {}, &Bar::low)->low, day.low);
  }
}

// FNV-1a of the data files, to hold them against those of every other machine.
std::uint64_t Fingerprint(const std::map<std::string, std::string>& files) {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const auto& [name, bytes] : files) {
    if (!name.ends_with(".DAT")) continue;
    for (const char c : name + bytes) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
  }
  return hash;
}

TEST_F(Demo, HasTheSameBytesEverywhere) {
  Sandbox box;
  fs::create_directory(box.At("demo"));
  EXPECT_EQ(box.Run({"demo", box.At("demo")}).code, 0);
  EXPECT_EQ(box.Files(), Shared().Files());
  EXPECT_EQ(Fingerprint(Shared().Files()), 17559561104101183346U);
}

TEST_F(Demo, CompletesARunThatWasCutOff) {
  Sandbox box;
  CopyInto(box);
  for (const std::string file : {"demo/MASTER", "demo/EMASTER", "demo/F25.DAT"}) {
    fs::remove(box.At(file));
  }
  box.File("demo/F25.DAT.new", "half");
  EXPECT_EQ(box.Run({"demo", box.At("demo")}).code, 0);
  EXPECT_EQ(box.Files(), Shared().Files());
}

TEST_F(Demo, NeedsNothingInItsOwnOutputWhateverStandsBeside) {
  Sandbox box;
  CopyInto(box);
  box.File("demo/Simulate/MASTER", "the store of a replay");
  const auto before = box.Files();
  EXPECT_EQ(box.Run({"demo", box.At("demo")}).code, 0);
  EXPECT_EQ(box.Files(), before);
}

TEST_F(Demo, LeavesOtherDataAlone) {
  for (const std::string name : {"F1.DAT", "sub/notes.txt"}) {
    Sandbox box;
    box.File("demo/" + name, "someone's");
    const auto before = box.Files();
    const auto answer = box.Run({"demo", box.At("demo")});
    EXPECT_EQ(answer.code, 1) << name;
    EXPECT_EQ(answer.err, "velumar-cli: " + box.At("demo") + " holds data of its own (" +
                              name.substr(0, name.find('/')) +
                              "); choose a new or an empty directory for the sample data\n");
    EXPECT_EQ(box.Files(), before);
  }
}

TEST_F(Demo, LeavesWhatATraderAddedAlone) {
  Sandbox box;
  CopyInto(box);
  const auto csv = box.File("MINE_D.csv", "date,open,high,low,close\n20200102,1,1,1,1\n");
  EXPECT_EQ(box.Run({"import", csv, box.At("demo")}).code, 0);
  const auto before = box.Files();
  EXPECT_EQ(box.Run({"demo", box.At("demo")}).code, 1);
  EXPECT_EQ(box.Files(), before);
  EXPECT_THAT(box.Run({"demo", csv}).err, testing::HasSubstr("MINE_D.csv"));
}

}  // namespace
}  // namespace velumar
