// Distances between dates: by workdays, by weeks, in years of 360 days, in fractions of years.
#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <tuple>

#include "formula/calendar.h"
#include "formula/functions.h"
#include "formula/lexical.h"

namespace vantora::embedded {
namespace {

// --- Weeks ---

// Week 1 holds the year's first Thursday; weeks start on Monday.
Operand IsoWeekNumber(Call& call) {
  const bool is_1904 = Is1904(call);
  const int day = DayArgument(call, 0);
  const int thursday = day - (DayOfWeek(day, is_1904) + 6) % 7 + 3;
  // The days before the calendar's first are those of the year before.
  if (thursday < (is_1904 ? 0 : 1)) return Scalar::Number(52);
  const int first = SerialOf(DateOf(thursday, is_1904).year, 1, 1, is_1904);
  return Scalar::Number((thursday - first) / 7 + 1);
}

// Week 1 holds the 1st of January.
Operand WeekNumber(Call& call) {
  const bool is_1904 = Is1904(call);
  const int day = DayArgument(call, 0), kind = call.Integer(1, 1);
  if (call.failed()) return {};
  if (kind == 21) return IsoWeekNumber(call);
  // 1 and 2, 11 to 17: the week starts on Sunday and Monday, on Monday to Sunday.
  if (kind != 1 && kind != 2 && (kind < 11 || kind > 17)) return Scalar::Error(CellError::kNum);
  const int start = kind == 1 ? 0 : kind == 2 ? 1 : (kind - 10) % 7;
  const int first = SerialOf(DateOf(day, is_1904).year, 1, 1, is_1904);
  const int before = (DayOfWeek(first, is_1904) + 7 - start) % 7;
  return Scalar::Number(std::floor((day - first + before) / 7.0) + 1);
}

// --- Workdays ---

// Which days are not worked on: true from Monday to Sunday.
using Weekend = std::array<bool, 7>;
constexpr Weekend kSaturdayAndSunday = {false, false, false, false, false, true, true};

// "0000011", or a number: 1 to 7 for Saturday and Sunday to Friday and Saturday, 11 to 17 for
// Sunday alone to Saturday alone.
Weekend WeekendArgument(Call& call, std::size_t i) {
  if (!call.Given(i)) return kSaturdayAndSunday;
  Weekend weekend{};
  const Scalar value = call.Value(i);
  if (value.IsText()) {
    const bool is_pattern =
        value.text.size() == 7 && value.text.find_first_not_of("01") == std::string_view::npos;
    if (!is_pattern) call.Fail(CellError::kValue);
    for (std::size_t day = 0; is_pattern && day < 7; ++day) weekend[day] = value.text[day] == '1';
    return weekend;
  }
  const int kind = call.Integer(i);
  if (kind >= 1 && kind <= 7) {
    weekend[(kind + 4) % 7] = weekend[(kind + 5) % 7] = true;
  } else if (kind >= 11 && kind <= 17) {
    weekend[(kind + 2) % 7] = true;
  } else {
    call.Fail(CellError::kNum);
  }
  return weekend;
}

std::set<int> HolidaysArgument(Call& call, std::size_t i) {
  std::set<int> holidays;
  if (!call.Given(i)) return holidays;
  ForEachValueOf(call, call[i], [&](const Scalar& value) {
    if (value.IsBlank() || call.failed()) return;
    if (value.IsBoolean()) call.Fail(CellError::kValue);
    holidays.insert(DayOf(call, call.NumberOf(value)));
  });
  return holidays;
}

class WorkCalendar {
 public:
  WorkCalendar(const Weekend& weekend, std::set<int> holidays, bool is_1904)
      : weekend_(weekend), holidays_(std::move(holidays)), is_1904_(is_1904) {}

  bool IsInWeekend(int day) const { return weekend_[(DayOfWeek(day, is_1904_) + 6) % 7]; }
  bool IsWorkday(int day) const { return !IsInWeekend(day) && !holidays_.contains(day); }
  bool HasWorkdays() const { return std::ranges::count(weekend_, false) > 0; }

