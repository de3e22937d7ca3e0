#include "charthost/view/indicators_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <cmath>

#include "charthost/view/colour_choices.h"
#include "charts/qt_text.h"

namespace velumar {
namespace {

// The one that is used least, so that new lines differ.
int FreshColour(const std::vector<ChosenIndicator>& indicators) {
  std::array<int, ChosenIndicator::kColours> uses = {};
  for (const ChosenIndicator& chosen : indicators) ++uses[static_cast<std::size_t>(chosen.colour)];
  return static_cast<int>(std::min_element(uses.begin(), uses.end()) - uses.begin());
}

QPushButton* AddButton(const QString& text, QBoxLayout& layout) {
  auto* const button = new QPushButton(text);
  button->setAutoDefault(false);
  layout.addWidget(button);
  return button;
}

}  // namespace

IndicatorsDialog::IndicatorsDialog(QWidget* parent) : QDialog(parent) {
  setWindowTitle(tr("Indicators"));
  problems_ = new QLabel(this);
  problems_->setTextFormat(Qt::PlainText);
  problems_->setWordWrap(true);
  fields_ = new QGroupBox(this);
  form_ = new QFormLayout(fields_);
  auto* const columns = new QHBoxLayout;
  columns->addWidget(BuildList(), 1);
  columns->addWidget(fields_, 1);
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::hide);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(problems_);
  layout->addLayout(columns, 1);
  layout->addWidget(BuildSets());
  layout->addWidget(buttons);
  resize(sizeHint().expandedTo({560, 380}));
}

QWidget* IndicatorsDialog::BuildList() {
  auto* const column = new QWidget(this);
  auto* const layout = new QVBoxLayout(column);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* const title = new QLabel(tr("&Shown in all charts"), column);
  list_ = new QListWidget(column);
  list_->setAccessibleName(tr("Indicators"));
  list_->setAccessibleDescription(tr("Space shows or hides one, Delete removes it."));
  title->setBuddy(list_);
  auto* const buttons = new QHBoxLayout;
  add_ = AddButton(tr("&Add"), *buttons);
  FillAddMenu(*add_);
  remove_ = AddButton(tr("&Remove"), *buttons);
  layout->addWidget(title);
  layout->addWidget(list_, 1);
  layout->addLayout(buttons);
  connect(remove_, &QPushButton::clicked, this, &IndicatorsDialog::RemoveSelected);
  auto* const remove_key = new QShortcut(QKeySequence::Delete, list_);
  remove_key->setContext(Qt::WidgetShortcut);
  connect(remove_key, &QShortcut::activated, this, &IndicatorsDialog::RemoveSelected);
  connect(list_, &QListWidget::itemChanged, this, &IndicatorsDialog::ItemChanged);
  connect(list_, &QListWidget::currentRowChanged, this, &IndicatorsDialog::ShowFields);
  return column;
}

void IndicatorsDialog::FillAddMenu(QPushButton& button) {
  auto* const menu = new QMenu(&button);
  const auto add_section = [&](const QString& title, IndicatorPane pane) {
    menu->addSection(title);
    for (const IndicatorRow& row : IndicatorCatalogue()) {
      if (row.pane == pane) menu->addAction(ToQt(row.name), this, [this, &row] { Add(row); });
    }
  };
  add_section(tr("Over the price"), IndicatorPane::kPrice);
  add_section(tr("Over the volume"), IndicatorPane::kVolume);
  add_section(tr("In a pane of its own"), IndicatorPane::kOwn);
  button.setMenu(menu);
}

QWidget* IndicatorsDialog::BuildSets() {
  auto* const row = new QWidget(this);
  auto* const layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* const title = new QLabel(tr("S&et"), row);
  set_name_ = new QComboBox(row);
  set_name_->setEditable(true);
  set_name_->setInsertPolicy(QComboBox::NoInsert);
  set_name_->setAccessibleName(tr("Name of a set of indicators"));
  set_name_->lineEdit()->setPlaceholderText(tr("Name"));
  set_name_->lineEdit()->setMaxLength(60);
  title->setBuddy(set_name_);
  layout->addWidget(title);
  layout->addWidget(set_name_, 1);
  save_set_ = AddButton(tr("Sa&ve"), *layout);
  load_set_ = AddButton(tr("&Load"), *layout);
  delete_set_ = AddButton(tr("&Delete"), *layout);
  connect(save_set_, &QPushButton::clicked, this, &IndicatorsDialog::SaveSet);
  connect(load_set_, &QPushButton::clicked, this, &IndicatorsDialog::LoadSet);
  connect(delete_set_, &QPushButton::clicked, this, &IndicatorsDialog::DeleteSet);
  connect(set_name_, &QComboBox::currentTextChanged, this, &IndicatorsDialog::EnableSetButtons);
  return row;
}

void IndicatorsDialog::Show(const Indicators& indicators, const IndicatorSets& sets,
                            const std::vector<std::string>& problems) {
  indicators_ = indicators;
  sets_ = sets;
  QStringList texts;
  for (const std::string& problem : problems) texts.append(ToQt(problem));
  problems_->setText(texts.join(u'\n'));
  problems_->setVisible(!texts.isEmpty());
  ShowList(std::max(0, list_->currentRow()));
  ShowSets(set_name_->currentText());
  show();
  raise();
  activateWindow();
}

void IndicatorsDialog::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) ShowList(list_->currentRow());
}

