#include "ledger/ledger.h"

#include <fstream>
#include <functional>
#include <map>

#include "ledger/cards.h"
#include "ledger/drills.h"
#include "ledger/moved_orders.h"
#include "ledger/plans.h"
#include "ledger/reveal.h"
#include "ledger/trades.h"
#include "support/ledger_rows.h"
#include "support/matchers.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

namespace fs = std::filesystem;

constexpr bool kPosixFiles = fs::path::preferred_separator == '/';
// Each of these characters has a meaning in a database URI.
constexpr const char* kOddName = kPosixFiles ? "a%20 ?#.mdb" : "a%20 #.mdb";

struct LedgerTest : testing::Test {
  static LedgerConnection Connection() {
    return LedgerConnection([](std::string_view iso) { return std::string(iso); });
  }
  static LedgerConnection Opened(const std::string& file) {
    LedgerConnection ledger = Connection();
    LedgerOpen(ledger, file);
    return ledger;
  }
  static LedgerConnection Reader(const std::string& file) {
    LedgerConnection ledger = Connection();
    LedgerOpenToRead(ledger, file);
    return ledger;
  }
  static void AddRow(LedgerConnection& ledger) {
    LedgerInsertOrder(ledger, std::vector<LedgerValue>(22, 0.0), {});
  }
  static std::size_t Rows(LedgerConnection& ledger) {
    return LedgerQuery(ledger, "select * From MyPortfolio").rows.size();
  }
  // Neither reads nor writes the ledger of a folder, and changes no file there.
  static void ExpectRefused(const ScratchFolder& folder, const std::string& why) {
    const auto before = FilesOf(folder.Path().string());
    LedgerConnection ledger = Opened(folder.Sub("l.mdb"));
    EXPECT_THAT(ledger.WhyNot(), AllOf(HasSubstr(folder.Sub("l.mdb")), HasSubstr(why)));
    EXPECT_THROW(AddRow(ledger), LedgerError);
    EXPECT_THROW(Rows(ledger), LedgerError) << why;
    EXPECT_THROW(Reader(folder.Sub("l.mdb")), LedgerError) << why;
    EXPECT_EQ(FilesOf(folder.Path().string()), before) << why;
  }
  ScratchFolder scratch;
  std::string file = scratch.Sub("Portfolio.mdb");
};

// Makes a closed ledger one of a version before the journal.
void MakeOlder(const std::string& file) {
  SqliteDatabase(file, SqliteDatabase::Mode::kCreate)
      .Execute(
          "PRAGMA user_version=2; DROP TABLE Cards; DROP TABLE CardAnswers; "
          "DROP TABLE Drills; DROP TABLE DrillSessions; DROP TABLE Trades; DROP TABLE PlayedBars; "
          "ALTER TABLE Details DROP Counted; "
          "DROP TABLE Plans; DROP TABLE Notes; "
          "ALTER TABLE Sessions DROP AgainRun; ALTER TABLE Sessions DROP AgainPlace");
}

// Makes it one of a version before sessions, and changes it further.
void MakeOlder(const std::string& file, const std::string& further) {
  MakeOlder(file);
  SqliteDatabase(file, SqliteDatabase::Mode::kCreate)
      .Execute(
          "PRAGMA user_version=0; DROP TABLE Sessions; DROP TABLE SessionMoments; "
          "ALTER TABLE Runs DROP Session;" +
          further);
}

