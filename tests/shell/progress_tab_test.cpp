#include "base/dates.h"
#include "progress/coach_report.h"
#include "support/whole_program.h"

namespace velumar {
namespace {

// A session with a long trade and a short one, and the progress on the screen.
struct ProgressTabTest : RunFixture {
  ProgressTabTest() {
    all->program.Start();
    all->Setup().Combo1.UserChoose(0);
    InPauseOf(120, [this] { all->Navigator().Image4.UserClick(); });
    all->Play(119);
    Trade(&Form3::imgLong, &Form3::imgOffsetLong);
    Trade(&Form3::ImgShort, &Form3::ImgOffsetShort);
    all->Panel().imgGraph.UserClick();
    Result().tabSheets.UserChoose(FrmResult::kProgressTab);
  }
  void Trade(PictureButton Form3::*entry, PictureButton Form3::*exit) {
    (all->Panel().*entry).UserClick();
    for (int step = 0; step < 3; ++step) all->Navigator().Image1.UserClick();
    (all->Panel().*exit).UserClick();
  }
  FrmResult& Result() { return all->windows.frmResult; }
  ProgressControls& Tab() { return Result().progress; }
  // A figure's texts in the columns of values, "2|-|2".
  std::string Figure(const std::string& name) {
    const Table::Rows& rows = Tab().lstFigures.Content();
    for (std::size_t row = 0; row < rows.count; ++row) {
      if (rows.text(row, 0) != name) continue;
      std::string texts = rows.text(row, 1);
      for (std::size_t i = 2; i < Tab().lstFigures.Columns().size(); ++i) {
        texts += "|" + rows.text(row, i);
      }
      return texts;
    }
    return "no such figure";
  }
};

TEST_F(ProgressTabTest, FiltersAndComparisonsChangeWhatIsShown) {
  EXPECT_TRUE(Tab().lstFigures.Visible());
  EXPECT_FALSE(Result().cbxRun.Visible()) << "it is over all of them";
  EXPECT_EQ(Figure("Trades"), "2|-|2");
  EXPECT_THAT(Tab().lstFindings.Lines().at(0), HasSubstr("Too few trades"));
  Tab().cbxOfSide.UserChoose(1);
  Tab().cbxCompare.UserChoose(1);
  EXPECT_EQ(Figure("Trades"), "1|-|1|-") << "the other one is compared";
  Tab().cbxOfBlind.UserChoose(1);
  EXPECT_EQ(Figure("Trades"), "0|-|2|-");
  EXPECT_EQ(Tab().pltProgress.Picture()->hint, "No closed trades");
  EXPECT_EQ(Tab().pltOther.Picture()->hint, "") << "the second group has its picture";
  Tab().cbxCompare.UserChoose(3);
  EXPECT_FALSE(Tab().pltOther.Visible());
  EXPECT_THAT(Tab().lstFindings.Lines().at(0), HasSubstr("Choose a session"));
  Tab().cbxCompare.UserChoose(0);
  Tab().cbxOfBlind.UserChoose(2);
  Tab().cbxOfSession.UserChoose(1);
  Tab().txtFromDay.UserType("2000-05-13");
  EXPECT_EQ(Figure("Trades"), "0|-|0") << "the long was entered days before";
  Tab().txtFromDay.UserType("20000501");
  Tab().cbxOfPeriod.UserChoose(1);
  EXPECT_EQ(Figure("Trades"), "1|-|1") << "played today";
  EXPECT_THAT(Tab().lstFindings.Lines().at(0), Not(HasSubstr("Choose"))) << "nothing is compared";
  Tab().cbxOfHour.UserChoose(0);
  Tab().cbxPicture.UserChoose(5);
  EXPECT_EQ(Tab().pltProgress.Picture()->hint, "Daily bars have no hours");
}

TEST_F(ProgressTabTest, TheTimeBeforeIsAsLongAndEndsTheDayBefore) {
  Tab().cbxCompare.UserChoose(2);
  EXPECT_THAT(Tab().lstFindings.Lines().at(0), HasSubstr("Choose a time"));
  const std::int32_t played = all->outside.clock.today;
  for (const auto& [days, trades] :
       {std::pair{6, "2|-|0|-"}, {7, "0|-|2|-"}, {13, "0|-|2|-"}, {14, "0|-|0|-"}}) {
    all->outside.clock.today = DaysLater(played, days);
    Tab().cbxOfPeriod.UserChoose(1);
    EXPECT_EQ(Figure("Trades"), trades) << days << " days later";
  }
}

TEST_F(ProgressTabTest, ANewSessionIsTheFirstOfTheList) {
  Tab().cbxOfSession.UserChoose(1);
  const std::string first = Tab().cbxOfSession.Text();
  all->desktop.Unload(Result());
  all->Navigator().Image5.UserClick();
  InPauseOf(120, [this] { all->Navigator().Image4.UserClick(); });
  all->Play(119);
  Trade(&Form3::imgLong, &Form3::imgOffsetLong);
  all->Panel().imgGraph.UserClick();
  Result().tabSheets.UserChoose(FrmResult::kProgressTab);
  EXPECT_EQ(Figure("Trades"), "3|-|3");
  Tab().cbxCompare.UserChoose(3);
  Tab().cbxOfSession.UserChoose(1);
  EXPECT_EQ(Figure("Trades"), "1|-|2|-");
  Tab().cbxOfSession.UserChoose(2);
  EXPECT_EQ(Tab().cbxOfSession.Text(), first);
  EXPECT_EQ(Figure("Trades"), "2|-|2");
  EXPECT_THAT(Tab().lstFindings.Lines().at(0), HasSubstr("No session was played before"));
}

TEST_F(ProgressTabTest, SaysHowFarALongComputationIs) {
  std::vector<std::string> said;
  all->outside.events.SetOnPending([&] {
    all->outside.events.Sleep(std::chrono::milliseconds(200));
    said.push_back(Tab().lstFindings.Lines().at(0));
  });
  Tab().cbxOfSide.UserChoose(0);
  ASSERT_GT(said.size(), 3U);
  EXPECT_EQ(said[0], "Computing ...");
  EXPECT_THAT(said,
              Contains(AllOf(StartsWith("Comparing with random traders ... "), EndsWith(" %"))));
}

TEST_F(ProgressTabTest, ExportsTheListedTradesInFull) {
  Tab().cbxOfSide.UserChoose(2);
  all->outside.files.answers = {scratch.Sub("trades.csv")};
  Result().cmdExport.UserClick();
  const std::string csv = scratch.Read("trades.csv");
  EXPECT_EQ(std::ranges::count(csv, '\n'), 2) << csv;
  EXPECT_THAT(csv, testing::StartsWith("session,run,symbol,"));
  EXPECT_THAT(
      csv,
      HasSubstr("\n1,,ABC,D,0,Short,1,2000-05-13 00:00:00,101,2000-05-16 00:00:00,99,3,,2,2000,,"
                "2140,-140,,6,6000,,1,3,3000,,2,0.88888"));
}

TEST_F(ProgressTabTest, ReportsTheListedTrades) {
  std::vector<std::string> saved;
  all->outside.printers.on_coach_report = [&](const CoachReport& report, const std::string& file) {
    saved.push_back(file + ": " + report.facts.at(0).second + ", " + report.facts.at(1).second);
    if (saved.size() == 2) throw std::runtime_error("the disk is full");
  };
  all->outside.files.answers = {"/data/r.pdf", "/full/r.html"};
  Tab().cbxOfSide.UserChoose(2);
  const std::vector<std::string> findings = Tab().lstFindings.Lines();
  Tab().cmdReport.UserClick();
  EXPECT_THAT(all->outside.boxes.shown.back(), HasSubstr("saved as "));
  Tab().cmdReport.UserClick();
  EXPECT_THAT(all->outside.boxes.shown.back(), HasSubstr("the disk is full"));
  EXPECT_EQ(saved.size(), 2U);
  EXPECT_THAT(saved, testing::Each(HasSubstr(": Side: short, 1")));
  EXPECT_EQ(Tab().lstFindings.Lines(), findings);
  Tab().cmdReport.UserClick();
  EXPECT_EQ(saved.size(), 2U) << "cancelled";
}

// The figures of a filter come before their intervals, which take longer.
TEST_F(ProgressTabTest, AReportIsComputedToItsEnd) {
  std::vector<std::vector<std::string>> findings;
  all->outside.printers.on_coach_report = [&](const CoachReport& report, const std::string&) {
    findings.push_back(report.findings);
  };
  all->outside.files.answers = {"/data/r.pdf", "/data/r.pdf"};
  bool asked = false;
  all->outside.events.SetOnPending([&] {
    if (!std::exchange(asked, true)) Tab().cmdReport.UserClick();
  });
  Tab().cbxOfSide.UserChoose(2);
  ASSERT_EQ(findings.size(), 1U);
  Tab().cmdReport.UserClick();
  EXPECT_EQ(findings.back(), findings.front());
}

TEST_F(ProgressTabTest, ALedgerThatCantBeReadLeavesTheTabBefore) {
  Result().tabSheets.UserChoose(FrmResult::kChartTab);
  all->desktop.Unload(Result());
  all->Panel().imgGraph.UserClick();
  LedgerClose(all->ledger);
  Result().tabSheets.UserChoose(FrmResult::kProgressTab);
  EXPECT_EQ(Result().tabSheets.Index(), FrmResult::kChartTab);
  EXPECT_TRUE(Result().MSChart1.Visible());
  EXPECT_FALSE(Tab().lstFigures.Visible());
}

}  // namespace
}  // namespace velumar
