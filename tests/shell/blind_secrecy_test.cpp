#include <bit>
#include <functional>
#include <iterator>
#include <optional>
#include <random>
#include <unordered_set>

#include "base/dates.h"
#include "base/number_text.h"
#include "ledger/cards.h"
#include "marketdata/number_format.h"
#include "results/run_record.h"
#include "results/trade_list.h"
#include "session/blind_mask.h"
#include "session/run_inputs.h"
#include "support/whole_program.h"

namespace velumar {
namespace {

namespace fs = std::filesystem;

std::string NumberBytes(auto number) {
  return {reinterpret_cast<const char*>(&number), sizeof number};
}

std::string Reversed(std::string bytes) { return {bytes.rbegin(), bytes.rend()}; }

// Everything that may give a security away, in the encodings of texts, data files and SQLite.
class Secrets {
 public:
  void Add(const std::string& symbol, const std::string& name, const std::vector<Bar>& bars) {
    words_.insert(words_.end(), {symbol, name});
    for (const Bar& bar : bars) {
      AddDate(bar.date);
      for (const float price : {bar.open, bar.high, bar.low, bar.close}) AddPrice(price);
    }
  }

  // The first secret in the bytes, of which numbers begin at every `step`-th one; empty if none.
  std::string In(const std::string& bytes, std::size_t step) const {
    for (const std::string& word : words_) {
      if (bytes.find(word) != std::string::npos) return word;
    }
    for (const auto& [size, numbers] : numbers_) {
      for (std::size_t at = 0; at + size <= bytes.size(); at += step) {
        const std::string_view found(bytes.data() + at, size);
        if (numbers.contains(found)) return "a number at byte " + std::to_string(at);
      }
    }
    for (const auto& [size, texts] : texts_) {
      for (std::size_t at = 0; at + size <= bytes.size(); ++at) {
        const std::string_view found(bytes.data() + at, size);
        // Not inside a longer number.
        if (texts.contains(found) && (at == 0 || !IsDigit(bytes[at - 1])) &&
            (at + size == bytes.size() || !IsDigit(bytes[at + size]))) {
          return std::string(found);
        }
      }
    }
    return "";
  }

 private:
  using BySize = std::map<std::size_t, std::unordered_set<std::string_view>>;

  static bool IsDigit(char c) { return c >= '0' && c <= '9'; }
  void Put(BySize& all, const std::string& bytes) {
    all[bytes.size()].insert(*kept_.insert(bytes).first);
  }
  void AddNumber(const std::string& bytes) {
    Put(numbers_, bytes);
    Put(numbers_, Reversed(bytes));
  }
  void AddDate(std::int32_t date) {
    for (const char* pattern : {"yyyyMMdd", "yyyy-MM-dd", "dd/MM/yyyy", "M/d/yyyy", "d MMM yyyy"}) {
      Put(texts_, DateText(date, pattern));
    }
    const float packed = StoredDate(date).value();
    AddNumber(NumberBytes(date));
    AddNumber(NumberBytes(packed));
    AddNumber(NumberBytes(MbfFromFloat(packed).value()));
    AddNumber(NumberBytes(double(date)));
  }
  void AddPrice(float price) {
    const std::string exact = PlainNumberText(price);
    const std::string cents = PatternText(price, kClosePattern);
    for (const std::string& text : {exact, cents, PatternText(price, kPricePattern)}) {
      // A whole number may be anything.
      if (text.find('.') != std::string::npos) Put(texts_, text);
      AddNumber(NumberBytes(ToDouble(text).value()));
    }
    AddNumber(NumberBytes(price));
    AddNumber(NumberBytes(MbfFromFloat(price).value()));
  }

  std::unordered_set<std::string> kept_;
  std::vector<std::string> words_;
  BySize numbers_;
  BySize texts_;
};

// What a file of the ledger holds, without the checksums of its log: they may be any number.
std::string Written(const fs::path& file) {
  constexpr std::size_t kLogHeader = 32;
  constexpr std::size_t kPageHeader = 24;
  constexpr std::size_t kPage = 1024;
  std::string bytes = ReadFile(file);
  const std::string path = file.string();
  if (path.ends_with("-shm")) return "";
  if (!path.ends_with("-wal")) return bytes;
  std::fill_n(bytes.begin(), std::min(kLogHeader, bytes.size()), '\0');
  for (std::size_t at = kLogHeader; at + kPageHeader <= bytes.size(); at += kPageHeader + kPage) {
    std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), kPageHeader, '\0');
  }
  return bytes;
}

