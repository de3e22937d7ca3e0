#pragma once

#include <QDeadlineTimer>
#include <QObject>
#include <QTimer>

#include "charthost/host_keys.h"

class QKeyEvent;
class QWindow;

namespace velumar {

class MainWindow;

// Sees every key of the program first. It runs the key sequences of other programs without waiting
// for menus. Keys typed while the file dialog is opening go to the dialog, those typed while it is
// closing to the main window. The keys of a run are passed on to the simulator, so that they work
// whichever window is in front: only plain keys typed to the charts, and none within 2.5 seconds of
// the file dialog, into which programs type blind.
class KeyFilter : public QObject {
  Q_OBJECT

 public:
  explicit KeyFilter(MainWindow& window);

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  bool TakesShortcut(QWindow* receiver, QKeyEvent* key);
  bool TakesKey(QWindow* receiver, QKeyEvent* key);
  // The window that should get a key that was sent to `receiver`.
  QWindow* IntendedWindow(QWindow* receiver) const;
  bool Forward(QWindow* receiver, QKeyEvent* key);
  void PassRelease(const QKeyEvent& key);
  bool IsLateKey(QWindow* receiver, const QKeyEvent& key) const;
  bool PassToRun(QWindow* receiver, const QKeyEvent& key);
  void ShowArmedMenu();
  void Disarm();

  MainWindow& window_;
  HostKeys keys_;
  QTimer menu_timer_;
  bool forwarding_ = false;
  QDeadlineTimer blind_;  // until then a key may be meant for a dialog that has closed
};

}  // namespace velumar
