#pragma once

#include <QMenu>
#include <QPointer>

#include "charthost/view/drawing_tool.h"

class QToolBar;

namespace velumar {

// The menu Draw, and a toolbar with the same entries: what the next clicks on a chart draw, and
// what can be done with the drawings of the active one.
class DrawMenu : public QMenu {
  Q_OBJECT

 public:
  DrawMenu(const QString& title, DrawingDesk& desk, QWidget* parent);

  // A new toolbar for the left edge of a window.
  QToolBar* MakeToolbar(QWidget* parent);
  // The chart that the entries act on, nullptr without one.
  void ShowChart(DrawingTool* tool);

 signals:
  void ListChosen();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void AddKinds();
  void AddActs();
  QAction* AddAct(const QString& text, const QIcon& icon, const QKeySequence& keys,
                  void (DrawingTool::*act)());
  void FillColours();
  void Update();

  DrawingDesk& desk_;
  QPointer<DrawingTool> tool_;
  QAction* select_;
  QList<QAction*> kinds_;  // in the order of the catalogue
  QAction* undo_;
  QAction* redo_;
  QAction* duplicate_;
  QAction* delete_;
  QAction* edit_text_;
  QMenu* colours_;
  QAction* list_;
};

}  // namespace velumar
