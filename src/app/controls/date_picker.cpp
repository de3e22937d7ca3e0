#include <QtWidgets>
#include <set>

#include "app/controls/control_view.h"
#include "app/theme/typed_date_edit.h"

namespace velumar {

namespace {

// A calendar with a dot on each day of the chosen series. Three buttons below it choose the first,
// the last or a random day as the start date.
class SeriesCalendar : public QCalendarWidget {
 public:
  SeriesCalendar(FormContext& context, DatePicker& picker) : context_(context), picker_(picker) {
    setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    AddButtons();
  }
  QSize sizeHint() const override { return WithButtons(QCalendarWidget::sizeHint()); }
  QSize minimumSizeHint() const override { return WithButtons(QCalendarWidget::minimumSizeHint()); }

 protected:
  void paintCell(QPainter* painter, const QRect& rect, QDate date) const override {
    QCalendarWidget::paintCell(painter, rect, date);
    if (!days_.contains(ToDateNumber(date))) return;
    constexpr double kDot = 2;
    const Palette& palette = context_.Look().palette;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(date == selectedDate() ? palette.on_accent : palette.accent);
    painter->drawEllipse(QPointF(rect.center().x() + 0.5, rect.bottom() - 2.5), kDot, kDot);
    painter->restore();
  }
  void showEvent(QShowEvent* event) override {
    ApplyLook();
    days_.clear();
    if (picker_.covered_days) {
      for (const std::int32_t day : picker_.covered_days()) days_.insert(day);
    }
    buttons_->setVisible(static_cast<bool>(picker_.on_choice));
    buttons_->setEnabled(!days_.empty());
    QCalendarWidget::showEvent(event);
  }

 private:
  // Called each time it opens, since the theme may have changed.
  void ApplyLook() {
    constexpr int kCalendarPixels = 12;
    const Appearance& look = context_.Look();
    setPalette(look.palette.ForWidgets());
    setFont(look.faces.Plain(kCalendarPixels));
    QTextCharFormat weekend;
    weekend.setForeground(ReadableOn(look.palette.field, ToQColor(kRed)));
    setWeekdayTextFormat(Qt::Saturday, weekend);
    setWeekdayTextFormat(Qt::Sunday, weekend);
  }
  void AddButtons() {
    buttons_ = new QWidget(this);
    auto* row = new QHBoxLayout(buttons_);
    row->setContentsMargins(6, 2, 6, 6);
    const std::pair<const char*, DayChoice> choices[] = {
        {"First", DayChoice::kFirst}, {"Last", DayChoice::kLast}, {"Random", DayChoice::kRandom}};
    for (const auto& [name, choice] : choices) {
      auto* button = new QPushButton(QString::fromLatin1(name), buttons_);
      button->setAutoDefault(false);
      connect(button, &QPushButton::clicked, this, [this, choice = choice] {
        context_.Deliver([this, choice] { picker_.UserChoose(choice); });
        if (QWidget* popup = window(); popup->windowType() == Qt::Popup) popup->close();
      });
      row->addWidget(button);
    }
    layout()->addWidget(buttons_);
  }
  // The size hints of the base class don't include the row of buttons.
  QSize WithButtons(QSize size) const {
    return {size.width(), size.height() + buttons_->sizeHint().height()};
  }

  FormContext& context_;
  DatePicker& picker_;
  std::set<std::int32_t> days_;
  QWidget* buttons_ = nullptr;
};

// A date in the user's short format, with a calendar.
class DatePickerView : public View<TypedDateEdit, DatePicker> {
 public:
  explicit DatePickerView(const Parts& parts) : View(parts) {
    UseFormat(context_.Look().date_format);
    clearMinimumDate();
    setCalendarWidget(new SeriesCalendar(context_, model_));
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QDateEdit::dateChanged, this, [this](const QDate& date) {
      Pass(&DatePicker::UserPick, ToDateNumber(date));
      Update();
    });
  }
  void Update() override {
    View::Update();
    ApplyFieldColours(*this, model_, Colours());
    setFont(FitLine(DesignFont(), height()));
    const QDate date = ToQDate(model_.Value());
    if (!date.isValid() || date == this->date()) return;
    const QSignalBlocker quiet(this);
    setDate(date);
  }

 protected:
  void keyReleaseEvent(QKeyEvent* event) override {
    QDateEdit::keyReleaseEvent(event);
    PassKeyUp(*event);
  }
  void wheelEvent(QWheelEvent* event) override {
    hasFocus() ? QDateEdit::wheelEvent(event) : event->ignore();
  }
};

}  // namespace

void AddDatePickerView(ViewMakers& makers) {
  makers[ControlKind::kDatePicker] = MakeView<DatePickerView>;
}

}  // namespace velumar
