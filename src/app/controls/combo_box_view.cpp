#include "app/controls/combo_box_view.h"

#include <QAbstractProxyModel>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QScreen>
#include <QSignalBlocker>
#include <algorithm>

#include "app/controls/key_codes.h"
#include "app/theme/text_fit.h"
#include "forms/combo_search.h"

namespace velumar {

namespace {

constexpr int kVisibleRows = 16;
constexpr int kListPixels = 12;

// The chosen line comes to the box as its bare text. Which lines are offered is decided outside.
class Offered : public QCompleter {
 public:
  using QCompleter::QCompleter;
  QString pathFromIndex(const QModelIndex& index) const override {
    return index.data(Qt::DisplayRole).toString();
  }
};

void DressList(QAbstractItemView& list, const Appearance& look) {
  list.setPalette(look.theme.Palette());
  list.setFont(look.faces.Plain(kListPixels));
}

}  // namespace

ComboBoxView::ComboBoxView(FormCanvas& canvas, QWidget& window, ComboBox& box)
    : QComboBox(&window), canvas_(canvas), box_(box), line_(*new FittingLineEdit) {
  setModel(&rows_);
  auto* list = new QListView(this);
  list->setUniformItemSizes(true);  // a list of thousands opens without measuring each line
  setView(list);
  setItemDelegate(new ComboRowPainter(this));
  DressList(*list, canvas.Look());
  setLineEdit(&line_);
  setCompleter(nullptr);
  setInsertPolicy(QComboBox::NoInsert);
  setDuplicatesEnabled(true);
  setMaxVisibleItems(kVisibleRows);
  setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  setFocusPolicy(Qt::StrongFocus);
  BindLine();
  line_.setReadOnly(!box.Typable());
  if (box.Sorted()) OfferMatches();
  connect(this, &QComboBox::activated, this, [this](int index) { Choose(index); });
}

void ComboBoxView::BindLine() {
  // A typed text stays typed: leaving the line or Enter doesn't choose the row that reads the same.
  QObject::disconnect(&line_, &QLineEdit::editingFinished, this, nullptr);
  QObject::disconnect(&line_, &QLineEdit::returnPressed, this, nullptr);
  line_.installEventFilter(this);
  connect(&line_, &QLineEdit::textEdited, this, [this](const QString& text) {
    canvas_.Deliver([this, &text] {
      if (box_.Reachable()) box_.SetText(text.toStdString());
    });
    if (offer_ != nullptr) Offer(text);
    setToolTip(line_.ToolTipFor(ToQString(box_.ToolTip())));
  });
}

void ComboBoxView::OfferMatches() {
  offer_ = new Offered(&matches_, this);
  offer_->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
  // Only a line that the arrow keys went to is taken by Enter, never the one that reads the same.
  offer_->setCompletionRole(ComboRows::kNoRole);
  offer_->setMaxVisibleItems(kVisibleRows);
  auto* list = new QListView;
  list->setUniformItemSizes(true);
  offer_->setPopup(list);
  list->setItemDelegate(new ComboRowPainter(list));
  list->installEventFilter(this);
  line_.setCompleter(offer_);
  connect(offer_, qOverload<const QModelIndex&>(&QCompleter::activated), this,
          [this](const QModelIndex& index) {
            if (index.isValid()) Choose(index.data(ComboRows::kRowRole).toInt());
          });
}

void ComboBoxView::Offer(const QString& typed) {
  matches_.Show(box_.Rows(), MatchingRows(box_.Rows(), typed.toStdString()));
  DressList(*offer_->popup(), canvas_.Look());
  offer_->popup()->setMinimumWidth(
      rows_.ListWidth(offer_->popup()->fontMetrics(), width(), screen()->geometry().width() / 2));
}

void ComboBoxView::Choose(int row) {
  canvas_.Deliver([this, row] { box_.UserChoose(row); });
  Update();
}

void ComboBoxView::Update() {
  ApplyCommon(*this, box_);
  ApplyFieldColours(*this, box_, canvas_.Look().theme);
  const QFont font = FitLine(canvas_.Look().faces.For(box_.DesignLook()), height());
  setFont(font);
  line_.SetFullFont(font);
  view()->setPalette(canvas_.Look().theme.Palette());
  UpdateRows();
  UpdateText();
}

void ComboBoxView::UpdateRows() {
  if (rows_.Shows(box_.Rows())) return;
  const QSignalBlocker quiet(this);
  const QSignalBlocker quiet_line(&line_);
  rows_.Show(box_.Rows());
}

void ComboBoxView::UpdateText() {
  const QString wanted = ToQString(box_.Text());
  if (currentIndex() != box_.Index() || line_.text() != wanted) {
    const QSignalBlocker quiet(this);
    const QSignalBlocker quiet_line(&line_);
    const int cursor = line_.cursorPosition();
    setCurrentIndex(box_.Index());
    line_.SetShownText(wanted);
    line_.setCursorPosition(std::min(cursor, static_cast<int>(wanted.size())));
    line_.SetFullFont(font());
  }
  setToolTip(line_.ToolTipFor(ToQString(box_.ToolTip())));
}

void ComboBoxView::showPopup() {
  view()->setMinimumWidth(
      rows_.ListWidth(view()->fontMetrics(), width(), screen()->geometry().width() / 2));
  QComboBox::showPopup();
}

bool ComboBoxView::eventFilter(QObject* watched, QEvent* event) {
  const bool offered = offer_ != nullptr && watched == offer_->popup();
  if (offered && event->type() == QEvent::Hide) {
    // The arrow keys have shown other lines meanwhile; what wasn't taken leaves the typed text.
    QMetaObject::invokeMethod(
        this, [this] { Update(); }, Qt::QueuedConnection);
    return false;
  }
  if (watched != &line_ && !offered) return QComboBox::eventFilter(watched, event);
  // There is nothing else to do on a line that nobody types into.
  if (event->type() == QEvent::MouseButtonRelease && !box_.Typable()) showPopup();
  if (event->type() == QEvent::MouseButtonDblClick && !offered) {
    canvas_.Deliver([this] { box_.UserDoubleClick(); });
  } else if (event->type() == QEvent::KeyRelease) {
    // The line has the focus and keeps the event to itself.
    keyReleaseEvent(static_cast<QKeyEvent*>(event));
    return true;
  }
  return QComboBox::eventFilter(watched, event);
}

void ComboBoxView::keyReleaseEvent(QKeyEvent* event) {
  event->accept();
  if (event->isAutoRepeat()) return;
  const int code = VirtualKeyCode(*event);
  canvas_.Deliver([this, code] { box_.UserKeyUp(code); });
}

void ComboBoxView::wheelEvent(QWheelEvent* event) {
  if (line_.hasFocus()) {
    QComboBox::wheelEvent(event);
  } else {
    event->ignore();  // rolling over the window must not change the security
  }
}

}  // namespace velumar
