#pragma once

#include <QDateEdit>
#include <cstdint>

namespace velumar {

// Days are numbers of the form yyyymmdd in the models. A number that isn't a day gives an invalid
// date.
QDate ToQDate(std::int32_t date);
std::int32_t ToDateNumber(const QDate& date);

// A box for a date, with a calendar, in which a typed "10/12/2005" replaces the date.
class TypedDateEdit : public QDateEdit {
 public:
  explicit TypedDateEdit(QWidget* parent = nullptr) : QDateEdit(parent) { setCalendarPopup(true); }

  // The user's short format, in the letters d, M, y. Years have four digits, since price histories
  // span a century.
  void UseFormat(const QString& pattern);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  // True if the cursor is before a month, day or year.
  bool AtStartOfPart() const;

  bool part_complete_ = false;  // the last digit moved the cursor to the next part
};

}  // namespace velumar
