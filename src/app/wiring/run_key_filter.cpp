#include "app/wiring/run_key_filter.h"

#include <QtWidgets>
#include <chrono>
#include <utility>

#include "app/controls/control_view.h"
#include "app/windows/desktop_view.h"
#include "base/ignoring.h"

namespace velumar {

namespace {

bool TakesText(const QWidget* widget) {
  if (const auto* const line = qobject_cast<const QLineEdit*>(widget)) return !line->isReadOnly();
  if (const auto* const list = qobject_cast<const QComboBox*>(widget)) return list->isEditable();
  return qobject_cast<const QAbstractSpinBox*>(widget) != nullptr;
}

// The line of a list passes the focus to the list.
QComboBox* ListOf(QObject* line) { return qobject_cast<QComboBox*>(line->parent()); }

// True if a window of the run has the focus, and no popup or box is in front of it.
bool RunWindowIsActive() {
  const auto* const window = dynamic_cast<FormView*>(QApplication::activeWindow());
  return QApplication::activePopupWidget() == nullptr &&
         QApplication::activeModalWidget() == nullptr && window != nullptr && !window->KeepsKeys();
}

}  // namespace

RunKeyFilter::RunKeyFilter(RunKeys& keys) : keys_(keys) {
  constexpr std::chrono::milliseconds kInterval{200};
  connect(&watch_, &QTimer::timeout, this, &RunKeyFilter::WatchTrader);
  watch_.start(kInterval);
  repeat_.setSingleShot(true);
  connect(&repeat_, &QTimer::timeout, this, &RunKeyFilter::StepAgain);
  qApp->installEventFilter(this);
}

void RunKeyFilter::PressFromChart(const RunKeyPress& press) {
  if (QGuiApplication::modalWindow() != nullptr || TraderElsewhere()) return;
  if (press.repeated && IsStepKey(press.code)) return Repeat(press);
  keys_.PressFromChart(press);
}

void RunKeyFilter::Repeat(const RunKeyPress& press) {
  constexpr int kLongestRepeat = 600;  // ms; the slowest keyboards repeat twice a second
  repeated_ = press;
  held_.setRemainingTime(kLongestRepeat);
  if (!repeat_.isActive()) repeat_.start(0);
}

// Waiting events, such as the release of the key, come before the timer's next step.
void RunKeyFilter::StepAgain() {
  const bool boxed = QGuiApplication::modalWindow() != nullptr;
  if (held_.hasExpired() || boxed || TraderElsewhere()) return;
  keys_.PressFromChart(repeated_);
  if (!repeat_.isActive()) repeat_.start(0);
}

// A message box takes the focus from any program, and when it closes another window gets it.
// Neither was chosen by the trader.
void RunKeyFilter::WatchTrader() {
  if (!keys_.InRun()) return;
  IgnoringErrors([this] {
    if (QGuiApplication::modalWindow() != nullptr) {
      box_open_ = true;
    } else if (std::exchange(box_open_, false)) {
      keys_.Trader().Moved();
    } else {
      keys_.Trader().Look();
    }
  });
}

bool RunKeyFilter::TraderElsewhere() {
  WatchTrader();
  return !keys_.Trader().AtRun();
}

bool RunKeyFilter::eventFilter(QObject* receiver, QEvent* event) {
  switch (event->type()) {
    case QEvent::FocusIn:
      // Not only widgets but also their styles get the event.
      if (receiver->isWidgetType()) NoteFocus(receiver, static_cast<const QFocusEvent&>(*event));
      return false;
    case QEvent::MouseButtonPress:
      if (receiver->isWindowType()) keys_.Trader().ComeToRun();
      NoteMouse(receiver);
      return false;
    case QEvent::KeyPress:
      return receiver->isWindowType() && TakesPress(static_cast<const QKeyEvent&>(*event));
    case QEvent::KeyRelease:
      if (!static_cast<const QKeyEvent&>(*event).isAutoRepeat()) repeat_.stop();
      if (receiver->isWindowType()) LeaveBox(static_cast<const QKeyEvent&>(*event));
      return false;
    default:
      return false;
  }
}

// A visit to another window or a popup doesn't change how a control was reached.
void RunKeyFilter::NoteFocus(QObject* receiver, const QFocusEvent& focus) {
  switch (focus.reason()) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
      reached_by_tab_ = receiver;
      break;
    case Qt::ActiveWindowFocusReason:
    case Qt::PopupFocusReason:
      break;
    default:
      reached_by_tab_ = nullptr;
  }
}

// A click on the line of a list means typing, one on its arrow means choosing.
void RunKeyFilter::NoteMouse(QObject* receiver) {
  if (qobject_cast<QLineEdit*>(receiver) != nullptr) typed_list_ = ListOf(receiver);
  if (qobject_cast<QComboBox*>(receiver) != nullptr) typed_list_ = nullptr;
}

// After a choice from a list, the list has the focus although nobody types into it.
bool RunKeyFilter::IsTypedInto(const QWidget* widget) const {
  return TakesText(widget) &&
         (qobject_cast<const QComboBox*>(widget) == nullptr || typed_list_ == widget);
}

// A control reached with Tab is operated by keys. A button needs only the space bar.
bool RunKeyFilter::OwnKey(const QWidget* focus, const QKeyEvent& key) const {
  const bool button = qobject_cast<const QAbstractButton*>(focus) != nullptr;
  return focus == reached_by_tab_ && (!button || key.key() == Qt::Key_Space);
}

bool RunKeyFilter::TakesPress(const QKeyEvent& key) {
  constexpr auto kOtherModifiers = ~(Qt::ShiftModifier | Qt::KeypadModifier);
  if (!RunWindowIsActive()) return false;
  if (keys_.InRun() && TraderElsewhere()) return true;
  if ((key.modifiers() & kOtherModifiers) != Qt::NoModifier) return false;
  const RunKeyPress press{.code = VirtualKeyCode(key),
                          .shift = key.modifiers().testFlag(Qt::ShiftModifier),
                          .repeated = key.isAutoRepeat()};
  QWidget* const focus = QApplication::focusWidget();
  if (!IsRunKey(press) && !key.text().isEmpty() && TakesText(focus)) typed_list_ = focus;
  if (focus != nullptr && (IsTypedInto(focus) || OwnKey(focus, key))) return false;
  const bool repeats = press.repeated && IsStepKey(press.code) && IsRunKey(press);
  if (!repeats || !keys_.InRun()) return keys_.Press(press);
  Repeat(press);
  return true;
}

// After the release, which still goes to the box.
void RunKeyFilter::LeaveBox(const QKeyEvent& key) {
  const bool leaves =
      key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter || key.key() == Qt::Key_Escape;
  QWidget* const focus = QApplication::focusWidget();
  if (!leaves || !keys_.InRun() || !RunWindowIsActive() || !TakesText(focus)) return;
  QMetaObject::invokeMethod(
      focus, [focus] { focus->clearFocus(); }, Qt::QueuedConnection);
}

}  // namespace velumar
