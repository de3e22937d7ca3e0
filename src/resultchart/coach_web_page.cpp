#include <QBuffer>
#include <algorithm>
#include <memory>

#include "charts/palette.h"
#include "charts/picture_file.h"
#include "charts/qt_text.h"
#include "resultchart/coach_file.h"
#include "resultchart/number_plot.h"
#include "results/html_text.h"

namespace velumar {

namespace {

constexpr QSize kWideDrawing(1040, 340);
constexpr QSize kDrawing(510, 300);
constexpr double kPixelScale = 2;  // of a PNG

constexpr std::string_view kReportStyle =
    R"(.pictures { display: grid; grid-template-columns: 1fr 1fr; gap: 1rem 1.5rem; }
.wide { grid-column: 1 / -1; }
.pictures figure { margin: 0; break-inside: avoid; }
.pictures img { border: 0; }
svg { width: 100%; height: auto; display: block; } svg text { font-family: inherit; }
.dark { display: none; }
@media screen and (prefers-color-scheme: dark) { .dark { display: block; } .light { display: none; } }
@media (max-width: 45rem) { .pictures { grid-template-columns: 1fr; } }
@media print {
  html { font-size: 11px; } body { max-width: none; padding: 0; font-size: 1rem; }
  th, td { padding: .15rem .4rem; } th { white-space: normal; } .scroll { overflow: visible; }
  h2, h3, figcaption { break-after: avoid; } h2 + p { break-after: avoid; }
  tr, dd { break-inside: avoid; } .pictures { display: block; }
  .pictures figure { display: inline-block; width: 48%; } .pictures .wide { width: 100%; }
}
td:last-child, dd { white-space: normal; }
dl { display: grid; grid-template-columns: max-content 1fr; gap: .2rem 1rem; }
dt { color: var(--faint); } dd { margin: 0; overflow-wrap: anywhere; }
.charts { display: grid; grid-template-columns: 1fr 1fr; gap: 0 1rem; }
)";

// A drawing within a page: an element "svg", or "img" if the toolkit writes no SVG.
std::string DrawingOf(const PlotPicture& drawing) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  const std::string label = HtmlText(drawing.title.toStdString());
  if (FindSvgWriter() != nullptr) {
    FindSvgWriter()(drawing, buffer);
    const std::string text = buffer.data().toStdString();
    constexpr std::string_view kBegin = "<svg";
    const std::size_t begin = std::min(text.find(kBegin), text.size() - kBegin.size());
    return "<svg role=\"img\" aria-label=\"" + label + "\"" + text.substr(begin + kBegin.size());
  }
  BitmapOf(drawing).save(&buffer, "PNG");
  const QByteArray& bytes = buffer.data();
  return "<img alt=\"" + label + "\" src=\"" +
         PngAddress({bytes.constData(), static_cast<std::size_t>(bytes.size())}) + "\">\n";
}

std::string Cell(const char* element, const CoachTable::Column& column, const std::string& text) {
  return std::string("<") + element + (column.numeric ? " class=\"n\">" : ">") + HtmlText(text) +
         "</" + element + ">";
}

// Writes the page from top to bottom.
class WebPage {
 public:
  std::string Write(const CoachReport& report) {
    html_ = HtmlHead(report.title, kReportStyle);
    html_ += HtmlParagraph("faint", report.subtitle);
    Heading("What this is about");
    html_ += "<dl>\n";
    for (const auto& [name, value] : report.facts) Definition(name, value);
    html_ += "</dl>\n";
    Heading("What the figures say");
    for (const std::string& line : report.findings) html_ += HtmlParagraph({}, line);
    for (const CoachTable& table : report.figures) Table(table);
    Pictures(report.pictures);
    for (const CoachTable& table : report.tables) Table(table);
    for (const CoachTrades& list : report.trades) Trades(list);
    Heading("What the words mean");
    html_ += "<dl>\n";
    for (const CoachTerm& term : report.terms) Definition(term.name, term.meaning);
    return html_ + "</dl>\n" + std::string(kHtmlEnd);
  }

 private:
  void Heading(std::string_view title) { html_ += "<h2>" + HtmlText(title) + "</h2>\n"; }

  void Definition(std::string_view name, std::string_view text) {
    html_ += "<dt>" + HtmlText(name) + "</dt><dd>" + HtmlText(text) + "</dd>\n";
  }

  void Table(const CoachTable& table) {
    Heading(table.title);
    html_ += HtmlParagraph("faint", table.note);
    html_ += "<div class=\"scroll\"><table>\n<thead><tr>";
    for (const CoachTable::Column& column : table.columns)
      html_ += Cell("th", column, column.title);
    html_ += "</tr></thead>\n<tbody>\n";
    for (const auto& row : table.rows) {
      html_ += "<tr>";
      for (std::size_t i = 0; i < row.size(); ++i) html_ += Cell("td", table.columns.at(i), row[i]);
      html_ += "</tr>\n";
    }
    html_ += "</tbody>\n</table></div>\n";
  }

  void Pictures(const std::vector<CoachPicture>& pictures) {
    if (pictures.empty()) return;
    Heading("Pictures");
    html_ += "<div class=\"pictures\">\n";
    for (const CoachPicture& picture : pictures) {
      html_ += picture.wide ? "<figure class=\"wide\">\n" : "<figure>\n";
      html_ += "<h3>" + HtmlText(picture.picture.title) + "</h3>\n<figcaption>" +
               HtmlText(picture.hint) + "</figcaption>\n";
      Drawing(picture, Palette::Light(), "light");
      Drawing(picture, Palette::Dark(), "dark");
      html_ += "</figure>\n";
    }
    html_ += "</div>\n";
  }

  void Drawing(const CoachPicture& picture, const Palette& colours, const std::string& kind) {
    NumberPlot plot;
    plot.SetColours(colours);
    plot.SetPicture(std::make_shared<const NumberPicture>(picture.picture));
    const QSize size = picture.wide ? kWideDrawing : kDrawing;
    html_ += "<div class=\"" + kind + "\">";
    html_ += DrawingOf({.size = size,
                        .scale = kPixelScale,
                        .ground = colours.ground,
                        .title = ToQt(picture.picture.title),
                        .paint = [&](QCPPainter& painter) { plot.PaintTo(painter, size); }});
    html_ += "</div>\n";
  }

  void Trades(const CoachTrades& list) {
    Heading(list.title);
    html_ += HtmlParagraph("faint", list.note);
    for (const CoachTrade& trade : list.trades) {
      html_ += "<section>\n<h3>" + HtmlText(trade.title) + "</h3>\n";
      for (const std::string& line : trade.lines) html_ += HtmlParagraph({}, line);
      html_ += "<div class=\"charts\">\n" +
               HtmlPicture(trade.entry_picture, "The chart at the entry") +
               HtmlPicture(trade.exit_picture, "The chart at the exit") + "</div>\n</section>\n";
    }
  }

  std::string html_;
};

}  // namespace

std::string CoachWebPage(const CoachReport& report) { return WebPage().Write(report); }

}  // namespace velumar
