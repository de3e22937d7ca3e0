#include "app/controls/date_picker_view.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalBlocker>
#include <utility>

#include "app/controls/key_codes.h"
#include "app/controls/series_calendar.h"
#include "app/theme/text_fit.h"

namespace velumar {

namespace {

// Years show with four digits, since the days of a history span a century.
QString DisplayFormat(const QString& pattern) {
  QString format = pattern.isEmpty() ? QStringLiteral("yyyy-MM-dd") : pattern;
  if (!format.contains(QLatin1String("yyyy"))) {
    format.replace(QLatin1String("yy"), QLatin1String("yyyy"));
  }
  return format;
}

}  // namespace

QDate ToQDate(std::int32_t date) { return {date / 10000, date / 100 % 100, date % 100}; }

std::int32_t ToDateNumber(const QDate& date) {
  return date.year() * 10000 + date.month() * 100 + date.day();
}

DatePickerView::DatePickerView(FormCanvas& canvas, QWidget& window, DatePicker& picker)
    : QDateEdit(&window), canvas_(canvas), picker_(picker) {
  setCalendarPopup(true);
  setDisplayFormat(DisplayFormat(canvas.Look().date_format));
  clearMinimumDate();
  setCalendarWidget(new SeriesCalendar(canvas, picker));
  setFocusPolicy(Qt::StrongFocus);
  connect(this, &QDateEdit::dateChanged, this, [this](const QDate& date) {
    canvas_.Deliver([this, &date] { picker_.UserPick(ToDateNumber(date)); });
    Update();
  });
}

void DatePickerView::Update() {
  ApplyCommon(*this, picker_);
  ApplyFieldColours(*this, picker_, canvas_.Look().theme);
  setFont(FitLine(canvas_.Look().faces.For(picker_.DesignLook()), height()));
  const QDate date = ToQDate(picker_.Value());
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
  canvas_.Deliver([this, code] { picker_.UserKeyUp(code); });
}

void DatePickerView::wheelEvent(QWheelEvent* event) {
  if (hasFocus()) {
    QDateEdit::wheelEvent(event);
  } else {
    event->ignore();
  }
}

}  // namespace velumar
