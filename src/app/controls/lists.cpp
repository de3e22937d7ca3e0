#include <QtWidgets>
#include <algorithm>
#include <numeric>
#include <vector>

#include "app/controls/control_view.h"
#include "forms/panels.h"
#include "forms/table.h"

namespace velumar {

namespace {

// In bytes, since an answer of a score service may be endless.
constexpr std::size_t kLongestLine = 1000;
constexpr std::size_t kMeasuredLines = 500;

QString ShownLine(const std::string& line) {
  QString shown = ToQt(line.substr(0, kLongestLine));
  for (QChar& character : shown) {
    if (!character.isPrint() && !character.isSurrogate()) character = QLatin1Char(' ');
  }
  return line.size() > kLongestLine ? shown + QChar(0x2026) : shown;
}

class ListBoxView : public View<QListView, ListBox> {
 public:
  explicit ListBoxView(const Parts& parts) : View(parts) {
    setModel(&lines_);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTextElideMode(Qt::ElideNone);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setTabKeyNavigation(false);
    if (!model_.Wraps()) return;
    setWordWrap(true);
    setResizeMode(QListView::Adjust);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  }
  void Update() override {
    View::Update();
    ApplyFieldColours(*this, model_, Colours());
    setFont(DesignFont());
    if (model_.Lines() == shown_) return;
    shown_ = model_.Lines();
    QStringList lines;
    for (const std::string& line : shown_) lines.append(ShownLine(line));
    setUniformItemSizes(shown_.size() > kMeasuredLines);
    lines_.setStringList(lines);
  }

 private:
  QStringListModel lines_;
  std::vector<std::string> shown_;
};

constexpr int kFewColumns = 3;

QVariant Aligned(const Table::Column& column) {
  return QVariant((column.numeric ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
}

// The rows of a table, read when they become visible.
class TableRows : public QAbstractTableModel {
 public:
  TableRows(const Table& table, const FormContext& context) : table_(table), context_(context) {}
  void Reset() {
    beginResetModel();
    endResetModel();
  }

  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : static_cast<int>(table_.Content().count);
  }
  int columnCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : static_cast<int>(table_.Columns().size());
  }
  QVariant data(const QModelIndex& index, int role) const override {
    const auto row = static_cast<std::size_t>(index.row());
    const auto column = static_cast<std::size_t>(index.column());
    if (row >= table_.Content().count || column >= table_.Columns().size()) return {};
    if (role == Qt::DisplayRole) return ToQt(table_.Content().text(row, column));
    if (role == Qt::ToolTipRole && table_.Content().tip) return ToQt(table_.Content().tip(row));
    if (role == Qt::TextAlignmentRole) return Aligned(table_.Columns()[column]);
    if (role == Qt::ForegroundRole && table_.Content().colour) return InkOf(row);
    return {};
  }
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
    const auto place = static_cast<std::size_t>(section);
    // A header may still ask for a column that the window had before it was loaded again.
    if (orientation != Qt::Horizontal || place >= table_.Columns().size()) return {};
    const Table::Column& column = table_.Columns()[place];
    if (role == Qt::DisplayRole) return ToQt(column.title);
    if (role == Qt::TextAlignmentRole) return Aligned(column);
    return {};
  }

 private:
  QVariant InkOf(std::size_t row) const {
    const Colour colour = table_.Content().colour(row);
    if (colour == 0) return {};
    return ReadableOn(context_.Look().palette.field, ToQColor(colour));
  }

  const Table& table_;
  const FormContext& context_;
};

class TableView : public View<QTableView, Table> {
 public:
  explicit TableView(const Parts& parts);
  void Update() override {
    View::Update();
    setToolTip(QString());  // the rows have their own
    viewport()->update();
    if (shown_ != model_.Version()) {
      shown_ = model_.Version();
      rows_.Reset();
      MarkSorting();
      FitColumns();
    }
    if (SelectedRows() != model_.Selected()) ShowSelection();
  }

 protected:
  // Where a row's details are shown, a click below the rows leaves them there.
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override {
    if (model_.on_select && !index.isValid()) return QItemSelectionModel::NoUpdate;
    return QTableView::selectionCommand(index, event);
  }
  void keyPressEvent(QKeyEvent* event) override {
    if (event->matches(QKeySequence::Copy)) return Pass(&Table::UserCopy);
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (model_.on_key_up && enter) return Pass(&Table::UserKeyUp, kEnterKey);
    if (model_.on_key_up && event->key() == Qt::Key_Delete) {
      return Pass(&Table::UserKeyUp, kDeleteKey);
    }
    QTableView::keyPressEvent(event);
  }
  void mouseDoubleClickEvent(QMouseEvent* event) override {
    QTableView::mouseDoubleClickEvent(event);
    if (indexAt(event->pos()).isValid()) Pass(&Table::UserDoubleClick);
  }
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override {
    QTableView::selectionChanged(selected, deselected);
    if (!showing_selection_) Pass(&Table::UserSelect, SelectedRows());
  }