TEST_F(LedgerTest, OlderFilesAreMigratedAndKeepTheirRows) {
  Opened(file);
  MakeOlder(file,
            "ALTER TABLE Wiped DROP Place; ALTER TABLE Wiped DROP BarDate; ALTER TABLE Wiped DROP "
            "BarTime; ALTER TABLE Wiped DROP MarketPrice; INSERT INTO Wiped (Held) VALUES (1)");
  for (double held = 2; held <= 3; ++held) {
    LedgerConnection ledger = Opened(file);
    AddRow(ledger);
    LedgerNoteWiped(ledger, {"Offset Long", held, 99, "2007-01-26", "16:30:00", 98}, {9, 0, 5, 6});
  }
  // The two kinds of columns came one after the other.
  MakeOlder(file, "ALTER TABLE Details DROP ClosePrice");
  LedgerConnection reader = Reader(file);
  EXPECT_TRUE(LedgerSessions(reader).empty() && LedgerDrills(reader).empty())
      << "reading migrates nothing";
  EXPECT_TRUE(LedgerCards(reader).empty() && LedgerCardAnswers(reader).empty());
  LedgerClose(reader);
  LedgerConnection newer = Opened(file);
  AddRow(newer);
  LedgerMoment moment;
  moment.bar = 7;
  const int session = LedgerBeginRun(newer, {}, {}, moment);
  LedgerClose(newer);
  MakeOlder(file);
  LedgerClose(newer = Opened(file));
  newer = Opened(file);
  LedgerDrill drill{.began = "2026-11-27 07:03:40",
                    .charts = 3,
                    .bars = 40,
                    .seconds = 90,
                    .directory = "C:\\Data",
                    .interval = "15"};
  LedgerAddToDrill(newer, {.began = "earlier"}, 9);
  drill.number = LedgerAddToDrill(newer, drill, 8);
  for (const int chart : {5, 7}) LedgerAddToDrill(newer, drill, chart);
  LedgerAddToDrill(newer, {.began = "later"}, 9);
  LedgerFinishDrill(newer, drill.number);
  LedgerClose(newer);
  LedgerConnection ledger = Reader(file);
  drill.finished = true;
  drill.sessions = {8, 5, 7};
  ASSERT_EQ(LedgerDrills(ledger).size(), 3U);
  EXPECT_EQ(LedgerDrills(ledger)[1], drill);
  EXPECT_FALSE(LedgerDrills(ledger)[0].finished || LedgerDrills(ledger)[2].finished);
  EXPECT_EQ(LedgerReadSession(ledger, session).moment.bar, 7);
  const LedgerRecordset wiped = LedgerQuery(ledger, "select Place, Held, BarDate From Wiped");
  using Values = std::vector<LedgerValue>;
  EXPECT_EQ(wiped.rows, (std::vector<Values>{
                            {{}, 1.0, {}}, {1.0, 2.0, "2007-01-26"}, {2.0, 3.0, "2007-01-26"}}));
}

TEST_F(LedgerTest, CardsStayWithTheirAnswersAndNeverRepeat) {
  LedgerConnection ledger = Opened(file);
  LedgerSession blind;
  blind.symbol = "BLIND";
  const int session = LedgerBeginRun(ledger, {}, blind);
  LedgerCard card{.session = session, .symbol = "BLIND", .position = "a", .first_due = 20070102};
  EXPECT_EQ(LedgerAddCard(ledger, card), 1);
  EXPECT_FALSE(LedgerAddCard(ledger, card).has_value()) << "the same place";
  card.position = "b";
  EXPECT_EQ(LedgerAddCard(ledger, card), 2);
  using Decision = LedgerCardAnswer::Decision;
  LedgerAnswerCard(ledger, {.card = 1, .decision = Decision::kShort, .r = -1, .due = 20070105});
  LedgerAnswerCard(ledger, {.card = 1, .stop = 99.5, .step = 2, .due = 20070110});
  LedgerAnswerCard(ledger, {.card = 9, .due = 20070101});
  ledger.ForWriting().Execute("UPDATE Sessions SET Symbol = 'ABC'");
  LedgerClose(ledger);
  ledger = Opened(file);
  const std::vector<LedgerCard> cards = LedgerCards(ledger);
  ASSERT_EQ(cards.size(), 2U);
  EXPECT_EQ(cards[0].symbol, "ABC") << "once its session is revealed";
  EXPECT_EQ(std::tuple(cards[0].answers, cards[0].step, cards[0].due), std::tuple(2, 2, 20070110));
  EXPECT_EQ(std::tuple(cards[1].answers, cards[1].step, cards[1].due), std::tuple(0, 0, 20070102));
  const std::vector<LedgerCardAnswer> answers = LedgerCardAnswers(ledger, 1);
  ASSERT_EQ(answers.size(), 2U) << "a deleted card takes no answer";
  EXPECT_TRUE(answers[0].decision == Decision::kShort && answers[0].r == -1 && !answers[0].stop);
  EXPECT_EQ(answers[1].stop, 99.5);
  for (const std::string damaged : {"-1", "99", "-9e99"}) {
    ledger.ForWriting().Execute("UPDATE Cards SET Kind = " + damaged + ", Run = -9e99");
    EXPECT_EQ(LedgerCards(ledger)[0].kind, LedgerCard::Kind(damaged == "-9e99" ? 0 : 2));
    EXPECT_EQ(LedgerCards(ledger)[0].order.run, 0);
  }
  EXPECT_TRUE(LedgerDeleteCard(ledger, 1) && !LedgerDeleteCard(ledger, 1));
  EXPECT_TRUE(LedgerCardAnswers(ledger).empty());
  card.position = "c";
  EXPECT_EQ(LedgerAddCard(ledger, card), 3) << "never the number of a deleted one";
}

