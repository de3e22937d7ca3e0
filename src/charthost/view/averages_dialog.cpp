#include "charthost/view/averages_dialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSpinBox>

namespace velumar {

AveragesDialog::AveragesDialog(QWidget* parent) : QDialog(parent) {
  setWindowTitle(tr("Moving averages"));
  auto* const grid = new QGridLayout(this);
  const std::array<QString, 2> names = {tr("&First average of"), tr("&Second average of")};
  for (int i = 0; i < 2; ++i) {
    shown_[i] = new QCheckBox(names[i], this);
    periods_[i] = new QSpinBox(this);
    periods_[i]->setRange(1, ChartOptions::kLongestPeriod);
    grid->addWidget(shown_[i], i, 0);
    grid->addWidget(periods_[i], i, 1);
    grid->addWidget(new QLabel(tr("bars"), this), i, 2);
    connect(shown_[i], &QCheckBox::toggled, this, &AveragesDialog::Report);
    connect(periods_[i], &QSpinBox::valueChanged, this, &AveragesDialog::Report);
  }
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::hide);
  grid->addWidget(buttons, 2, 0, 1, 3);
}

void AveragesDialog::Show(const Averages& averages) {
  for (std::size_t i = 0; i < averages.size(); ++i) {
    const QSignalBlocker quiet_box(shown_[i]);
    const QSignalBlocker quiet_period(periods_[i]);
    shown_[i]->setChecked(averages[i].shown);
    periods_[i]->setValue(averages[i].period);
  }
  show();
  raise();
  activateWindow();
}

void AveragesDialog::Report() {
  Averages averages;
  for (std::size_t i = 0; i < averages.size(); ++i) {
    averages[i] = {shown_[i]->isChecked(), periods_[i]->value()};
  }
  emit Changed(averages);
}

}  // namespace velumar
