#include <fstream>

#include "results/journal_list.h"
#include "results/journal_page.h"
#include "support/ledger_rows.h"
#include "support/matchers.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

// A session with a trade in two parts that won and lost, a loss without a plan, and an open one.
struct JournalTest : testing::Test, LedgerRows {
  JournalTest() : LedgerRows{connection} {
    LedgerOpen(ledger, scratch.Sub("Portfolio.mdb"));
    Begin(2000000);
    Order(10, "Long", 2, 100, 2, 0, 2000000);
    LedgerWritePlan(ledger, {.session = session,
                             .order = {1, 1},
                             .stop = 99,
                             .setup = "breakout",
                             .confidence = 4,
                             .reasons = "over the <high>",
                             .risk = 2000});
    Order(12, "Offset Long", 1, 104, 1, 4, 2004000);
    Play(2004000);
    Order(13, "Offset Long", 1, 99, 0, -1, 2003000);
    Order(14, "Short", 1, 100, 1, 0, 2003000);
    Order(15, "Offset Short", 1, 100.31, 0, -0.31, 2000000, 16);
    Order(17, "Short", 3, 101, 3, 0, 2000000);
  }
  void Note(LedgerOrderKey key, const std::string& text, const std::string& day) const {
    LedgerWriteNote(ledger, {session, key, text, day + " 10:12:13"});
  }
  Journal Read() { return ReadJournal(ledger, LedgerScope::Session(session)); }
  // "0 2", the numbers of the trades that pass.
  std::string Listed(const JournalFilter& filter) {
    std::string numbers;
    const Journal journal = Read();
    for (std::size_t i = 0; i < journal.trades.size(); ++i) {
      if (Passes(journal.trades[i], filter)) numbers += std::to_string(i);
    }
    return numbers;
  }

  ScratchFolder scratch;
  LedgerConnection connection{[](std::string_view date) { return std::string(date); }};
};

TEST_F(JournalTest, TradesAreFoundByWhatTheTraderRemembers) {
  Note({1, 1}, "Sold half too early", "2026-11-27");
  const std::pair<JournalFilter, std::string> cases[] = {
      {{}, "0123"},
      {{.setup = "breakout"}, "01"},
      {{.is_long = false}, "23"},
      {{.outcome = Outcome::kWon}, "0"},
      {{.outcome = Outcome::kLost}, "12"},
      {{.outcome = Outcome::kOpen}, "3"},
      {{.text = "too EARLY"}, "01"},
      {{.text = "<high>"}, "01"},
      {{.text = "2007-01-15"}, "2"},
      {{.setup = "breakout", .outcome = Outcome::kLost}, "1"},
      {{.text = "nothing"}, ""}};
  for (const auto& [filter, listed] : cases) EXPECT_EQ(Listed(filter), listed) << filter.text;
}

TEST_F(JournalTest, AnEarlierNoteStaysAndTheNewestCounts) {
  Note({1, 1}, "first thought", "2026-11-27");
  Note({}, "a slow day", "2026-11-27");
  Note({1, 1}, "second thought", "2026-11-28");
  const Journal journal = Read();
  EXPECT_EQ(journal.trades[1].Note(), "second thought") << "of both parts";
  EXPECT_EQ(NoteDate(ledger, journal.trades[0].notes), "2026-11-28 10:12 UTC, changed");
  EXPECT_EQ(NoteDate(ledger, journal.notes), "2026-11-27 10:12 UTC");
  const std::string page = JournalPage(ledger, ReadJournals(ledger));
  EXPECT_THAT(page, HasSubstr("first thought"));
  EXPECT_THAT(page, HasSubstr("a slow day"));
}

TEST_F(JournalTest, EachRowOfThePageLeadsToItsTradeInTheSecondSessionToo) {
  Begin(777);
  Order(18, "Long", 1, 100, 1, 0, 777, 19);
  Order(20, "Offset Long", 1, 101, 0, 1, 777);
  const std::vector<Journal> journals = ReadJournals(ledger);
  EXPECT_TRUE(journals.at(0).trades.at(0).look_ahead) << "at the entry only";
  const std::string page = JournalPage(ledger, journals);
  std::size_t link = 0;
  std::size_t section = 0;
  for (int trade = 1; trade <= 5; ++trade) {
    const std::string name = "trade-" + std::to_string(trade) + "\"";
    link = page.find("href=\"#" + name, link);
    section = page.find("id=\"" + name, section);
    EXPECT_TRUE(link != std::string::npos && section != std::string::npos) << trade;
  }
}

TEST_F(JournalTest, ExportsHaveWhatWasPlannedAndSeen) {
  Order(18, "Long", 1, 102, 1, 0, 2000000);
  std::filesystem::create_directory(scratch / "Journal");
  std::ofstream(scratch / "Journal" / "Portfolio-1-1.png") << "Man";
  std::ofstream(scratch / "Journal" / "Portfolio-2-1.png") << "Ma";
  Note({2, 2}, "=SUM(A1:A9)", "2026-11-27");
  Begin(777);
  const std::vector<Journal> journals = ReadJournals(ledger);
  ASSERT_EQ(journals.size(), 1U) << "once, and no empty one";
  const std::string csv = JournalCsv(journals);
  EXPECT_THAT(
      csv,
      HasSubstr("1,ABC,D,Long,1,2007-01-10 16:30:00,100,2007-01-12 16:30:00,104,4,4000,4,won,99,,"
                "breakout,4,1000,over the <high>,,,,"));
  EXPECT_THAT(csv, HasSubstr(",99,-1,-1000,-1,lost,99,,breakout,4,1000,")) << "half of the risk";
  EXPECT_THAT(csv, HasSubstr(",100.31,-0.31,-310,,lost")) << "as decimals";
  EXPECT_THAT(csv, HasSubstr(",'=SUM(A1:A9),")) << "for a spreadsheet";
  EXPECT_THAT(csv, HasSubstr("Short,3,2007-01-17 16:30:00,101,,,,,,open"));
  EXPECT_THAT(csv, HasSubstr("Long,1,2007-01-18 16:30:00,102,,,,,,open")) << "both sides";
  const std::string page = JournalPage(ledger, journals);
  EXPECT_THAT(page, HasSubstr("over the &lt;high&gt;"));
  EXPECT_THAT(page, testing::Not(HasSubstr("<high>")));
  EXPECT_THAT(page, HasSubstr("data:image/png;base64,TWFu\""));
  EXPECT_THAT(page, HasSubstr("data:image/png;base64,TWE=\""));
  EXPECT_TRUE(journals[0].trades[2].look_ahead);
  EXPECT_THAT(page, HasSubstr("class=\"n won\">4"));
  EXPECT_THAT(page, HasSubstr("class=\"n lost\">-1"));
  EXPECT_THAT(page, HasSubstr("class=\"lost\">Result -310.00, look-ahead<"));
  EXPECT_THAT(page, testing::Not(HasSubstr("1.00 R, look-ahead")));
}

}  // namespace
}  // namespace velumar
