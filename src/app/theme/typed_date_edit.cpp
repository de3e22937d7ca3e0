#include "app/theme/typed_date_edit.h"

#include <QtWidgets>
#include <utility>

namespace velumar {

QDate ToQDate(std::int32_t date) { return {date / 10000, date / 100 % 100, date % 100}; }

std::int32_t ToDateNumber(const QDate& date) {
  return date.year() * 10000 + date.month() * 100 + date.day();
}

void TypedDateEdit::UseFormat(const QString& pattern) {
  QString format = pattern.isEmpty() ? QStringLiteral("yyyy-MM-dd") : pattern;
  if (!format.contains(QLatin1String("yyyy"))) {
    format.replace(QLatin1String("yy"), QLatin1String("yyyy"));
  }
  setDisplayFormat(format);
}

// The base class drops a digit typed over the whole date or before a full part, and a separator
// after a complete part skips the next one: the old month would stay unnoticed.
void TypedDateEdit::keyPressEvent(QKeyEvent* event) {
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

bool TypedDateEdit::AtStartOfPart() const {
  const int cursor = lineEdit()->cursorPosition();
  return cursor == 0 || !text().at(cursor - 1).isDigit();
}

}  // namespace velumar
