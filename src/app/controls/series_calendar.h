#pragma once

#include <QCalendarWidget>
#include <QPushButton>
#include <set>

#include "app/controls/form_canvas.h"
#include "forms/control.h"

namespace velumar {

// The calendar of a start day. Days of the chosen series have a dot; three buttons under it choose
// the first, the last or a random day to start at.
class SeriesCalendar : public QCalendarWidget {
 public:
  SeriesCalendar(FormCanvas& canvas, DatePicker& picker);
  QSize sizeHint() const override { return WithButtons(QCalendarWidget::sizeHint()); }
  QSize minimumSizeHint() const override { return WithButtons(QCalendarWidget::minimumSizeHint()); }

 protected:
  void paintCell(QPainter* painter, const QRect& rect, QDate date) const override;
  void showEvent(QShowEvent* event) override;

 private:
  void Dress();
  void AddButtons();
  // The calendar's own measures know nothing of the row under it.
  QSize WithButtons(QSize size) const;

  FormCanvas& canvas_;
  DatePicker& picker_;
  std::set<std::int32_t> days_;
  QWidget* buttons_ = nullptr;
};

}  // namespace velumar