TEST_F(LedgerTest, OneProgramOwnsALedgerWhicheverLinkLeadsToIt) {
  fs::create_directory(scratch.Path() / "deep");
  std::error_code refused;
  fs::create_symlink("../deep/real.mdb", scratch.Path() / "deep/link.mdb", refused);
  if (refused) GTEST_SKIP() << "no symbolic links: " << refused.message();
  fs::create_directory_symlink("deep", scratch.Path() / "folder");
  fs::create_symlink("folder/link.mdb", file);  // leads to no file yet
  LedgerConnection first = Opened(file);
  ASSERT_TRUE(first.CanWrite()) << first.WhyNot();
  AddRow(first);
  for (const char* name : {"Portfolio.mdb", "folder/real.mdb", "deep/../deep/link.mdb"}) {
    LedgerConnection second = Opened(scratch.Sub(name));
    EXPECT_THAT(second.WhyNot(), HasSubstr("in use"));
    EXPECT_EQ(Rows(second), 1U);
    EXPECT_THROW(LedgerBeginRun(second, {}), LedgerError);
    AddRow(first);
    EXPECT_EQ(Rows(second), 2U);
    LedgerBeginRun(first, {});
    AddRow(first);
  }
  fs::remove(file);
  std::ofstream(scratch.Sub("other.mdb")) << "another file";
  fs::create_symlink("other.mdb", file);
  EXPECT_THROW(AddRow(first), LedgerError) << "the link leads elsewhere by now";
  LedgerClose(first);
  // The log of one name would be missed under the other.
  fs::create_hard_link(scratch.Path() / "deep/real.mdb", scratch.Path() / "second.mdb");
  LedgerOpen(first, scratch.Sub("second.mdb"));
  EXPECT_THAT(first.WhyNot(), HasSubstr("hard link"));
  EXPECT_EQ(Rows(first), 1U);
  LedgerClose(first);
  fs::remove(scratch.Sub("second.mdb"));
  LedgerOpen(first, scratch.Sub("folder/real.mdb"));
  EXPECT_EQ(first.WhyNot(), "") << "the earlier refusal is gone";
}

TEST_F(LedgerTest, ARowThatWouldBeLostIsRefused) {
  if (!kPosixFiles) GTEST_SKIP() << "the system does not let an open ledger be moved or deleted";
  const std::string moved = scratch.Sub("moved.mdb");
  file = scratch.Sub("home/Portfolio.mdb");
  const auto replace = [&](const std::string& suffix) {
    fs::rename(file + suffix, scratch.Sub("aside"));
    std::ofstream(file + suffix) << "another file";
  };
  // What happens, and where the rows are afterwards.
  const std::tuple<const char*, std::function<void()>, std::string> cases[] = {
      {"moved", [&] { fs::rename(file, moved); }, moved},
      {"replaced",
       [&] {
         fs::rename(file, moved);
         fs::copy_file(moved, file);
       },
       moved},
      {"folder moved", [&] { fs::rename(scratch.Sub("home"), scratch.Sub("new")); },
       scratch.Sub("new/Portfolio.mdb")},
      {"deleted", [&] { fs::remove(file); }, ""},
      {"log deleted", [&] { fs::remove(file + "-wal"); }, file},
      {"log replaced", [&] { replace("-wal"); }, ""},
      {"index replaced", [&] { replace("-shm"); }, ""},
      {"lock deleted", [&] { fs::remove(file + "-owner"); }, file},
      {"log truncated", [&] { fs::resize_file(file + "-wal", 0); }, ""},
      {"log cut within its rows", [&] { fs::resize_file(file + "-wal", 100); }, ""}};
  for (const auto& [what, harm, rows_in] : cases) {
    for (const auto& entry : fs::directory_iterator(scratch.Path())) fs::remove_all(entry);
    fs::create_directory(scratch.Sub("home"));
    LedgerConnection ledger = Opened(file);
    AddRow(ledger);
    AddRow(ledger);
    harm();
    EXPECT_THAT([&] { AddRow(ledger); },
                ThrowsMessage<LedgerError>(HasSubstr("home/Portfolio.mdb")))
        << what;
    LedgerClose(ledger);
    if (rows_in.empty()) continue;
    LedgerOpen(ledger, rows_in);
    EXPECT_EQ(Rows(ledger), 2U) << what;
    EXPECT_NO_THROW(AddRow(ledger)) << what << ledger.WhyNot();
  }
}

