#include "charthost/view/draw_menu.h"

#include <QActionGroup>
#include <QEvent>
#include <QToolBar>
#include <QToolButton>

#include "charthost/view/colour_choices.h"
#include "charthost/view/drawing_icon.h"
#include "charts/qt_text.h"

namespace velumar {

DrawMenu::DrawMenu(const QString& title, DrawingDesk& desk, QWidget* parent)
    : QMenu(title, parent), desk_(desk) {
  AddKinds();
  addSeparator();
  AddActs();
  connect(&desk_, &DrawingDesk::KindChosen, this, &DrawMenu::Update);
  connect(&desk_, &DrawingDesk::Changed, this, &DrawMenu::Update);
  Update();
}

// A chart handles the keys named in these entries.
void DrawMenu::AddKinds() {
  auto* const group = new QActionGroup(this);
  const auto add = [&](const QString& text, const QIcon& icon, std::optional<DrawingKind> kind) {
    QAction* const action = addAction(icon, text, this, [this, kind] { desk_.Choose(kind); });
    action->setCheckable(true);
    group->addAction(action);
    return action;
  };
  select_ = add(tr("&Select\tEsc"), DrawingIcon(DrawingAct::kSelect), std::nullopt);
  for (const DrawingRow& row : DrawingCatalogue()) {
    kinds_.append(add(tr(row.name) + QLatin1Char('\t') + QLatin1Char(row.letter),
                      DrawingIcon(row.kind), row.kind));
  }
}

QAction* DrawMenu::AddAct(const QString& text, const QIcon& icon, const QKeySequence& keys,
                          void (DrawingTool::*act)()) {
  return addAction(icon, text, keys, this, [this, act] {
    if (tool_) (tool_->*act)();
  });
}

void DrawMenu::AddActs() {
  undo_ = AddAct(tr("&Undo"), DrawingIcon(DrawingAct::kUndo), QKeySequence(Qt::CTRL | Qt::Key_Z),
                 &DrawingTool::Undo);
  redo_ = AddAct(tr("&Redo"), DrawingIcon(DrawingAct::kRedo),
                 QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), &DrawingTool::Redo);
  addSeparator();
  duplicate_ = AddAct(tr("&Duplicate"), DrawingIcon(DrawingAct::kDuplicate),
                      QKeySequence(Qt::CTRL | Qt::Key_D), &DrawingTool::Duplicate);
  delete_ = AddAct(tr("D&elete\tDel"), DrawingIcon(DrawingAct::kDelete), {}, &DrawingTool::Delete);
  edit_text_ = AddAct(tr("Edit te&xt..."), {}, {}, &DrawingTool::EditText);
  colours_ = addMenu(tr("C&olour"));
  connect(colours_, &QMenu::aboutToShow, this, &DrawMenu::FillColours);
  addSeparator();
  list_ = addAction(DrawingIcon(DrawingAct::kList), tr("&List of drawings..."),
                    QKeySequence(Qt::CTRL | Qt::Key_L), this, &DrawMenu::ListChosen);
}

void DrawMenu::FillColours() {
  colours_->clear();
  const auto names = ColourNames();
  const bool selected = tool_ && tool_->Selected();
  const int shown = selected ? tool_->At(*tool_->Selected()).colour : desk_.Colour();
  for (int i = 0; i < Drawing::kColours; ++i) {
    QAction* const action = colours_->addAction(
        ColourIcon(i, *this), names[static_cast<std::size_t>(i)], this, [this, i] {
          if (tool_) tool_->Recolour(i);
          Update();
        });
    action->setCheckable(true);
    action->setChecked(i == shown);
  }
}

QToolBar* DrawMenu::MakeToolbar(QWidget* parent) {
  auto* const bar = new QToolBar(tr("Drawing toolbar"), parent);
  bar->setObjectName(QStringLiteral("drawing"));
  bar->setAccessibleName(tr("Drawing toolbar"));
  bar->setMovable(false);
  bar->setFloatable(false);
  bar->setIconSize(QSize(20, 20));
  bar->addAction(select_);
  bar->addActions(kinds_);
  bar->addSeparator();
  bar->addAction(colours_->menuAction());
  bar->addActions({duplicate_, delete_, undo_, redo_, list_});
  for (QAction* const action : bar->actions()) {
    QWidget* const button = bar->widgetForAction(action);
    if (action->isSeparator() || button == nullptr) continue;
    button->setFocusPolicy(Qt::NoFocus);
    // "Trend line (T)"
    const QStringList parts = action->text().remove(QLatin1Char('&')).split(QLatin1Char('\t'));
    const QString keys =
        parts.size() > 1 ? parts[1] : action->shortcut().toString(QKeySequence::NativeText);
    button->setAccessibleName(parts[0]);
    button->setToolTip(keys.isEmpty() ? parts[0] : QStringLiteral("%1 (%2)").arg(parts[0], keys));
  }
  auto* const colours = qobject_cast<QToolButton*>(bar->widgetForAction(colours_->menuAction()));
  colours->setPopupMode(QToolButton::InstantPopup);
  return bar;
}

void DrawMenu::ShowChart(DrawingTool* tool) {
  if (tool_ != tool) {
    if (tool_) disconnect(tool_, nullptr, this, nullptr);
    tool_ = tool;
    if (tool_) connect(tool_, &DrawingTool::Changed, this, &DrawMenu::Update);
  }
  Update();
}

void DrawMenu::changeEvent(QEvent* event) {
  QMenu::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) Update();
}

void DrawMenu::Update() {
  const bool chart = tool_ != nullptr;
  const bool selected = chart && tool_->Selected();
  (desk_.Kind() ? kinds_[static_cast<int>(*desk_.Kind())] : select_)->setChecked(true);
  for (QAction* const action : kinds_ + QList<QAction*>{select_, list_}) action->setEnabled(chart);
  undo_->setEnabled(chart && tool_->CanUndo());
  redo_->setEnabled(chart && tool_->CanRedo());
  duplicate_->setEnabled(selected);
  delete_->setEnabled(selected);
  edit_text_->setEnabled(selected && tool_->At(*tool_->Selected()).kind == DrawingKind::kText);
  colours_->menuAction()->setEnabled(chart);
  const int colour = selected ? tool_->At(*tool_->Selected()).colour : desk_.Colour();
  colours_->setIcon(ColourIcon(colour, *this));
}

}  // namespace velumar
