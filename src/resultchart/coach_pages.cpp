#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

#include "charts/picture_file.h"
#include "charts/qt_text.h"
#include "resultchart/coach_file.h"
#include "resultchart/journal_pages.h"
#include "resultchart/number_plot.h"
#include "resultchart/page_style.h"
#include "resultchart/paper.h"

namespace velumar {

namespace {

constexpr double kTableRow = 16;
constexpr double kCellPadding = 5;
constexpr double kNames = 130;  // the column of names before longer texts
constexpr double kBetweenColumns = 24;
constexpr double kBetweenSections = 14;
constexpr double kWidePlotHeight = 265;
constexpr double kPlotHeight = 225;   // of two side by side
constexpr double kWidestFirst = 0.3;  // of the page, for the first column of a table

void Append(std::vector<PageBlock>& blocks, std::vector<PageBlock> more) {
  std::ranges::move(more, std::back_inserter(blocks));
}

PageBlock SectionHeading(const std::string& title) {
  return HeadingBlock(ToQt(title), kHeadingPixels);
}

// A name, and a text that is wrapped in the room next to it.
std::vector<PageBlock> NamedText(const QString& name, const std::string& text, double width) {
  std::vector<PageBlock> blocks = TextBlocks(text, width - kNames, kNames);
  if (blocks.empty()) return blocks;
  PageBlock& first = blocks.front();
  first.paint = [name, paint_text = first.paint](QCPPainter& painter, const QRectF& place) {
    WriteLine(painter, kFaint, QRectF(place.topLeft(), QSizeF(kNames - 8, place.height())),
              Qt::AlignLeft, Face(kTextPixels), name);
    paint_text(painter, place);
  };
  return blocks;
}

// Lays the columns of a table out: as wide as their longest text, and the last one takes the rest.
class TableBlocks {
 public:
  TableBlocks(const CoachTable& table, double room) : table_(table) {
    double sum = 0;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
      double width = TextWidth(ToQt(table.columns[i].title), Face(kTextPixels, true));
      for (const auto& row : table.rows) {
        width = std::max(width, TextWidth(ToQt(row.at(i)), Face(kTextPixels)));
      }
      width += 2 * kCellPadding;
      if (i == 0) width = std::min(width, kWidestFirst * room);
      widths_.push_back(width);
      sum += width;
    }
    // A text column at the end gives way; without one, the first column takes what is left.
    double& rest = table.columns.back().numeric ? widths_.front() : widths_.back();
    rest += room - sum;
  }

  std::vector<PageBlock> Blocks() const {
    std::vector<std::string> titles;
    for (const CoachTable::Column& column : table_.columns) titles.push_back(column.title);
    std::vector<PageBlock> blocks{Row(titles, true, false)};
    bool band = false;
    for (const auto& row : table_.rows) {
      blocks.push_back(Row(row, false, band));
      band = !band;
    }
    return blocks;
  }

 private:
  PageBlock Row(const std::vector<std::string>& cells, bool title, bool band) const {
    std::vector<bool> numeric;
    for (const CoachTable::Column& column : table_.columns) numeric.push_back(column.numeric);
    return {kTableRow, [cells, title, band, numeric, widths = widths_](QCPPainter& painter,
                                                                       const QRectF& place) {
              if (band) painter.fillRect(place, kBand);
              double left = place.left();
              for (std::size_t i = 0; i < cells.size(); ++i) {
                const QRectF cell(left + kCellPadding, place.top(), widths[i] - 2 * kCellPadding,
                                  place.height());
                WriteLine(painter, kInk, cell, numeric[i] ? Qt::AlignRight : Qt::AlignLeft,
                          Face(kTextPixels, title), ToQt(cells[i]));
                left += widths[i];
              }
              if (!title) return;
              painter.setPen(QPen(kInk, 1));
              painter.drawLine(place.bottomLeft(), place.bottomRight());
            }};
  }

  const CoachTable& table_;
  std::vector<double> widths_;
};

// Puts the report into groups, from top to bottom.
class CoachLayout {
 public:
  CoachLayout(const CoachReport& report, double width) : report_(report), width_(width) {}

  std::vector<PageGroup> Groups() {
    AddFacts();
    for (const CoachTable& table : report_.figures) AddTable(table);
    AddPictures();
    for (const CoachTable& table : report_.tables) AddTable(table);
    for (const CoachTrades& list : report_.trades) AddTrades(list);
    AddTerms();
    return std::move(groups_);
  }

 private:
  void AddFacts() {
    PageGroup facts{.blocks = {SectionHeading("What this is about")}, .after = kBetweenSections};
    for (const auto& [name, value] : report_.facts) {
      Append(facts.blocks, NamedText(ToQt(name), value, width_));
    }
    groups_.push_back(std::move(facts));
    PageGroup findings{.blocks = {SectionHeading("What the figures say")},
                       .after = kBetweenSections};
    for (const std::string& line : report_.findings) {
      Append(findings.blocks, TextBlocks(line, width_));
      findings.blocks.push_back({.height = 3, .paint = {}});
    }
    groups_.push_back(std::move(findings));
  }

