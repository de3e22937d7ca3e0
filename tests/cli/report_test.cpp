#include <cstdlib>
#include <filesystem>

#include "cli/sandbox.h"
#include "ledger/notes.h"
#include "support/ledger_rows.h"

namespace velumar {
namespace {

using testing::ContainsRegex;
using testing::Not;

// A ledger with a run of this many orders, one per bar.
std::string LedgerOf(const Sandbox& box, int orders, const std::string& symbol) {
  const std::string file = box.At(std::to_string(orders) + ".mdb");
  LedgerConnection ledger([](std::string_view date) { return std::string(date); });
  LedgerOpen(ledger, file);
  LedgerBeginRun(ledger, {"/data/\\", symbol, "D", "20070110", "0", "futures", 1e9, 5e4, 1000});
  for (int i = 1; i <= orders; ++i) {
    LedgerRows rows{ledger};
    std::vector<LedgerValue> row = rows.Row(10, "Long", 1, 7000 + i, i, 0, 999999999.0 - i);
    row[1] = symbol;
    LedgerInsertOrder(ledger, row, {1, 0.07, i, i});
  }
  if (orders > 1) LedgerNoteWiped(ledger, {"Offset Long", 3, 99, "", "", 90}, {9, 0, 5, 5});
  return file;
}

// The pages of a PDF as lines of text.
std::vector<std::string> Pages(const std::string& file) {
  EXPECT_EQ(std::system(("pdftotext -layout '" + file + "' '" + file + ".txt'").c_str()), 0);
  std::istringstream text(ReadFile(file + ".txt"));
  std::vector<std::string> pages;
  for (std::string page; std::getline(text, page, '\f');) pages.push_back(page);
  return pages;
}

TEST(Chart, IsDrawnToAFileOrRefused) {
  Sandbox box;
  const std::string ledger = LedgerOf(box, 3, "ABC");
  const std::string out = box.At("chart.pdf");
  EXPECT_THAT(box.Run({"chart", ledger, "--out", out, "--type", "4D"}).err, HasSubstr("4D"));
  EXPECT_FALSE(std::filesystem::exists(out));
  const std::string before = ReadFile(ledger);
  EXPECT_THAT(box.Run({"chart", ledger, "--out", ledger}).err, HasSubstr("is the ledger itself"));
  EXPECT_EQ(ReadFile(ledger), before);
  EXPECT_EQ(box.Run({"chart", ledger, "--out", out, "--type", "3D Step"}).code, 0);
  EXPECT_TRUE(ReadFile(out).starts_with("%PDF"));
}

TEST(Report, HasEveryOrderOnceAndHeadingsOnEveryPage) {
  if (std::system("pdftotext -v >/dev/null 2>&1") != 0) GTEST_SKIP() << "pdftotext is missing";
  Sandbox box;
  const std::string symbol = "WWWWWWWWWWWWWW";
  const std::string out = box.At("report.pdf");
  for (const auto& [orders, pages] : {std::pair(0, 1U), std::pair(1, 2U), std::pair(99, 4U)}) {
    EXPECT_EQ(box.Run({"report", LedgerOf(box, orders, symbol), "--out", out}).err, "");
    const std::vector<std::string> texts = Pages(out);
    ASSERT_EQ(texts.size(), pages);
    EXPECT_THAT(texts[0],
                AllOf(HasSubstr("Practice run: " + symbol + ", daily bars"), HasSubstr("/data/"),
                      HasSubstr("Look-ahead orders"),
                      ContainsRegex("Orders +" + std::to_string(orders) + " "),
                      ContainsRegex("Long, quantity entered +" + std::to_string(orders)),
                      ContainsRegex("Long, commission of entries +" + std::to_string(orders * 100)),
                      ContainsRegex("Short, commission of entries +0 ")));
    std::string all;
    for (std::size_t i = 0; i < texts.size(); ++i) {
      const std::string number = "Page " + std::to_string(i + 1) + " of " + std::to_string(pages);
      EXPECT_THAT(texts[i], AllOf(HasSubstr(number), HasSubstr(i == 0 ? "Portfolio" : "Average"),
                                  Not(HasSubstr("\u2026"))));  // nothing was elided
      all += texts[i];
    }
    for (int i = 1; i <= orders; ++i) {
      const std::string price = "7," + std::to_string(1000 + i).substr(1) + ".00";
      const std::size_t place = all.find(price);
      ASSERT_NE(place, std::string::npos) << price;
      EXPECT_EQ(all.find(price, place + 1), std::string::npos) << price;
    }
  }
  const auto refused = box.Run({"report", box.At("1.mdb"), "--out", "/nowhere/x.pdf"});
  EXPECT_THAT(refused.err, HasSubstr("/nowhere/x.pdf"));
  const std::string ledger = box.At("ledger.pdf");
  std::filesystem::copy(box.At("1.mdb"), ledger);
  for (const char* const all : {"--run=1", "--all"}) {
    EXPECT_THAT(box.Run({"report", ledger, "--out", ledger, all}).err, HasSubstr("ledger itself"));
  }
}

TEST(Report, HasTheNewestOfManyNotesAndAllOfALongOne) {
  if (std::system("pdftotext -v >/dev/null 2>&1") != 0) GTEST_SKIP() << "pdftotext is missing";
  constexpr int kOrders = 202;
  Sandbox box;
  const std::string file = box.At("notes.mdb");
  std::string changed = "changed to note 100.\n";
  for (int i = 0; i < 100; ++i) changed += "line " + std::to_string(i) + "\n";
  {
    LedgerConnection ledger([](std::string_view date) { return std::string(date); });
    LedgerOpen(ledger, file);
    LedgerRows rows{ledger};
    rows.Begin(1000);
    for (int i = 1; i <= kOrders; ++i) {
      rows.Order(i, "Long", 1, 100, i, 0, 1000);
      LedgerWriteNote(ledger, {rows.session, {1, i}, "note " + std::to_string(i) + ".", ""});
    }
    LedgerWriteNote(ledger, {rows.session, {1, 100}, changed, ""});
  }
  EXPECT_EQ(box.Run({"report", file, "--out", box.At("report.pdf")}).err, "");
  std::string text;
  for (const std::string& page : Pages(box.At("report.pdf"))) {
    text += page;
    if (page.find("line 99\n") == std::string::npos) continue;
    EXPECT_THAT(page, AllOf(HasSubstr("Journal"), Not(HasSubstr("line 0\n")))) << "the next page";
  }
  for (int i = 1; i <= kOrders; ++i) {
    const bool found = text.find("note " + std::to_string(i) + ".") != std::string::npos;
    EXPECT_EQ(found, i > 2) << i;
  }
  EXPECT_THAT(text, AllOf(HasSubstr("Note: changed to note 100."), HasSubstr("line 0\n"),
                          HasSubstr("line 99\n")));
}

}  // namespace
}  // namespace velumar
