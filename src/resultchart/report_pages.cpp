#include <QPageLayout>
#include <QPagedPaintDevice>
#include <algorithm>
#include <array>
#include <stdexcept>

#include "charts/qt_text.h"
#include "resultchart/chart_file.h"
#include "resultchart/page_style.h"
#include "resultchart/report.h"
#include "resultchart/result_plot.h"

namespace velumar {
namespace {

// All measures are units of 1/96 inch.
constexpr double kUnitsPerPoint = kUnitsPerInch / 72;
constexpr double kMarginMm = 14;
constexpr double kColumnGap = 24;       // between the two columns
constexpr double kNarrowColumn = 0.44;  // of both
constexpr double kRow = 16;
constexpr double kHeading = 24;
constexpr double kHeader = 52;
constexpr double kFooter = 26;
constexpr int kTitlePixels = 22;
constexpr int kSmallPixels = 9;
constexpr int kSmallestPixels = 6;

double Width(const QString& text, const QFont& font) {
  return QFontMetricsF(font).horizontalAdvance(text);
}

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
  Pages(const Report& report, QPagedPaintDevice& device) : report_(report), device_(device) {}

  void Print() {
    SetPage(QPageLayout::Portrait);
    BeginPages(painter_, device_);
    const OrderTable table(report_.orders, LandscapePage().width());
    const std::size_t on_a_page = RowsOnAPage(table);
    const JournalPages journal(report_.journal, Page().size() - QSizeF(0, kHeader + kFooter));
    pages_ = 1 + journal.Count() + (report_.orders.size() + on_a_page - 1) / on_a_page;
    PrintSummary();
    for (std::size_t page = 0; page < journal.Count(); ++page) {
      NewPage(QPageLayout::Portrait, QStringLiteral("Journal"));
      journal.Paint(painter_, page, kHeader);
    }
    for (std::size_t first = 0; first < report_.orders.size(); first += on_a_page) {
      PrintOrders(table, first, std::min(report_.orders.size(), first + on_a_page));
    }
  }

 private:
  void SetPage(QPageLayout::Orientation orientation) {
    const QMarginsF margins(kMarginMm, kMarginMm, kMarginMm, kMarginMm);
    device_.setPageLayout(
        QPageLayout(QPageSize(QPageSize::A4), orientation, margins, QPageLayout::Millimeter));
  }

  void NewPage(QPageLayout::Orientation orientation, const QString& title) {
    SetPage(orientation);
    if (!device_.newPage()) throw std::runtime_error("the next page could not be started");
    BeginPage(title, ToQt(report_.title));
  }

  // The printable area of the page as it is, and of a landscape page.
  QRectF Page() const {
    const QRectF points = device_.pageLayout().paintRect(QPageLayout::Point);
    return {0, 0, points.width() * kUnitsPerPoint, points.height() * kUnitsPerPoint};
  }
  QRectF LandscapePage() const {
    const QRectF page = Page();
    return {0, 0, std::max(page.width(), page.height()), std::min(page.width(), page.height())};
  }

  std::size_t RowsOnAPage(const OrderTable& table) const {
    const double room = LandscapePage().height() - kHeader - kFooter - table.RowHeight();
    return static_cast<std::size_t>(std::max(room / table.RowHeight(), 1.0));
  }

  void BeginPage(const QString& title, const QString& subtitle) {
    ++page_;
    const QRectF page = Page();
    WriteLine(kInk, {0, 0, page.width(), 28}, Qt::AlignLeft, Face(kTitlePixels, true), title);
    WriteLine(kFaint, {0, 28, page.width(), 16}, Qt::AlignLeft, Face(kTextPixels), subtitle);
    const QRectF foot(0, page.height() - 16, page.width(), 16);
    WriteLine(kFaint, foot, Qt::AlignLeft, Face(kSmallPixels), QStringLiteral("Velumar"));
    WriteLine(kFaint, foot, Qt::AlignRight, Face(kSmallPixels),
              QStringLiteral("Page %1 of %2").arg(page_).arg(pages_));
  }

  double PrintLines(const QString& heading, const std::vector<Report::Line>& lines, double left,
                    double top, double width) {
    WriteLine(kInk, {left, top, width, kHeading}, Qt::AlignLeft, Face(kHeadingPixels, true),
              heading);
    top += kHeading;
    for (const Report::Line& line : lines) {
      const QString name = ToQt(line.name);
      const double name_width = Width(name, Face(kTextPixels)) + 8;
      WriteLine(kFaint, {left, top, name_width, kRow}, Qt::AlignLeft, Face(kTextPixels), name);
      WriteLine(kInk, {left + name_width, top, width - name_width, kRow}, Qt::AlignRight,
                Face(kTextPixels), ToQt(line.value));
      top += kRow;
      painter_.setPen(QPen(kRule, 0.5));
      painter_.drawLine(QPointF(left, top), QPointF(left + width, top));
    }
    return top;
  }

  void PrintSummary() {
    BeginPage(QStringLiteral("Practice %1: %2").arg(ToQt(report_.what), ToQt(report_.title)),
              ToQt(report_.subtitle));
    const QRectF page = Page();
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
    const QRectF page = Page();
    const QSizeF room(page.width(), page.height() - kFooter - top);
    ResultPlot plot;
    plot.SetPoints(report_.points);
    painter_.save();
    painter_.translate(0, top);
    plot.PaintTo(painter_, room.toSize());
    painter_.restore();
  }

  void PrintOrders(const OrderTable& table, std::size_t first, std::size_t end) {
    NewPage(QPageLayout::Landscape, QStringLiteral("Orders"));
    PrintRow(table, kHeader, Face(table.pixels, true),
             [](std::size_t column) { return std::string(kOrderColumns.at(column).title); });
    double top = kHeader + table.RowHeight();
    painter_.setPen(QPen(kInk, 1));
    painter_.drawLine(QPointF(0, top), QPointF(Page().width(), top));
    for (std::size_t i = first; i < end; ++i, top += table.RowHeight()) {
      const QRectF band(0, top, Page().width(), table.RowHeight());
      if ((i - first) % 2 == 1) painter_.fillRect(band, kBand);
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
      WriteLine(kInk, place, kOrderColumns.at(column).numeric ? Qt::AlignRight : Qt::AlignLeft,
                font, ToQt(text_of(column)));
      left += width;
    }
  }

  // In one line of its place: in a smaller size if necessary, and with its middle left out if even
  // that is too long.
  void WriteLine(const QColor& ink, const QRectF& place, Qt::Alignment alignment, QFont font,
                 const QString& text) {
    while (font.pixelSize() > kSmallestPixels && Width(text, font) > place.width()) {
      font.setPixelSize(font.pixelSize() - 1);
    }
    painter_.setPen(ink);
    painter_.setFont(font);
    painter_.drawText(place, static_cast<int>(alignment | Qt::AlignVCenter | Qt::TextSingleLine),
                      QFontMetricsF(font).elidedText(text, Qt::ElideMiddle, place.width()));
  }

  const Report& report_;
  QPagedPaintDevice& device_;
  QCPPainter painter_;
  std::size_t page_ = 0;
  std::size_t pages_ = 1;
};

}  // namespace

void PrintReport(const Report& report, QPagedPaintDevice& device) { Pages(report, device).Print(); }

void SaveReport(const Report& report, const QString& file) {
  RequireExtension(file, {QStringLiteral("pdf")}, QStringLiteral("a report"));
  SavePages(file, ToQt(report.title),
            [&report](QPagedPaintDevice& device) { PrintReport(report, device); });
}

}  // namespace velumar
