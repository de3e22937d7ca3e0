#include <cstdlib>
#include <filesystem>

#include "base/dates.h"
#include "cli/sandbox.h"
#include "ledger/cards.h"
#include "ledger/notes.h"

namespace velumar {
namespace {

using testing::Not;

std::size_t Count(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

struct CoachReportTest : testing::Test {
  Sandbox box;
  std::string data = box.ImportDays("data");
  std::string ledger = box.At("ledger.mdb");
  std::string symbol = "ABC";

  void Play(std::vector<std::string> options, const std::string& commands) {
    std::vector<std::string> arguments{"replay", data, symbol, "D"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.insert(arguments.end(), {"--ledger", ledger, "--date-pattern", "dd/MM/yyyy"});
    const auto answer = box.Run(arguments, commands);
    ASSERT_EQ(answer.code, 0) << answer.err;
  }
  Sandbox::Answer Report(const std::string& file, std::vector<std::string> options = {"--all"}) {
    options.insert(options.begin(), {"report", ledger, "--out", box.At(file)});
    options.insert(options.end(), {"--date-pattern", "dd/MM/yyyy"});
    return box.Run(options);
  }
  std::string Page(const std::vector<std::string>& options = {"--all"}) {
    EXPECT_EQ(Report("r.html", options).err, "");
    return ReadFile(box.At("r.html"));
  }
  // The text of the PDF, or nothing if it can't be read here.
  std::optional<std::string> Paper() {
    EXPECT_EQ(Report("r.pdf").err, "");
    if (std::system(("pdftotext -layout '" + box.At("r.pdf") + "' 2>/dev/null").c_str()) != 0) {
      return std::nullopt;
    }
    return ReadFile(box.At("r.txt"));
  }
};

TEST_F(CoachReportTest, HasTheBestAndWorstTradesWithNotesAndPicturesButNothingToRun) {
  // Bars rise by one a day. With one stop for all, the first Long wins most of what it risks.
  std::string commands = "pause\n";
  for (int i = 0; i < 7; ++i) {
    commands +=
        "plan stop=100 setup=<i>gap confidence=4 reasons=a & b\nlong 2\nnext\noffset-long 2\n";
  }
  commands += "plan stop=150\nshort 1\nnext\nnext\noffset-short 1\nlong 1\nnext\noffset-long 1\n";
  Play({"20000105"}, commands);
  {
    LedgerConnection open([](std::string_view date) { return std::string(date); });
    LedgerOpen(open, ledger);
    const std::string note = "<script>alert(1)</script>\n" + std::string(20000, 'x');
    LedgerWriteNote(open, {1, {1, 1}, note, "2026-01-05 10:00:00"});
    LedgerWriteNote(open, {1, {1, 3}, std::string(3000, 'y'), "2026-01-05 10:00:00"});
    const std::filesystem::path picture = LedgerPictureFile(open, {1, 2});
    std::filesystem::create_directory(picture.parent_path());
    WriteFile(picture, "PNG!");
    LedgerCard card;
    card.kind = LedgerCard::Kind::kLoss;
    LedgerCardAnswer answer;
    answer.card = LedgerAddCard(open, card).value();
    answer.verdict = LedgerCardAnswer::Verdict::kPoor;
    for (const std::optional<double> r : {std::optional(-1.0), {0.5}, {}}) {
      answer.r = r;
      LedgerAnswerCard(open, answer);
    }
  }
  const std::string page = Page();
  EXPECT_EQ(Count(page, "<section>"), 6U) << "five that won and one that lost";
  EXPECT_THAT(page, HasSubstr("1. Long 2 at 105.00 on 05/01/2000, closed at 106.00"));
  EXPECT_THAT(page, HasSubstr("5. Long 2 at 109.00 on 09/01/2000"));
  EXPECT_THAT(page, AllOf(HasSubstr("session 1"), HasSubstr(" R, 2,000.00, -2,280.00 after costs"),
                          HasSubstr("Held 1 bar."), HasSubstr("Held 2 bars.")));
  std::string cells = "<td>Losses</td>";
  for (const char* const cell : {"1", "3", "0", "0", "3", "-0.25"}) {
    cells += std::string("<td class=\"n\">") + cell + "</td>";
  }
  EXPECT_THAT(page, HasSubstr(cells)) << "of one card";
  EXPECT_EQ(Count(page, "the rest is in the journal"), 1U) << "not of one that just fits";
  EXPECT_THAT(page, HasSubstr("1. Short 1 at 112.00 on 12/01/2000"));
  EXPECT_THAT(page, AllOf(HasSubstr("<td>&lt;i&gt;gap</td><td class=\"n\">7</td>"),
                          HasSubstr("Reasons: a &amp; b"), HasSubstr("&lt;script&gt;alert(1)"),
                          HasSubstr("src=\"data:image/png;base64,UE5HIQ==\"")));
  EXPECT_THAT(page, AllOf(Not(HasSubstr("<script")), Not(HasSubstr("<i>")), Not(HasSubstr("href")),
                          Not(HasSubstr("url("))));
  EXPECT_EQ(Count(page, "<svg"), Count(page, "</svg>"));
  EXPECT_EQ(Count(page, "src=\""), Count(page, "src=\"data:"));
  const std::string longs = Page({"--all", "--side", "long", "--from", "20000107"});
  EXPECT_THAT(longs, AllOf(HasSubstr("Side: long, Entered: from 07/01/2000"),
                           HasSubstr("1. Long 2 at 107.00"), Not(HasSubstr("Short 1"))));
  if (const auto paper = Paper()) {
    EXPECT_THAT(*paper, AllOf(HasSubstr("Win rate"), HasSubstr("<script>alert(1)</script>"),
                              HasSubstr("Page 1 of ")));
    EXPECT_LT(Count(*paper, "Page "), 9U) << "a long note does not fill the report";
  }
}

TEST_F(CoachReportTest, ABlindSessionStaysMasked) {
  std::string csv = "date,open,high,low,close\n";
  for (int day = 0; day < 800; ++day) {
    csv += std::to_string(DaysLater(20010101, day)) + ",100,101,99,100\n";
  }
  ASSERT_EQ(box.Run({"import", box.File("AB-C_D.csv", csv), data}).code, 0);
  symbol = "AB-C";  // no such text in a bitmap
  Play({"--blind", "7"}, "pause\nlong 1\nnext\noffset-long 1\n");
  const std::string page = Page();
  EXPECT_THAT(page, AllOf(HasSubstr("BLIND"), HasSubstr("played blind"), Not(HasSubstr("AB-C"))));
  EXPECT_THAT(page, Not(HasSubstr("Days on the charts")));
  if (const auto paper = Paper()) {
    EXPECT_THAT(*paper, AllOf(HasSubstr("BLIND"), Not(HasSubstr("AB-C"))));
  }
}

TEST_F(CoachReportTest, OfALedgerWithoutTradesSaysSoAndWhatIsRefusedLeavesNoFile) {
  Play({"20000105"}, "pause\nlong 1\n");
  EXPECT_THAT(Page(), AllOf(HasSubstr("No closed trades"), Not(HasSubstr("Win rate"))));
  EXPECT_THAT(Paper().value_or("No closed trades"), HasSubstr("No closed trades"));
  EXPECT_THAT(Report("r.doc").err,
              HasSubstr("r.doc: a report over all sessions is saved as .pdf, .html"));
  EXPECT_THAT(Report("none/r.html").err, HasSubstr("r.html"));
  EXPECT_THAT(Report("x.pdf", {"--all", "--setup", "gap"}).err,
              HasSubstr("no trade has the setup"));
  EXPECT_EQ(Report("x.pdf", {"--side", "long"}).code, 2) << "needs --all";
  for (const char* const file : {"r.doc", "none", "x.pdf"}) {
    EXPECT_FALSE(std::filesystem::exists(box.At(file))) << file;
  }
}

}  // namespace
}  // namespace velumar
