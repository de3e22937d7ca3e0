#include <algorithm>
#include <cstdlib>
#include <map>
#include <optional>
#include <random>
#include <sstream>

#include "base/paths.h"
#include "support/whole_program.h"

namespace velumar {
namespace {

// The promise that matters most: the store holds the bars that the steps so far put there, whatever
// a trader clicks and wherever in a wait the click falls. A plain list of bars is driven by the
// same clicks beside the program, and both are compared whenever window events run.

constexpr int kCommands = 200;
constexpr int kFastStep = 30;

using StoreKey = std::pair<std::int32_t, std::int32_t>;
using PlainSeries = std::map<StoreKey, Bar>;

int HalfToEven(int whole) {
  const int half = whole / 2;
  return whole % 2 == 0 || half % 2 == 0 ? half : half + 1;
}

// What the store must hold, and where the loop and the cursor must stand.
struct PlainStore {
  std::map<std::string, PlainSeries> series;
  std::vector<Bar> loaded;  // the whole series of the run
  int index = 0;
  int loop_next = 0;
  bool fed_ahead = false;  // a step by hand put bars before a feed that was going on

  int Last() const { return static_cast<int>(loaded.size()) - 1; }
  void Put(const std::string& symbol, int bar) {
    const Bar& added = loaded.at(static_cast<std::size_t>(bar));
    series[symbol][{added.date, added.time}] = added;
  }
  void Take(const std::string& symbol, int bar) {
    const Bar& gone = loaded.at(static_cast<std::size_t>(bar));
    series[symbol].erase({gone.date, gone.time});
  }
  void Begin(const std::string& symbol, const std::vector<Bar>& whole, std::int32_t date) {
    const int last = static_cast<int>(whole.size()) - 1;
    auto cut =
        std::find_if(whole.begin(), whole.end(), [&](auto& bar) { return bar.date >= date; });
    if (cut == whole.end()) cut = whole.begin() + (last > 250 ? 250 : HalfToEven(last));
    loaded = whole;
    PlainSeries& stored = series[symbol];
    stored.clear();
    for (const Bar& bar : whole) {
      if (bar.date < cut->date) stored[{bar.date, bar.time}] = bar;
    }
    index = std::max(static_cast<int>(stored.size()) - 1, 0);
    loop_next = index + 1;
    fed_ahead = false;
  }
  void Pass(const std::string& symbol) {
    Put(symbol, loop_next);
    index = loop_next++;
  }
  void Next(const std::string& symbol) {
    if (index < Last()) Put(symbol, ++index);
  }
  void Forward(const std::string& symbol) {
    const int start = std::max(index, 0);
    index = std::min(start + kFastStep, Last());
    for (int bar = start + 1; bar <= index; ++bar) Put(symbol, bar);
  }
  void Previous(const std::string& symbol) {
    index = std::max(index, 0);
    Take(symbol, index--);
  }
  void Rewind(const std::string& symbol) {
    const int start = std::max(index, 0);
    index = std::max(start - kFastStep, 0);
    for (int bar = start; bar > index; --bar) Take(symbol, bar);
  }
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
      // Many clicks of one moment, and now and then a long look at the chart.
      at += Roll(4) == 0 ? 0 : Roll(10) == 0 ? Roll(20000) : Roll(2500);
      all_.At(at, [this] { Act(); });
    }
    all_.program.Start();
    while (acted_ < kCommands && !testing::Test::HasFatalFailure()) {
      all_.outside.events.WaitFor(std::chrono::seconds(10));
      Check();
    }
  }
  std::string Log() const { return log_.str(); }
  long Feeds() const { return feeds_; }

 private:
  int Roll(int sides) { return std::uniform_int_distribution<>(0, sides - 1)(random_); }
  const std::string& Symbol() const { return all_.session.Symbol; }

  // The feed's own look at the events, from which it goes on with a bar.
  void Pending() {
    Check();
    pass_due_ = depth_ == loop_depth_ && all_.program.Feeding();
  }

  // What the program did on its own since the last look.
  void CatchUp() {
    const auto& sent = all_.outside.chart.sent;
    for (; keys_seen_ < sent.size(); ++keys_seen_) {
      if (sent[keys_seen_] != "%FO") continue;
      plain_.series.clear();
      started_ = prepare_due_ = true;
      pass_due_ = false;
      loop_depth_ = depth_;
    }
    if (prepare_due_ && all_.Navigator().Label6.Text() == "GetWindow... ") {
      prepare_due_ = false;
      plain_.Begin(Symbol(), market_.at(Symbol()), all_.Setup().DTPicker1.Value());
    }
    if (pass_due_) {
      pass_due_ = false;
      ++feeds_;
      plain_.Pass(Symbol());
    }
  }

  void Check() {
    CatchUp();
    if (!started_ || testing::Test::HasFatalFailure()) return;
    ASSERT_EQ(all_.session.BarIndex, plain_.index) << Log();
    for (const auto& [symbol, whole] : market_) {
      const std::vector<Bar> stored = ReadBars(all_.session.SimDir, symbol, interval_);
      const PlainSeries& plain = plain_.series[symbol];
      ASSERT_EQ(stored.size(), plain.size()) << symbol << "\n" << Log();
      auto expected = plain.begin();
      for (const Bar& bar : stored) ASSERT_TRUE(bar == (expected++)->second) << Log();
    }
    if (!prepare_due_ && !all_.program.Feeding() && !plain_.fed_ahead) NothingLater();
    NoRecordTellsMore();
  }