TEST_F(LedgerTest, ACheckpointByAnotherProgramIsHarmless) {
  LedgerConnection ledger = Opened(file);
  AddRow(ledger);
  SqliteDatabase(file, SqliteDatabase::Mode::kCreate).Execute("PRAGMA wal_checkpoint(TRUNCATE)");
  for (int i = 2; i <= 300; ++i) AddRow(ledger);
  EXPECT_EQ(Rows(ledger), 300U);
  EXPECT_LT(fs::file_size(file + "-wal"), 5'000'000U) << "it is checkpointed regularly";
}

// Nor does the unused log get in the way after a crash. Ledgers of earlier versions have larger
// pages.
TEST_F(LedgerTest, ACommitDoesNotLengthenTheLog) {
  const std::string older = scratch.Sub("older.mdb");
  Opened(file);
  fs::copy_file(file, older);
  SqliteDatabase(older, SqliteDatabase::Mode::kCreate)
      .Execute("PRAGMA journal_mode=DELETE; PRAGMA page_size=4096; VACUUM");
  for (const auto& [path, page_size] : {std::pair(file, 1024.0), {older, 4096.0}}) {
    LedgerConnection ledger = Opened(path);
    const std::string crashed = path + "-crashed";
    for (const char* suffix : {"", "-wal"}) fs::copy_file(path + suffix, crashed + suffix);
    const auto size = fs::file_size(path + "-wal");
    for (int i = 0; i < 3; ++i) AddRow(ledger);
    EXPECT_EQ(fs::file_size(path + "-wal"), size);
    LedgerClose(ledger);
    for (const auto& [copy, rows] : {std::pair(path, 3U), {crashed, 0U}}) {
      LedgerConnection again = Opened(copy);
      EXPECT_EQ(Rows(again), rows) << copy << again.WhyNot();
    }
    EXPECT_EQ(SqliteDatabase(path, SqliteDatabase::Mode::kReadOnly).FirstValue("PRAGMA page_size"),
              LedgerValue(page_size));
  }
}

TEST_F(LedgerTest, SessionsAreListedNewestFirstAndKeepTheTypedAccount) {
  LedgerConnection ledger = Opened(file);
  for (int i = 0; i < 4; ++i) LedgerBeginRun(ledger, {});
  EXPECT_EQ(LedgerSessions(ledger).at(0).session.number, 4) << "of equal moments, the newest";
  // The next run of a session brings what the trader has typed since.
  LedgerSession played;
  played.number = 2;
  played.account = {"6", "7", "8", "9", "10"};
  LedgerBeginRun(ledger, {}, played);
  played.account.vat = "11";
  LedgerBeginRun(ledger, {}, played);
  EXPECT_EQ(LedgerReadSession(ledger, 2).session.account, played.account);
}

// The log has rows of a file that was moved without it. Creating a new file would delete it.
TEST_F(LedgerTest, ALogWithoutItsFileIsNotDeleted) {
  LedgerConnection ledger = Opened(file);
  AddRow(ledger);
  const std::string copy = scratch.Sub("copy.mdb");
  fs::copy_file(file + "-wal", copy + "-wal");
  LedgerConnection other = Opened(copy);
  EXPECT_THAT(other.WhyNot(), HasSubstr("copy.mdb-wal"));
  EXPECT_FALSE(fs::exists(copy));
  EXPECT_TRUE(fs::exists(copy + "-wal"));
}

