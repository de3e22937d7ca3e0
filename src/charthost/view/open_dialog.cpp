#include "charthost/view/open_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QGridLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <set>

#include "charthost/bar_text.h"
#include "charthost/view/folder_completer.h"
#include "charthost/view/security_table.h"
#include "charts/palette.h"
#include "charts/qt_text.h"
#include "marketdata/metalib_error.h"
#include "platform/chart_program.h"

namespace velumar {
namespace {

// How often to check whether the focus has left, and after how many checks to close anyway. Checks
// are counted instead of time: a busy machine may be late in reporting where the focus is.
constexpr int kFocusCheckMilliseconds = 40;
constexpr int kMaxFocusChecks = 30;
constexpr int kMeasuredRows = 200;

QLabel* LabelFor(QWidget* field, const QString& text, QWidget* parent) {
  auto* const label = new QLabel(text, parent);
  label->setBuddy(field);
  return label;
}

// Enter is for the folder that was typed, or for the completed one if there is no such folder.
void EndCompletion(QLineEdit& line) {
  const QString typed = line.text().left(line.selectionStart());
  const bool completed = line.selectionEnd() == line.text().size() && !typed.isEmpty();
  if (completed && QFileInfo(typed).isDir()) line.setText(typed);
  line.deselect();
}

}  // namespace

QString CleanFolder(const QString& typed) {
  QString folder = typed.trimmed();
  folder.replace(u'\\', u'/');
  if (folder == u"~" || folder.startsWith(u"~/")) folder.replace(0, 1, QDir::homePath());
  return QDir::toNativeSeparators(QDir::cleanPath(folder));
}

OpenDialog::OpenDialog(const SeriesSource& source, QWidget* parent)
    : QDialog(parent), source_(source) {
  setWindowTitle(ToQt(kChartFileDialog));
  focus_check_.setSingleShot(true);
  focus_check_.setInterval(kFocusCheckMilliseconds);
  BuildWidgets();
  Connect();
  resize(760, 540);
}

void OpenDialog::BuildWidgets() {
  symbol_line_ = new QLineEdit(this);
  symbol_line_->setPlaceholderText(tr("Type a symbol, or a part of a name to search"));
  interval_ = new QComboBox(this);
  list_ = new QTableView(this);
  table_ = new SecurityTable(this);
  filter_ = new SecurityFilter(*table_, this);
  list_->setModel(filter_);
  list_->setSelectionBehavior(QAbstractItemView::SelectRows);
  list_->setSelectionMode(QAbstractItemView::SingleSelection);
  list_->setAlternatingRowColors(true);
  list_->setShowGrid(false);
  list_->setWordWrap(false);
  list_->setTabKeyNavigation(false);
  list_->setSortingEnabled(true);
  list_->sortByColumn(-1, Qt::AscendingOrder);
  list_->verticalHeader()->hide();
  list_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
  list_->horizontalHeader()->setHighlightSections(false);
  list_->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  list_->horizontalHeader()->setSectionResizeMode(SecurityTable::kName, QHeaderView::Stretch);
  list_->horizontalHeader()->setResizeContentsPrecision(kMeasuredRows);
  message_ = new QLabel(this);
  message_->setWordWrap(true);
  message_->setTextFormat(Qt::PlainText);
  message_->setMinimumHeight(2 * fontMetrics().height() + 4);
  browse_ = new QPushButton(tr("&Browse..."), this);
  folder_line_ = new QLineEdit(this);
  new FolderCompleter(*folder_line_);
  folder_line_->installEventFilter(this);

  auto* const buttons = new QDialogButtonBox(this);
  open_ = buttons->addButton(tr("&Open"), QDialogButtonBox::ActionRole);
  cancel_ = buttons->addButton(QDialogButtonBox::Cancel);
  open_->setDefault(true);

  auto* const grid = new QGridLayout(this);
  grid->addWidget(LabelFor(folder_line_, tr("Fol&der:"), this), 0, 0);
  grid->addWidget(folder_line_, 0, 1, 1, 2);
  grid->addWidget(browse_, 0, 3);
  grid->addWidget(LabelFor(symbol_line_, tr("&Symbol:"), this), 1, 0);
  grid->addWidget(symbol_line_, 1, 1);
  grid->addWidget(LabelFor(interval_, tr("&Interval:"), this), 1, 2);
  grid->addWidget(interval_, 1, 3);
  grid->addWidget(list_, 2, 0, 1, 4);
  grid->addWidget(message_, 3, 0, 1, 2);
  grid->addWidget(buttons, 3, 2, 1, 2);
  grid->setColumnStretch(1, 1);
  grid->setRowStretch(2, 1);

  const std::array<QWidget*, 7> order = {folder_line_, symbol_line_, interval_, list_,
                                         open_,        cancel_,      browse_};
  for (std::size_t i = 1; i < order.size(); ++i) setTabOrder(order[i - 1], order[i]);
}

void OpenDialog::Connect() {
  connect(&focus_check_, &QTimer::timeout, this, &OpenDialog::HideOnceFocusIsGone);
  connect(open_, &QPushButton::clicked, this, &OpenDialog::Proceed);
  connect(cancel_, &QPushButton::clicked, this, &OpenDialog::reject);
  connect(browse_, &QPushButton::clicked, this, &OpenDialog::Browse);
  connect(list_, &QTableView::doubleClicked, this, &OpenDialog::OpenChosen);
  connect(symbol_line_, &QLineEdit::textChanged, this, [this](const QString& text) {
    list_->clearSelection();
    filter_->SetText(text);
    ShowCount();
  });
  connect(interval_, &QComboBox::currentIndexChanged, this, [this] {
    filter_->SetInterval(ChosenInterval());
    ShowCount();
  });
}

void OpenDialog::Start(const QString& folder) {
  leaving_ = false;
  had_focus_ = isActiveWindow();
  delete browser_;
  folder_line_->setText(folder);
  symbol_line_->clear();
  if (ReadFolder(FromQt(CleanFolder(folder)))) {
    ShowCount();
  } else if (folder.isEmpty()) {
    ShowText(tr("Type or browse to a folder with market data, then press Enter."), false);
  }
  folder_line_->setFocus();
  folder_line_->selectAll();
  show();
  raise();
  activateWindow();
}

void OpenDialog::StartCompare(const QString& folder) {
  Start(folder);
  if (folder_.empty()) return;
  ShowText(tr("Choose the series to compare. In a run, its bars come with the played ones."),
           false);
  symbol_line_->setFocus();
}

void OpenDialog::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  folder_line_->setFocus();
  marker_.Show();
}

