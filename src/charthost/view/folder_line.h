#pragma once

#include <QLineEdit>
#include <QListWidget>
#include <QTimer>

namespace velumar {

// A line for a folder. When typing rests, the folders that it may become are listed below it;
// Down, Up and the mouse choose one, Tab completes as far as the names agree. The list is no window
// and never takes the focus, so keys that are typed without looking go on as if it weren't there.
class FolderLine : public QLineEdit {
  Q_OBJECT

 public:
  // The list is shown inside the window of `parent`.
  explicit FolderLine(QWidget* parent);

  void HideSuggestions();

 signals:
  // A person took a folder of the list.
  void FolderTaken();

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  bool Complete();
  void ShowSuggestions();
  void Take(const QString& folder);
  void MoveChoice(int rows);

  QListWidget* suggestions_;
  QTimer rest_;
};

}  // namespace velumar