void IndicatorsDialog::ShowList(int selected) {
  {
    const QSignalBlocker quiet(list_);
    list_->clear();
    for (const ChosenIndicator& chosen : indicators_) {
      auto* const item =
          new QListWidgetItem(ColourIcon(chosen.colour, *this), ToQt(IndicatorLabel(chosen)));
      item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
      item->setCheckState(chosen.shown ? Qt::Checked : Qt::Unchecked);
      list_->addItem(item);
    }
    list_->setCurrentRow(std::min(selected, list_->count() - 1));
  }
  add_->setEnabled(indicators_.size() < kMostIndicators);
  remove_->setEnabled(!indicators_.empty());
  ShowFields();
}

void IndicatorsDialog::ShowFields() {
  while (form_->rowCount() > 0) form_->removeRow(0);
  const int index = list_->currentRow();
  fields_->setVisible(index >= 0);
  if (index < 0) return;
  const IndicatorRow* const row = FindIndicator(indicators_[static_cast<std::size_t>(index)].key);
  if (row == nullptr) return;
  fields_->setTitle(ToQt(row->name));
  AddParameterFields(index, *row);
  AddColourField(index);
  if (row->pane == IndicatorPane::kOwn) AddHeightField(index);
}

void IndicatorsDialog::AddParameterFields(int index, const IndicatorRow& row) {
  for (std::size_t i = 0; i < row.parameters.size(); ++i) {
    const ParameterRow& parameter = row.parameters[i];
    auto* const field = new QDoubleSpinBox(fields_);
    field->setDecimals(parameter.decimals);
    field->setRange(parameter.least, parameter.most);
    field->setSingleStep(parameter.decimals == 0 ? 1 : std::pow(10, -parameter.decimals));
    field->setValue(indicators_[static_cast<std::size_t>(index)].parameters[i]);
    field->setAccessibleName(ToQt(parameter.name));
    form_->addRow(ToQt(parameter.name), field);
    connect(field, &QDoubleSpinBox::valueChanged, this, [this, index, i](double value) {
      indicators_[static_cast<std::size_t>(index)].parameters[i] = value;
      Edited(index);
    });
  }
}

void IndicatorsDialog::AddColourField(int index) {
  auto* const field = new QComboBox(fields_);
  field->setAccessibleName(tr("Colour"));
  FillColours(*field);
  field->setCurrentIndex(indicators_[static_cast<std::size_t>(index)].colour);
  form_->addRow(tr("Colour"), field);
  connect(field, &QComboBox::currentIndexChanged, this, [this, index](int colour) {
    indicators_[static_cast<std::size_t>(index)].colour = colour;
    Edited(index);
  });
}

void IndicatorsDialog::AddHeightField(int index) {
  auto* const field = new QSpinBox(fields_);
  field->setRange(ChosenIndicator::kLeastHeight, ChosenIndicator::kMostHeight);
  field->setSuffix(tr(" % of the prices"));
  field->setSingleStep(5);
  field->setValue(indicators_[static_cast<std::size_t>(index)].height);
  field->setAccessibleName(tr("Height in percent of the prices"));
  form_->addRow(tr("Height"), field);
  connect(field, &QSpinBox::valueChanged, this, [this, index](int height) {
    indicators_[static_cast<std::size_t>(index)].height = height;
    Edited(index);
  });
}

void IndicatorsDialog::Edited(int index) {
  const ChosenIndicator& chosen = indicators_[static_cast<std::size_t>(index)];
  const QSignalBlocker quiet(list_);
  list_->item(index)->setText(ToQt(IndicatorLabel(chosen)));
  list_->item(index)->setIcon(ColourIcon(chosen.colour, *this));
  emit Changed(indicators_);
}

void IndicatorsDialog::ItemChanged(const QListWidgetItem* item) {
  indicators_[static_cast<std::size_t>(list_->row(item))].shown = item->checkState() == Qt::Checked;
  emit Changed(indicators_);
}

void IndicatorsDialog::Add(const IndicatorRow& row) {
  if (indicators_.size() >= kMostIndicators) return;
  indicators_.push_back(UsualIndicator(row, FreshColour(indicators_)));
  ShowList(static_cast<int>(indicators_.size()) - 1);
  list_->setFocus();
  emit Changed(indicators_);
}

void IndicatorsDialog::RemoveSelected() {
  const int index = list_->currentRow();
  if (index < 0) return;
  indicators_.erase(indicators_.begin() + index);
  ShowList(index);
  emit Changed(indicators_);
}

void IndicatorsDialog::ShowSets(const QString& name) {
  {
    const QSignalBlocker quiet(set_name_);
    set_name_->clear();
    for (const auto& [set, indicators] : sets_) set_name_->addItem(ToQt(set));
    set_name_->setCurrentText(name);
  }
  EnableSetButtons();
}

void IndicatorsDialog::EnableSetButtons() {
  const std::string name = FromQt(set_name_->currentText().trimmed());
  const bool known = sets_.contains(name);
  save_set_->setEnabled(!name.empty());
  load_set_->setEnabled(known);
  delete_set_->setEnabled(known);
}

void IndicatorsDialog::SaveSet() {
  const QString name = set_name_->currentText().trimmed();
  sets_[FromQt(name)] = indicators_;
  ShowSets(name);
  emit SetsChanged(sets_);
}

void IndicatorsDialog::LoadSet() {
  const auto found = sets_.find(FromQt(set_name_->currentText().trimmed()));
  if (found == sets_.end()) return;
  indicators_ = found->second;
  ShowList(0);
  emit Changed(indicators_);
}

void IndicatorsDialog::DeleteSet() {
  sets_.erase(FromQt(set_name_->currentText().trimmed()));
  ShowSets(QString());
  emit SetsChanged(sets_);
}

}  // namespace velumar
