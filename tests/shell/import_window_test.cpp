#include "shell/import_window.h"

#include <map>

#include "marketdata/interval.h"
#include "shell/batch_texts.h"
#include "support/session_fixture.h"

namespace velumar {
namespace {

using testing::Not;
using testing::Pair;

// Knows files by their names, and writes what it imports into a list.
class MadeUpFiles : public PriceImporter {
 public:
  Understanding Understand(const std::filesystem::path& file, const ImportOptions& options,
                           const ImportProgress& progress) override {
    const std::string name = file.stem().string();
    read.push_back(name);
    remembered[name] = options.remember;
    Run(during_read, name, progress);
    Understanding understood;
    understood.file = file;
    if (name == "bad") understood.refusal = "weekly bars; --interval D can";
    FoundSeries found{
        options.symbol.value_or(name), "", options.interval.value_or(kDaily), 10, {}, {}, ""};
    found.first.date = options.date_order == DateOrder::kMonthDayYear ? 20200102 : 20200201;
    found.last.date = 20201111;
    found.last.close = 1.19978F * static_cast<float>(options.scale);
    understood.series = {found};
    understood.head = {{2, "1.19978", found.first}};
    understood.tail = {{name == "plain" ? 3 : 11, "1.19978", found.last}};
    if (name.starts_with("fx")) understood.suggested_scale = 10000;
    if (name.starts_with("ask") && !options.date_order) {
      ImportOptions day_first = options;
      day_first.date_order = DateOrder::kDayMonthYear;
      ImportOptions month_first = options;
      month_first.date_order = DateOrder::kMonthDayYear;
      understood.questions = {
          {"Which comes first?",
           "--date-order",
           {{"day first", "1 February", day_first}, {"month first", "2 January", month_first}}}};
    }
    return understood;
  }

  void BeginImport(std::string_view directory, PriceImports::Done done) override {
    directory_ = directory;
    done_ = std::move(done);
  }

  void Import(const std::filesystem::path& file, const ImportOptions& options,
              const ImportProgress& progress) override {
    const std::string name = file.stem().string();
    Run(during_import, name, progress);
    if (name == "full") return done_({.file = file, .problem = "full.csv: the disk is full"});
    Understanding understood = Understand(file, options, {});
    read.pop_back();
    if (name == "long" && options.too_long == TooLong::kAsk) {
      ImportOptions last = options;
      last.too_long = TooLong::kKeepLast;
      const ImportQuestion question{
          "The series is too long.", "--last or --replace", {{"keep the last", "from 2020", last}}};
      return done_({.file = file, .report = {.questions = {question}}, .problem = "Set --last"});
    }
    stored[directory_].push_back(understood.series.front().symbol);
    done_({.file = file, .report = {.series = {{understood.series.front(), 10, 3, 1, false, ""}}}});
  }

  void FinishImport() override {
    done_ = nullptr;
    ++finished;
  }

  std::vector<std::string> read;
  std::map<std::string, Remember> remembered;
  std::map<std::string, std::vector<std::string>> stored;  // symbols by directory
  int finished = 0;                                        // imports
  std::map<std::string, std::function<void()>> during_read;
  std::map<std::string, std::function<void()>> during_import;

 private:
  std::string directory_;
  PriceImports::Done done_;

  // What the user does while a file is half done.
  static void Run(std::map<std::string, std::function<void()>>& actions, const std::string& name,
                  const ImportProgress& progress) {
    if (const auto action = actions.extract(name)) action.mapped()();
    if (progress && !progress(0.5)) throw ImportCancelled();
  }
};

class ImportWindowTest : public SessionFixture {
 protected:
  ImportWindowTest() { desktop.form1().Show(); }

  void Drop(const std::vector<std::string>& names) {
    std::vector<std::string> paths;
    for (const std::string& name : names) paths.push_back(scratch.Sub(name));
    for (const std::string& path : paths) WriteFile(path, "prices");
    window.Offer(paths, data);
    window.ReadFiles();
  }
  std::string Remark(std::size_t row) {
    return form.lstFiles.Content().text(row, BatchColumn::kRemarks);
  }
  std::string Cell(std::size_t row, std::size_t column) {
    return form.lstFiles.Content().text(row, column);
  }

