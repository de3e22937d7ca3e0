#include <QPageLayout>
#include <QPagedPaintDevice>
#include <algorithm>
#include <array>
#include <utility>

#include "charts/qt_text.h"
#include "resultchart/chart_file.h"
#include "resultchart/page_style.h"
#include "resultchart/paper.h"
#include "resultchart/report.h"
#include "resultchart/result_plot.h"

namespace velumar {
namespace {

// All measures are units of 1/96 inch.
constexpr double kColumnGap = 24;       // between the two columns
constexpr double kNarrowColumn = 0.44;  // of both
constexpr double kRow = 16;
constexpr double kHeading = 24;

// The columns of the orders: how wide each is, and the text size at which all fit on a page.
struct OrderTable {
  static constexpr double kPadding = 5;

  int pixels = kTextPixels;
  std::array<double, kOrderColumns.size()> widths{};

  OrderTable(const std::vector<OrderListRow>& rows, double room) {
    while (Measure(rows) > room && pixels > kSmallestPixels) --pixels;
    widths.back() += std::max(room - Measure(rows), 0.0);
  }

  double RowHeight() const { return pixels + 5.0; }

 private:
  // Measures only the text with the most characters of each column, not a hundred thousand orders.
  double Measure(const std::vector<OrderListRow>& rows) {
    const QFontMetricsF plain(Face(pixels));
    const QFontMetricsF bold(Face(pixels, true));
    const double digit = plain.horizontalAdvance(QLatin1Char('0'));
    double sum = 0;
    for (std::size_t i = 0; i < widths.size(); ++i) {
      const std::string* longest = nullptr;
      for (const OrderListRow& row : rows) {
        const std::string& text = row.at(i).text;
        if (longest == nullptr || text.size() > longest->size()) longest = &text;
      }
      const double title = bold.horizontalAdvance(ToQt(std::string(kOrderColumns.at(i).title)));
      const double text = longest == nullptr ? 0 : plain.horizontalAdvance(ToQt(*longest)) + digit;
      widths.at(i) = std::max(title, text) + 2 * kPadding;
      sum += widths.at(i);
    }
    return sum;
  }
};

// Prints one report.
class Pages {
 public:
  Pages(const Report& report, QPagedPaintDevice& device) : report_(report), paper_(device) {}

  void Print() {
    const OrderTable table(report_.orders, paper_.LandscapePage().width());
    const std::size_t on_a_page = RowsOnAPage(table);
    const QRectF room = paper_.Page().adjusted(0, kHeader, 0, -kFooter);
    std::vector<PageGroup> trades;
    for (const JournalItem& item : report_.journal) {
      trades.push_back(JournalGroup(item, room.width()));
    }
    const PageFlow journal(std::move(trades), room.height());
    paper_.SetCount(1 + journal.Count() + (report_.orders.size() + on_a_page - 1) / on_a_page);
    PrintSummary();
    for (std::size_t page = 0; page < journal.Count(); ++page) {
      NewPage(QPageLayout::Portrait, QStringLiteral("Journal"));
      journal.Paint(paper_.Painter(), page, room);
    }
    for (std::size_t first = 0; first < report_.orders.size(); first += on_a_page) {
      PrintOrders(table, first, std::min(report_.orders.size(), first + on_a_page));
    }
  }

 private:
  void NewPage(QPageLayout::Orientation orientation, const QString& title) {
    paper_.BeginPage(orientation, title, ToQt(report_.title));
  }

  std::size_t RowsOnAPage(const OrderTable& table) const {
    const double room = paper_.LandscapePage().height() - kHeader - kFooter - table.RowHeight();
    return static_cast<std::size_t>(std::max(room / table.RowHeight(), 1.0));
  }