// Years before the masked dates, at prices far from the masked ones and from the money they earn.
std::vector<Bar> SecretBars(std::mt19937& random, int count, int interval) {
  std::vector<Bar> bars = interval == -1 ? DailyBars(count) : IntradayBars(count, interval);
  float close = 43000;
  for (Bar& bar : bars) {
    close *= std::uniform_real_distribution<float>(0.99F, 1.01F)(random);
    bar = {bar.date, bar.time, close * 1.001F, close * 1.012F, close * 0.989F, close, 77, 7};
  }
  return bars;
}

class BlindReplay {
 public:
  BlindReplay(const ScratchFolder& scratch, int interval, unsigned seed)
      : scratch_(scratch),
        interval_(interval),
        random_(seed),
        all_(scratch.Sub("data"), [&](Platform& platform) {
          platform.random_seed = seed;
          platform.ledger_file = scratch.Sub("Portfolio.mdb");
          platform.store_dir = scratch.Sub("store");
        }) {}

  void Play(bool blind) {
    all_.program.Start();
    Form1& setup = all_.Setup();
    setup.DTPicker1.UserPick(20070101);  // the settings keep it
    if (blind) setup.chkBlind.UserToggle();
    if (blind) setup.cbxPeriod.UserType(interval_ == -1 ? "D" : std::to_string(interval_));
    for (int i = 0, at = 20000; i < 40; ++i, at += Roll(3000)) all_.At(at, [this] { Act(); });
    setup.Image3.UserClick();
    all_.outside.events.WaitFor(std::chrono::seconds(400));
  }
  void Close() { all_.Setup().on_close(); }
  void Resume() {
    all_.program.Start();
    all_.program.ResumeSession(1);
  }
  // Decides all cards of a later day, up to the verdict. Returns how many there are.
  std::size_t PlayCards(const Secrets& secrets) {
    all_.Navigator().Image5.UserClick();
    const std::vector<LedgerCard> cards = LedgerCards(all_.ledger);
    all_.outside.clock.today = 20071231;
    FrmPractice& page = all_.windows.frmPractice;
    FrmCard& form = all_.windows.frmCard;
    for (std::size_t i = 0; i < cards.size(); ++i) {
      if (!page.Visible()) all_.Setup().lnkPractice.UserClick();
      page.tabPage.UserChoose(FrmPractice::kCardsPage);
      page.cards.lstCards.UserSelect({i});
      page.cards.cmdPractise.UserClick();
      CheckStore();
      EXPECT_EQ(Found(secrets), "");
      all_.At(500, [this] { CheckStore(); });
      (i % 2 == 0 ? form.cmdShort : form.cmdNothing).UserClick();
      EXPECT_EQ(Found(secrets), "");
      form.cmdPoor.UserClick();
      EXPECT_EQ(Found(secrets), "") << "the session is still hidden";
      form.on_close();
    }
    return cards.size();
  }
  // Returns what the box says.
  std::string Reveal() {
    all_.outside.boxes.answers = {0};
    all_.Navigator().Image5.UserClick();
    return all_.outside.boxes.shown.back();
  }
  RunRecord Played() { return ReadRecord(all_.ledger, LedgerScope::Session(1)); }

  // The first secret that is in a file, a setting, a key, a box or a text of a window.
  std::string Found(const Secrets& secrets) {
    for (const auto& entry : fs::recursive_directory_iterator(scratch_.Path())) {
      const std::string path = entry.path().string();
      if (!entry.is_regular_file() || path.starts_with(scratch_.Sub("data"))) continue;
      const bool bars = path.ends_with(".DAT");
      const std::string secret = secrets.In(Written(entry.path()), bars ? 4 : 1);
      if (!secret.empty()) return path + " has " + secret;
    }
    for (const std::string& text : Texts()) {
      const std::string secret = secrets.In(text, 1);
      if (!secret.empty()) return "\"" + text + "\" has " + secret;
    }
    return "";
  }
  const SimSession& Session() const { return all_.session; }

 private:
  int Roll(int sides) { return std::uniform_int_distribution<>(0, sides - 1)(random_); }

  // The store holds the bars up to the current one, as they are in memory, and no other series.
  void CheckStore() {
    const SimSession& session = all_.session;
    if (session.Preparing || session.BarDate.empty()) return;
    const std::vector<Bar> stored = ReadBars(session.SimDir, session.Run.symbol, interval_);
    ASSERT_EQ(std::ssize(stored), session.BarIndex + 1);
    for (std::size_t i = 0; i < stored.size(); ++i) {
      ASSERT_TRUE(stored[i].date == session.BarDate[i] && stored[i].close == session.BarClose[i]);
    }
    IndexCache cache;
    EXPECT_EQ(SecuritiesOf(session.SimDir, cache).size(), session.Run.blind ? 1U : 3U);
  }