  Desktop desktop;
  FrmImport& form = desktop.Untouched().frmImport;
  MadeUpFiles files;
  bool replaying = false;
  std::vector<std::string> listed;
  ImportWindow window{desktop,
                      platform,
                      files,
                      {[this] { return replaying; },
                       [this](const FoundSeries& first) { listed.push_back(first.symbol); }}};
};

TEST_F(ImportWindowTest, ShowsWhatWasUnderstoodAndImportsItIntoTheDirectory) {
  Drop({"notes.doc"});
  EXPECT_THAT(outside.boxes.shown, ElementsAre(HasSubstr("Only price files")));
  EXPECT_FALSE(form.Loaded());
  Drop({"fx.csv", "bad.csv", "full.csv", "plain.csv", "notes.doc"});
  EXPECT_THAT(form.Caption(), HasSubstr(data));
  EXPECT_EQ(form.lstFiles.Content().count, 5U);
  EXPECT_THAT(Remark(0), HasSubstr("cannot be imported: weekly")) << "sorted by name";
  EXPECT_EQ(Cell(1, BatchColumn::kSymbol) + Cell(1, BatchColumn::kInterval), "fulldaily");
  EXPECT_THAT(Remark(4), HasSubstr("cannot be imported"));
  EXPECT_THAT(files.stored, IsEmpty());

  form.lstFiles.UserSelect({0});
  EXPECT_THAT(form.lstUnderstood.Lines().front(), HasSubstr("\"Interval\" D can"));
  replaying = true;
  form.cmdImport.UserClick();
  EXPECT_THAT(outside.boxes.shown.back(), HasSubstr("Pause"));
  replaying = false;
  form.on_enter();
  EXPECT_THAT(files.stored[data], ElementsAre("fx", "plain"));
  EXPECT_THAT(listed, ElementsAre("fx"));
  EXPECT_THAT(Remark(1), HasSubstr("the disk is full"));
  EXPECT_EQ(Remark(2), "10 new bars, 3 changed, 1 missing in the file kept");
  EXPECT_THAT(form.lblStatus.Text(), HasSubstr("Imported 2 of 3 files: 20 new bars"));
  EXPECT_FALSE(form.cmdImport.Enabled());
  form.on_enter();
  EXPECT_FALSE(form.Loaded());
  Drop({"plain.csv"});
  window.Offer({scratch.Sub("plain.csv")}, scratch.Sub("other"));
  EXPECT_THAT(form.Caption(), HasSubstr("other")) << "files for two directories are two imports";
}

TEST_F(ImportWindowTest, AnAnswerReadsTheFileAgainAndMayCountForAllFiles) {
  files.during_read["late"] = [this] { EXPECT_THAT(Remark(0), HasSubstr("question")); };
  Drop({"ask1.csv", "ask2.csv", "ask3.csv", "late.csv"});
  EXPECT_EQ(form.lblQuestion.Text(), "Which comes first?");
  EXPECT_EQ(form.lblResult2.Text(), "2 January");
  EXPECT_FALSE(form.cmdAnswer3.Visible());
  EXPECT_EQ(form.cmdImport.Text(), "&Import 1 file") << "a file with a question is not imported";
  EXPECT_EQ(form.chkAll.Text(), "For all 3 files with this question");
  form.cmdAnswer1.UserClick();
  EXPECT_EQ(Cell(0, BatchColumn::kFirstDay), "2020-02-01");
  EXPECT_FALSE(form.lblQuestion.Visible());
  EXPECT_THAT(Remark(1), HasSubstr("question"));
  Drop({"ask5.csv"});
  EXPECT_THAT(Remark(4), HasSubstr("question")) << "the answer was for one file";
  form.cmdNext.UserClick();
  form.chkAll.UserToggle();
  form.cmdAnswer2.UserClick();
  EXPECT_EQ(Cell(2, BatchColumn::kFirstDay), "2020-01-02");
  EXPECT_FALSE(form.cmdNext.Visible());
  Drop({"ask4.csv"});
  EXPECT_EQ(Cell(5, BatchColumn::kFirstDay), "2020-01-02") << "also for files added later";
  EXPECT_EQ(form.cmdImport.Text(), "&Import 6 files");
  files.during_import["late"] = [this] { Drop({"after.csv"}); };
  form.cmdImport.UserClick();
  EXPECT_EQ(Cell(6, BatchColumn::kSymbol), "after") << "read once the import is done";
  EXPECT_EQ(form.lstRows.Content().count, 3U) << "with a gap between lines 2 and 11";
  form.on_close();
  Drop({"plain.csv"});
  EXPECT_EQ(form.lstRows.Content().count, 2U) << "no gap between lines 2 and 3";
  form.on_close();
  Drop({"a.csv", "ask1.csv", "ask2.csv"});
  EXPECT_TRUE(form.lblQuestion.Visible()) << "a new window shows its first question";
  const auto asked = [this] { return form.lstFiles.Selected(); };
  const auto first = asked();
  form.cmdNext.UserClick();
  EXPECT_NE(asked(), first);
  form.cmdNext.UserClick();
  EXPECT_EQ(asked(), first) << "the first again after the last";
}

TEST_F(ImportWindowTest, AQuestionThatStoredBarsRaiseIsAskedLikeOthers) {
  Drop({"long.csv", "plain.csv"});
  form.cmdImport.on_click();
  EXPECT_THAT(Remark(0), HasSubstr("question: The series is too long."));
  EXPECT_TRUE(form.cmdAnswer1.Visible());
  EXPECT_THAT(form.lblStatus.Text(), HasSubstr("Imported 1 of 2 files"));
  EXPECT_THAT(form.lblStatus.Text(), HasSubstr("1 file has a question."));
  form.cmdAnswer1.on_click();
  form.cmdImport.on_click();
  EXPECT_THAT(Remark(0), HasSubstr("10 new bars"));
}

TEST_F(ImportWindowTest, BoxesDecideForTheSelectedFiles) {
  Drop({"fx1.csv", "fx2.csv", "plain.csv"});
  EXPECT_TRUE(form.chkScale.Checked()) << "by itself";
  EXPECT_THAT(form.chkScale.Text(), HasSubstr("in pips: 11997.8"));
  form.chkScale.UserToggle();
  EXPECT_FALSE(form.chkScale.Checked()) << "and not a second time";
  EXPECT_EQ(form.lstRows.Content().text(2, 7), "1.19978");

  form.txtSymbol.UserType("eur");
  form.on_enter();
  EXPECT_EQ(Cell(0, BatchColumn::kSymbol), "eur") << "Enter takes what was typed first";
  form.lstFiles.UserSelect({0, 2});
  EXPECT_FALSE(form.txtSymbol.Enabled());
  form.cbxInterval.UserChoose(3);
  form.chkReplace.UserToggle();
  form.cbxFromZone.UserType("Europe/Berlin");
  form.txtTo.UserType("2020-13-01");
  form.txtTo.UserLeave();
  EXPECT_THAT(form.lblStatus.Text(), HasSubstr("2020-13-01"));
  form.txtTo.UserType("2020-12-01");
  form.txtTo.UserLeave();
  EXPECT_EQ(Cell(0, BatchColumn::kInterval) + Cell(1, BatchColumn::kInterval) +
                Cell(2, BatchColumn::kInterval),
            "10 mindaily10 min");
  form.lstFiles.UserSelect({2});
  EXPECT_EQ(form.cbxFromZone.Text() + form.txtTo.Text(), "Europe/Berlin2020-12-01");
  EXPECT_TRUE(form.chkReplace.Checked());
  form.lstFiles.UserSelect({1});
  EXPECT_EQ(form.cbxFromZone.Text() + form.txtTo.Text(), "");
}

TEST_F(ImportWindowTest, FilesOfOneBatchThatWriteTheSameSeriesSaySo) {
  Drop({"a.csv", "b.csv", "c.csv"});
  EXPECT_THAT(Remark(0) + Remark(1) + Remark(2), IsEmpty());
  const auto rename = [this](std::size_t row, const char* symbol) {
    form.lstFiles.UserSelect({row});
    form.txtSymbol.UserType(symbol);
    form.on_enter();
  };
  rename(1, "a");
  EXPECT_THAT(Remark(0), HasSubstr("a daily is also in b.csv; where times are equal"));
  EXPECT_THAT(Remark(1), HasSubstr("also in a.csv"));
  EXPECT_THAT(Remark(2), IsEmpty());
  rename(2, "a");
  form.chkReplace.UserToggle();
  EXPECT_THAT(Remark(0), HasSubstr("also in b.csv, c.csv; with \"Start over\""));
  form.on_enter();
  EXPECT_THAT(Remark(1), AllOf(HasSubstr("new bars"), HasSubstr("also in a.csv, c.csv")));
  rename(2, "c");
  rename(1, "b");
  EXPECT_THAT(Remark(0), Not(HasSubstr("also")));
  // A folder is remembered, even if one of its files was dropped alone before.
  window.Offer({scratch.Path().string()}, data);
  window.ReadFiles();
  EXPECT_THAT(files.remembered, Contains(Pair("a", Remember::kFolder)));
}

TEST_F(ImportWindowTest, TwoHundredFilesAreReadWhileTheTraderGoesOn) {
  std::vector<std::string> names;
  for (int i = 100; i < 300; ++i) names.push_back("S" + std::to_string(i) + ".csv");
  files.during_read["S120"] = [&] {
    EXPECT_FALSE(form.cmdImport.Enabled());
    EXPECT_EQ(Cell(19, BatchColumn::kBars) + Cell(21, BatchColumn::kBars), "10");
    form.lstFiles.UserSelect({150});
    form.txtName.UserType("Mine");
    form.on_escape();
  };
  Drop(names);
  EXPECT_EQ(Remark(150), "not read") << "cancelled";
  EXPECT_EQ(form.cmdImport.Text(), "&Import 20 files");
  files.during_read["S130"] = [&] {
    form.cbxDates.UserChoose(1);
    Drop({"T.csv"});
  };
  Drop(names);
  EXPECT_EQ(form.lstFiles.Content().count, 201U);
  EXPECT_EQ(form.cmdImport.Text(), "&Import 201 files");

  files.during_read["S110"] = [&] { form.on_close(); };
  Drop(names);
  EXPECT_FALSE(form.Loaded());
  // Closed, and open again with other files before the first reading has ended.
  files.during_read["S110"] = [&] {
    form.on_close();
    Drop({"plain.csv"});
  };
  Drop(names);
  EXPECT_EQ(form.lstFiles.Content().count, 1U);
  EXPECT_EQ(Cell(0, BatchColumn::kSymbol), "plain");
  EXPECT_EQ(form.cmdImport.Text(), "&Import 1 file");
  EXPECT_THAT(files.stored, IsEmpty());
}

TEST_F(ImportWindowTest, AFileThatFailsEndsItsImportAndNotTheNext) {
  files.during_import["b"] = [] { throw std::runtime_error("no memory"); };
  Drop({"a.csv", "b.csv", "c.csv"});
  form.cmdImport.UserClick();
  EXPECT_THAT(outside.boxes.shown.back(), HasSubstr("no memory"));
  EXPECT_EQ(files.finished, 1) << "the files before it are stored, the directory is free";
  form.cmdImport.UserClick();
  EXPECT_THAT(files.stored[data], ElementsAre("a", "b", "c"));
  EXPECT_EQ(files.finished, 2);
}

TEST_F(ImportWindowTest, AnImportCanBeCancelledOrClosed) {
  files.during_import["b"] = [&] {
    EXPECT_TRUE(window.Importing());
    form.cmdImport.UserClick();
    form.txtSymbol.UserType("other");
    form.cmdClose.UserClick();
  };
  Drop({"a.csv", "b.csv", "c.csv"});
  form.cmdImport.UserClick();
  EXPECT_THAT(files.stored[data], ElementsAre("a"));
  EXPECT_THAT(form.lblStatus.Text(), HasSubstr("Cancelled. Imported 1 of 3 files"));
  EXPECT_EQ(form.cmdImport.Text(), "&Import 2 files");
  EXPECT_THAT(listed, ElementsAre("a"));
  files.during_import["c"] = [&] { form.on_close(); };
  form.cmdImport.UserClick();
  EXPECT_FALSE(form.Loaded());
  EXPECT_THAT(files.stored[data], ElementsAre("a", "b"));
  EXPECT_THAT(listed, ElementsAre("a", "b"));
  // The whole program is closed while a file is read.
  files.during_read["a"] = [&] { desktop.Unload(desktop.form1()); };
  Drop({"a.csv", "b.csv"});
  EXPECT_EQ(files.read.back(), "a");
  EXPECT_FALSE(desktop.Untouched().form1.Loaded());
}

}  // namespace
}  // namespace velumar
