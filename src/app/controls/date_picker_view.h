#pragma once

#include <QDateEdit>

#include "app/controls/control_view.h"

namespace velumar {

// A day in the user's short date form, with a calendar.
class DatePickerView : public QDateEdit, public ControlView {
 public:
  DatePickerView(FormCanvas& canvas, QWidget& window, DatePicker& picker);
  QWidget& Widget() override { return *this; }
  void Update() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  // True if the cursor is before a month, day or year.
  bool AtStartOfPart() const;

  FormCanvas& canvas_;
  DatePicker& picker_;
  bool part_complete_ = false;  // the last digit moved the cursor to the next part
};

// Between days and numbers of the form yyyymmdd; a number that names no day gives an invalid date.
QDate ToQDate(std::int32_t date);
std::int32_t ToDateNumber(const QDate& date);

}  // namespace velumar