// After a clean exit, after a crash, and after a crash whose files were copied without the log's
// index.
TEST_F(LedgerTest, ReadingLeavesNoTrace) {
  LedgerConnection ledger = Opened(file);
  AddRow(ledger);
  for (const auto& [folder, suffixes] :
       {std::pair("crashed", std::vector<std::string>{"", "-wal", "-shm"}),
        std::pair("bare", std::vector<std::string>{"", "-wal"})}) {
    fs::create_directory(scratch.Sub(folder));
    for (const std::string& suffix : suffixes) {
      fs::copy_file(file + suffix, scratch.Sub(std::string(folder) + "/" + kOddName + suffix));
    }
  }
  LedgerClose(ledger);
  fs::create_directory(scratch.Sub("closed"));
  fs::copy_file(file, scratch.Sub(std::string("closed/") + kOddName));
  EXPECT_FALSE(fs::exists(file + "-wal"));
  for (const std::string folder : {"crashed", "bare", "closed"}) {
    const auto before = FilesOf(scratch.Sub(folder));
    for (int i = 0; i < 2; ++i) {
      LedgerConnection reader = Reader(scratch.Sub(folder + "/" + kOddName));
      EXPECT_EQ(Rows(reader), 1U) << folder;
      EXPECT_FALSE(reader.CanWrite());
    }
    EXPECT_EQ(FilesOf(scratch.Sub(folder)), before) << folder;
    LedgerConnection writer = Opened(scratch.Sub(folder + "/" + kOddName));
    AddRow(writer);
    EXPECT_EQ(Rows(writer), 2U) << folder;
  }
}

TEST_F(LedgerTest, ARowIsFlushedAndReadersSeeItAtOnce) {
  Opened(file);
  LedgerConnection reader = Reader(file);
  LedgerConnection writer = Opened(file);
  constexpr double kFull = 2;
  EXPECT_EQ(writer.ForWriting().FirstValue("PRAGMA synchronous"), LedgerValue(kFull));
  for (std::size_t rows = 1; rows <= 2; ++rows) {
    AddRow(writer);
    EXPECT_EQ(Rows(reader), rows);
    EXPECT_EQ(LedgerQuery(reader, "select * From Details").rows.size(), rows);
  }
  LedgerClose(reader);
  EXPECT_THROW(Rows(reader), LedgerError);
}

TEST_F(LedgerTest, AForgottenSessionTakesOnlyItsWaitingPlanAlong) {
  LedgerConnection ledger = Opened(file);
  const int session = LedgerBeginRun(ledger, {}, {}, LedgerMoment());
  LedgerWritePlan(ledger, {.session = session, .order = {1, 1}, .setup = "gap", .written = "1"});
  LedgerWritePlan(ledger, {.session = session, .setup = "waits", .written = "2"});
  LedgerWritePlan(ledger, {.session = session, .order = {1, 2}, .setup = "gap", .written = "3"});
  EXPECT_THAT(LedgerSetups(ledger), testing::ElementsAre("gap", "waits")) << "by their last use";
  LedgerTrades trades{.scope = LedgerScope::Session(session), .closes = {}, .trades = {{}}};
  LedgerWriteTrades(ledger, trades);
  LedgerForgetSession(ledger, session);
  EXPECT_TRUE(LedgerReadTrades(ledger).empty());
  const std::vector<LedgerPlan> plans = LedgerPlansOfSession(ledger, session);
  ASSERT_EQ(plans.size(), 2U);
  EXPECT_EQ(plans[0].setup, "gap");
  EXPECT_TRUE(LedgerSessions(ledger).empty());
}

const LedgerHidden kHidden{.symbol = "REAL",
                           .factor = 2,
                           .day = [](std::int32_t day) { return day; },
                           .close = [](int bar, double) { return bar * 10.0; }};

LedgerMoment MomentAt(int bar) {
  LedgerMoment moment;
  moment.session = 1;
  moment.bar = bar;
  return moment;
}

