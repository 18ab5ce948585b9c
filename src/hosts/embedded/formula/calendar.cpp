#include "formula/calendar.h"

#include <chrono>
#include <cmath>

#include "formula/evaluator.h"

namespace vantora::embedded {
namespace {

namespace chrono = std::chrono;

constexpr int kLastDay1900 = 2958465;

// Days since 1 January 1970 of a date of the proleptic calendar; the month may be any number.
int CivilDays(int year, int month, int day) {
  const int months = year * 12 + month - 1;
  const chrono::year_month_day first{
      chrono::year(static_cast<int>(std::floor(months / 12.0))),
      chrono::month(static_cast<unsigned>(((months % 12) + 12) % 12 + 1)), chrono::day(1)};
  return chrono::sys_days(first).time_since_epoch().count() + day - 1;
}

const int kEpoch1900 = CivilDays(1899, 12, 31);
const int kEpoch1904 = CivilDays(1904, 1, 1);

}  // namespace

bool Is1904(const Call& call) { return call.evaluator().model().date_1904; }
int LastDay(bool is_1904) { return is_1904 ? kLastDay1900 - kDaysBetweenSystems : kLastDay1900; }

// Days are counted from the month's first, across the day that never was as well.
int SerialOf(int year, int month, int day, bool is_1904) {
  const int first = CivilDays(year, month, 1);
  if (is_1904) return first - kEpoch1904 + day - 1;
  const int serial = first - kEpoch1900;
  return (serial >= 60 ? serial + 1 : serial) + day - 1;
}

Date DateOf(int serial, bool is_1904) {
  if (!is_1904) {
    if (serial == 0) return {1900, 1, 0};
    if (serial == 60) return {1900, 2, 29};
    if (serial > 60) --serial;
  }
  const chrono::sys_days days{chrono::days((is_1904 ? kEpoch1904 : kEpoch1900) + serial)};
  const chrono::year_month_day date{days};
  return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day()))};
}

int DaysInMonth(int year, int month, bool is_1904) {
  return SerialOf(year, month + 1, 1, is_1904) - SerialOf(year, month, 1, is_1904);
}

int DayOfWeek(int serial, bool is_1904) {
  return (serial + (is_1904 ? kDaysBetweenSystems : 0) + 6) % 7;
}

int DayArgument(Call& call, std::size_t i) { return DayOf(call, call.Number(i)); }

int DayOf(Call& call, double serial) {
  serial = std::floor(serial);
  if (serial < 0 || serial > LastDay(Is1904(call))) {
    call.Fail(CellError::kNum);
    return 1;
  }
  return static_cast<int>(serial);
}

Scalar DayOrError(int serial, bool is_1904) {
  if (serial < 0 || serial > LastDay(is_1904)) return Scalar::Error(CellError::kNum);
  return Scalar::Number(serial);
}

}  // namespace vantora::embedded
