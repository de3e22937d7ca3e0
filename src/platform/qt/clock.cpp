#include <QDate>

#include "platform/system.h"

namespace velumar {

std::int32_t SystemClock::Today() const {
  const QDate today = QDate::currentDate();
  return today.year() * 10000 + today.month() * 100 + today.day();
}

}  // namespace velumar
