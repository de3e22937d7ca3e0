#include "charthost/view/drawings_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "charthost/view/colour_choices.h"
#include "charts/qt_text.h"

namespace velumar {

DrawingsDialog::DrawingsDialog(QWidget* parent) : QDialog(parent) {
  setWindowTitle(tr("Drawings"));
  chart_ = new QLabel(this);
  chart_->setTextFormat(Qt::PlainText);
  list_ = new QListWidget(this);
  list_->setAccessibleName(tr("Drawings on the chart"));
  chart_->setBuddy(list_);
  connect(list_, &QListWidget::itemSelectionChanged, this, &DrawingsDialog::SelectChosen);
  auto* const close = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(close, &QDialogButtonBox::rejected, this, &QDialog::close);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(chart_);
  layout->addWidget(list_, 1);
  layout->addWidget(BuildButtons());
  layout->addWidget(close);
  resize(520, 360);
}

QWidget* DrawingsDialog::BuildButtons() {
  auto* const row = new QWidget(this);
  auto* const layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  colour_ = new QComboBox(row);
  colour_->setAccessibleName(tr("Colour"));
  connect(colour_, &QComboBox::activated, this, [this](int colour) {
    if (tool_) tool_->Recolour(colour);
  });
  layout->addWidget(colour_);
  const auto add = [&](const QString& text, void (DrawingTool::*act)()) {
    auto* const button = new QPushButton(text, row);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [this, act] {
      if (tool_) (tool_->*act)();
    });
    layout->addWidget(button);
    return button;
  };
  edit_text_ = add(tr("Edit &text..."), &DrawingTool::EditText);
  duplicate_ = add(tr("D&uplicate"), &DrawingTool::Duplicate);
  delete_ = add(tr("&Delete"), &DrawingTool::Delete);
  layout->addStretch(1);
  connect(new QShortcut(QKeySequence::Delete, list_), &QShortcut::activated, delete_,
          &QPushButton::click);
  return row;
}

void DrawingsDialog::ShowChart(DrawingTool* tool, const QString& title) {
  if (tool_ != tool) {
    if (tool_) disconnect(tool_, nullptr, this, nullptr);
    tool_ = tool;
    if (tool_) connect(tool_, &DrawingTool::Changed, this, &DrawingsDialog::Fill);
    Fill();
  }
  chart_->setText(tool == nullptr ? tr("No chart is open") : title);
}

void DrawingsDialog::showEvent(QShowEvent* event) {
  Fill();
  QDialog::showEvent(event);
}

void DrawingsDialog::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) Fill();
}

void DrawingsDialog::Fill() {
  if (selecting_) return Enable();
  if (!isVisible()) return;
  const QSignalBlocker blocker(list_);
  list_->clear();
  FillColours(*colour_);
  if (tool_) {
    for (const std::size_t index : tool_->Shown()) {
      const Drawing& drawing = tool_->At(index);
      QStringList places;
      for (const Anchor& anchor : drawing.anchors) places.append(tool_->Places().TextOf(anchor));
      auto* const item = new QListWidgetItem(ColourIcon(drawing.colour, *this),
                                             ToQt(DrawingTitle(drawing)) + QStringLiteral(":  ") +
                                                 places.join(QStringLiteral("  \u2013  ")),
                                             list_);
      if (tool_->Selected() == index) list_->setCurrentItem(item);
    }
  }
  Enable();
}

// The row with the focus is not always a chosen one, as when the list has just been opened.
void DrawingsDialog::SelectChosen() {
  const std::vector<std::size_t> shown = tool_ ? tool_->Shown() : std::vector<std::size_t>();
  const int row = list_->currentRow();
  if (row < 0 || row >= static_cast<int>(shown.size())) return;
  if (!list_->currentItem()->isSelected()) return tool_->Select(std::nullopt);
  selecting_ = true;
  tool_->Select(shown[static_cast<std::size_t>(row)]);
  tool_->Reveal();
  selecting_ = false;
}

void DrawingsDialog::Enable() {
  const bool selected = tool_ && tool_->Selected();
  for (QWidget* const widget : {static_cast<QWidget*>(colour_), static_cast<QWidget*>(duplicate_),
                                static_cast<QWidget*>(delete_)}) {
    widget->setEnabled(selected);
  }
  edit_text_->setEnabled(selected && tool_->At(*tool_->Selected()).kind == DrawingKind::kText);
  if (selected) colour_->setCurrentIndex(tool_->At(*tool_->Selected()).colour);
}

}  // namespace velumar