  // A plan around the price that the trader sees.
  void Plan() {
    all_.Panel().imgPlan.UserClick();
    FrmTicket& ticket = all_.windows.frmTicket;
    ticket.txtStop.UserType(ExactText(all_.session.MarketPrice * 0.97F));
    ticket.cboSetup.UserType("gap");
    ticket.cmdKeep.UserClick();
    all_.desktop.Unload(ticket);
  }

  void Act() {
    CheckStore();
    if (Roll(6) == 0) return Plan();
    if (Roll(6) == 0) all_.program.Keys().Press({.code = run_key::kMark});
    Form2& navigator = all_.Navigator();
    Form3& panel = all_.Panel();
    panel.txtContractVol.UserType(std::to_string(1 + Roll(3)));  // perhaps more than is held
    Control* const controls[] = {&navigator.Image1,    &navigator.Image2,     &navigator.Image7,
                                 &navigator.Image6,    &navigator.Image3,     &navigator.Image4,
                                 &panel.imgLong,       &panel.ImgShort,       &panel.imgLong,
                                 &panel.imgOffsetLong, &panel.ImgOffsetShort, &panel.imgGraph};
    controls[Roll(static_cast<int>(std::size(controls)))]->UserClick();
  }

  std::vector<std::string> Texts() {
    std::vector<std::string> texts = all_.outside.chart.sent;
    const auto add = [&texts](const std::vector<std::string>& more) {
      texts.insert(texts.end(), more.begin(), more.end());
    };
    add(all_.outside.boxes.shown);
    add(all_.outside.programs.started);
    for (const auto& [key, text] : all_.outside.settings.texts) texts.push_back(text);
    for (Form* form : all_.desktop.All()) {
      texts.push_back(form->Caption());
      for (const Control* control : form->Controls()) {
        add({control->Text(), control->ToolTip()});
      }
    }
    return texts;
  }

  const ScratchFolder& scratch_;
  int interval_;
  std::mt19937 random_;
  WholeProgram all_;
};

// Every order is where it was in the real series, and money is as it was played.
void ExpectRevealed(const RunRecord& played, const RunRecord& now, const std::vector<Bar>& real) {
  ASSERT_EQ(now.orders.size(), played.orders.size());
  for (std::size_t i = 0; i < now.orders.size(); ++i) {
    const RunOrder& order = now.orders[i];
    const Bar& bar = real.at(static_cast<std::size_t>(order.bar.value()));
    EXPECT_EQ(order.iso_date, IsoDate(bar.date));
    EXPECT_FLOAT_EQ(static_cast<float>(order.price), bar.close);
    EXPECT_FLOAT_EQ(static_cast<float>(order.close.value_or(bar.close)), bar.close);
    EXPECT_EQ(order.money, played.orders[i].money);
    EXPECT_EQ(order.held, played.orders[i].held);
    EXPECT_NEAR(order.average / order.price, played.orders[i].average / played.orders[i].price,
                1e-3);
    EXPECT_NEAR(order.points * now.began->money_per_point,
                played.orders[i].points * played.began->money_per_point, 1);
    ASSERT_EQ(order.plan.has_value(), played.orders[i].plan.has_value());
    if (order.plan && order.plan->stop) {
      EXPECT_NEAR(*order.plan->stop / bar.close,
                  *played.orders[i].plan->stop / *played.orders[i].close, 1e-5);
    }
  }
  const std::vector<Trade> trades = ListTrades({now}).trades;
  const std::vector<Trade> as_played = ListTrades({played}).trades;
  ASSERT_EQ(trades.size(), as_played.size());
  for (std::size_t i = 0; i < trades.size(); ++i) {
    EXPECT_NEAR(trades[i].money.value_or(0), as_played[i].money.value_or(0), 1e-5);
  }
}

