#include "app/controls/table_view.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>
#include <numeric>

#include "app/theme/text_fit.h"

namespace velumar {

namespace {

constexpr int kFewColumns = 3;

QVariant Aligned(const Table::Column& column) {
  return QVariant((column.numeric ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
}

}  // namespace

void TableRows::Renew() {
  beginResetModel();
  endResetModel();
}

int TableRows::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(table_.Content().count);
}

int TableRows::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(table_.Columns().size());
}

QVariant TableRows::data(const QModelIndex& index, int role) const {
  const auto row = static_cast<std::size_t>(index.row());
  const auto column = static_cast<std::size_t>(index.column());
  if (row >= table_.Content().count || column >= table_.Columns().size()) return {};
  if (role == Qt::DisplayRole) return ToQString(table_.Content().text(row, column));
  if (role == Qt::ToolTipRole && table_.Content().tip) return ToQString(table_.Content().tip(row));
  if (role == Qt::TextAlignmentRole) return Aligned(table_.Columns()[column]);
  return {};
}

QVariant TableRows::headerData(int section, Qt::Orientation orientation, int role) const {
  const auto place = static_cast<std::size_t>(section);
  // A header asks on when the window was loaded again behind it.
  if (orientation != Qt::Horizontal || place >= table_.Columns().size()) return {};
  const Table::Column& column = table_.Columns()[place];
  if (role == Qt::DisplayRole) return ToQString(column.title);
  if (role == Qt::TextAlignmentRole) return Aligned(column);
  return {};
}

TableView::TableView(FormCanvas& canvas, QWidget& window, Table& table)
    : QTableView(&window), canvas_(canvas), table_(table), rows_(table) {
  constexpr int kRowPixels = 20;
  setModel(&rows_);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setAlternatingRowColors(true);
  setShowGrid(false);
  setWordWrap(false);
  setTabKeyNavigation(false);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  verticalHeader()->hide();
  verticalHeader()->setDefaultSectionSize(kRowPixels);
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setSectionsClickable(table.on_header != nullptr);
  connect(horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int column) {
    canvas_.Deliver([this, column] { table_.UserHeader(static_cast<std::size_t>(column)); });
  });
}

void TableView::Update() {
  ApplyCommon(*this, table_);
  setToolTip(QString());  // the rows have their own
  if (shown_ == table_.Version()) return;
  shown_ = table_.Version();
  rows_.Renew();
  MarkSorting();
  FitColumns();
}

void TableView::MarkSorting() {
  if (!table_.on_header) return;
  horizontalHeader()->setSortIndicatorShown(true);
  horizontalHeader()->setSortIndicator(
      static_cast<int>(table_.SortedBy().column),
      table_.SortedBy().descending ? Qt::DescendingOrder : Qt::AscendingOrder);
}

// A few columns share the room. Many are as wide as their texts, in the largest font that shows all
// of them; the last one takes the rest.
void TableView::FitColumns() {
  constexpr int kFewPixels = 12;
  constexpr int kManyPixels = 11;
  if (rows_.columnCount() == 0) return;
  const bool few = rows_.columnCount() <= kFewColumns;
  QFont font = canvas_.Look().faces.Plain(few ? kFewPixels : kManyPixels);
  std::vector<int> widths;
  if (!few) {
    const QStringList texts = LongestTexts();
    const int room = width() - 2 * frameWidth() - verticalScrollBar()->sizeHint().width();
    widths = ColumnWidths(font, texts);
    while (std::accumulate(widths.begin(), widths.end(), 0) > room &&
           font.pixelSize() > kSmallestPixelSize) {
      font.setPixelSize(font.pixelSize() - 1);
      widths = ColumnWidths(font, texts);
    }
  }
  setFont(font);
  horizontalHeader()->setFont(font);
  horizontalHeader()->setSectionResizeMode(few ? QHeaderView::Stretch : QHeaderView::Interactive);
  horizontalHeader()->setStretchLastSection(!few);
  for (std::size_t i = 0; i < widths.size(); ++i) setColumnWidth(static_cast<int>(i), widths[i]);
}

// Of a long table, rows spread over all of it are measured. The last column's texts don't count.
QStringList TableView::LongestTexts() const {
  constexpr std::size_t kMeasuredRows = 2000;
  const std::size_t count = table_.Content().count;
  const std::size_t step = std::max<std::size_t>(1, count / kMeasuredRows);
  QStringList texts;
  for (std::size_t column = 0; column < table_.Columns().size(); ++column) {
    const bool last = column + 1 == table_.Columns().size();
    std::string longest;
    for (std::size_t row = 0; row < count && !last; row += step) {
      std::string text = table_.Content().text(row, column);
      if (text.size() > longest.size()) longest = std::move(text);
    }
    texts.append(ToQString(longest));
  }
  return texts;
}

// Wide enough for the titles and these texts.
std::vector<int> TableView::ColumnWidths(const QFont& font, const QStringList& texts) const {
  constexpr int kAroundText = 7;
  const QFontMetrics metrics(font);
  std::vector<int> widths;
  for (std::size_t column = 0; column < table_.Columns().size(); ++column) {
    const bool sorted = table_.on_header && table_.SortedBy().column == column;
    const int mark = sorted ? style()->pixelMetric(QStyle::PM_HeaderMarkSize) + kAroundText : 0;
    const int title = metrics.horizontalAdvance(ToQString(table_.Columns()[column].title)) + mark;
    // Among texts of one length, some are a digit wider.
    const int text = metrics.horizontalAdvance(texts[static_cast<qsizetype>(column)]) + 1;
    widths.push_back(std::max(title, text) + kAroundText);
  }
  return widths;
}

void TableView::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    canvas_.Deliver([this] { table_.UserCopy(); });
  } else {
    QTableView::keyPressEvent(event);
  }
}

void TableView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QTableView::selectionChanged(selected, deselected);
  std::vector<std::size_t> rows;
  for (const QModelIndex& index : selectionModel()->selectedRows()) {
    rows.push_back(static_cast<std::size_t>(index.row()));
  }
  std::ranges::sort(rows);
  canvas_.Deliver([this, &rows] { table_.UserSelect(std::move(rows)); });
}

}  // namespace velumar
