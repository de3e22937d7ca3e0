#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <random>
#include <set>

#include "support/whole_program.h"

namespace velumar {
namespace {

// The promise that matters most: the store holds bars 0 to BarIndex of the run's series and nothing
// else but the bars of compared series up to the same moment, whatever a trader clicks and wherever
// in a wait the click falls. A plain index is driven by the same clicks, and both are compared
// whenever clicks can run.

constexpr int kCommands = 200;

// What the store must hold, and where the cursor must be.
struct PlainStore {
  std::string symbol;
  std::vector<Bar> loaded;  // the whole series of the run
  int index = -1;

  int Last() const { return static_cast<int>(loaded.size()) - 1; }
  void Next() { index = std::min(index + 1, Last()); }
  void Forward() { index = std::min(std::max(index, 0) + 30, Last()); }
  void Previous() { index = std::max(index - 1, -1); }
  void Rewind() { index = std::max(index - 30, 0); }
};

class RandomRun {
 public:
  RandomRun(const std::string& data, const std::map<std::string, std::vector<Bar>>& market,
            int interval, unsigned seed)
      : market_(market), interval_(interval), random_(seed), all_(data) {}

  void Play() {
    all_.outside.events.SetOnPending([this] { Pending(); });
    int at = 0;
    for (int i = 0; i < kCommands; ++i) {
      // Several clicks at one moment, and now and then a long pause.
      at += Roll(4) == 0 ? 0 : Roll(10) == 0 ? Roll(20000) : Roll(2500);
      all_.At(at, [this] { Act(); });
    }
    all_.program.Start();
    while (acted_ < kCommands && !testing::Test::HasFatalFailure()) {
      all_.outside.events.WaitFor(std::chrono::seconds(10));
      Check();
    }
  }
  long Feeds() const { return feeds_; }

 private:
  int Roll(int sides) { return std::uniform_int_distribution<>(0, sides - 1)(random_); }
  const std::string& Symbol() const { return all_.session.Symbol; }

  // The feed lets events run, and feeds a bar next.
  void Pending() {
    Check();
    pass_due_ = depth_ == loop_depth_ && all_.program.Feeding() && plain_.index < plain_.Last();
  }

  // Follows what the program did on its own since the last check.
  void CatchUp() {
    const bool preparing = all_.session.Preparing;
    if (preparing && !std::exchange(preparing_, preparing)) asked_.clear();
    preparing_ = preparing;
    const auto& sent = all_.outside.chart.sent;
    for (; keys_seen_ < sent.size(); ++keys_seen_) {
      if (sent[keys_seen_] != "%FO") continue;
      plain_ = {};
      compared_.clear();
      started_ = prepare_due_ = true;
      pass_due_ = false;
      loop_depth_ = depth_;
    }
    if (prepare_due_ && !all_.session.Preparing) {
      prepare_due_ = false;
      const RunSeries& run = all_.session.Run;
      plain_ = {run.symbol, market_.at(run.symbol), all_.session.BarIndex};
      compared_ = std::exchange(asked_, {});
      const Bar& newest = plain_.loaded.at(static_cast<std::size_t>(plain_.index));
      const bool later = plain_.loaded.back().date < run.start_day;  // it starts in the middle
      ASSERT_TRUE(later || plain_.index == 0 || newest.date < run.start_day) << newest.date;
    }
    if (pass_due_) {
      pass_due_ = false;
      ++feeds_;
      plain_.Next();
    }
  }

  void Check() {
    CatchUp();
    if (!started_ || testing::Test::HasFatalFailure()) return;
    SCOPED_TRACE("after " + std::to_string(all_.Now()) + " ms");
    const int index = all_.session.BarIndex;
    const bool forgotten = all_.session.Preparing && index == -1;
    ASSERT_TRUE(index == plain_.index || forgotten) << index << " is not " << plain_.index;
    IndexCache cache;
    MetaLibReader reader(cache);
    reader.OpenDirectory(all_.session.SimDir);
    for (const auto& [symbol, whole] : market_) {
      const std::vector<Bar> stored = ReadBars(reader, symbol, interval_);
      ASSERT_EQ(static_cast<int>(stored.size()), Held(symbol, whole)) << symbol;
      ASSERT_TRUE(std::equal(stored.begin(), stored.end(), whole.begin())) << symbol;
    }
    // Index records are what a chart program lists before it opens a series.
    for (const SecurityInfo& info : ReadSecurities(reader)) {
      const bool held = Held(info.symbol, market_.at(info.symbol)) > 0;
      const auto newest = static_cast<std::size_t>(plain_.index);
      ASSERT_LE(info.indexed_last_date, held ? plain_.loaded.at(newest).date : 0) << info.symbol;
    }
  }