  void NothingLater() {
    const PlainSeries& plain = plain_.series[Symbol()];
    if (plain.empty() || plain_.index < 0) return;
    const Bar& now = plain_.loaded.at(static_cast<std::size_t>(plain_.index));
    ASSERT_LE(plain.rbegin()->first, StoreKey(now.date, now.time)) << Log();
  }

  // Index records are what a chart program lists before it opens a series.
  void NoRecordTellsMore() {
    IndexCache cache;
    MetaLibReader reader(cache);
    reader.OpenDirectory(all_.session.SimDir);
    while (reader.NextSecurity() >= 1) {
      reader.ReadSecurityHeader();
      const SecurityInfo info = reader.Security();
      const PlainSeries& plain = plain_.series[info.symbol];
      const std::int32_t newest = plain.empty() ? 0 : plain.rbegin()->first.first;
      ASSERT_LE(info.told_last_date, newest) << info.symbol << "\n" << Log();
    }
  }

  void Act() {
    Check();
    ++acted_;
    ++depth_;
    switch (Roll(14)) {
      case 0:
        Step(all_.Navigator().Image1, "next", &PlainStore::Next);
        break;
      case 1:
        Step(all_.Navigator().Image7, "ff", &PlainStore::Forward);
        break;
      case 2:
        Step(all_.Navigator().Image2, "previous", &PlainStore::Previous);
        break;
      case 3:
        Step(all_.Navigator().Image6, "rewind", &PlainStore::Rewind);
        break;
      case 4:
      case 5:
        Resume();
        break;
      case 6:
        Click(all_.Navigator().Image4, "pause");
        break;
      case 7:
        Roll(3) == 0 ? Click(all_.Navigator().Image5, "return") : Resume();
        break;
      case 8:
      case 9:
        Click(all_.Setup().Image3, "start");
        break;
      case 10:
        ChooseSymbol();
        break;
      case 11:
        PickDate();
        break;
      case 12:
        Click(Roll(2) ? all_.Panel().imgLong : all_.Panel().imgOffsetLong, "long");
        break;
      default:
        Click(Roll(2) ? all_.Panel().ImgShort : all_.Panel().ImgOffsetShort, "short");
    }
    --depth_;
    Check();
  }

  void Note(const std::string& what) {
    log_ << all_.Now() << ' ' << depth_ << ' ' << what << " [" << plain_.index << "]\n";
  }

  void Click(PictureButton& button, const std::string& name) {
    if (!button.Reachable()) return;
    Note(name);
    button.UserClick();
  }

  void Step(PictureButton& button, const std::string& name,
            void (PlainStore::*step)(const std::string&)) {
    if (!button.Reachable()) return;
    Note(name);
    if (!plain_.loaded.empty() && !all_.session.Preparing) {
      (plain_.*step)(Symbol());
      plain_.fed_ahead = plain_.fed_ahead || all_.program.Feeding();
    }
    button.UserClick();
  }

  void Resume() {
    if (!all_.Navigator().Image3.Reachable()) return;
    Note("play");
    plain_.loop_next = plain_.index + 1;
    loop_depth_ = depth_;
    prepare_due_ = pass_due_ = false;
    all_.Navigator().Image3.UserClick();
  }

  void ChooseSymbol() {
    ComboBox& list = all_.Setup().Combo1;
    if (!list.Reachable()) return;
    list.UserChoose(Roll(static_cast<int>(list.Rows().size())));
    Note("choose " + Symbol());
  }

  void PickDate() {
    const std::vector<Bar>& bars = market_.at(Symbol());
    const int day = Roll(static_cast<int>(bars.size()));
    all_.Setup().DTPicker1.UserPick(bars[static_cast<std::size_t>(day)].date + Roll(2));
    Note("date");
  }

  const std::map<std::string, std::vector<Bar>>& market_;
  int interval_;
  std::mt19937 random_;
  WholeProgram all_;
  PlainStore plain_;
  std::ostringstream log_;
  std::size_t keys_seen_ = 0;
  long feeds_ = 0;
  int acted_ = 0;
  int depth_ = 0;        // clicks that are being handled, one inside the other
  int loop_depth_ = -1;  // of the click whose feed is the newest
  bool started_ = false;
  bool prepare_due_ = false;
  bool pass_due_ = false;
};

TEST(StorePromise, HoldsWhateverIsClickedWhenever) {
  const char* wanted = std::getenv("VELUMAR_PROMISE_RUNS");
  const unsigned runs = wanted == nullptr ? 15 : static_cast<unsigned>(std::atoi(wanted));
  long feeds = 0;
  for (unsigned seed = 1; seed <= runs && !HasFatalFailure(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const bool daily = seed % 3 != 0;
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
    RandomRun run(data, market, interval, seed);
    run.Play();
    feeds += run.Feeds();
    ASSERT_EQ(FilesOf(data), before) << "the data directory is only read\n" << run.Log();
  }
  EXPECT_GT(feeds, runs * 10) << "the runs hardly fed a bar";
}

}  // namespace
}  // namespace velumar