TEST(BlindSecrecy, NothingThatIsWrittenOrShownGivesTheSecurityAway) {
  std::size_t orders = 0;
  std::size_t cards = 0;
  for (unsigned seed = 1; seed <= 5; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const ScratchFolder scratch;
    std::mt19937 random(seed);
    const int interval = seed % 3 == 0 ? 15 : -1;
    Secrets secrets;
    IndexCache cache;
    for (const std::string symbol : {"QXA", "QXB", "QXC"}) {
      const std::vector<Bar> bars = SecretBars(random, 400, interval);
      secrets.Add(symbol, "Secret " + symbol, bars);
      StoreSecurity(scratch.Sub("data"), {symbol, "Secret " + symbol, interval}, bars, cache);
    }
    fs::create_directories(scratch / "data/MSSmart");
    scratch.Write("data/MSSmart/charts.mwc", "QXA QXB QXC");
    std::optional<BlindReplay> playing(std::in_place, scratch, interval, seed);
    BlindReplay& run = *playing;
    run.Play(seed > 1);
    if (seed == 1) {
      EXPECT_NE(run.Found(secrets), "") << "an open run shows what it plays";
      continue;
    }
    EXPECT_EQ(run.Session().Run.symbol, kBlindSymbol);
    EXPECT_EQ(run.Found(secrets), "");
    if (seed % 2 == 0) {
      run.Close();
      EXPECT_EQ(run.Found(secrets), "");
      const SimSession before = run.Session();
      playing.emplace(scratch, interval, seed).Resume();
      EXPECT_EQ(run.Found(secrets), "");
      EXPECT_EQ(run.Session().Run.symbol, kBlindSymbol);
      EXPECT_EQ(run.Session().BarIndex, before.BarIndex);
      EXPECT_EQ(run.Session().BarClose, before.BarClose);
      EXPECT_EQ(run.Session().Balance, before.Balance);
      EXPECT_EQ(run.Session().LAccum, before.LAccum);
      EXPECT_EQ(run.Session().SAvgPrice, before.SAvgPrice);
      cards += run.PlayCards(secrets);
      continue;
    }
    const RunRecord played = run.Played();
    const std::string shown = run.Reveal();
    const std::string symbol = run.Session().Run.symbol;
    EXPECT_THAT(shown, HasSubstr("You have played " + symbol + ", Secret " + symbol));
    EXPECT_THAT(shown, HasSubstr("The same trades begun at random bars"));
    ExpectRevealed(played, run.Played(), ReadBars(scratch.Sub("data"), symbol, interval));
    EXPECT_EQ(ReadBars(scratch.Sub("store"), symbol, interval).back().close,
              run.Session().MarketPrice)
        << "the chart with its real scale";
    orders += played.orders.size();
  }
  EXPECT_GT(orders, 10U);
  EXPECT_GT(cards, 2U);
}

TEST_F(RunFixture, TheBlindBoxOffersAnySecurityAndRestoresWhatWasChosen) {
  all->program.Start();
  Form1& setup = all->Setup();
  setup.Combo1.UserChoose(1);
  EXPECT_EQ(setup.Combo1.Text() + setup.cbxPeriod.Text(), "FAST15");
  setup.chkBlind.UserToggle();
  EXPECT_EQ(setup.Combo1.Text(), kAnySecurity);
  EXPECT_EQ(setup.cbxPeriod.Rows().size(), 2U) << "D and 15";
  EXPECT_FALSE(setup.DTPicker1.Enabled());
  setup.Image3.UserClick();
  EXPECT_THAT(all->outside.boxes.shown.back(), HasSubstr("250 bars before the start"));
  EXPECT_TRUE(setup.Visible());
  setup.chkBlind.UserToggle();
  EXPECT_EQ(setup.Combo1.Text() + setup.cbxPeriod.Text(), "FAST15");
  EXPECT_EQ(all->session.Symbol, "FAST");
  EXPECT_TRUE(setup.DTPicker1.Enabled());
}

TEST(BlindSecrecy, ARunThatIsLeftAsItSlidesInGivesTheSymbolBack) {
  const ScratchFolder scratch;
  IndexCache cache;
  StoreSecurity(scratch.Sub("data"), {"QXA", "Quax", -1}, DailyBars(400), cache);
  WholeProgram all(scratch.Sub("data"));
  all.program.Start();
  Form1& setup = all.Setup();
  setup.chkBlind.UserToggle();
  setup.Combo1.UserType("QXA");
  all.At(200, [&] { all.Navigator().Image5.UserClick(); });
  setup.Image3.UserClick();
  EXPECT_TRUE(setup.Visible() && all.session.BarDate.empty()) << "no run has begun";
  setup.chkBlind.UserToggle();
  setup.Image3.UserClick();
  EXPECT_EQ(all.session.Run.symbol, "QXA");
  all.Navigator().Image5.UserClick();
  setup.chkBlind.UserToggle();
  all.At(20000, [&] { all.Navigator().Image4.UserClick(); });
  setup.Image3.UserClick();
  all.Navigator().Image5.UserClick();
  for (const int session : {2, 1, 2}) {
    all.program.ResumeSession(session);
    EXPECT_EQ(setup.chkBlind.Checked(), session == 2);
    EXPECT_EQ(setup.DTPicker1.Enabled(), session == 1);
    all.Navigator().Image5.UserClick();
  }
}

}  // namespace
}  // namespace velumar