  void AddTable(const CoachTable& table) {
    PageGroup group{.blocks = {SectionHeading(table.title)}, .after = kBetweenSections};
    if (!table.note.empty()) {
      Append(group.blocks, TextBlocks(table.note, width_));
      group.blocks.push_back({.height = 4, .paint = {}});
    }
    Append(group.blocks, TableBlocks(table, width_).Blocks());
    groups_.push_back(std::move(group));
  }

  // Wide pictures have a row of their own, the others two to a row.
  void AddPictures() {
    const std::vector<CoachPicture>& pictures = report_.pictures;
    for (std::size_t i = 0; i < pictures.size();) {
      const bool pair = !pictures[i].wide && i + 1 < pictures.size() && !pictures[i + 1].wide;
      std::vector<const CoachPicture*> row{&pictures[i]};
      if (pair) row.push_back(&pictures[i + 1]);
      AddPictureRow(row);
      i += row.size();
    }
  }

  void AddPictureRow(const std::vector<const CoachPicture*>& row) {
    const bool wide = row.front()->wide;
    const double width = wide ? width_ : (width_ - kBetweenColumns) / 2;
    const QSizeF size(width, wide ? kWidePlotHeight : kPlotHeight);
    std::vector<QStringList> hints;
    qsizetype lines = 0;
    for (const CoachPicture* const picture : row) {
      hints.push_back(WrappedText(std::string(picture->hint), width));
      lines = std::max(lines, hints.back().size());
    }
    const double line_height = QFontMetricsF(Face(kTextPixels)).height();
    const PageBlock heading = HeadingBlock({}, kTextPixels);
    const double height = heading.height + double(lines) * line_height + size.height();
    const auto paint = [row, hints, width, size, lines, line_height](QCPPainter& painter,
                                                                     const QRectF& place) {
      double left = place.left();
      for (std::size_t i = 0; i < row.size(); ++i) {
        const PageBlock title = HeadingBlock(ToQt(row[i]->picture.title), kTextPixels);
        double top = place.top();
        title.paint(painter, {left, top, width, title.height});
        top += title.height;
        for (qsizetype line = 0; line < hints[i].size(); ++line) {
          painter.setPen(kFaint);
          painter.setFont(Face(kTextPixels));
          painter.drawText(QRectF(left, top + double(line) * line_height, width, line_height),
                           Qt::AlignLeft | Qt::TextSingleLine, hints[i].at(line));
        }
        top += double(lines) * line_height;
        NumberPlot plot;
        plot.SetPicture(std::make_shared<const NumberPicture>(row[i]->picture));
        painter.save();
        painter.translate(left, top);
        plot.PaintTo(painter, size.toSize());
        painter.restore();
        left += width + kBetweenColumns;
      }
    };
    groups_.push_back({.blocks = {{height, paint}}, .after = kBetweenSections});
  }

  // The title and the first trade are not divided.
  void AddTrades(const CoachTrades& list) {
    std::vector<PageBlock> before{SectionHeading(list.title)};
    Append(before, TextBlocks(list.note, width_));
    before.push_back({.height = kBetweenSections, .paint = {}});
    for (const CoachTrade& trade : list.trades) {
      JournalItem item{.title = trade.title, .lines = trade.lines, .pictures = {}};
      for (const std::string& file : {trade.entry_picture, trade.exit_picture}) {
        if (!file.empty()) item.pictures.push_back(file);
      }
      PageGroup group = JournalGroup(item, width_);
      group.blocks.insert(group.blocks.begin(), before.begin(), before.end());
      before.clear();
      groups_.push_back(std::move(group));
    }
  }

  void AddTerms() {
    PageGroup group{.blocks = {SectionHeading("What the words mean")}, .after = 0};
    for (const CoachTerm& term : report_.terms) {
      Append(group.blocks,
             NamedText(ToQt(std::string(term.name)), std::string(term.meaning), width_));
    }
    groups_.push_back(std::move(group));
  }

  const CoachReport& report_;
  double width_;
  std::vector<PageGroup> groups_;
};

void PrintPages(const CoachReport& report, QPagedPaintDevice& device) {
  Paper paper(device);
  const QRectF room = paper.Page().adjusted(0, kHeader, 0, -kFooter);
  const PageFlow flow(CoachLayout(report, room.width()).Groups(), room.height());
  paper.SetCount(flow.Count());
  for (std::size_t page = 0; page < flow.Count(); ++page) {
    paper.BeginPage(QPageLayout::Portrait, ToQt(report.title), ToQt(report.subtitle));
    flow.Paint(paper.Painter(), page, room);
  }
}

}  // namespace

void SaveCoachReport(const CoachReport& report, const QString& file) {
  const QString extension = RequireExtension(file, {QStringLiteral("pdf"), QStringLiteral("html")},
                                             QStringLiteral("a report over all sessions"));
  if (extension == u"pdf") {
    return SavePages(file, ToQt(report.title),
                     [&report](QPagedPaintDevice& device) { PrintPages(report, device); });
  }
  SaveWhole(file, [&report](QIODevice& device) {
    const std::string page = CoachWebPage(report);
    device.write(page.data(), static_cast<qint64>(page.size()));
  });
}

}  // namespace velumar
