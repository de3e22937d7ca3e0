#include "charthost/view/folder_line.h"

#include <QKeyEvent>
#include <algorithm>

#include "charthost/folder_text.h"
#include "charthost/view/qt_text.h"

namespace velumar {
namespace {

constexpr int kRestMilliseconds = 250;
constexpr std::size_t kMostSuggestions = 60;
constexpr int kMostRows = 8;

}  // namespace

FolderLine::FolderLine(QWidget* parent) : QLineEdit(parent), suggestions_(new QListWidget(parent)) {
  suggestions_->setFocusPolicy(Qt::NoFocus);
  suggestions_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  suggestions_->setFrameShape(QFrame::Box);
  suggestions_->setSpacing(1);
  suggestions_->hide();
  rest_.setSingleShot(true);
  rest_.setInterval(kRestMilliseconds);
  connect(this, &QLineEdit::textEdited, this, [this] {
    HideSuggestions();
    rest_.start();
  });
  connect(&rest_, &QTimer::timeout, this, &FolderLine::ShowSuggestions);
  connect(suggestions_, &QListWidget::itemClicked, this, [this](const QListWidgetItem* item) {
    Take(item->text());
    emit FolderTaken();
  });
}

void FolderLine::HideSuggestions() {
  rest_.stop();
  suggestions_->hide();
}

void FolderLine::ShowSuggestions() {
  const auto folders = FoldersBeginningWith(FromQt(text()), kMostSuggestions);
  if (folders.empty() || !hasFocus()) return;
  suggestions_->clear();
  for (const std::string& folder : folders) suggestions_->addItem(ToQt(folder));
  suggestions_->setCurrentRow(-1);
  const int rows = std::min(suggestions_->count(), kMostRows);
  const QPoint corner = mapTo(suggestions_->parentWidget(), QPoint(0, height()));
  suggestions_->setGeometry(corner.x(), corner.y(), width(),
                            rows * (suggestions_->sizeHintForRow(0) + 2) + 6);
  suggestions_->show();
  suggestions_->raise();
}

void FolderLine::Take(const QString& folder) {
  setText(folder);
  HideSuggestions();
}

// True if the text has grown.
bool FolderLine::Complete() {
  const std::string common =
      CommonBeginning(FoldersBeginningWith(FromQt(text()), kMostSuggestions));
  if (common.size() <= FromQt(text()).size()) return false;
  setText(ToQt(common));
  ShowSuggestions();
  return true;
}

void FolderLine::MoveChoice(int rows) {
  if (!suggestions_->isVisible()) ShowSuggestions();
  const int last = suggestions_->count() - 1;
  suggestions_->setCurrentRow(std::clamp(suggestions_->currentRow() + rows, -1, last));
}

// Tab moves the focus before keyPressEvent could see it.
bool FolderLine::event(QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const auto* const key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Tab && key->modifiers() == Qt::NoModifier && Complete()) return true;
  }
  return QLineEdit::event(event);
}

void FolderLine::keyPressEvent(QKeyEvent* event) {
  const bool listed = suggestions_->isVisible();
  switch (event->key()) {
    case Qt::Key_Down:
      return MoveChoice(1);
    case Qt::Key_Up:
      return MoveChoice(-1);
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (listed && suggestions_->currentRow() >= 0) Take(suggestions_->currentItem()->text());
      HideSuggestions();
      break;
    case Qt::Key_Escape:
      if (listed) return HideSuggestions();
      break;
    default:
      break;
  }
  QLineEdit::keyPressEvent(event);
}

void FolderLine::focusOutEvent(QFocusEvent* event) {
  HideSuggestions();
  QLineEdit::focusOutEvent(event);
}

}  // namespace velumar
