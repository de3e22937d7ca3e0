#include "app/controls/series_calendar.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QTextCharFormat>
#include <utility>

#include "app/controls/date_picker_view.h"

namespace velumar {

SeriesCalendar::SeriesCalendar(FormCanvas& canvas, DatePicker& picker)
    : canvas_(canvas), picker_(picker) {
  setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
  AddButtons();
}

// The desktop may have turned dark since it was last open.
void SeriesCalendar::Dress() {
  constexpr int kCalendarPixels = 12;
  const Appearance& look = canvas_.Look();
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
      canvas_.Deliver([this, choice] { picker_.UserChoose(choice); });
      if (QWidget* popup = window(); popup->windowType() == Qt::Popup) popup->close();
    });
    row->addWidget(button);
  }
  layout()->addWidget(buttons_);
}

QSize SeriesCalendar::WithButtons(QSize size) const {
  return {size.width(), size.height() + buttons_->sizeHint().height()};
}

void SeriesCalendar::showEvent(QShowEvent* event) {
  Dress();
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
  const Theme& theme = canvas_.Look().theme;
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(Qt::NoPen);
  painter->setBrush(date == selectedDate() ? theme.on_accent : theme.accent);
  painter->drawEllipse(QPointF(rect.center().x() + 0.5, rect.bottom() - 2.5), kDot, kDot);
  painter->restore();
}

}  // namespace velumar
