#include <QCalendarWidget>
#include <QDateEdit>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTextCharFormat>
#include <set>
#include <utility>

#include "app/controls/control_view.h"
#include "app/controls/key_codes.h"
#include "app/theme/fonts.h"

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
  void paintCell(QPainter* painter, const QRect& rect, QDate date) const override;
  void showEvent(QShowEvent* event) override;

 private:
  void ApplyLook();
  void AddButtons();
  // The size hints of the base class don't include the row of buttons.
  QSize WithButtons(QSize size) const {
    return {size.width(), size.height() + buttons_->sizeHint().height()};
  }

  FormContext& context_;
  DatePicker& picker_;
  std::set<std::int32_t> days_;
  QWidget* buttons_ = nullptr;
};

// Called each time it opens, since the theme may have changed.
void SeriesCalendar::ApplyLook() {
  constexpr int kCalendarPixels = 12;
  const Appearance& look = context_.Look();
  setPalette(look.theme.Palette());
  setFont(look.faces.Plain(kCalendarPixels));
  QTextCharFormat weekend;
  weekend.setForeground(ReadableOn(look.theme.field, ToQColor(kRed)));
  setWeekdayTextFormat(Qt::Saturday, weekend);
  setWeekdayTextFormat(Qt::Sunday, weekend);
}

void SeriesCalendar::AddButtons() {
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

void SeriesCalendar::showEvent(QShowEvent* event) {
  ApplyLook();
  const std::vector<std::int32_t> days =
      picker_.covered_days ? picker_.covered_days() : std::vector<std::int32_t>();
  days_ = {days.begin(), days.end()};
  buttons_->setVisible(static_cast<bool>(picker_.on_choice));
  buttons_->setEnabled(!days_.empty());
  QCalendarWidget::showEvent(event);
}

void SeriesCalendar::paintCell(QPainter* painter, const QRect& rect, QDate date) const {
  QCalendarWidget::paintCell(painter, rect, date);
  if (!days_.contains(ToDateNumber(date))) return;
  constexpr double kDot = 2;
  const Theme& theme = context_.Look().theme;
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(Qt::NoPen);
  painter->setBrush(date == selectedDate() ? theme.on_accent : theme.accent);
  painter->drawEllipse(QPointF(rect.center().x() + 0.5, rect.bottom() - 2.5), kDot, kDot);
  painter->restore();
}

// A date in the user's short format, with a calendar.
class DatePickerView : public View<QDateEdit, DatePicker> {
 public:
  DatePickerView(FormContext& context, QWidget& parent, DatePicker& picker);
  void Update() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  // True if the cursor is before a month, day or year.
  bool AtStartOfPart() const;

  bool part_complete_ = false;  // the last digit moved the cursor to the next part
};

DatePickerView::DatePickerView(FormContext& context, QWidget& parent, DatePicker& picker)
    : View(context, parent, picker) {
  setCalendarPopup(true);
  setDisplayFormat(DisplayFormat(context.Look().date_format));
  clearMinimumDate();
  setCalendarWidget(new SeriesCalendar(context, picker));
  setFocusPolicy(Qt::StrongFocus);
  connect(this, &QDateEdit::dateChanged, this, [this](const QDate& date) {
    context_.Deliver([this, &date] { model_.UserPick(ToDateNumber(date)); });
    Update();
  });
}

void DatePickerView::Update() {
  View::Update();
  ApplyFieldColours(*this, model_, Colours());
  setFont(FitLine(DesignFont(), height()));
  const QDate date = ToQDate(model_.Value());
  if (!date.isValid() || date == this->date()) return;
  const QSignalBlocker quiet(this);
  setDate(date);
}

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

bool DatePickerView::AtStartOfPart() const {
  const int cursor = lineEdit()->cursorPosition();
  return cursor == 0 || !text().at(cursor - 1).isDigit();
}

void DatePickerView::keyReleaseEvent(QKeyEvent* event) {
  QDateEdit::keyReleaseEvent(event);
  if (event->isAutoRepeat()) return;
  const int code = VirtualKeyCode(*event);
  context_.Deliver([this, code] { model_.UserKeyUp(code); });
}

void DatePickerView::wheelEvent(QWheelEvent* event) {
  if (hasFocus()) {
    QDateEdit::wheelEvent(event);
  } else {
    event->ignore();
  }
}

}  // namespace

void AddDatePickerView(ViewMakers& makers) {
  makers[ControlKind::kDatePicker] = MakeView<DatePickerView>;
}

}  // namespace velumar
