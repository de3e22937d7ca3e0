#include "app/controls/panel_views.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QPainter>
#include <QSignalBlocker>
#include <algorithm>

#include "app/theme/artwork.h"

namespace velumar {

namespace {

constexpr int kTextPixels = 11;

}  // namespace

ToolbarView::ToolbarView(FormCanvas& canvas, QWidget& window, Toolbar& toolbar)
    : QWidget(&window), canvas_(canvas), toolbar_(toolbar) {
  constexpr int kIconPixels = 14;
  constexpr int kAroundText = 14;
  constexpr int kAround = 2;
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(kAround, kAround, 0, kAround);
  row->setSpacing(0);
  for (const Toolbar::Item& item : toolbar.Items()) {
    auto* button = new QToolButton(this);
    button->setAutoRaise(true);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setIconSize({kIconPixels, kIconPixels});
    button->setFont(canvas.Look().faces.Plain(kTextPixels));
    button->setText(ToQString(item.caption));
    button->setToolTip(ToQString(item.tooltip));
    button->setObjectName(ToQString(toolbar.Name() + "." + std::to_string(item.index)));
    const QString shown = button->text().remove(QLatin1Char('&'));
    button->setFixedWidth(kIconPixels + kAroundText +
                          QFontMetrics(button->font()).horizontalAdvance(shown));
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    connect(button, &QToolButton::clicked, this, [this, index = item.index] {
      canvas_.Deliver([this, index] { toolbar_.UserButton(index); });
    });
    row->addWidget(button);
    buttons_.push_back(button);
  }
  row->addStretch();
}

void ToolbarView::Update() {
  ApplyCommon(*this, toolbar_);
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    QToolButton& button = *buttons_[i];
    button.setIcon(
        QIcon(ArtPixmap(canvas_.Look().theme.ArtSet(), ToQString(toolbar_.Items()[i].art),
                        button.iconSize() * devicePixelRatioF())));
  }
}

TabBarView::TabBarView(FormCanvas& canvas, QWidget& window, TabBar& tabs)
    : QTabBar(&window), canvas_(canvas), tabs_(tabs) {
  setShape(QTabBar::RoundedSouth);
  setDrawBase(false);
  setFont(canvas.Look().faces.Plain(kTextPixels + 1));
  for (const std::string& title : tabs.Titles()) addTab(ToQString(title));
  connect(this, &QTabBar::currentChanged, this, [this](int index) {
    canvas_.Deliver([this, index] { tabs_.UserChoose(index); });
    Update();
  });
}

void TabBarView::Update() {
  ApplyCommon(*this, tabs_);
  const QSignalBlocker quiet(this);
  setCurrentIndex(tabs_.Index());
}

SwatchView::SwatchView(FormCanvas& canvas, QWidget& window, Swatch& swatch)
    : QAbstractButton(&window), canvas_(canvas), swatch_(swatch) {
  setAttribute(Qt::WA_Hover);
  connect(this, &QAbstractButton::clicked, this,
          [this] { canvas_.Deliver([this] { swatch_.UserClick(); }); });
}

void SwatchView::Update() {
  ApplyCommon(*this, swatch_);
  update();
}

void SwatchView::paintEvent(QPaintEvent*) {
  constexpr double kRound = 3;
  const Theme& theme = canvas_.Look().theme;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(underMouse() || hasFocus() ? theme.accent : theme.border);
  painter.setBrush(ToQColor(swatch_.ForeColour()));
  painter.drawRoundedRect(QRectF(rect()).adjusted(.5, .5, -.5, -.5), kRound, kRound);
}

LinkView::LinkView(FormCanvas& canvas, QWidget& window, Link& link)
    : QAbstractButton(&window), canvas_(canvas), link_(link) {
  setCursor(Qt::PointingHandCursor);
  setAttribute(Qt::WA_Hover);
  connect(this, &QAbstractButton::clicked, this,
          [this] { canvas_.Deliver([this] { link_.UserClick(); }); });
}

void LinkView::Update() {
  ApplyCommon(*this, link_);
  setText(ToQString(link_.Text()));
  update();
}

void LinkView::paintEvent(QPaintEvent*) {
  QFont font = canvas_.Look().faces.For(link_.DesignLook());
  font.setUnderline(underMouse() || hasFocus());
  QPainter painter(this);
  painter.setFont(font);
  painter.setPen(canvas_.Look().theme.accent);
  painter.drawText(rect(), Qt::AlignRight | Qt::AlignVCenter, text());
}

ScrollBarView::ScrollBarView(FormCanvas& canvas, QWidget& window, ScrollBar& bar)
    : QScrollBar(bar.Height() > bar.Width() ? Qt::Vertical : Qt::Horizontal, &window),
      canvas_(canvas),
      bar_(bar) {
  setRange(bar.Limits().low, bar.Limits().high);
  setSingleStep(bar.Limits().step);
  setPageStep(std::max(bar.Limits().step, bar.Limits().large_step));
  connect(this, &QScrollBar::valueChanged, this, [this](int value) {
    canvas_.Deliver([this, value] { bar_.UserMove(value); });
    Update();
  });
}

void ScrollBarView::Update() {
  ApplyCommon(*this, bar_);
  const QSignalBlocker quiet(this);
  setValue(bar_.Value());
}

MenuView::MenuView(FormCanvas& canvas, QWidget& window, Menu& menu)
    : QMenuBar(&window), canvas_(canvas), menu_(menu) {
  setNativeMenuBar(false);
  setFont(canvas.Look().faces.Plain(kTextPixels + 1));
  QMenu* top = addMenu(ToQString(menu.Text()));
  for (std::size_t list = 0; list < menu.Lists().size(); ++list) AddList(*top, list);
}

void MenuView::AddList(QMenu& top, std::size_t list) {
  QMenu* sub = top.addMenu(ToQString(menu_.Lists()[list].caption));
  actions_.emplace_back();
  for (const std::string& text : menu_.Lists()[list].entries) {
    QAction* action = sub->addAction(ToQString(text));
    action->setCheckable(true);
    const std::size_t entry = actions_.back().size();
    connect(action, &QAction::triggered, this, [this, list, entry] {
      canvas_.Deliver([this, list, entry] { menu_.UserEntry(list, entry); });
      Update();
    });
    actions_.back().push_back(action);
  }
}

void MenuView::Update() {
  setObjectName(ToQString(menu_.Name()));
  for (std::size_t list = 0; list < actions_.size(); ++list) {
    for (std::size_t entry = 0; entry < actions_[list].size(); ++entry) {
      actions_[list][entry]->setChecked(menu_.Ticked(list, entry));
    }
  }
}

void LineView::Update() {
  ApplyCommon(*this, line_);
  update();
}

void LineView::paintEvent(QPaintEvent*) {
  QPainter(this).fillRect(rect(), ToQColor(line_.ForeColour()));
}

void SheetView::Update() {
  ApplyCommon(*this, sheet_);
  update();
}

void SheetView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setPen(canvas_.Look().theme.border);
  painter.setBrush(Qt::white);
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

}  // namespace velumar
