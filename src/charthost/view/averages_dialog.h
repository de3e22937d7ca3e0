#pragma once

#include <QDialog>
#include <array>

#include "charthost/chart_model.h"

class QCheckBox;
class QSpinBox;

namespace velumar {

// Which moving averages are shown, and of how many bars. Not modal; changes apply at once.
class AveragesDialog : public QDialog {
  Q_OBJECT

 public:
  explicit AveragesDialog(QWidget* parent);

  using Averages = std::array<AverageOptions, 2>;
  void Show(const Averages& averages);

 signals:
  void Changed(const velumar::AveragesDialog::Averages& averages);

 private:
  void Report();

  std::array<QCheckBox*, 2> shown_;
  std::array<QSpinBox*, 2> periods_;
};

}  // namespace velumar
