#pragma once

#include <QDialog>
#include <string>
#include <vector>

#include "charthost/indicators/indicator_text.h"

class QComboBox;
class QFormLayout;
class QGroupBox;
class QLabel;
class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace velumar {

// Which indicators the charts show, with their parameters and colours, and named sets of them. Not
// modal; changes apply at once.
class IndicatorsDialog : public QDialog {
  Q_OBJECT

 public:
  explicit IndicatorsDialog(QWidget* parent);

  using Indicators = std::vector<ChosenIndicator>;
  // `problems` are shown as they are.
  void Show(const Indicators& indicators, const IndicatorSets& sets,
            const std::vector<std::string>& problems);

 signals:
  void Changed(const velumar::IndicatorsDialog::Indicators& indicators);
  void SetsChanged(const velumar::IndicatorSets& sets);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  QWidget* BuildList();
  QWidget* BuildSets();
  void FillAddMenu(QPushButton& button);
  void Add(const IndicatorRow& row);
  void RemoveSelected();
  // The list after a change, with the indicator at `selected` selected.
  void ShowList(int selected);
  // The fields of the selected indicator.
  void ShowFields();
  void AddParameterFields(int index, const IndicatorRow& row);
  void AddColourField(int index);
  void AddHeightField(int index);
  void ItemChanged(const QListWidgetItem* item);
  // After a field has changed the indicator.
  void Edited(int index);
  void ShowSets(const QString& name);
  void EnableSetButtons();
  void SaveSet();
  void LoadSet();
  void DeleteSet();

  Indicators indicators_;
  IndicatorSets sets_;
  QLabel* problems_;
  QListWidget* list_;
  QPushButton* add_;
  QPushButton* remove_;
  QGroupBox* fields_;
  QFormLayout* form_;
  QComboBox* set_name_;
  QPushButton* save_set_;
  QPushButton* load_set_;
  QPushButton* delete_set_;
};

}  // namespace velumar
