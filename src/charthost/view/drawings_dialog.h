#pragma once

#include <QDialog>
#include <QPointer>

#include "charthost/view/drawing_tool.h"

class QComboBox;
class QLabel;
class QListWidget;
class QPushButton;

namespace velumar {

// All drawings on the active chart. The selected one is selected and in view on the chart, too. Not
// modal; changes apply at once.
class DrawingsDialog : public QDialog {
  Q_OBJECT

 public:
  explicit DrawingsDialog(QWidget* parent);

  // nullptr without a chart.
  void ShowChart(DrawingTool* tool, const QString& title);

 protected:
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  QWidget* BuildButtons();
  void Fill();
  void SelectChosen();
  void Enable();

  QPointer<DrawingTool> tool_;
  bool selecting_ = false;  // a row, so the list stays as it is
  QLabel* chart_;
  QListWidget* list_;
  QComboBox* colour_;
  QPushButton* edit_text_;
  QPushButton* duplicate_;
  QPushButton* delete_;
};

}  // namespace velumar
