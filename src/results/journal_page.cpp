#include "results/journal_page.h"

#include <string_view>

#include "results/figure_texts.h"
#include "results/html_text.h"
#include "results/journal_list.h"

namespace velumar {

namespace {

// Writes the page from top to bottom.
class Page {
 public:
  explicit Page(LedgerConnection& connection) : connection_(connection) {}

  std::string Write(const std::vector<Journal>& journals) {
    html_ = HtmlHead("Trading journal");
    if (journals.empty()) Paragraph("faint", "No trades yet.");
    for (const Journal& journal : journals) {
      html_ += "<h2>" + HtmlText(journal.title) + "</h2>\n";
      Notes(journal.notes);
      if (!journal.trades.empty()) Table(journal);
      for (const JournalEntry& entry : journal.trades) Section(entry);
    }
    return html_ + std::string(kHtmlEnd);
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
    html_ += HtmlParagraph(kind, text);
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
      std::string text = HtmlText(row.at(column).text);
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
             HtmlText(TradeText(entry)) + "</h3>\n";
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
    html_ += HtmlPicture(entry.entry_picture, "The chart at the entry");
    html_ += HtmlPicture(entry.exit_picture, "The chart at the exit");
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

  LedgerConnection& connection_;
  std::string html_;
  std::size_t section_ = 0;
};

}  // namespace

std::string JournalPage(LedgerConnection& connection, const std::vector<Journal>& journals) {
  return Page(connection).Write(journals);
}

}  // namespace velumar