  double PrintLines(const QString& heading, const std::vector<Report::Line>& lines, double left,
                    double top, double width) {
    Write(kInk, {left, top, width, kHeading}, Qt::AlignLeft, Face(kHeadingPixels, true), heading);
    top += kHeading;
    for (const Report::Line& line : lines) {
      const QString name = ToQt(line.name);
      const double name_width = TextWidth(name, Face(kTextPixels)) + 8;
      Write(kFaint, {left, top, name_width, kRow}, Qt::AlignLeft, Face(kTextPixels), name);
      Write(kInk, {left + name_width, top, width - name_width, kRow}, Qt::AlignRight,
            Face(kTextPixels), ToQt(line.value));
      top += kRow;
      paper_.Painter().setPen(QPen(kRule, 0.5));
      paper_.Painter().drawLine(QPointF(left, top), QPointF(left + width, top));
    }
    return top;
  }

  void PrintSummary() {
    paper_.BeginPage(QPageLayout::Portrait,
                     QStringLiteral("Practice %1: %2").arg(ToQt(report_.what), ToQt(report_.title)),
                     ToQt(report_.subtitle));
    const QRectF page = paper_.Page();
    const double width = (page.width() - kColumnGap) * kNarrowColumn;
    const QString what = ToQt(report_.what);
    const double facts =
        PrintLines(what.left(1).toUpper() + what.mid(1), report_.facts, 0, kHeader, width);
    const double figures =
        PrintLines(QStringLiteral("Figures"), report_.figures, 0, facts + kRow / 2, width);
    const double statistics =
        PrintLines(QStringLiteral("Statistics"), report_.statistics, width + kColumnGap, kHeader,
                   page.width() - width - kColumnGap);
    PrintChart(std::max(figures, statistics) + kRow);
  }

  void PrintChart(double top) {
    const QRectF page = paper_.Page();
    const QSizeF room(page.width(), page.height() - kFooter - top);
    ResultPlot plot;
    plot.SetPoints(report_.points);
    paper_.Painter().save();
    paper_.Painter().translate(0, top);
    plot.PaintTo(paper_.Painter(), room.toSize());
    paper_.Painter().restore();
  }

  void PrintOrders(const OrderTable& table, std::size_t first, std::size_t end) {
    NewPage(QPageLayout::Landscape, QStringLiteral("Orders"));
    PrintRow(table, kHeader, Face(table.pixels, true),
             [](std::size_t column) { return std::string(kOrderColumns.at(column).title); });
    double top = kHeader + table.RowHeight();
    paper_.Painter().setPen(QPen(kInk, 1));
    paper_.Painter().drawLine(QPointF(0, top), QPointF(paper_.Page().width(), top));
    for (std::size_t i = first; i < end; ++i, top += table.RowHeight()) {
      const QRectF band(0, top, paper_.Page().width(), table.RowHeight());
      if ((i - first) % 2 == 1) paper_.Painter().fillRect(band, kBand);
      PrintRow(table, top, Face(table.pixels),
               [&](std::size_t column) { return report_.orders[i].at(column).text; });
    }
  }

  void PrintRow(const OrderTable& table, double top, const QFont& font, const auto& text_of) {
    double left = 0;
    for (std::size_t column = 0; column < table.widths.size(); ++column) {
      const double width = table.widths.at(column);
      const QRectF place(left + OrderTable::kPadding, top, width - 2 * OrderTable::kPadding,
                         table.RowHeight());
      Write(kInk, place, kOrderColumns.at(column).numeric ? Qt::AlignRight : Qt::AlignLeft, font,
            ToQt(text_of(column)));
      left += width;
    }
  }

  void Write(const QColor& ink, const QRectF& place, Qt::Alignment alignment, const QFont& font,
             const QString& text) {
    WriteLine(paper_.Painter(), ink, place, alignment, font, text);
  }

  const Report& report_;
  Paper paper_;
};

}  // namespace

void PrintReport(const Report& report, QPagedPaintDevice& device) { Pages(report, device).Print(); }

void SaveReport(const Report& report, const QString& file) {
  RequireExtension(file, {QStringLiteral("pdf")}, QStringLiteral("a report"));
  SavePages(file, ToQt(report.title),
            [&report](QPagedPaintDevice& device) { PrintReport(report, device); });
}

}  // namespace velumar
