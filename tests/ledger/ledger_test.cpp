#include "ledger/ledger.h"

#include <fstream>

#include "support/scratch_folder.h"

namespace velumar {
namespace {

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

TEST_F(LedgerTest, RowsOutliveTheProgram) {
  {
    LedgerConnection ledger = Connection();
    LedgerOpen(ledger, file);
    LedgerInsertOrder(ledger, Row("2007-01-25", "16:30:00", 0, 1), {});
  }
  LedgerConnection ledger = Connection();
  LedgerOpen(ledger, file);
  EXPECT_TRUE(ledger.CanWrite());
  EXPECT_EQ(LedgerQuery(ledger, "select * From MyPortfolio").rows.size(), 1U);
}

TEST_F(LedgerTest, AnOlderFileLearnsWhereHoldingsWereWiped) {
  SqliteDatabase(file, SqliteDatabase::Mode::kCreate)
      .Execute(
          "CREATE TABLE Wiped (Run INTEGER, Position TEXT, Held NUMERIC, AvgPrice NUMERIC, "
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

TEST_F(LedgerTest, ASecondProgramReadsButDoesNotWrite) {
  LedgerConnection first = Connection();
  LedgerOpen(first, file);
  LedgerInsertOrder(first, Row("2007-01-25", "16:30:00", 0, 1), {});
  LedgerConnection second = Connection();
  LedgerOpen(second, file);
  EXPECT_FALSE(second.CanWrite());
  EXPECT_THAT(second.WhyNot(), testing::HasSubstr("in use"));
  EXPECT_EQ(LedgerQuery(second, "select * From MyPortfolio").rows.size(), 1U);
  EXPECT_THROW(LedgerDeleteAll(second, kPortfolioTable), LedgerError);
  EXPECT_EQ(LedgerQuery(first, "select * From MyPortfolio").rows.size(), 1U);
}

TEST_F(LedgerTest, AFileThatIsNoLedgerIsKept) {
  for (const std::string& content :
       {std::string("not a database, but somebody's file, long enough to be read as one"),
        std::string("SQLite format 3\0", 16) + std::string(4000, 'x')}) {
    std::ofstream(file, std::ios::binary) << content;
    LedgerConnection ledger = Connection();
    LedgerOpen(ledger, file);
    EXPECT_FALSE(ledger.CanWrite());
    EXPECT_THAT(ledger.WhyNot(), testing::HasSubstr("Portfolio.mdb"));
    EXPECT_THROW(LedgerInsertOrder(ledger, Row("2007-01-25", "16:30:00", 0, 1), {}), LedgerError);
    std::ifstream in(file, std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), content);
  }
}

}  // namespace
}  // namespace velumar
