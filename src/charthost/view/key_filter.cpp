#include "charthost/view/key_filter.h"

#include <QApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QWindow>
#include <algorithm>
#include <array>

#include "charthost/view/main_window.h"
#include "charthost/view/open_dialog.h"
#include "platform/ipc.h"
#include "platform/run_key.h"

namespace velumar {
namespace {

// Longer than a program takes between two keys, shorter than a user waits.
constexpr int kMenuMilliseconds = 180;
constexpr int kAbsenceMilliseconds = 1000;
// Covers all keys that open a chart, in case the dialog is closed between them.
constexpr int kBlindMilliseconds = 2500;

bool IsModifier(const QKeyEvent& key) {
  constexpr std::array kModifiers = {Qt::Key_Shift, Qt::Key_Control, Qt::Key_Alt,
                                     Qt::Key_AltGr, Qt::Key_Meta,    Qt::Key_CapsLock};
  return std::ranges::find(kModifiers, key.key()) != kModifiers.end();
}

// The Latin letter of a key. For layouts without Latin letters Windows still reports the key's
// letter; no other window system uses these numbers for other keys.
int KeyOf(const QKeyEvent& key) {
  const quint32 native = key.nativeVirtualKey();
  const bool other_script = key.key() > 0x7F && key.key() < Qt::Key_Escape;
  return other_script && native >= 'A' && native <= 'Z' ? static_cast<int>(native) : key.key();
}

char LetterOf(int key) {
  if (key >= Qt::Key_A && key <= Qt::Key_Z) return static_cast<char>('A' + (key - Qt::Key_A));
  if (key == Qt::Key_Tab || key == Qt::Key_Backtab) return '\t';
  return key == Qt::Key_Escape ? '\x1b' : '\0';
}

// Letters are their own codes.
int RunKeyCode(int key) {
  static const QHash<int, int> kCodes = {{Qt::Key_Left, run_key::kLeft},
                                         {Qt::Key_Right, run_key::kRight},
                                         {Qt::Key_PageUp, run_key::kPageUp},
                                         {Qt::Key_PageDown, run_key::kPageDown},
                                         {Qt::Key_Space, run_key::kSpace}};
  return key >= Qt::Key_A && key <= Qt::Key_Z ? key : kCodes.value(key, 0);
}

ChartKey StrokeOf(const QKeyEvent& key) {
  const Qt::KeyboardModifiers held = key.modifiers();
  return {LetterOf(KeyOf(key)), held.testFlag(Qt::AltModifier), held.testFlag(Qt::ControlModifier),
          held.testFlag(Qt::ShiftModifier), held.testFlag(Qt::MetaModifier)};
}

}  // namespace

KeyFilter::KeyFilter(MainWindow& window) : QObject(&window), window_(window) {
  menu_timer_.setSingleShot(true);
  connect(&menu_timer_, &QTimer::timeout, this, &KeyFilter::ShowArmedMenu);
  connect(&window, &MainWindow::MenuClosed, this, &KeyFilter::Disarm);
  qApp->installEventFilter(this);
}

bool KeyFilter::eventFilter(QObject* receiver, QEvent* event) {
  if (!receiver->isWindowType() || forwarding_) return false;
  auto* const receiving_window = static_cast<QWindow*>(receiver);
  switch (event->type()) {
    case QEvent::ShortcutOverride:
      return TakesShortcut(receiving_window, static_cast<QKeyEvent*>(event));
    case QEvent::KeyPress:
      return TakesKey(receiving_window, static_cast<QKeyEvent*>(event));
    case QEvent::KeyRelease:
      PassRelease(*static_cast<QKeyEvent*>(event));
      return Forward(receiving_window, static_cast<QKeyEvent*>(event));
    case QEvent::MouseButtonPress:
      if (!window_.IsMenuShown()) Disarm();
      // After a click on a chart the keys of a run work again.
      SendIpcMessage(kRunKeyListener, {});
      return false;
    default:
      return false;
  }
}

// Returning true makes the key arrive as an ordinary key press instead of a shortcut.
bool KeyFilter::TakesShortcut(QWindow* receiver, QKeyEvent* key) {
  if (IsModifier(*key)) return false;
  const bool ours = keys_.Peek(StrokeOf(*key)).taken || IntendedWindow(receiver) != receiver;
  if (ours) key->accept();
  return ours;
}

bool KeyFilter::TakesKey(QWindow* receiver, QKeyEvent* key) {
  if (window_.FileDialog().isVisible()) blind_.setRemainingTime(kBlindMilliseconds);
  if (IsModifier(*key)) return Forward(receiver, key);
  const HostMenu armed = keys_.Armed();
  const HostKeys::Answer answer = keys_.Press(StrokeOf(*key));
  if (answer.action != HostAction::kNone) {
    menu_timer_.stop();
    if (answer.action == HostAction::kOpen) blind_.setRemainingTime(kBlindMilliseconds);
    if (!key->isAutoRepeat()) window_.Act(answer.action);
    return true;
  }
  if (answer.taken) {
    if (window_.IsMenuShown()) window_.ShowMenu(keys_.Armed());
    menu_timer_.start(kMenuMilliseconds);
    return true;
  }
  // The user continues in the menu before it is shown.
  if (armed != HostMenu::kNone && keys_.Armed() != HostMenu::kNone && !window_.IsMenuShown()) {
    ShowArmedMenu();
    return false;
  }
  return Forward(receiver, key) || IsLateKey(receiver, *key) || PassToRun(receiver, *key);
}

// A digit chooses the interval of a chart, a letter what to draw. One of a folder or symbol that
// arrives too late for the dialog must not.
bool KeyFilter::IsLateKey(QWindow* receiver, const QKeyEvent& key) const {
  const bool plain = (key.modifiers() & ~Qt::ShiftModifier) == Qt::NoModifier;
  const bool digit = key.key() >= Qt::Key_0 && key.key() <= Qt::Key_9;
  const bool letter = plain && key.key() >= Qt::Key_A && key.key() <= Qt::Key_Z;
  return receiver == window_.windowHandle() && !blind_.hasExpired() && (digit || letter);
}

// Only keys typed to the charts themselves. A program that opens a chart types blind: letters of a
// folder or symbol that arrive too late for the dialog must not trade.
bool KeyFilter::PassToRun(QWindow* receiver, const QKeyEvent& key) {
  const bool to_charts = receiver == window_.windowHandle() && !window_.IsMenuShown() &&
                         QApplication::activePopupWidget() == nullptr &&
                         keys_.Armed() == HostMenu::kNone;
  constexpr auto kOthers = ~(Qt::ShiftModifier | Qt::KeypadModifier);
  if (!to_charts || !blind_.hasExpired() || (key.modifiers() & kOthers) != Qt::NoModifier) {
    return false;
  }
  const RunKeyPress press{.code = RunKeyCode(KeyOf(key)),
                          .shift = key.modifiers().testFlag(Qt::ShiftModifier),
                          .repeated = key.isAutoRepeat()};
  return IsRunKey(press) &&
         SendIpcMessage(kRunKeyListener, {.first = static_cast<std::uint32_t>(press.code),
                                          .second = (press.shift ? kMessageShift : 0) |
                                                    (press.repeated ? kMessageRepeated : 0)});
}

void KeyFilter::PassRelease(const QKeyEvent& key) {
  const int code = RunKeyCode(KeyOf(key));
  if (!IsRunKey({.code = code}) || key.isAutoRepeat()) return;
  SendIpcMessage(kRunKeyListener,
                 {.first = static_cast<std::uint32_t>(code), .second = kMessageReleased});
}

QWindow* KeyFilter::IntendedWindow(QWindow* receiver) const {
  QWindow* const main = window_.windowHandle();
  OpenDialog& dialog = window_.FileDialog();
  QWindow* const file = dialog.windowHandle();
  if (main == nullptr) return receiver;
  // A menu or list that was just closed still gets the keys already sent to it.
  QWindow* const focus = QGuiApplication::focusWindow();
  QWindow* const below = focus != nullptr && focus->isVisible() ? focus : main;
  QWindow* const meant = receiver->isVisible() ? receiver : below;
  if (!dialog.isVisible() || file == nullptr) return meant;
  if (dialog.IsLeaving()) return meant == file ? main : meant;
  return meant == main ? file : meant;
}

bool KeyFilter::Forward(QWindow* receiver, QKeyEvent* key) {
  QWindow* const intended = IntendedWindow(receiver);
  if (intended == receiver) return false;
  forwarding_ = true;
  QCoreApplication::sendEvent(intended, key);
  forwarding_ = false;
  return true;
}

// While the focus moves from one window to another, none of ours has it. Only a longer absence
// means that the user has left.
void KeyFilter::ShowArmedMenu() {
  menu_timer_.stop();
  if (QGuiApplication::applicationState() == Qt::ApplicationActive) {
    window_.ShowMenu(keys_.Armed());
  } else if (menu_timer_.interval() == kMenuMilliseconds) {
    menu_timer_.start(kAbsenceMilliseconds);
  } else {
    keys_.Disarm();
  }
}

void KeyFilter::Disarm() {
  menu_timer_.stop();
  keys_.Disarm();
}

}  // namespace velumar
