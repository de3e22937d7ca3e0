#include <QtWidgets>
#include <algorithm>
#include <vector>

#include "app/controls/control_view.h"
#include "forms/panels.h"

namespace velumar {

namespace {

constexpr int kBarFontPixels = 12;

class ToolbarView : public View<QWidget, Toolbar> {
 public:
  explicit ToolbarView(const Parts& parts) : View(parts) {
    constexpr int kAround = 2;
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(kAround, kAround, 0, kAround);
    row->setSpacing(0);
    for (const Toolbar::Item& item : model_.Items()) {
      buttons_.push_back(NewButton(item));
      row->addWidget(buttons_.back());
    }
    row->addStretch();
  }
  void Update() override {
    View::Update();
    for (std::size_t i = 0; i < buttons_.size(); ++i) {
      buttons_[i]->setIcon(QIcon(ArtPixmap(Colours(), ToQt(model_.Items()[i].art),
                                           buttons_[i]->iconSize() * devicePixelRatioF())));
    }
  }

 private:
  QToolButton* NewButton(const Toolbar::Item& item) {
    constexpr int kIconPixels = 14;
    constexpr int kAroundText = 14;
    auto* button = new QToolButton(this);
    button->setAutoRaise(true);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setIconSize({kIconPixels, kIconPixels});
    button->setFont(context_.Look().faces.Plain(kBarFontPixels - 1));
    button->setText(ToQt(item.caption));
    button->setToolTip(ToQt(item.tooltip));
    button->setObjectName(ToQt(model_.Name() + "." + std::to_string(item.index)));
    const QString shown = button->text().remove(QLatin1Char('&'));
    button->setFixedWidth(kIconPixels + kAroundText +
                          button->fontMetrics().horizontalAdvance(shown));
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    connect(button, &QToolButton::clicked, this,
            [this, index = item.index] { Pass(&Toolbar::UserButton, index); });
    return button;
  }

  std::vector<QToolButton*> buttons_;  // one for each item of the toolbar
};

class TabBarView : public View<QTabBar, TabBar> {
 public:
  explicit TabBarView(const Parts& parts) : View(parts) {
    setShape(QTabBar::RoundedSouth);
    setDrawBase(false);
    setFont(context_.Look().faces.Plain(kBarFontPixels));
    for (const std::string& title : model_.Titles()) addTab(ToQt(title));
    connect(this, &QTabBar::currentChanged, this, To(&TabBar::UserChoose));
    connect(this, &QTabBar::currentChanged, this, &TabBarView::Update);
  }
  void Update() override {
    View::Update();
    const QSignalBlocker quiet(this);
    setCurrentIndex(model_.Index());
    // Dark tabs differ too little without it.
    for (int tab = 0; tab < count(); ++tab) {
      setTabTextColor(tab, tab == currentIndex() ? Colours().accent : QColor());
    }
  }

 protected:
  // A trader who has clicked a page goes on in its list, by keys too, unless a text is being
  // written.
  void mouseReleaseEvent(QMouseEvent* event) override {
    QTabBar::mouseReleaseEvent(event);
    const QWidget* const focus = QApplication::focusWidget();
    const bool writes = focus != nullptr && focus->testAttribute(Qt::WA_InputMethodEnabled) &&
                        qobject_cast<const QAbstractItemView*>(focus) == nullptr;
    if (event->button() != Qt::LeftButton || writes) return;
    const auto lists = window()->findChildren<QAbstractItemView*>();
    const auto shown = std::ranges::find_if(lists, &QWidget::isVisible);
    if (shown != lists.end()) (*shown)->setFocus();
  }
};

// A menu bar lies above the contents of its window, whose height doesn't include it.
class MenuView : public View<QMenuBar, Menu> {
 public:
  explicit MenuView(const Parts& parts) : View(parts) {
    setNativeMenuBar(false);
    setFont(context_.Look().faces.Plain(kBarFontPixels));
    QMenu* top = addMenu(ToQt(model_.Text()));
    for (std::size_t list = 0; list < model_.Lists().size(); ++list) AddList(*top, list);
  }
  void Update() override {
    setObjectName(ToQt(model_.Name()));
    for (std::size_t list = 0; list < actions_.size(); ++list) {
      for (std::size_t entry = 0; entry < actions_[list].size(); ++entry) {
        actions_[list][entry]->setChecked(model_.Ticked(list, entry));
      }
    }
  }

 private:
  void AddList(QMenu& top, std::size_t list) {
    QMenu* sub = top.addMenu(ToQt(model_.Lists()[list].caption));
    actions_.emplace_back();
    for (const std::string& text : model_.Lists()[list].entries) {
      QAction* action = sub->addAction(ToQt(text));
      action->setCheckable(true);
      connect(action, &QAction::triggered, this, [this, list, entry = actions_.back().size()] {
        Pass(&Menu::UserEntry, list, entry);
        Update();
      });
      actions_.back().push_back(action);
    }
  }

  std::vector<std::vector<QAction*>> actions_;  // one vector for each list of the menu
};

// A slider or a scroll bar.
template <typename Base, typename Model>
class SliderView : public View<Base, Model> {
 public:
  explicit SliderView(const ViewParts<Model>& parts) : View<Base, Model>(parts) {
    const Model& slider = parts.model;
    const Slider::Range& range = slider.Limits();
    this->setOrientation(slider.Height() > slider.Width() ? Qt::Vertical : Qt::Horizontal);
    this->setRange(range.low, range.high);
    this->setSingleStep(range.step);
    this->setPageStep(std::max(range.step, range.large_step));
    this->connect(this, &Base::valueChanged, this, this->To(&Model::UserMove));
    this->connect(this, &Base::valueChanged, this, &SliderView::Update);
  }
  void Update() override {
    View<Base, Model>::Update();
    const QSignalBlocker quiet(this);
    this->setValue(this->model_.Value());
  }
};

// A press on it goes through to the window.
class ProgressLineView : public View<QProgressBar, ProgressLine> {
 public:
  explicit ProgressLineView(const Parts& parts) : View(parts) { setRange(0, kSteps); }
  void Update() override {
    View::Update();
    setValue(static_cast<int>(model_.Fraction() * kSteps));  // for screen readers
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    if (model_.ToolTip().empty()) return;  // no run yet
    const double radius = height() / 2.0;
    QPainter painter(this);
    DrawRounded(painter, rect(), radius, Qt::NoPen, Colours().border);
    const QRectF passed(0, 0, width() * double{model_.Fraction()}, height());
    DrawRounded(painter, passed, radius, Qt::NoPen, Colours().accent);
  }

 private:
  static constexpr int kSteps = 1000;
};

}  // namespace

void AddBarViews(ViewMakers& makers) {
  makers[ControlKind::kToolbar] = MakeView<ToolbarView>;
  makers[ControlKind::kTabBar] = MakeView<TabBarView>;
  makers[ControlKind::kMenu] = MakeView<MenuView>;
  makers[ControlKind::kSlider] = MakeView<SliderView<QSlider, Slider>>;
  makers[ControlKind::kScrollBar] = MakeView<SliderView<QScrollBar, ScrollBar>>;
  makers[ControlKind::kProgressLine] = MakeView<ProgressLineView>;
}

}  // namespace velumar
