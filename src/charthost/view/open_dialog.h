#pragma once

#include <QDialog>
#include <QPointer>
#include <QTimer>

#include "charthost/series_source.h"
#include "charthost/view/dialog_plate.h"

class QComboBox;
class QFileDialog;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;

namespace velumar {

class FolderLine;
class SecurityFilter;
class SecurityTable;

// The file dialog "Open". Programs type into it without looking: a folder, blanks, Enter; a symbol,
// blanks, End, Tab, "S", Enter. Tab leads from the symbol to the choice of the interval, where "S"
// stands for "Series with bars". People may also browse, filter, click and choose a row.
class OpenDialog : public QDialog {
  Q_OBJECT

 public:
  OpenDialog(const SeriesSource& source, QWidget* parent);

  // Shows the dialog as if new, the folder line selected whole.
  void Start(const QString& folder);
  // Goes away once the main window has the focus, so that no key falls between two windows. Keys
  // that still come belong to the main window.
  void Leave();
  bool IsLeaving() const { return leaving_; }

 signals:
  void Chosen(const velumar::SeriesRequest& request);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void BuildWidgets();
  void Connect();
  void Proceed();
  void GoWhenFocusIsGone();
  bool TurnToFolder();
  bool ReadFolder(const std::string& folder);
  void FillIntervals();
  void OpenChosen();
  std::optional<SecurityInfo> ChosenRow() const;
  std::optional<int> ChosenInterval() const;
  void Browse();
  void ShowText(const QString& text, bool error);
  void ShowCount();

  const SeriesSource& source_;
  FolderLine* folder_line_;
  QLineEdit* symbol_line_;
  QComboBox* interval_;
  QTableView* list_;
  QLabel* message_;
  QPushButton* browse_;
  QPushButton* open_;
  QPushButton* cancel_;
  QPointer<QFileDialog> browser_;
  SecurityTable* table_;
  SecurityFilter* filter_;
  std::string folder_;  // whose securities are listed, empty when none are
  bool leaving_ = false;
  bool had_focus_ = false;  // since it was last started
  QTimer look_;
  int looks_ = 0;
  DialogPlate plate_;
};

}  // namespace velumar
