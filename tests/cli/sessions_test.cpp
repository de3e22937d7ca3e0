#include <fstream>
#include <random>
#include <thread>

#include "cli/sandbox.h"
#include "ledger/cards.h"
#include "ledger/drills.h"
#include "ledger/notes.h"
#include "results/run_record.h"
#include "session/played_trades.h"
#include "support/traced_child.h"

namespace velumar {
namespace {

using nlohmann::json;
using testing::HasSubstr;

// What a resumed session must have again: all but the texts of windows and the run's own switches.
json Kept(json answer) {
  for (const char* other : {"command", "result", "error", "row", "StopRequested", "RefreshDelay",
                            "feeding", "rows", "keys", "waited", "CurrentDate", "CurrentTime",
                            "SetupTop", "SetupLeft", "NavTop", "NavLeft"}) {
    answer.erase(other);
  }
  std::erase_if(answer.get_ref<json::object_t&>(),
                [](const auto& field) { return field.first.find('.') != std::string::npos; });
  return answer;
}

struct SessionsTest : testing::Test {
  std::vector<std::string> Start(const std::string& name) {
    return {"replay",        data,       "ABC",       "D", "20000110", "--store",
            box.At("store"), "--ledger", box.At(name)};
  }
  Sandbox::Answer Resume(const std::string& name, const std::string& commands = "") {
    return box.Run(
        {"replay", "--session", "1", "--ledger", box.At(name), "--store", box.At("store")},
        commands);
  }
  std::vector<RunOrder> Orders(const std::string& name) {
    LedgerConnection ledger([](std::string_view iso) { return std::string(iso); });
    LedgerOpenToRead(ledger, box.At(name));
    return ReadRecord(ledger, LedgerScope::Session(1)).orders;
  }
  static bool AnyText(const std::string& file) {
    std::error_code missing;
    return std::filesystem::file_size(file, missing) > 0 && !missing;
  }
  // Steps and orders, most of them possible.
  std::string RandomCommands(int count) {
    static constexpr const char* kCommands[] = {"next",
                                                "next",
                                                "next",
                                                "prev",
                                                "ff",
                                                "rew",
                                                "long 2",
                                                "short 0.7",
                                                "offset-long 1",
                                                "offset-long 9",
                                                "offset-short 0.7"};
    std::string commands = "pause\n";
    for (int i = 0; i < count; ++i) {
      commands += kCommands[random() % std::size(kCommands)] + std::string("\n");
    }
    return commands;
  }

