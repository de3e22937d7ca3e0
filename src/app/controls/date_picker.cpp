#include <QtWidgets>
#include <set>
#include <utility>

#include "app/controls/control_view.h"

namespace velumar {

namespace {

// Days are numbers of the form yyyymmdd in the model. A number that isn't a day gives an invalid
// date.
QDate ToQDate(std::int32_t date) { return {date / 10000, date / 100 % 100, date % 100}; }

std::int32_t ToDateNumber(const QDate& date) {
  return date.year() * 10000 + date.month() * 100 + date.day();
}

// Years have four digits, since price histories span a century.
QString DisplayFormat(const QString& pattern) {
  QString format = pattern.isEmpty() ? QStringLiteral("yyyy-MM-dd") : pattern;
  if (!format.contains(QLatin1String("yyyy"))) {
    format.replace(QLatin1String("yy"), QLatin1String("yyyy"));
  }
  return format;
}

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
class DatePickerView : public View<QDateEdit, DatePicker> {
 public:
  explicit DatePickerView(const Parts& parts) : View(parts) {
    setCalendarPopup(true);
    setDisplayFormat(DisplayFormat(context_.Look().date_format));
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
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override {
    QDateEdit::keyReleaseEvent(event);
    PassKeyUp(*event);
  }
  void wheelEvent(QWheelEvent* event) override {
    hasFocus() ? QDateEdit::wheelEvent(event) : event->ignore();
  }

 private:
  // True if the cursor is before a month, day or year.
  bool AtStartOfPart() const {
    const int cursor = lineEdit()->cursorPosition();
    return cursor == 0 || !text().at(cursor - 1).isDigit();
  }

  bool part_complete_ = false;  // the last digit moved the cursor to the next part
};

// Lets a typed "10/12/2005" replace the date. The base class drops a digit typed over the whole
// date or before a full part, and a separator after a complete part skips the next one: the old
// month would stay unnoticed.
void DatePickerView::keyPressEvent(QKeyEvent* event) {
  const QChar typed = event->text().isEmpty() ? QChar() : event->text().front();
  const bool separator = typed.isPrint() && !typed.isLetterOrNumber();
  if (std::exchange(part_complete_, false) && separator) return;
  if (typed.isDigit() && lineEdit()->selectedText() == text()) {
    setSelectedSection(sectionAt(0));
  } else if (typed.isDigit() && !lineEdit()->hasSelectedText() && AtStartOfPart()) {
    setSelectedSection(currentSection());
  }
  const Section part = currentSection();
  QDateEdit::keyPressEvent(event);
  part_complete_ = typed.isDigit() && currentSection() != part;
}

}  // namespace

void AddDatePickerView(ViewMakers& makers) {
  makers[ControlKind::kDatePicker] = MakeView<DatePickerView>;
}

}  // namespace velumar
