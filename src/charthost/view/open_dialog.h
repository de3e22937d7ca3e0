#pragma once

#include <QDialog>
#include <QPointer>
#include <QTimer>

#include "charthost/series_source.h"
#include "charthost/view/chart_desktop.h"

class QComboBox;
class QFileDialog;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;

namespace velumar {

class SecurityFilter;
class SecurityTable;

// A folder as it was typed, in the system's own form: "\" and "/" both separate, doubled and
// closing ones and blanks at both ends are dropped, and "~" at the beginning is the user's home.
QString CleanFolder(const QString& typed);

// The file dialog "Open". Programs type into it blind: a folder, blanks, Enter; a symbol, blanks,
// End, Tab, "S", Enter. Tab moves from the symbol to the intervals, where "S" selects "Series with
// bars". Traders may also browse, filter and choose a row.
class OpenDialog : public QDialog {
  Q_OBJECT

 public:
  OpenDialog(const SeriesSource& source, QWidget* parent);

  // Shows an empty dialog with this folder, selected.
  void Start(const QString& folder);
  // The same, but the folder is known: the trader types or chooses the symbol.
  void StartCompare(const QString& folder);
  // Closes once the main window has the focus, so that no key is lost between the two. Keys that
  // still arrive are for the main window.
  void Leave();
  bool IsLeaving() const { return leaving_; }

 signals:
  void Chosen(const velumar::SeriesRequest& request);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void BuildWidgets();
  void Connect();
  void Proceed();
  void HideOnceFocusIsGone();
  void ShowFolder();
  bool ReadFolder(const std::string& folder);
  void FillIntervals();
  void OpenChosen();
  std::optional<SecurityInfo> ChosenRow() const;
  std::optional<int> ChosenInterval() const;
  void Browse();
  void ShowText(const QString& text, bool error);
  void ShowCount();

  const SeriesSource& source_;
  QLineEdit* folder_line_;
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
  std::string folder_;  // that is listed; empty if none is
  bool leaving_ = false;
  bool had_focus_ = false;  // since Start
  QTimer focus_check_;
  int focus_checks_ = 0;
  DialogMarker marker_;
};

}  // namespace velumar