 private:
  std::vector<std::size_t> SelectedRows() const {
    std::vector<std::size_t> rows;
    for (const QModelIndex& index : selectionModel()->selectedRows()) {
      rows.push_back(static_cast<std::size_t>(index.row()));
    }
    std::ranges::sort(rows);
    return rows;
  }
  void ShowSelection();
  void MarkSorting() {
    if (!model_.on_header) return;
    horizontalHeader()->setSortIndicatorShown(true);
    horizontalHeader()->setSortIndicator(
        static_cast<int>(model_.SortedBy().column),
        model_.SortedBy().descending ? Qt::DescendingOrder : Qt::AscendingOrder);
  }
  void FitColumns();
  void SetColumnWidths();
  QStringList LongestTexts() const;
  std::vector<int> ColumnWidths(const QFont& font, const QStringList& texts) const;

  TableRows rows_;
  unsigned shown_ = 0;  // the version of the table
  bool showing_selection_ = false;
};

TableView::TableView(const Parts& parts) : View(parts), rows_(model_, context_) {
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
  horizontalHeader()->setSectionsClickable(model_.on_header != nullptr);
  connect(horizontalHeader(), &QHeaderView::sectionClicked, this, To(&Table::UserHeader));
}

// Selects the model's rows and scrolls to the first.
void TableView::ShowSelection() {
  showing_selection_ = true;
  QItemSelection selection;
  for (const std::size_t row : model_.Selected()) {
    const QModelIndex index = rows_.index(static_cast<int>(row), 0);
    selection.select(index, index);
  }
  const QModelIndex first = selection.indexes().value(0);
  if (first.isValid()) selectionModel()->setCurrentIndex(first, QItemSelectionModel::NoUpdate);
  selectionModel()->select(selection,
                           QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  if (first.isValid()) scrollTo(first);
  showing_selection_ = false;
}

// A few columns share the width. If there are many, each is as wide as its texts, in the largest
// font that shows all columns, and the last one takes the rest.
void TableView::FitColumns() {
  constexpr int kFewPixels = 12;
  constexpr int kManyPixels = 11;
  if (rows_.columnCount() == 0) return;
  if (model_.Columns().front().width > 0) return SetColumnWidths();
  const bool few = rows_.columnCount() <= kFewColumns;
  QFont font = context_.Look().faces.Plain(few ? kFewPixels : kManyPixels);
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

void TableView::SetColumnWidths() {
  constexpr int kPixels = 11;
  setFont(context_.Look().faces.Plain(kPixels));
  horizontalHeader()->setFont(font());
  horizontalHeader()->setStretchLastSection(true);
  for (std::size_t i = 0; i < model_.Columns().size(); ++i) {
    setColumnWidth(static_cast<int>(i), LogicalPixels(model_.Columns()[i].width));
  }
}

// Measures rows spread over a long table. The last column doesn't count.
QStringList TableView::LongestTexts() const {
  constexpr std::size_t kMeasuredRows = 2000;
  const std::size_t count = model_.Content().count;
  const std::size_t step = std::max<std::size_t>(1, count / kMeasuredRows);
  QStringList texts;
  for (std::size_t column = 0; column < model_.Columns().size(); ++column) {
    const bool last = column + 1 == model_.Columns().size();
    std::string longest;
    for (std::size_t row = 0; row < count && !last; row += step) {
      std::string text = model_.Content().text(row, column);
      if (text.size() > longest.size()) longest = std::move(text);
    }
    texts.append(ToQt(longest));
  }
  return texts;
}

// Wide enough for the titles and these texts.
std::vector<int> TableView::ColumnWidths(const QFont& font, const QStringList& texts) const {
  constexpr int kAroundText = 7;
  const QFontMetrics metrics(font);
  std::vector<int> widths;
  for (std::size_t column = 0; column < model_.Columns().size(); ++column) {
    const bool sorted = model_.on_header && model_.SortedBy().column == column;
    const int mark = sorted ? style()->pixelMetric(QStyle::PM_HeaderMarkSize) + kAroundText : 0;
    const int title = metrics.horizontalAdvance(ToQt(model_.Columns()[column].title)) + mark;
    // Texts of the same length may differ in width by a digit.
    const int text = metrics.horizontalAdvance(texts[static_cast<qsizetype>(column)]) + 1;
    widths.push_back(std::max(title, text) + kAroundText);
  }
  return widths;
}

}  // namespace

void AddListViews(ViewMakers& makers) {
  makers[ControlKind::kListBox] = MakeView<ListBoxView>;
  makers[ControlKind::kTable] = MakeView<TableView>;
}

}  // namespace velumar
