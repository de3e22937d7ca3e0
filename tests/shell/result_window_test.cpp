#include "support/ledger_rows.h"
#include "support/whole_program.h"

namespace velumar {
namespace {

struct ResultWindowTest : testing::Test {
  ResultWindowTest() {
    LedgerOpen(all.ledger, ":memory:");
    rows.TradeTwoRuns();
    all.windows.form1.Show();
  }
  FrmResult& Open() {
    all.windows.form1.imgGraph.UserClick();
    form.MSChart1.save = [this](const std::string& file) {
      if (file.starts_with("/nowhere"))
        throw std::runtime_error(file + ": there is no such folder");
      saved.push_back(file);
    };
    form.MSChart1.endings = {"bmp", "pdf"};
    return form;
  }
  // The points of the orders as they are listed.
  std::string Points() {
    std::string texts;
    for (std::size_t row = 0; row < form.lstOrders.Content().count; ++row) {
      texts += form.lstOrders.Content().text(row, 9) + " ";
    }
    return texts;
  }
  std::vector<std::string>& Boxes() { return all.outside.boxes.shown; }

  WholeProgram all{"/nowhere"};
  LedgerRows rows{all.ledger};
  FrmResult& form = all.windows.frmResult;
  std::vector<std::string> saved;
};

TEST_F(ResultWindowTest, LoadsFiguresAndChartOnceAndAgainWhenItWasClosed) {
  Open();
  EXPECT_TRUE(form.Visible() && form.Topmost());
  EXPECT_EQ(form.lblPortfolio.Text(), "995,000");
  EXPECT_THAT(form.MSChart1.Content().rows->values, ElementsAre(998000, 1000000, 995000));
  rows.Order(19, "Long", 1, 60, 1, 0, 990000);
  all.windows.form1.imgGraph.UserClick();
  EXPECT_EQ(form.lblPortfolio.Text(), "995,000") << "it is open: shown again, not read again";

  form.Combo1.UserChoose(3);
  all.outside.colours.failure = "no dialog";
  form.picCommonDialog.UserClick();
  EXPECT_THAT(Boxes(), ElementsAre(HasSubstr("no dialog")));
  all.outside.colours.failure.clear();
  all.outside.colours.answer = kRed;
  form.picCommonDialog.UserClick();
  const ChartContent& chart = form.MSChart1.Content();
  for (const int button : {FrmResult::kShadow, FrmResult::kEffect})
    form.Toolbar1.UserButton(button);
  EXPECT_TRUE(chart.type == kChart2DArea && chart.shadow && chart.white_wall);
  form.Toolbar1.UserButton(FrmResult::kNoShadow);
  EXPECT_FALSE(chart.shadow);
  form.Toolbar1.UserButton(FrmResult::kDefault);
  EXPECT_TRUE(chart.type == kChart2DLine && !chart.white_wall && chart.series == kRed);

  form.Toolbar1.UserButton(FrmResult::kClose);
  EXPECT_FALSE(form.Loaded());
  LedgerBeginRun(all.ledger, {});
  Open();
  EXPECT_EQ(form.lblPortfolio.Text(), "") << "before the first order";
  EXPECT_EQ(form.MSChart1.Content().rows->hint, "No closed trades yet");
  EXPECT_NE(form.MSChart1.Content().series, kRed);
}

TEST_F(ResultWindowTest, ALedgerThatFailsLeavesWhatIsShown) {
  Open();
  LedgerClose(all.ledger);
  form.cbxRun.UserChoose(2);
  EXPECT_EQ(form.cbxRun.Index(), 0);
  form.tabSheets.UserChoose(FrmResult::kOrdersTab);
  EXPECT_EQ(form.tabSheets.Index(), FrmResult::kChartTab);
  EXPECT_EQ(form.lblPortfolio.Text(), "995,000");
  form.Toolbar1.UserButton(FrmResult::kClose);
  Open();
  EXPECT_EQ(form.lblPortfolio.Text(), "");
  EXPECT_FALSE(form.cbxRun.Enabled());
  EXPECT_EQ(Boxes().size(), 3) << "each says why";
}

TEST_F(ResultWindowTest, TabsAndChartFollowTheChosenRun) {
  Open();
  form.tabSheets.UserChoose(FrmResult::kOrdersTab);
  EXPECT_EQ(Points(), "- -2.00 2.00 -5.00 ");
  for (int i = 0; i < 2; ++i) form.lstOrders.UserHeader(9);  // descending
  EXPECT_EQ(Points(), "2.00 -2.00 -5.00 - ");
  form.lstOrders.UserSelect({1});
  form.cmdCopy.UserClick();
  EXPECT_THAT(all.outside.clipboard.text, HasSubstr("Note\n2\t2007-01-16\t16:30:00\tABC"));

  form.cbxRun.UserChoose(2);
  EXPECT_EQ(Points(), "4.00 3.00 - ") << "sorted as before";
  EXPECT_EQ(form.lblPortfolio.Text(), "2,004,000") << "after the latest bar";
  EXPECT_EQ(form.lblShort.Text(), "0") << "no figure of another run";
  EXPECT_THAT(form.MSChart1.Content().rows->values, ElementsAre(2007000, 2004000));
  EXPECT_EQ(form.lstOrders.Content().tip(1), "look-ahead");
  form.tabSheets.UserChoose(FrmResult::kStatisticsTab);
  EXPECT_EQ(form.lstStatistics.Content().text(0, 1), "2");

  const ScratchFolder folder;
  const std::string file = folder.Sub("it's.csv");
  form.tabSheets.UserChoose(FrmResult::kOrdersTab);
  all.outside.files.answers = {file, "/nowhere/orders.csv"};
  for (int i = 0; i < 3; ++i) form.cmdExport.UserClick();  // the last one is cancelled
  EXPECT_THAT(ReadFile(file), HasSubstr("\n2,2007-01-12,16:30:00,ABC,Offset Long,1,104,1,"));
  EXPECT_THAT(Boxes(), ElementsAre(HasSubstr("Exporting failed.\n/nowhere/orders.csv")));
}

TEST_F(ResultWindowTest, ShowsTheWholeSessionAndTheFiguresOfItsNewestRun) {
  rows.Play(995000);
  rows.Order(19, "Long", 1, 60, 1, 0, 995000);
  Open();
  form.tabSheets.UserChoose(FrmResult::kOrdersTab);
  EXPECT_EQ(Points(), "- -2.00 2.00 -5.00 - ");
  EXPECT_EQ(form.lblLong.Text() + form.lblShort.Text(), "10");
  EXPECT_THAT(form.lblFiguresOf.Text(), HasSubstr("newest run"));
  form.cbxRun.UserChoose(2);
  EXPECT_EQ(Points(), "- -2.00 2.00 -5.00 ");
  EXPECT_EQ(form.lblLong.Text() + form.lblShort.Text(), "03");
  EXPECT_EQ(form.lblFiguresOf.Text(), "");
  form.cbxRun.UserChoose(3);
  EXPECT_EQ(Points(), "- 4.00 3.00 ");
  EXPECT_THAT(form.lblFiguresOf.Text(), HasSubstr("whole session"));
}

// Two trades are closed while the window shows the chart of a run that had closed none. Then "Play"
// begins a run: all of the window goes on showing the last one.
TEST_F(ResultWindowTest, AnOpenWindowFollowsItsOwnRunOnly) {
  rows.Begin(1000);
  rows.Order(19, "Long", 2, 60, 2, 0, 1000);
  Open();
  EXPECT_EQ(form.MSChart1.Content().rows->hint, "No closed trades yet");
  rows.Order(20, "Offset Long", 1, 61, 1, 1, 2000);
  rows.Order(21, "Offset Long", 1, 62, 0, 2, 4000);
  form.tabSheets.UserChoose(FrmResult::kStatisticsTab);
  EXPECT_EQ(form.lstStatistics.Content().text(0, 1), "2");
  EXPECT_THAT(form.MSChart1.Content().rows->values, ElementsAre(2000, 4000));
  EXPECT_EQ(form.MSChart1.Content().rows->hint, "");
  EXPECT_EQ(form.lblPortfolio.Text(), "4,000");

  rows.Begin(500);
  rows.Order(22, "Long", 1, 60, 1, 0, 500);
  form.tabSheets.UserChoose(FrmResult::kOrdersTab);
  EXPECT_EQ(Points(), "- 1.00 2.00 ");
  form.cbxRun.UserChoose(2);
  form.cbxRun.UserChoose(0);
  EXPECT_EQ(form.lblPortfolio.Text(), "4,000");
  EXPECT_EQ(form.lstOrders.Content().count, 3U);
  all.outside.files.answers = {"/tmp/r.pdf"};
  form.Toolbar1.UserButton(FrmResult::kReport);
  EXPECT_THAT(all.outside.printers.printed, ElementsAre("session 3:/tmp/r.pdf"));
  EXPECT_EQ(all.outside.files.suggested, "Report");
  form.cbxRun.UserChoose(2);  // the next window begins with the current run even so
  form.Toolbar1.UserButton(FrmResult::kClose);
  Open();
  EXPECT_EQ(form.lblPortfolio.Text(), "500");
}

TEST_F(ResultWindowTest, SavesPrintsAndRecordsWhatWasSaved) {
  Open();
  all.outside.files.answers = {"/tmp/it's.bmp", "/nowhere/x.bmp"};
  for (int i = 0; i < 3; ++i) form.Toolbar1.UserButton(FrmResult::kSaveAs);
  EXPECT_EQ(all.outside.files.offered.front().title, "Pictures (*.bmp)");
  EXPECT_THAT(saved, ElementsAre("/tmp/it's.bmp"));
  EXPECT_EQ(LedgerQuery(all.ledger, "select * From Portfolio_Profile").rows,
            (std::vector<std::vector<LedgerValue>>{{"/tmp/it's.bmp", "01/01/06", "01/01/07"}}));
  EXPECT_THAT(Boxes(), ElementsAre(HasSubstr("Saving the chart failed.\n/nowhere/x.bmp"),
                                   HasSubstr("Cancel")));

  form.cbxRun.UserChoose(2);
  all.outside.files.answers = {"/tmp/r.pdf", "/tmp/s.pdf"};
  form.Toolbar1.UserButton(FrmResult::kReport);
  all.outside.printers.any = true;
  all.outside.boxes.answers = {0, 1, 2};
  for (int i = 0; i < 3; ++i) form.Toolbar1.UserButton(FrmResult::kReport);
  EXPECT_THAT(all.outside.printers.printed,
              ElementsAre("session 1:/tmp/r.pdf", "session 1:", "session 1:/tmp/s.pdf"));

  form.lnkScore.UserClick();
  EXPECT_TRUE(all.windows.frmScore.Visible());

  LedgerClose(all.ledger);
  all.outside.files.answers = {"/tmp/kept.bmp"};
  form.Toolbar1.UserButton(FrmResult::kSaveAs);
  EXPECT_EQ(saved.back(), "/tmp/kept.bmp");
  EXPECT_THAT(Boxes().back(),
              HasSubstr("The chart was saved, but that could not be recorded in the ledger.\n"));
}

using PreviewTest = ResultWindowTest;

TEST_F(PreviewTest, PrintsTheChartItselfAndOpensItAgain) {
  Open();
  form.Toolbar1.UserButton(FrmResult::kPreview);
  Graph2& preview = all.windows.graph2;
  ChartPicture& picture = preview.Picture2;
  std::vector<PrintJob> jobs;
  picture.print = [&](const PrintJob& job) { jobs.push_back(job); };
  preview.op1.UserEntry(Graph2::kOrientation, 0);
  preview.op1.UserEntry(Graph2::kPrintQuality, 2);
  preview.op1.UserEntry(Graph2::kNoOfCopies, 2);
  EXPECT_FALSE(preview.op1.Ticked(Graph2::kNoOfCopies, 0));

  preview.cmdPrint.UserClick();  // no printer, and no file was chosen
  all.outside.printers.any = true;
  preview.cmdPrint.UserClick();
  ASSERT_EQ(jobs.size(), 1);
  EXPECT_TRUE(jobs[0].orientation == 2 && jobs[0].quality == -4 && jobs[0].copies == 3);
  EXPECT_THAT(Boxes(), ElementsAre("bbb"));
  EXPECT_EQ(preview.Picture1.Width(), 17000) << "A4 on its side at full size";

  form.Toolbar1.UserButton(FrmResult::kClose);
  preview.HScroll1.UserMove(3);
  EXPECT_FALSE(form.Loaded());
  preview.chtscroll1.UserMove(50);
  EXPECT_TRUE(form.Loaded() && !form.Visible()) << "it comes back hidden";
  EXPECT_EQ(picture.Width(), 21150);
  rows.Order(19, "Long", 1, 60, 1, 0, 985000);
  Open();
  EXPECT_EQ(form.lblPortfolio.Text(), "985,000") << "read again";
  form.Toolbar1.UserButton(FrmResult::kClose);
  preview.chtscroll1.UserMove(60);
  preview.cmdcancel.UserClick();
  EXPECT_FALSE(preview.Loaded());
  EXPECT_FALSE(form.Loaded()) << "the next one reads the ledger anew";
  Open();
  form.Toolbar1.UserButton(FrmResult::kPreview);
  picture.print = [&](const PrintJob& job) { jobs.push_back(job); };
  preview.cmdPrint.UserClick();
  EXPECT_TRUE(jobs.back().orientation == 1 && jobs.back().copies == 1) << "a new page";
}

}  // namespace
}  // namespace velumar
