#pragma once

#include <QDeadlineTimer>
#include <QObject>
#include <QTimer>

#include "charthost/host_keys.h"

class QKeyEvent;
class QWindow;

namespace velumar {

class MainWindow;

// Sees every key of the program first. It runs the keys that other programs send without waiting
// for menus, and brings keys to the file dialog that were typed while it was still on its way to
// the front, or to the main window while the dialog was on its way out. The keys of a run go to the
// simulator that replays the chart, so that it doesn't matter which window is in front.
class KeyFilter : public QObject {
  Q_OBJECT

 public:
  explicit KeyFilter(MainWindow& window);

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  bool TakesShortcut(QWindow* receiver, QKeyEvent* key);
  bool TakesKey(QWindow* receiver, QKeyEvent* key);
  // The window that should get a key sent to `receiver`.
  QWindow* RightfulWindow(QWindow* receiver) const;
  bool Forward(QWindow* receiver, QKeyEvent* key);
  bool HandOn(QWindow* receiver, const QKeyEvent& key);
  void ShowArmedMenu();
  void Disarm();

  MainWindow& window_;
  HostKeys keys_;
  QTimer menu_timer_;
  bool forwarding_ = false;
  QDeadlineTimer blind_;  // until then keys may be meant for a dialog that has gone
};

}  // namespace velumar
