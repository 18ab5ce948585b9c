#include "formula/calendar.h"

#include <chrono>

namespace vantora::embedded {
namespace {

namespace chrono = std::chrono;

constexpr int kLastDay1900 = 2958465;
constexpr int kDaysBetweenSystems = 1462;
constexpr chrono::sys_days kEpoch1900 = chrono::year(1899) / 12 / 31;
constexpr chrono::sys_days kEpoch1904 = chrono::year(1904) / 1 / 1;

}  // namespace

int LastCalendarDay(bool date_1904) {
  return date_1904 ? kLastDay1900 - kDaysBetweenSystems : kLastDay1900;
}

CalendarDate CalendarDateOf(int serial, bool date_1904) {
  const int weekday = (serial + (date_1904 ? kDaysBetweenSystems : 0) + 6) % 7;
  if (!date_1904) {
    if (serial == 0) return {1900, 1, 0, weekday};
    if (serial == 60) return {1900, 2, 29, weekday};
    if (serial > 60) --serial;
  }
  const chrono::year_month_day date{(date_1904 ? kEpoch1904 : kEpoch1900) + chrono::days(serial)};
  return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())), weekday};
}

}  // namespace vantora::embedded