void OpenDialog::hideEvent(QHideEvent* event) {
  QDialog::hideEvent(event);
  marker_.Hide();
}

// The line itself would take Enter to accept a completion.
bool OpenDialog::eventFilter(QObject* watched, QEvent* event) {
  if (watched == folder_line_ && event->type() == QEvent::KeyPress &&
      folder_line_->hasSelectedText()) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) EndCompletion(*folder_line_);
  }
  return QDialog::eventFilter(watched, event);
}

void OpenDialog::Leave() {
  leaving_ = true;
  focus_checks_ = 0;
  parentWidget()->activateWindow();
  HideOnceFocusIsGone();
}

// The focus may still be on its way into the dialog when the dialog is already done.
void OpenDialog::HideOnceFocusIsGone() {
  if (!leaving_) return;
  const bool gone = had_focus_ && parentWidget()->isActiveWindow();
  if (gone || ++focus_checks_ > kMaxFocusChecks) {
    hide();
  } else {
    focus_check_.start();
  }
}

void OpenDialog::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::ActivationChange && isActiveWindow()) had_focus_ = true;
}

// Enter, or the button: first the folder, then the chart.
void OpenDialog::Proceed() {
  const bool other_folder = FromQt(CleanFolder(folder_line_->text())) != folder_;
  if (folder_line_->hasFocus() || other_folder || folder_.empty()) {
    ShowFolder();
  } else {
    OpenChosen();
  }
}

