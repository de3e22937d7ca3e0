#include "results/journal_page.h"

#include <cstdint>
#include <string_view>

#include "base/paths.h"
#include "base/whole_file.h"
#include "results/figure_texts.h"
#include "results/journal_list.h"

namespace velumar {

namespace {

constexpr std::size_t kLargestPicture = std::size_t{4} << 20;

constexpr std::string_view kHead = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Trading journal</title>
<style>
:root { color-scheme: light dark; --ink: #1b2536; --faint: #5c677a; --rule: #b9c5d8;
  --band: #f1f4f9; --paper: #fff; --won: #1a7f37; --lost: #c62828; }
@media (prefers-color-scheme: dark) {
  :root { --ink: #e4e9f2; --faint: #9aa6ba; --rule: #3a4558; --band: #1d2430; --paper: #151a22;
    --won: #56c271; --lost: #ff7b72; }
}
body { font: 15px/1.45 "Segoe UI", "Noto Sans", "DejaVu Sans", sans-serif; color: var(--ink);
  background: var(--paper); max-width: 70rem; margin: 0 auto; padding: 1.5rem; }
h1 { font-size: 1.6rem; } h2 { font-size: 1.25rem; margin-top: 2.2rem; }
h3 { font-size: 1.05rem; margin: 0 0 .3rem; }
.scroll { overflow-x: auto; }
table { border-collapse: collapse; width: 100%; font-size: .9rem; }
th, td { padding: .3rem .6rem; text-align: left; white-space: nowrap;
  border-bottom: 1px solid var(--rule); }
td.note { white-space: normal; min-width: 12rem; }
tbody tr:nth-child(even) { background: var(--band); }
.n { text-align: right; font-variant-numeric: tabular-nums; }
.won { color: var(--won); } .lost { color: var(--lost); }
section { border-top: 1px solid var(--rule); padding: 1rem 0; break-inside: avoid; }
p { margin: .25rem 0; white-space: pre-wrap; } .faint { color: var(--faint); }
figure { margin: .6rem 0; } figcaption { color: var(--faint); font-size: .85rem; }
img { max-width: 100%; height: auto; border: 1px solid var(--rule); border-radius: 4px; }
a { color: inherit; }
</style>
</head>
<body>
<h1>Trading journal</h1>
)";

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

std::string Base64(std::string_view bytes) {
  static constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const auto byte = [&](std::size_t at) {
      return at < bytes.size() ? std::uint32_t{static_cast<unsigned char>(bytes[at])} : 0;
    };
    const std::uint32_t three = byte(i) << 16U | byte(i + 1) << 8U | byte(i + 2);
    for (std::size_t digit = 0; digit < 4; ++digit) {
      const bool padding = i + digit > bytes.size();
      text += padding ? '=' : kDigits[three >> (18U - 6U * digit) & 63U];
    }
  }
  return text;
}

// Writes the page from top to bottom.
class Page {
 public:
  explicit Page(LedgerConnection& connection) : connection_(connection) {}

  std::string Write(const std::vector<Journal>& journals) {
    html_ = kHead;
    if (journals.empty()) Paragraph("faint", "No trades yet.");
    for (const Journal& journal : journals) {
      html_ += "<h2>" + Escaped(journal.title) + "</h2>\n";
      Notes(journal.notes);
      if (!journal.trades.empty()) Table(journal);
      for (const JournalEntry& entry : journal.trades) Section(entry);
    }
    return html_ + "</body>\n</html>\n";
  }

 private:
  static std::string Class(const JournalEntry& entry, const JournalColumn& column) {
    if (column.field == "note") return "note";
    if (!column.numeric) return {};
    if (column.field != "money" && column.field != "r") return "n";
    return entry.Result() == Outcome::kWon    ? "n won"
           : entry.Result() == Outcome::kLost ? "n lost"
                                              : "n";
  }