  // The bars of a series that belong into the store.
  int Held(const std::string& symbol, const std::vector<Bar>& whole) const {
    if (symbol == plain_.symbol) return plain_.index + 1;
    if (!compared_.contains(symbol) || plain_.index < 0) return 0;
    const Bar& now = plain_.loaded[static_cast<std::size_t>(plain_.index)];
    return static_cast<int>(std::ranges::count_if(whole, [&now](const Bar& bar) {
      return std::pair(bar.date, bar.time) <= std::pair(now.date, now.time);
    }));
  }

  void Act() {
    Check();
    ++acted_;
    ++depth_;
    Form1& setup = all_.Setup();
    Form2& navigator = all_.Navigator();
    Form3& panel = all_.Panel();
    const std::function<void()> acts[] = {
        [&] { Step(navigator.Image1, &PlainStore::Next); },
        [&] { Step(navigator.Image7, &PlainStore::Forward); },
        [&] { Step(navigator.Image2, &PlainStore::Previous); },
        [&] { Step(navigator.Image6, &PlainStore::Rewind); },
        [&] { Resume(); },
        [&] { navigator.Image4.UserClick(); },
        [&] { Roll(3) == 0 ? navigator.Image5.UserClick() : Resume(); },
        [&] { setup.Image3.UserClick(); },
        [&] { setup.Combo1.UserChoose(Roll(static_cast<int>(setup.Combo1.Rows().size()))); },
        [&] { PickDate(); },
        [&] { Compare(); },
        [&] { (Roll(2) ? panel.imgLong : panel.imgOffsetLong).UserClick(); }};
    acts[Roll(static_cast<int>(std::size(acts)))]();
    --depth_;
    Check();
  }

  void Step(PictureButton& button, void (PlainStore::*step)()) {
    if (!button.Reachable()) return;
    if (!plain_.loaded.empty() && !all_.session.Preparing) (plain_.*step)();
    button.UserClick();
  }

  void Resume() {
    if (!all_.Navigator().Image3.Reachable()) return;
    if (!all_.session.Preparing) {
      loop_depth_ = depth_;
      pass_due_ = false;
    }
    all_.Navigator().Image3.UserClick();
  }

  // The chart program opens or closes the chart of a series.
  void Compare() {
    const int number = Roll(static_cast<int>(market_.size())) + 1;
    const std::string& symbol = std::next(market_.begin(), number - 1)->first;
    const bool opens = Roll(3) > 0;
    std::set<std::string>& kept = all_.session.Preparing ? asked_ : compared_;
    if (!opens) {
      kept.erase(symbol);
      all_.program.EndCompare(number);
      return;
    }
    if (all_.session.Preparing || !plain_.loaded.empty()) kept.insert(symbol);
    all_.program.Compare(number);
  }

  void PickDate() {
    const std::vector<Bar>& bars = market_.at(Symbol());
    const int day = Roll(static_cast<int>(bars.size()));
    all_.Setup().DTPicker1.UserPick(bars[static_cast<std::size_t>(day)].date + Roll(2));
  }

  const std::map<std::string, std::vector<Bar>>& market_;
  int interval_;
  std::mt19937 random_;
  WholeProgram all_;
  PlainStore plain_;
  std::size_t keys_seen_ = 0;
  long feeds_ = 0;
  std::set<std::string> compared_;
  std::set<std::string> asked_;  // while a run is being prepared
  bool preparing_ = false;
  int acted_ = 0;
  int depth_ = 0;        // clicks that are being handled, one inside the other
  int loop_depth_ = -1;  // of the click whose feed is the newest
  bool started_ = false;
  bool prepare_due_ = false;
  bool pass_due_ = false;
};

class StorePromise : public testing::TestWithParam<unsigned> {};

// scripts/test-windows plays only the first ones.
INSTANTIATE_TEST_SUITE_P(Seeds, StorePromise, testing::Range(1U, 6U));
INSTANTIATE_TEST_SUITE_P(MoreSeeds, StorePromise, testing::Range(6U, 16U));

TEST_P(StorePromise, HoldsWhateverIsClickedWhenever) {
  const bool daily = GetParam() % 3 != 0;
  const int interval = daily ? -1 : 15;
  const std::map<std::string, std::vector<Bar>> market = {
      {"ABC", daily ? DailyBars(120) : IntradayBars(120, 15)},
      {"FEW", daily ? DailyBars(3) : IntradayBars(25, 15)},
      {"LONG", daily ? DailyBars(400) : IntradayBars(400, 15)}};
  const ScratchFolder scratch;
  const std::string data = scratch.Sub("data");
  IndexCache cache;
  for (const auto& [symbol, bars] : market) {
    StoreSecurity(data, {symbol, symbol, interval}, bars, cache);
  }
  const auto before = FilesOf(data);
  RandomRun run(data, market, interval, GetParam());
  run.Play();
  EXPECT_EQ(FilesOf(data), before) << "the data directory is only read";
  EXPECT_GT(run.Feeds(), 10) << "the run hardly fed a bar";
}

}  // namespace
}  // namespace velumar
