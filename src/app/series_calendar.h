#pragma once

#include <QCalendarWidget>
#include <QPushButton>
#include <set>

#include "app/form_canvas.h"
#include "forms/control.h"

namespace velumar {

// The calendar of a start day. Days of the chosen series have a dot; three buttons under it choose
// the first, the last or a random day to start at.
class SeriesCalendar : public QCalendarWidget {
 public:
  SeriesCalendar(FormCanvas& canvas, DatePicker& picker);

 protected:
  void paintCell(QPainter* painter, const QRect& rect, QDate date) const override;
  void showEvent(QShowEvent* event) override;

 private:
  void AddButtons();

  FormCanvas& canvas_;
  DatePicker& picker_;
  std::set<std::int32_t> days_;
  QWidget* buttons_ = nullptr;
};

}  // namespace velumar
