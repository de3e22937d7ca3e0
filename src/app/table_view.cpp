#include "app/table_view.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <algorithm>

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
  constexpr int kMeasuredRows = 200;
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
  horizontalHeader()->setResizeContentsPrecision(kMeasuredRows);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setSectionsClickable(table.on_header != nullptr);
  connect(horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int column) {
    canvas_.Deliver([this, column] { table_.UserHeader(static_cast<std::size_t>(column)); });
  });
}

void TableView::Update() {
  ApplyCommon(*this, table_);
  setToolTip(QString());  // the rows have their own
  constexpr int kPixels = 12;
  constexpr int kManyPixels = 11;
  setFont(canvas_.Look().faces.Plain(rows_.columnCount() > kFewColumns ? kManyPixels : kPixels));
  horizontalHeader()->setFont(font());
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

// A few columns share the room; many are as wide as their texts.
void TableView::FitColumns() {
  if (rows_.columnCount() == 0) return;
  if (rows_.columnCount() <= kFewColumns) {
    horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    return;
  }
  resizeColumnsToContents();
  horizontalHeader()->setStretchLastSection(true);
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