  void Paragraph(std::string_view kind, const std::string& text) {
    if (text.empty()) return;
    html_ += "<p" + (kind.empty() ? "" : " class=\"" + std::string(kind) + "\"") + ">" +
             Escaped(text) + "</p>\n";
  }

  void Table(const Journal& journal) {
    html_ += "<div class=\"scroll\"><table>\n<thead><tr>";
    for (const std::size_t column : ListedColumns()) {
      const JournalColumn& described = kJournalColumns.at(column);
      html_ += std::string("<th scope=\"col\"") + (described.numeric ? " class=\"n\"" : "") + ">" +
               std::string(described.title) + "</th>";
    }
    html_ += "</tr></thead>\n<tbody>\n";
    std::size_t number = section_;
    for (const JournalEntry& entry : journal.trades) Row(entry, journal.session, ++number);
    html_ += "</tbody>\n</table></div>\n";
  }

  void Row(const JournalEntry& entry, int session, std::size_t number) {
    const JournalRow row = RowOf(entry, session);
    html_ += "<tr>";
    for (const std::size_t column : ListedColumns()) {
      const JournalColumn& described = kJournalColumns.at(column);
      std::string text = Escaped(row.at(column).text);
      if (described.field == "side") {
        text = "<a href=\"#trade-" + std::to_string(number) + "\">" + text + "</a>";
      }
      const std::string kind = Class(entry, described);
      html_ += "<td" + (kind.empty() ? "" : " class=\"" + kind + "\"") + ">" + text + "</td>";
    }
    html_ += "</tr>\n";
  }

  void Section(const JournalEntry& entry) {
    html_ += "<section id=\"trade-" + std::to_string(++section_) + "\">\n<h3>" +
             Escaped(TradeText(entry)) + "</h3>\n";
    std::string result;
    if (entry.trade.money) result = "Result " + MoneyText(entry.trade.money);
    if (entry.trade.r) result += ", " + MoneyText(entry.trade.r) + " R";
    if (entry.look_ahead) result += (result.empty() ? "" : ", ") + std::string("look-ahead");
    Paragraph(entry.Result() == Outcome::kLost  ? "lost"
              : entry.Result() == Outcome::kWon ? "won"
                                                : "",
              result);
    Paragraph({}, PlanText(entry));
    if (entry.plan && !entry.plan->reasons.empty()) {
      Paragraph({}, "Reasons: " + entry.plan->reasons);
    }
    Notes(entry.notes);
    Picture(entry.entry_picture, "at the entry");
    Picture(entry.exit_picture, "at the exit");
    html_ += "</section>\n";
  }

  void Notes(const std::vector<LedgerNote>& notes) {
    if (notes.empty() || (notes.size() == 1 && notes.front().text.empty())) return;
    Paragraph({}, "Note: " + notes.back().text);
    Paragraph("faint", NoteDate(connection_, notes));
    if (notes.size() == 1) return;
    html_ += "<details><summary class=\"faint\">Earlier notes</summary>\n";
    for (auto note = notes.rbegin() + 1; note != notes.rend(); ++note) {
      Paragraph({}, note->text);
      Paragraph("faint", NoteDate(connection_, {*note}));
    }
    html_ += "</details>\n";
  }

  void Picture(const std::string& file, const std::string& caption) {
    if (file.empty()) return;
    std::string bytes;
    try {
      bytes = ReadWholeFile(NativePath(file), kLargestPicture);
    } catch (const FileError&) {
      return;
    }
    html_ += "<figure><img alt=\"The chart " + caption + "\" src=\"data:image/png;base64,";
    html_ += Base64(bytes);
    html_ += "\"><figcaption>The chart " + caption + "</figcaption></figure>\n";
  }

  LedgerConnection& connection_;
  std::string html_;
  std::size_t section_ = 0;
};

}  // namespace

std::string JournalPage(LedgerConnection& connection, const std::vector<Journal>& journals) {
  return Page(connection).Write(journals);
}

}  // namespace velumar