  // Both ends included; first <= last.
  int WorkdaysBetween(int first, int last) const {
    const int weeks = (last - first + 1) / 7;
    int count = weeks * static_cast<int>(std::ranges::count(weekend_, false));
    for (int day = first + weeks * 7; day <= last; ++day) count += !IsInWeekend(day);
    for (auto day = holidays_.lower_bound(first); day != holidays_.end() && *day <= last; ++day) {
      count -= !IsInWeekend(*day);
    }
    return count;
  }

 private:
  Weekend weekend_;
  std::set<int> holidays_;
  bool is_1904_;
};

// Dates of these functions may not be Booleans.
int WorkDate(Call& call, std::size_t i) {
  if (call.Value(i).IsBoolean()) call.Fail(CellError::kValue);
  return DayArgument(call, i);
}

Operand CountWorkdays(Call& call, const Weekend& weekend, std::size_t holidays) {
  int first = WorkDate(call, 0), last = WorkDate(call, 1);
  const WorkCalendar calendar(weekend, HolidaysArgument(call, holidays), Is1904(call));
  if (call.failed()) return {};
  const int sign = first <= last ? 1 : -1;
  if (sign < 0) std::swap(first, last);
  return Scalar::Number(sign * calendar.WorkdaysBetween(first, last));
}

Operand NetWorkdays(Call& call) { return CountWorkdays(call, kSaturdayAndSunday, 2); }
Operand NetWorkdaysOfWeekend(Call& call) {
  return CountWorkdays(call, WeekendArgument(call, 2), 3);
}

Operand MoveByWorkdays(Call& call, const Weekend& weekend, std::size_t holidays) {
  int day = WorkDate(call, 0);
  if (call.Value(1).IsBoolean()) call.Fail(CellError::kValue);
  int left = call.Integer(1);
  const bool is_1904 = Is1904(call);
  const WorkCalendar calendar(weekend, HolidaysArgument(call, holidays), is_1904);
  if (call.failed()) return {};
  if (!calendar.HasWorkdays()) return Scalar::Error(CellError::kValue);
  const int step = left < 0 ? -1 : 1;
  while (left != 0 && day >= 0 && day <= LastDay(is_1904)) {
    day += step;
    if (calendar.IsWorkday(day)) left -= step;
  }
  return DayOrError(day, is_1904);
}

Operand Workday(Call& call) { return MoveByWorkdays(call, kSaturdayAndSunday, 2); }
Operand WorkdayOfWeekend(Call& call) { return MoveByWorkdays(call, WeekendArgument(call, 2), 3); }

// --- Distances ---

bool EndsFebruary(const Date& date, bool is_1904) {
  return date.month == 2 && date.day == DaysInMonth(date.year, 2, is_1904);
}

int Days360Between(const Date& first, const Date& last) {
  return (last.year - first.year) * 360 + (last.month - first.month) * 30 + last.day - first.day;
}

// Every month has 30 days; the 31st counts as the 30th.
int EuropeanDays360(Date first, Date last) {
  first.day = std::min(first.day, 30);
  last.day = std::min(last.day, 30);
  return Days360Between(first, last);
}

Operand Days360(Call& call) {
  const bool is_1904 = Is1904(call);
  Date first = DateOf(DayArgument(call, 0), is_1904);
  Date last = DateOf(DayArgument(call, 1), is_1904);
  if (call.Boolean(2, false)) return Scalar::Number(EuropeanDays360(first, last));
  // By the American rule the end of a month is the 30th, except that a period that starts before it
  // and ends on a 31st ends on the 1st after it.
  if (first.day == 31 || EndsFebruary(first, is_1904)) first.day = 30;
  if (last.day == 31 && first.day >= 30) last.day = 30;
  return Scalar::Number(Days360Between(first, last));
}

int AmericanDays360(Date first, Date last, bool is_1904) {
  const bool from_february = EndsFebruary(first, is_1904);
  // After the end of February a 31st stays one.
  if (last.day == 31 && first.day >= 30) last.day = 30;
  if (from_february && EndsFebruary(last, is_1904)) last.day = 30;
  first.day = from_february ? 30 : std::min(first.day, 30);
  return Days360Between(first, last);
}

bool IsLeapYear(int year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

// The length of the year that a period of actual days is measured by: up to a year it is 366 when
// there is a 29 February in it, for longer ones the average of the calendar years that it touches.
double ActualYear(const Date& first, const Date& last, bool is_1904) {
  const bool within_a_year = first.year == last.year ||
                             (first.year + 1 == last.year &&
                              std::tie(first.month, first.day) >= std::tie(last.month, last.day));
  if (!within_a_year) {
    const int days = SerialOf(last.year + 1, 1, 1, is_1904) - SerialOf(first.year, 1, 1, is_1904);
    return static_cast<double>(days) / (last.year - first.year + 1);
  }
  if (first.year == last.year) return IsLeapYear(first.year) ? 366 : 365;
  const bool leap_day_follows = IsLeapYear(first.year) && first.month <= 2;
  const bool leap_day_precedes =
      IsLeapYear(last.year) && std::tuple(last.month, last.day) >= std::tuple(2, 29);
  return leap_day_follows || leap_day_precedes ? 366 : 365;
}

Operand YearFraction(Call& call) {
  const bool is_1904 = Is1904(call);
  int first = WorkDate(call, 0), last = WorkDate(call, 1);
  const int basis = call.Integer(2, 0);
  if (call.failed()) return {};
  if (basis < 0 || basis > 4) return Scalar::Error(CellError::kNum);
  if (first > last) std::swap(first, last);
  const Date from = DateOf(first, is_1904), to = DateOf(last, is_1904);
  const double days = last - first;
  switch (basis) {
    case 0:
      return Scalar::Number(AmericanDays360(from, to, is_1904) / 360.0);
    case 1:
      return Scalar::Number(days / ActualYear(from, to, is_1904));
    case 2:
      return Scalar::Number(days / 360);
    case 3:
      return Scalar::Number(days / 365);
    default:
      return Scalar::Number(EuropeanDays360(from, to) / 360.0);
  }
}

Operand DateDifference(Call& call) {
  const bool is_1904 = Is1904(call);
  const int first = DayArgument(call, 0), last = DayArgument(call, 1);
  const std::string unit = UpperAscii(call.Text(2));
  if (call.failed()) return {};
  if (first > last) return Scalar::Error(CellError::kNum);
  const Date from = DateOf(first, is_1904), to = DateOf(last, is_1904);
  const int months =
      (to.year - from.year) * 12 + to.month - from.month - (to.day < from.day ? 1 : 0);
  if (unit == "D") return Scalar::Number(last - first);
  if (unit == "M") return Scalar::Number(months);
  if (unit == "Y") return Scalar::Number(months / 12);
  if (unit == "YM") return Scalar::Number(months % 12);
  if (unit == "MD") {
    // A day that the month before the last lacks leads into the last one.
    const int month = to.month - (to.day < from.day ? 1 : 0);
    return Scalar::Number(last - SerialOf(to.year, month, from.day, is_1904));
  }
  if (unit == "YD") {
    const bool next_year = std::tie(to.month, to.day) < std::tie(from.month, from.day);
    return Scalar::Number(SerialOf(from.year + (next_year ? 1 : 0), to.month, to.day, is_1904) -
                          first);
  }
  return Scalar::Error(CellError::kNum);
}

constexpr FunctionEntry kFunctions[] = {
    {"DATEDIF", 3, 3, "v", DateDifference},
    {"DAYS360", 2, 3, "v", Days360},
    {"ISOWEEKNUM", 1, 1, "v", IsoWeekNumber},
    {"NETWORKDAYS", 2, 3, "vvr", NetWorkdays},
    {"NETWORKDAYS.INTL", 2, 4, "vvvr", NetWorkdaysOfWeekend},
    {"WEEKNUM", 1, 2, "v", WeekNumber},
    {"WORKDAY", 2, 3, "vvr", Workday},
    {"WORKDAY.INTL", 2, 4, "vvvr", WorkdayOfWeekend},
    {"YEARFRAC", 2, 3, "v", YearFraction},
};

}  // namespace

std::span<const FunctionEntry> WorkdayFunctions() { return kFunctions; }

}  // namespace vantora::embedded