// A session of two runs with a wiped-out holding, kept trades, a waiting plan, a card that was
// answered, and a drill.
LedgerConnection PlayedLedger() {
  LedgerConnection ledger([](std::string_view iso) { return std::string(iso); });
  LedgerOpen(ledger, ":memory:");
  LedgerRows rows{ledger};
  rows.Begin(1000);
  rows.Order(10, "Long", 1, 200, 1, 0, 1000);
  LedgerNoteWiped(ledger, {"Offset Long", 1, 99, "", "", 90}, {1, 0, 11, 11});
  rows.Play(1000);
  rows.Order(12, "Offset Long", 1, 220, 0, 20, 1020);
  LedgerWriteMoment(ledger, MomentAt(12));
  for (const auto& [bar, position] : {std::pair(13, "Short"), {14, "Offset Short"}}) {
    LedgerInsertOrder(ledger, rows.Row(bar, position, 1, 210, bar == 13 ? 1 : 0, 0, 1020),
                      {1, 0, bar, bar, 210.004});
  }
  LedgerWritePlan(ledger, {.session = 1, .order = {1, 1}, .stop = 190, .target = 230});
  LedgerWritePlan(ledger, {.session = 1, .setup = "waits"});
  LedgerWriteTrades(ledger,
                    {.scope = LedgerScope::Session(1), .orders = 2, .closes = {1}, .trades = {{}}});
  LedgerAddCard(ledger, {.session = 1, .position = "a"});
  LedgerAnswerCard(ledger, {.card = 1});
  LedgerAddToDrill(ledger, {.charts = 2}, 1);
  return ledger;
}

using AllRows = std::map<std::string, std::vector<std::vector<LedgerValue>>>;

AllRows RowsOf(SqliteDatabase& database) {
  AllRows all;
  SqliteStatement names = database.Prepare(
      "SELECT name FROM sqlite_master WHERE type = 'table' AND name <> "
      "'sqlite_sequence'");
  while (names.Step()) {
    auto& rows = all[std::string(names.Text(0))];
    SqliteStatement table = database.Prepare("SELECT * FROM " + std::string(names.Text(0)));
    while (table.Step()) {
      auto& row = rows.emplace_back();
      for (int i = 0; i < table.Columns(); ++i) row.push_back(table.Value(i));
    }
  }
  return all;
}

TEST(SqliteTransaction, EndsWhenItCannotBeCommitted) {
  SqliteDatabase database(":memory:", SqliteDatabase::Mode::kCreate);
  database.Execute(
      "PRAGMA foreign_keys = ON; CREATE TABLE Runs(Id INTEGER PRIMARY KEY); "
      "CREATE TABLE Orders(Run REFERENCES Runs DEFERRABLE INITIALLY DEFERRED)");
  {
    SqliteTransaction transaction(database);
    database.Execute("INSERT INTO Orders VALUES(7)");
    EXPECT_THROW(transaction.Commit(), LedgerError);
  }
  SqliteTransaction(database).Commit();
  EXPECT_EQ(database.FirstValue("SELECT count(*) FROM Orders"), LedgerValue(0.0));
}