  Sandbox box{MemoryFolder()};
  std::string data = box.ImportDays("data", ".37");
  std::mt19937 random{7};
};

TEST_F(SessionsTest, ResumingAtAnyMomentGivesTheSameSession) {
  for (int round = 0; round < 20; ++round) {
    const std::string name = "ledger" + std::to_string(round);
    const auto played =
        box.Run(Start(name), RandomCommands(round * 2) + (round % 2 == 0 ? "" : "play\n"));
    ASSERT_EQ(played.code, 0) << played.err;
    const auto orders = Orders(name);
    const auto resumed = Resume(name, "next\nlong 1\n");
    ASSERT_EQ(resumed.code, 0) << resumed.err;
    EXPECT_EQ(Kept(resumed.Objects().front()), Kept(played.Objects().back())) << round;
    // What follows is as if there had been no pause, and the order belongs to the same session.
    EXPECT_EQ(Orders(name).size(),
              orders.size() + (resumed.Objects().back()["result"] == "done" ? 1 : 0));
  }
}

TEST_F(SessionsTest, AKillAtAnyMomentLosesNothingThatWasAnswered) {
  const std::string commands = RandomCommands(40);
  const auto begun = std::chrono::steady_clock::now();
  auto whole = box.Run(Start("whole"), commands).Objects();
  const auto took = std::chrono::steady_clock::now() - begun;
  int resumed_later = 0;
  for (int round = 0; round < 200; ++round) {
    const std::string name = "killed" + std::to_string(round);
    const std::string answers = box.At(name + ".txt");
    const pid_t child = fork();
    if (child == 0) {
      std::istringstream in(commands);
      std::ofstream out(answers);
      out << std::unitbuf;
      std::ostringstream err;
      IndexCache cache;
      CliContext context{cache, in, out, err};
      _exit(RunCli(Start(name), context));
    }
    // On a busy machine the process takes long to begin; a few are killed before it has.
    for (int waited = 0; round % 8 != 0 && !AnyText(answers) && waited < 20000; ++waited) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    std::this_thread::sleep_for(took * (random() % 1000) / 1000);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    std::ifstream in(answers);
    std::size_t answered = 0;
    for (std::string line; std::getline(in, line) && !in.eof();) ++answered;
    if (answered == 0) continue;
    ++resumed_later;
    const auto resumed = Resume(name);
    ASSERT_EQ(resumed.code, 0) << resumed.err;
    // The command that the kill interrupted was done or not.
    const json now = Kept(resumed.Objects().front());
    const bool done = answered < whole.size() && now != Kept(whole[answered - 1]);
    EXPECT_EQ(now, Kept(whole[answered - 1 + (done ? 1 : 0)])) << round;
    std::size_t orders = 0;
    for (std::size_t i = 0; i < answered + (done ? 1 : 0); ++i) {
      orders += whole[i]["result"] == "done" || whole[i]["result"] == "too much" ? 1 : 0;
    }
    EXPECT_EQ(Orders(name).size(), orders) << round;
  }
  EXPECT_GT(resumed_later, 100);
}

TEST_F(SessionsTest, APlanWaitsPausesTheRunAndIsThereAgain) {
  ASSERT_EQ(box.Run(Start("ledger"), "pause\nplan stop=105 target=115 setup=gap\n").code, 0);
  const json paused = Resume("ledger", "long 2\nplay\nfeed 20\n").Objects().back();
  EXPECT_EQ(paused["Form2.Label6"], "Target 115.00 of Long 2 reached. The run is paused.");
  EXPECT_EQ(paused["MarketPrice"], 115.37F);
  EXPECT_EQ(paused["feeding"], false);
  const auto later =
      Resume("ledger", "plan for=last stop=112\nplay\nfeed 3\nplan for=last stop=119\n").Objects();
  EXPECT_EQ(later[3]["feeding"], true) << "the target pauses once";
  EXPECT_EQ(later.back()["error"], "The stop of a Long must be below 118.37") << later.back();
  const std::optional<LedgerPlan> plan = Orders("ledger").front().plan;
  ASSERT_TRUE(plan.has_value());
  EXPECT_EQ(plan->setup, "gap");
  EXPECT_EQ(plan->stop, 112);
  EXPECT_EQ(plan->target, 115);
  EXPECT_NEAR(plan->risk.value_or(0), 2 * 5.37 * 1000, 0.01) << "as at the entry";
  const json stepped = Resume("ledger", "plan for=last target=119\nnext\n").Objects().back();
  EXPECT_EQ(stepped["Form2.Label6"], "Target 119.00 of Long 2 reached.") << "by hand too";
  const json refused =
      Resume("ledger", "plan target=130 colour=red\nplan setup=late\nlong 1\n").Objects().at(1);
  EXPECT_EQ(refused["error"], "a plan has no \"colour=red\"");
  EXPECT_FALSE(Orders("ledger").back().plan->target.has_value());
}

TEST_F(SessionsTest, AChangedSeriesIsNotResumedUnasked) {
  ASSERT_EQ(box.Run(Start("ledger"), "pause\nnext\nlong 1\nshort 2\n").code, 0);
  const std::string file = box.File("ABC_D.csv", "date,open,high,low,close\n20000105,1,1,1,1\n");
  ASSERT_EQ(box.Run({"import", file, data}).code, 0);
  const auto resumed = Resume("ledger", "next\n");
  EXPECT_EQ(resumed.Objects().back()["LAccum"], 0) << "the last answer cancels";
  const auto list = box.Run({"sessions", box.At("ledger"), "--json"});
  const json line = json::parse(list.out).at(0);
  EXPECT_EQ(line["long"], 1);
  EXPECT_EQ(line["short"], 2);
  EXPECT_EQ(line["date"], 20000111);
  EXPECT_EQ(line["bars_left"], 17);
  ASSERT_EQ(box.Run(Start("back"), "prev\n").code, 0);
  EXPECT_EQ(json::parse(box.Run({"sessions", box.At("back"), "--json"}).out).size(), 1U)
      << "one that only went back can be resumed";
}

TEST_F(SessionsTest, CardsAreMadeOfLossesAndDeleted) {
  const std::string ledger = box.At("ledger");
  ASSERT_EQ(box.Run(Start("ledger"),
                    "pause\nshort 1\nnext\noffset-short 1\n"
                    "long 1\noffset-long 1\nlong 1\n")
                .code,
            0)
      << "a loss, a break-even trade and an open one";
  EXPECT_EQ(box.Run({"cards", ledger, "make", "--losses", "5"}).out, "1 card made.\n");
  const json card = json::parse(box.Run({"cards", ledger, "--json", "--due"}).out).at(0);
  EXPECT_TRUE(card["symbol"].is_null() && card["is_due"] == true && card["kind"] == "loss");
  EXPECT_THAT(box.Run({"cards", ledger}).out, HasSubstr("hidden"));
  EXPECT_THAT(box.Run({"cards", ledger, "delete", "7"}).err, HasSubstr("has no card 7"));
  {
    LedgerConnection answers([](std::string_view iso) { return std::string(iso); });
    LedgerOpen(answers, ledger);
    for (const double r : {1.25, -0.75}) LedgerAnswerCard(answers, {.card = 1, .r = r});
  }
  EXPECT_THAT(box.Run({"cards", ledger}).out,
              testing::AllOf(HasSubstr("-0.75"), testing::Not(HasSubstr("1.25"))))
      << "the last answer";
  EXPECT_EQ(box.Run({"cards", ledger, "delete", "1"}).code, 0);
  EXPECT_EQ(json::parse(box.Run({"cards", ledger, "--json"}).out), json::array());
}

// Half an entry lost a larger share of its risk than the other entry did.
TEST_F(SessionsTest, TheLargestLossIsTheOneThatLostMostOfItsRisk) {
  ASSERT_EQ(box.Run(Start("ledger"),
                    "pause\nplan stop=120\nshort 2\nplan stop=127\nshort 1\n"
                    "next\nnext\noffset-short 1\nnext\noffset-short 2\n")
                .code,
            0);
  EXPECT_EQ(box.Run({"cards", box.At("ledger"), "make", "--losses", "1"}).out, "1 card made.\n");
  LedgerConnection ledger([](std::string_view iso) { return std::string(iso); });
  LedgerOpenToRead(ledger, box.At("ledger"));
  EXPECT_EQ(LedgerCards(ledger).at(0).order.place, 1);
}

TEST_F(SessionsTest, TheJournalHasEachTradeOnceInEveryForm) {
  const std::string file = box.At("ledger");
  ASSERT_EQ(box.Run(Start("ledger"),
                    "pause\nplan stop=120 setup=gap reasons=late\nshort 2\nnext\noffset-short 2\n"
                    "long 1\n")
                .code,
            0);
  {
    LedgerConnection ledger([](std::string_view iso) { return std::string(iso); });
    LedgerOpen(ledger, file);
    for (const char* text : {"first", "better"}) {
      LedgerWriteNote(ledger, {1, {1, 1}, text, "2026-01-05 10:00:00"});
    }
  }
  const json journal = json::parse(box.Run({"journal", file, "--json"}).out).at(0);
  EXPECT_EQ(journal["session"], 1);
  ASSERT_EQ(journal["trades"].size(), 2U);
  const json& trade = journal["trades"][0];
  EXPECT_EQ(trade["side"], "Short");
  EXPECT_EQ(trade["money"], -2000);
  EXPECT_EQ(trade["stop"], 120);
  EXPECT_EQ(trade["setup"], "gap");
  EXPECT_EQ(trade["notes"].size(), 2U);
  EXPECT_EQ(trade["note"], "better");
  EXPECT_TRUE(journal["trades"][1]["exit_price"].is_null()) << "still open";
  const std::string csv = box.Run({"journal", file, "--csv", "--session", "1"}).out;
  EXPECT_EQ(std::ranges::count(csv, '\n'), 3);
  EXPECT_THAT(box.Run({"journal", file}).out,
              testing::AllOf(HasSubstr("gap"), HasSubstr("better")));
  EXPECT_EQ(box.Run({"journal", file, "--html", box.At("page")}).code, 0);
  EXPECT_THAT(ReadFile(box.At("page") + "/journal.html"), HasSubstr("better"));
  EXPECT_THAT(box.Run({"journal", file, "--session", "7"}).err, HasSubstr("7"));
}

TEST_F(SessionsTest, StatsAreThoseOfTheTradesThatTheFiltersLetThrough) {
  // Bars rise by one a day: twelve longs win a point for each bar, and a short loses one.
  std::string commands = "pause\n";
  for (int i = 0; i < 12; ++i) commands += "long 2\nnext\noffset-long 2\n";
  ASSERT_EQ(box.Run(Start("ledger"), commands + "plan setup=gap\nshort 1\nnext\noffset-short 1\n" +
                                         "prev\nlong 1\nnext\noffset-long 1\n")
                .code,
            0);
  const auto stats = [&](std::vector<std::string> filters) {
    filters.insert(filters.begin(), {"stats", box.At("ledger"), "--json", "--rounds", "200"});
    const auto answer = box.Run(filters);
    EXPECT_EQ(answer.code, 0) << answer.err;
    return json::parse(answer.out);
  };
  const json all = stats({});
  EXPECT_EQ(all["trades"], 13);
  EXPECT_EQ(all["groups"][0]["trades"], 13);
  EXPECT_EQ(stats({"--look-ahead"})["trades"], 14) << "one after a step back";
  EXPECT_EQ(all, stats({"--from", "20000110", "--session", "1", "--interval", "D", "--not-blind"}));
  EXPECT_EQ(stats({"--side", "short"})["trades"], 1);
  EXPECT_EQ(stats({"--setup", "gap"})["trades"], 1);
  EXPECT_EQ(stats({"--to", "20000111", "--confidence", "0"})["trades"], 2);
  EXPECT_EQ(stats({"--blind"})["trades"], 0);
  EXPECT_EQ(stats({"--played-to", "20200101"})["trades"], 0);
  EXPECT_EQ(stats({"--weekday", "1"})["trades"], 2);
  for (const char* hour : {"0", "23"}) EXPECT_EQ(stats({"--hour", hour})["trades"], 0) << hour;
  EXPECT_THAT(box.Run({"stats", box.At("ledger")}).out, HasSubstr("Win rate"));
  EXPECT_THAT(box.Run({"stats", box.At("ledger"), "--setup", "ga"}).err,
              HasSubstr("no trade has the setup ga"));
  EXPECT_EQ(box.Run({"stats", box.At("ledger"), "--to", "20001399"}).code, 2);

  LedgerConnection ledger([](std::string_view iso) { return std::string(iso); });
  LedgerOpen(ledger, box.At("ledger"));
  IndexCache cache;
  PlayedScopes(ledger, cache);  // kept now, with the bars after the last trade
  ledger.ForWriting().Execute(
      "UPDATE Trades SET EntryDay = 19640107 WHERE Side = 'Short';"
      "UPDATE Trades SET ExitBar = 2e9, Money = 9e999, Adverse = -9e999 WHERE EntryDay = 20000111");
  EXPECT_EQ(stats({})["trades"], 12) << "a damaged one has no result";
  EXPECT_THAT(box.Run({"stats", box.At("ledger"), "--csv"}).out, HasSubstr(",Tuesday,"));
  // 1 point of 1,000 for 2, less four times 1,000 and 7 %; five bars later is the newest bar.
  const std::string csv = box.Run({"stats", box.At("ledger"), "--csv"}).out;
  EXPECT_THAT(csv, HasSubstr("\n1,,ABC,D,0,Long,2,2000-01-17 00:00:00,117.37,2000-01-18 00:00:00,"
                             "118.37,1,,1,2000,,4280,-2280,,0,0,,0,1,2000,,1,1,2000,10000,,,,"
                             "Monday,,0"));
  EXPECT_THAT(csv, HasSubstr(",119.37,1,,1,2000,,4280,-2280,,0,0,,0,1,2000,,1,1,2000,,,,,Tue"));
  ledger.ForWriting().Execute("UPDATE PlayedBars SET Closes = X'0000C07F'");
  EXPECT_EQ(stats({}), all) << "computed again from the data";

  LedgerAddToDrill(ledger, {.began = "2026-11-27 07:03:40", .charts = 3, .bars = 40, .seconds = 90},
                   1);
  const json drill = json::parse(box.Run({"drills", box.At("ledger"), "--json"}).out).at(0);
  EXPECT_EQ(drill["trades"], 13);
  EXPECT_EQ(drill["sessions"], json::array({1}));
  EXPECT_THAT(box.Run({"drills", box.At("ledger")}).out, HasSubstr("1 of 3, not finished"));
}

}  // namespace
}  // namespace velumar
