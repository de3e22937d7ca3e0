#include "ledger/ledger.h"

#include <fstream>
#include <functional>

#include "support/scratch_folder.h"

namespace velumar {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;

constexpr bool kPosixFiles = fs::path::preferred_separator == '/';
// Every character in it means something in the address of a database.
constexpr const char* kOddName = kPosixFiles ? "a%20 ?#.mdb" : "a%20 #.mdb";

class LedgerTest : public testing::Test {
 protected:
  static LedgerConnection Connection() {
    return LedgerConnection([](std::string_view iso) { return "<" + std::string(iso) + ">"; });
  }
  static std::vector<LedgerValue> Row(const std::string& date, const std::string& time,
                                      double points, double portfolio,
                                      const std::string& symbol = "ABC") {
    std::vector<LedgerValue> row(22, LedgerValue(0.0));
    row[1] = symbol;
    row[2] = -1.0;
    row[3] = date;
    row[4] = time;
    row[6] = "Long";
    row[8] = 2.0;
    row[12] = points;
    row[19] = points;
    row[20] = 100.0;
    row[21] = portfolio;
    return row;
  }
  static void AddRow(LedgerConnection& ledger, double portfolio) {
    LedgerInsertOrder(ledger, Row("2007-01-25", "16:30:00", 0, portfolio), {});
  }
  static std::size_t Rows(LedgerConnection& ledger) {
    return LedgerQuery(ledger, "select * From MyPortfolio").rows.size();
  }
  // The ledger of a folder is neither read nor written, and not a byte beside it changes.
  static void ExpectRefused(const ScratchFolder& folder, const std::string& why) {
    const auto before = FilesOf(folder.Path().string());
    LedgerConnection ledger = Connection();
    LedgerOpen(ledger, folder.Sub("l.mdb"));
    EXPECT_THAT(ledger.WhyNot(), AllOf(HasSubstr(folder.Sub("l.mdb")), HasSubstr(why)));
    EXPECT_THROW(LedgerInsertOrder(ledger, Row("2007-01-25", "16:30:00", 0, 1), {}), LedgerError);
    EXPECT_THROW(Rows(ledger), LedgerError) << why;
    EXPECT_THROW(LedgerOpenToRead(ledger, folder.Sub("l.mdb")), LedgerError) << why;
    EXPECT_EQ(FilesOf(folder.Path().string()), before) << why;
  }
  ScratchFolder scratch;
  std::string file = scratch.Sub("Portfolio.mdb");
};

TEST_F(LedgerTest, TheSelectsOfTheResults) {
  LedgerConnection ledger = Connection();
  LedgerOpen(ledger, file);
  ASSERT_TRUE(ledger.CanWrite()) << ledger.WhyNot();
  LedgerInsertOrder(ledger, Row("2007-01-25", "16:30:00", 0, 1), {});
  LedgerInsertOrder(ledger, Row("2007-01-24", "10:00:00", 4, 2), {});
  LedgerInsertOrder(ledger, Row("2007-01-25", "16:30:00", 5, 3, "O'Neill"), {});
  const auto column = [&](const char* select, std::size_t place) {
    std::vector<LedgerValue> values;
    for (const auto& row : LedgerQuery(ledger, select).rows) values.push_back(row[place]);
    return values;
  };
  using Values = std::vector<LedgerValue>;
  EXPECT_EQ(column("select actdate, acttime, Portfolio From MyPortfolio order by actdate desc, "
                   "acttime desc ",
                   2),
            (Values{3.0, 1.0, 2.0}));
  EXPECT_EQ(
      column("select actdate, acttime From MyPortfolio order by actdate asc, acttime asc ", 0),
      (Values{"<2007-01-24>", "<2007-01-25>", "<2007-01-25>"}));
  EXPECT_EQ(
      column("select format(actdate & ' ' & acttime ,'dd-mmm-yy HH:MM')  as ActionDate, Portfolio  "
             "From MyPortfolio  where balancepoint <> 0 order by actdate ",
             0),
      (Values{"24-Jan-07 10:00", "25-Jan-07 16:30"}));
  EXPECT_EQ(column("select symbol , SymbolInterval From MyPortfolio", 0),
            (Values{"ABC", "ABC", "O'Neill"}));
  const LedgerRecordset sums = LedgerQuery(
      ledger, "select sum(LAmount), sum(SAmount), sum(LRealised), sum(SRealised) From MyPortfolio");
  EXPECT_EQ(sums.rows[0], (Values{6.0, 0.0, 9.0, 0.0}));
  EXPECT_EQ(column("select sum(Commission) From MyPortfolio where LAmount > 0 ", 0), Values{300.0});
  EXPECT_EQ(column("select sum(Commission) From MyPortfolio where SAmount > 0 ", 0),
            Values{std::monostate()});
}

TEST_F(LedgerTest, EmptyingArchivesTheRowsOfTheirRun) {
  LedgerConnection ledger = Connection();
  LedgerOpen(ledger, file);
  const LedgerRun run{"/data", "ABC", "D", "20070101", "0", "futures", 2e6, 5e4, 1000};
  LedgerBeginRun(ledger, run);
  LedgerInsertOrder(ledger, Row("2007-01-25", "16:30:00", 0, 1), {2, 70, 14, 20});
  LedgerDeleteAll(ledger, kPortfolioTable);
  LedgerBeginRun(ledger, run);
  LedgerDeleteAll(ledger, kPortfolioTable);
  EXPECT_TRUE(LedgerQuery(ledger, "select * From MyPortfolio").Empty());
  const LedgerRecordset archive =
      LedgerQuery(ledger,
                  "select Archive.Run, Archive.Portfolio, Details.NewestShown From Archive "
                  "join Details on Details.Run = Archive.Run and Details.Place = Archive.Place");
  ASSERT_EQ(archive.rows.size(), 1U);
  EXPECT_EQ(archive.rows[0], (std::vector<LedgerValue>{1.0, 1.0, 20.0}));
}

TEST_F(LedgerTest, AnOlderFileLearnsWhereHoldingsWereWiped) {
  {
    LedgerConnection ledger = Connection();
    LedgerOpen(ledger, file);
  }
  SqliteDatabase(file, SqliteDatabase::Mode::kCreate)
      .Execute(
          "DROP TABLE Wiped; CREATE TABLE Wiped (Run INTEGER, Position TEXT, Held NUMERIC, "
          "AvgPrice NUMERIC, "
          "Quantity NUMERIC, BarIndex INTEGER, NewestShown INTEGER); "
          "INSERT INTO Wiped (Held) VALUES (1)");
  for (double held = 2; held <= 3; ++held) {
    LedgerConnection ledger = Connection();
    LedgerOpen(ledger, file);
    LedgerInsertOrder(ledger, Row("2007-01-25", "16:30:00", 0, 1), {});
    LedgerNoteWiped(ledger, {"Offset Long", held, 99, "2007-01-26", "16:30:00", 98}, {9, 0, 5, 6});
  }
  LedgerConnection ledger = Connection();
  LedgerOpenToRead(ledger, file);
  const LedgerRecordset wiped = LedgerQuery(ledger, "select Place, Held, BarDate From Wiped");
  using Values = std::vector<LedgerValue>;
  EXPECT_EQ(wiped.rows, (std::vector<Values>{
                            {{}, 1.0, {}}, {1.0, 2.0, "2007-01-26"}, {2.0, 3.0, "2007-01-26"}}));
}

TEST_F(LedgerTest, OneProgramKeepsALedgerWhicheverLinksLeadToIt) {
  fs::create_directory(scratch.Path() / "deep");
  std::error_code refused;
  fs::create_symlink("../deep/real.mdb", scratch.Path() / "deep/link.mdb", refused);
  if (refused) GTEST_SKIP() << "no links here: " << refused.message();
  fs::create_directory_symlink("deep", scratch.Path() / "folder");
  fs::create_symlink("folder/link.mdb", file);  // leads to no file yet
  LedgerConnection first = Connection();
  LedgerOpen(first, file);
  ASSERT_TRUE(first.CanWrite()) << first.WhyNot();
  AddRow(first, 1);
  for (const char* name : {"Portfolio.mdb", "folder/real.mdb", "deep/../deep/link.mdb"}) {
    LedgerConnection second = Connection();
    LedgerOpen(second, scratch.Sub(name));
    EXPECT_THAT(second.WhyNot(), HasSubstr("in use"));
    EXPECT_EQ(Rows(second), 1U);
    EXPECT_THROW(LedgerDeleteAll(second, kPortfolioTable), LedgerError);
    AddRow(first, 2);
    EXPECT_EQ(Rows(second), 2U);
    LedgerDeleteAll(first, kPortfolioTable);
    AddRow(first, 1);
  }
  LedgerClose(first);
  // A log under one name is missed under the other.
  fs::create_hard_link(scratch.Path() / "deep/real.mdb", scratch.Path() / "second.mdb");
  LedgerOpen(first, scratch.Sub("second.mdb"));
  EXPECT_THAT(first.WhyNot(), HasSubstr("hard link"));
  EXPECT_EQ(Rows(first), 1U);
}

TEST_F(LedgerTest, ARowIsRefusedOnceItWouldBeLost) {
  if (!kPosixFiles) GTEST_SKIP() << "the system lets nobody move or delete an open ledger";
  const std::string moved = scratch.Sub("moved.mdb");
  file = scratch.Sub("home/Portfolio.mdb");
  struct Case {
    const char* what;
    std::function<void()> harm;
    std::string kept_in;  // where the rows are afterwards
  };
  const auto replace = [&](const std::string& suffix) {
    fs::rename(file + suffix, scratch.Sub("aside"));
    std::ofstream(file + suffix) << "another file";
  };
  const std::vector<Case> cases = {
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
      {"log cut", [&] { fs::resize_file(file + "-wal", 0); }, ""}};
  for (const Case& one : cases) {
    for (const auto& entry : fs::directory_iterator(scratch.Path())) fs::remove_all(entry);
    fs::create_directory(scratch.Sub("home"));
    LedgerConnection ledger = Connection();
    LedgerOpen(ledger, file);
    AddRow(ledger, 1);
    AddRow(ledger, 2);
    one.harm();
    try {
      AddRow(ledger, 3);
      ADD_FAILURE() << one.what << ": the row was taken";
    } catch (const LedgerError& error) {
      EXPECT_THAT(error.what(), HasSubstr("home/Portfolio.mdb")) << one.what;
    }
    EXPECT_THROW(LedgerBeginRun(ledger, {}), LedgerError) << one.what;
    LedgerClose(ledger);
    if (one.kept_in.empty()) continue;
    LedgerOpenToRead(ledger, one.kept_in);
    EXPECT_EQ(Rows(ledger), 2U) << one.what;
    LedgerOpen(ledger, one.kept_in);
    EXPECT_NO_THROW(AddRow(ledger, 3)) << one.what << ledger.WhyNot();
  }
}

TEST_F(LedgerTest, ALogEmptiedInOrderKeepsNoRowOut) {
  LedgerConnection ledger = Connection();
  LedgerOpen(ledger, file);
  AddRow(ledger, 1);
  SqliteDatabase(file, SqliteDatabase::Mode::kCreate).Execute("PRAGMA wal_checkpoint(TRUNCATE)");
  for (int i = 2; i <= 300; ++i) AddRow(ledger, i);
  EXPECT_EQ(Rows(ledger), 300U);
  EXPECT_LT(fs::file_size(file + "-wal"), 5'000'000U) << "it is emptied on the way, too";
}

// The log holds rows of a file that was moved without it; a new file would delete it.
TEST_F(LedgerTest, ALogWithoutItsFileIsKept) {
  LedgerConnection ledger = Connection();
  LedgerOpen(ledger, file);
  AddRow(ledger, 1);
  const std::string copy = scratch.Sub("copy.mdb");
  fs::copy_file(file + "-wal", copy + "-wal");
  LedgerConnection other = Connection();
  LedgerOpen(other, copy);
  EXPECT_THAT(other.WhyNot(), HasSubstr("copy.mdb-wal"));
  EXPECT_FALSE(fs::exists(copy));
  EXPECT_TRUE(fs::exists(copy + "-wal"));
}

// After a clean end, after a death, and after one whose files were copied without their index:
// reading neither needs to write nor does it.
TEST_F(LedgerTest, ReadingLeavesNoTrace) {
  LedgerConnection ledger = Connection();
  LedgerOpen(ledger, file);
  AddRow(ledger, 1);
  for (const auto& [folder, suffixes] :
       {std::pair("died", std::vector<std::string>{"", "-wal", "-shm"}),
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
  for (const std::string folder : {"died", "bare", "closed"}) {
    const auto before = FilesOf(scratch.Sub(folder));
    for (int i = 0; i < 2; ++i) {
      LedgerConnection reader = Connection();
      LedgerOpenToRead(reader, scratch.Sub(folder + "/" + kOddName));
      EXPECT_EQ(Rows(reader), 1U) << folder;
      EXPECT_FALSE(reader.CanWrite());
    }
    EXPECT_EQ(FilesOf(scratch.Sub(folder)), before) << folder;
    LedgerConnection writer = Connection();
    LedgerOpen(writer, scratch.Sub(folder + "/" + kOddName));
    AddRow(writer, 2);
    EXPECT_EQ(Rows(writer), 2U) << folder;
  }
}

TEST_F(LedgerTest, WhoReadsSeesWhatIsWrittenLater) {
  LedgerConnection writer = Connection();
  LedgerOpen(writer, file);
  LedgerClose(writer);
  LedgerConnection reader = Connection();
  LedgerOpenToRead(reader, file);
  EXPECT_EQ(Rows(reader), 0U);
  LedgerOpen(writer, file);
  AddRow(writer, 1);
  EXPECT_EQ(Rows(reader), 1U);
  AddRow(writer, 2);
  EXPECT_EQ(Rows(reader), 2U);
  LedgerClose(writer);
  EXPECT_EQ(Rows(reader), 2U);
}

TEST_F(LedgerTest, AFileThatIsNotOursIsLeftAsItIs) {
  const std::string endless =
      "VIEW MyPortfolio AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT ";
  std::string columns;
  for (const std::string& column : PortfolioColumns()) {
    columns += (columns.empty() ? "i AS " : ", i AS ") + column;
  }
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"DROP TABLE MyPortfolio", "another program's SQLite file"},
      {"PRAGMA application_id = 7", "another program's SQLite file"},
      {"PRAGMA user_version = 1", "newer version"},
      {"CREATE TRIGGER t AFTER INSERT ON myportfolio BEGIN DELETE FROM Runs; END", "trigger \"t\""},
      {"CREATE UNIQUE INDEX i ON Details (Vat)", "unique index"},
      {"DROP TABLE Runs; CREATE VIEW Runs AS SELECT 1 AS Id", "Runs must be a table"},
      {"DROP TABLE Runs; CREATE TABLE Runs (Id)", "no such column"},
      {"DROP TABLE MyPortfolio; CREATE " + endless + columns + " FROM n", "must be a table"}};
  for (const auto& [harm, why] : cases) {
    for (const bool dies : {false, true}) {
      const ScratchFolder made;
      const ScratchFolder folder;
      {
        LedgerConnection ledger = Connection();
        LedgerOpen(ledger, made.Sub("l.mdb"));
      }
      SqliteDatabase database(made.Sub("l.mdb"), SqliteDatabase::Mode::kCreate);
      database.Execute(harm);
      if (!dies) database.Execute("PRAGMA wal_checkpoint(TRUNCATE)");
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
  const ScratchFolder folder;
  fs::create_directory(folder.Sub("l.mdb"));
  ExpectRefused(folder, "folder");
}

}  // namespace
}  // namespace velumar