// Whichever of its statements fails.
TEST(LedgerChanges, AreWholeOrNotDone) {
  const std::vector<LedgerTrade> closed(1);
  const LedgerWiped wiped{"Long", 1, 99, "", "", 90};
  LedgerSession again;
  again.number = 1;
  const LedgerPlan plan{.session = 1, .order = {}, .setup = "played"};
  const std::vector<LedgerValue> order(22, 1.0);
  const LedgerTrades kept{LedgerScope::Session(1), 2, 0, 0, 0, 0, {2}, closed};
  // With how many of its statements fail at least.
  const std::pair<int, std::function<void(LedgerConnection&)>> changes[] = {
      {3, [&](auto& to) { LedgerBeginRun(to, {}, again); }},
      {3, [](auto& to) { LedgerBeginRun(to, {}); }},
      {5, [&](auto& to) { LedgerInsertOrder(to, order, {}, MomentAt(13), &plan, &closed); }},
      {3, [&](auto& to) { LedgerNoteWiped(to, wiped, {}, MomentAt(13), &closed); }},
      {6, [](auto& to) { LedgerReveal(to, 1, kHidden); }},
      {3,
       [](auto& to) {
         LedgerMoveOrders(to, {{{2, 1}, "2007-01-13", "", 13, 1}});
       }},
      {3, [&](auto& to) { LedgerWriteTrades(to, kept); }},
      {2, [](auto& to) { LedgerForgetSession(to, 1); }},
      {2, [](auto& to) { LedgerDeleteCard(to, 1); }},
      {2, [](auto& to) { LedgerAddToDrill(to, {.charts = 2}, 1); }}};
  for (std::size_t i = 0; i < std::size(changes); ++i) {
    int failed = 0;
    for (const auto& [table, rows] : RowsOf(PlayedLedger().ForWriting())) {
      for (const std::string statement : {"INSERT", "UPDATE", "DELETE"}) {
        LedgerConnection ledger = PlayedLedger();
        const AllRows before = RowsOf(ledger.ForWriting());
        ledger.ForWriting().Execute("CREATE TEMP TRIGGER Fault BEFORE " + statement + " ON " +
                                    table + " BEGIN SELECT RAISE(ABORT, 'the disk is full'); END");
        try {
          changes[i].second(ledger);
        } catch (const LedgerError&) {
          ++failed;
          EXPECT_TRUE(RowsOf(ledger.ForWriting()) == before)
              << "change " << i << ", " << statement << " " << table;
        }
      }
    }
    EXPECT_GE(failed, changes[i].first) << "change " << i;
  }
}

// For the session being played and for an earlier one. Shown prices are twice the real ones.
TEST(LedgerReveal, WritesWhatWasHiddenAndDropsTheTradesOfThatSessionOnly) {
  for (const bool current : {true, false}) {
    LedgerConnection ledger = PlayedLedger();
    LedgerWriteMoment(ledger, MomentAt(-1));
    if (!current) LedgerRows{ledger}.Begin(1000);
    if (!current) LedgerRows{ledger}.Order(15, "Long", 1, 300, 1, 0, 1000);
    LedgerHidden hidden = kHidden;
    hidden.day = [](std::int32_t day) { return day - 7; };
    LedgerReveal(ledger, 1, hidden);
    using Rows = std::vector<std::vector<LedgerValue>>;
    const auto rows = [&](const char* select, LedgerScope scope = LedgerScope::Session(1)) {
      return LedgerQuery(ledger, select, scope).rows;
    };
    EXPECT_EQ(rows("select Symbol, MarketPrice From MyPortfolio"),
              (Rows{{"REAL", 100.0}, {"REAL", 120.0}, {"REAL", 130.0}, {"REAL", 140.0}}));
    EXPECT_EQ(rows("select Counted From Details where Run in Scope"),
              (Rows{{100.0}, {110.0}, {105.0}, {105.002}}));
    EXPECT_EQ(rows("select AvgPrice From Wiped"), Rows{{49.5}});
    EXPECT_EQ(LedgerPlansOfRun(ledger, 1).front().stop, 95);
    EXPECT_EQ(LedgerPlansOfRun(ledger, 1).front().target, 115);
    EXPECT_EQ(LedgerReadSession(ledger, 1).moment.date, 0) << "before the first bar";
    EXPECT_TRUE(LedgerReadTrades(ledger).empty()) << "they have masked prices";
    if (current) continue;
    EXPECT_EQ(rows("select Symbol, MarketPrice From MyPortfolio", kCurrentRun),
              (Rows{{"ABC", 300.0}}));
  }
}

TEST(LedgerMoveOrders, MovesTheOrdersWithTheirPlansAndNoOthers) {
  LedgerConnection ledger = PlayedLedger();
  for (const char* time : {"10:00:00", "11:00:00"}) {
    LedgerNoteWiped(ledger, {"Long", 1, 99, "2007-01-13", time, 90}, {1, 0, 13, 15});
  }
  LedgerWritePlan(ledger, {.session = 1, .order = {2, 1}, .stop_since = 12, .target_since = 13});
  LedgerMoveOrders(ledger, {{{2, 1}, "", "", 10, -2}, {{2, 0}, "2007-01-13", "11:00:00", 11, -2}});
  const auto bars = [&](const char* select) { return LedgerQuery(ledger, select).rows; };
  using Rows = std::vector<std::vector<LedgerValue>>;
  EXPECT_EQ(bars("select BarIndex, NewestShown From Details"),
            (Rows{{10.0, 10.0}, {10.0, 10.0}, {13.0, 13.0}, {14.0, 14.0}}));
  EXPECT_EQ(bars("select BarIndex, NewestShown From Wiped"),
            (Rows{{11.0, 11.0}, {13.0, 15.0}, {11.0, 13.0}}));
  const LedgerPlan plan = LedgerPlansOfRun(ledger, 2).front();
  EXPECT_TRUE(plan.stop_since == 10 && plan.target_since == 11);
  EXPECT_TRUE(LedgerReadTrades(ledger).empty()) << "computed again";
}

