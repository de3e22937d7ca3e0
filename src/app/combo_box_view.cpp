#include "app/combo_box_view.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QScreen>
#include <QSignalBlocker>
#include <algorithm>

#include "app/key_codes.h"
#include "app/text_fit.h"

namespace velumar {

namespace {

constexpr int kVisibleRows = 16;
constexpr int kListPixels = 12;

bool Same(const std::vector<ComboBox::Row>& rows, const std::vector<std::string>& texts) {
  return std::equal(
      rows.begin(), rows.end(), texts.begin(), texts.end(),
      [](const ComboBox::Row& row, const std::string& text) { return row.text == text; });
}

}  // namespace

ComboBoxView::ComboBoxView(FormCanvas& canvas, QWidget& window, ComboBox& box)
    : QComboBox(&window), canvas_(canvas), box_(box), line_(*new FittingLineEdit) {
  setModel(&rows_);
  auto* list = new QListView(this);
  list->setUniformItemSizes(true);  // a list of thousands opens without measuring each line
  setView(list);
  list->setFont(canvas.Look().faces.Plain(kListPixels));
  setLineEdit(&line_);
  setCompleter(nullptr);
  setInsertPolicy(QComboBox::NoInsert);
  setDuplicatesEnabled(true);
  setMaxVisibleItems(kVisibleRows);
  setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  setFocusPolicy(Qt::StrongFocus);
  // A typed text stays typed: leaving the line or Enter doesn't choose the row that reads the same.
  QObject::disconnect(&line_, &QLineEdit::editingFinished, this, nullptr);
  QObject::disconnect(&line_, &QLineEdit::returnPressed, this, nullptr);
  line_.installEventFilter(this);
  connect(&line_, &QLineEdit::textEdited, this, [this](const QString& text) {
    canvas_.Deliver([this, &text] {
      if (box_.Reachable()) box_.SetText(text.toStdString());
    });
    setToolTip(line_.ToolTipFor(ToQString(box_.ToolTip())));
  });
  connect(this, &QComboBox::activated, this, [this](int index) {
    canvas_.Deliver([this, index] { box_.UserChoose(index); });
    Update();
  });
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
  if (Same(box_.Rows(), shown_rows_)) return;
  shown_rows_.clear();
  QStringList texts;
  for (const ComboBox::Row& row : box_.Rows()) {
    shown_rows_.push_back(row.text);
    texts.push_back(ToQString(row.text));
  }
  const QSignalBlocker quiet(this);
  const QSignalBlocker quiet_line(&line_);
  rows_.setStringList(texts);
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
  constexpr int kScrollBarRoom = 40;
  const auto longest = std::max_element(
      shown_rows_.begin(), shown_rows_.end(),
      [](const std::string& a, const std::string& b) { return a.size() < b.size(); });
  if (longest != shown_rows_.end()) {
    const int needed =
        view()->fontMetrics().horizontalAdvance(ToQString(*longest)) + kScrollBarRoom;
    view()->setMinimumWidth(std::clamp(needed, width(), screen()->geometry().width() / 2));
  }
  QComboBox::showPopup();
}

bool ComboBoxView::eventFilter(QObject* watched, QEvent* event) {
  if (watched != &line_) return QComboBox::eventFilter(watched, event);
  if (event->type() == QEvent::MouseButtonDblClick) {
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