void OpenDialog::ShowFolder() {
  const QString folder = CleanFolder(folder_line_->text());
  if (!ReadFolder(FromQt(folder))) {
    folder_line_->setFocus();
    folder_line_->selectAll();
    return;
  }
  folder_line_->setText(folder);
  interval_->setCurrentIndex(0);
  symbol_line_->clear();
  symbol_line_->setFocus();
  ShowCount();
}

bool OpenDialog::ReadFolder(const std::string& folder) {
  try {
    table_->Show(source_.List(folder));
    folder_ = folder;
  } catch (const MetaLibError& failure) {
    table_->Show({});
    folder_.clear();
    ShowText(ToQt(failure.what()), true);
  }
  FillIntervals();
  return !folder_.empty();
}

// The key "S" selects the first entry; no interval begins with that letter.
void OpenDialog::FillIntervals() {
  const std::optional<int> before = ChosenInterval();
  std::set<int> intervals;
  for (const SecurityInfo& security : table_->Securities()) intervals.insert(security.interval);
  const QSignalBlocker blocker(interval_);
  interval_->clear();
  interval_->addItem(tr("Series with bars"));
  for (const int interval : intervals) {
    interval_->addItem(ToQt(IntervalTitle(interval)), interval);
    if (interval == before) interval_->setCurrentIndex(interval_->count() - 1);
  }
  filter_->SetInterval(ChosenInterval());
}

std::optional<int> OpenDialog::ChosenInterval() const {
  const QVariant interval = interval_->currentData();
  return interval.isValid() ? std::optional(interval.toInt()) : std::nullopt;
}

std::optional<SecurityInfo> OpenDialog::ChosenRow() const {
  const QModelIndexList rows = list_->selectionModel()->selectedRows();
  if (rows.isEmpty()) return std::nullopt;
  return table_->Securities()[filter_->mapToSource(rows.front()).row()];
}

void OpenDialog::OpenChosen() {
  if (const std::optional<SecurityInfo> row = ChosenRow()) {
    emit Chosen({folder_, row->symbol, row->file_number});
    return;
  }
  // The folder may have changed since it was listed.
  if (!ReadFolder(folder_)) return;
  try {
    const TypedChoice choice = {folder_, FromQt(symbol_line_->text()), ChosenInterval()};
    emit Chosen(RequestOf(choice, table_->Securities()));
  } catch (const std::invalid_argument& failure) {
    ShowText(ToQt(failure.what()), true);
    symbol_line_->setFocus();
    symbol_line_->selectAll();
  }
}

// Not modal, since keys from outside may arrive at any time.
void OpenDialog::Browse() {
  delete browser_;
  browser_ = new QFileDialog(this, tr("Choose a folder with market data"), folder_line_->text());
  browser_->setFileMode(QFileDialog::Directory);
  browser_->setOption(QFileDialog::ShowDirsOnly);
  connect(browser_, &QFileDialog::fileSelected, this, [this](const QString& folder) {
    folder_line_->setText(folder);
    ShowFolder();
  });
  browser_->show();
}

void OpenDialog::ShowText(const QString& text, bool error) {
  QPalette colours = palette();
  if (error) colours.setColor(QPalette::WindowText, Palette::Following(palette()).error);
  message_->setPalette(colours);
  message_->setText(text);
}

void OpenDialog::ShowCount() {
  if (folder_.empty()) return;
  const int shown = filter_->rowCount(QModelIndex());
  const int all = static_cast<int>(table_->Securities().size());
  ShowText(shown == all ? tr("%n series", nullptr, all) : tr("%1 of %2 series").arg(shown).arg(all),
           false);
}

}  // namespace velumar
