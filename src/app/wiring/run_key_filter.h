#pragma once

#include <QDeadlineTimer>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include "shell/run_keys.h"

class QFocusEvent;
class QKeyEvent;

namespace velumar {

// Filters all keys of the program and passes those of a run to the run, whichever of our windows
// has the focus. A box that is typed into keeps its keys until Enter or Esc leaves it; sliders,
// lists and buttons keep theirs only if they were reached with Tab. Keys that arrive while the
// trader works in another program are dropped.
class RunKeyFilter : public QObject {
 public:
  explicit RunKeyFilter(RunKeys& keys);

  // A key that was typed into the chart. Dropped while a message box is open.
  void PressFromChart(const RunKeyPress& press);
  // The key was released in the chart.
  void ReleaseFromChart() { repeat_.stop(); }
  // The mouse was pressed in the chart program.
  void ClickFromChart() { keys_.Trader().ComeToRun(); }

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  void WatchTrader();
  void Repeat(const RunKeyPress& press);
  void StepAgain();
  bool TraderElsewhere();
  bool TakesPress(const QKeyEvent& key);
  void LeaveBox(const QKeyEvent& key);
  void NoteFocus(QObject* receiver, const QFocusEvent& focus);
  void NoteMouse(QObject* receiver);
  bool IsTypedInto(const QWidget* widget) const;
  bool OwnKey(const QWidget* focus, const QKeyEvent& key) const;

  RunKeys& keys_;
  QTimer watch_;
  // A key held down steps as fast as the chart follows, whatever the keyboard's rate.
  QTimer repeat_;
  RunKeyPress repeated_;
  QDeadlineTimer held_;  // in case its release goes to another program
  bool box_open_ = false;
  QPointer<QObject> reached_by_tab_;
  QPointer<QObject> typed_list_;  // the list whose line is being typed into
};

}  // namespace velumar