TEST(LedgerTrades, OfARunAndASessionOfOneNumberStayApart) {
  LedgerConnection ledger = PlayedLedger();
  ledger.ForWriting().Execute("UPDATE Details SET NewestShown = 40 WHERE Run = 1");
  EXPECT_EQ(LedgerScopes(ledger).at(0).newest_shown, 40) << "what was seen stays seen";
  LedgerTrade trade{.entry = {.bar = 0}, .exit = {.bar = 0}, .money = 5};
  for (const LedgerScope scope : {LedgerScope::Run(1), LedgerScope::Session(1)}) {
    trade.money = *trade.money + 1;
    LedgerWriteTrades(ledger, {.scope = scope, .closes = {1}, .trades = {trade, trade}});
  }
  for (const LedgerTrades& kept : LedgerReadTrades(ledger)) {
    ASSERT_EQ(kept.trades.size(), 2U);
    EXPECT_EQ(kept.trades[1].money, kept.scope == LedgerScope::Run(1) ? 6 : 7);
    EXPECT_EQ(kept.trades[1].entry.bar, 0);
  }
}

TEST_F(LedgerTest, AFileOfAnotherProgramIsNotChanged) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"DROP TABLE MyPortfolio", "belongs to another program"},
      {"PRAGMA application_id = 7", "belongs to another program"},
      {"PRAGMA user_version = 99", "newer version"},
      {"CREATE TRIGGER t AFTER INSERT ON myportfolio BEGIN DELETE FROM Runs; END", "trigger \"t\""},
      {"CREATE UNIQUE INDEX i ON Details (Vat)", "unique index"},
      {"DROP TABLE Runs; CREATE TABLE Runs (Id)", "no such column"},
      {"DROP TABLE MyPortfolio; CREATE VIEW MyPortfolio AS WITH RECURSIVE n(i) AS (SELECT 1 UNION "
       "ALL SELECT i + 1 FROM n) SELECT i AS Profile FROM n",
       "MyPortfolio must be a table"}};
  for (const auto& [harm, why] : cases) {
    for (const bool crashed : {false, true}) {
      const ScratchFolder made;
      const ScratchFolder folder;
      Opened(made.Sub("l.mdb"));
      SqliteDatabase database(made.Sub("l.mdb"), SqliteDatabase::Mode::kCreate);
      database.Execute(harm);
      if (!crashed) database.Execute("PRAGMA wal_checkpoint(TRUNCATE)");
      for (const char* suffix : {"", "-wal", "-shm"}) {
        fs::copy_file(made.Sub("l.mdb") + suffix, folder.Sub("l.mdb") + suffix);
      }
      ExpectRefused(folder, why);
    }
  }
  for (const std::string& content :
       {std::string("not a database, but somebody's file, long enough to be read as one"),
        std::string("SQLite format 3\0", 16) + std::string(4000, 'x')}) {
    const ScratchFolder folder;
    std::ofstream(folder.Sub("l.mdb"), std::ios::binary) << content;
    ExpectRefused(folder, "l.mdb");
  }
  Opened(file);
  std::string damaged = ReadFile(file);
  damaged.replace(damaged.size() - 1024, 1024, 1024, 'x');
  const ScratchFolder broken;
  broken.Write("l.mdb", damaged);
  ExpectRefused(broken, "damaged");
  const ScratchFolder folder;
  fs::create_directory(folder.Sub("l.mdb"));
  ExpectRefused(folder, "folder");
}

}  // namespace
}  // namespace velumar
