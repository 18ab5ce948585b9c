// Dates as serial numbers. Day 1 of the 1900 system is 1 January 1900, and day 60 is a 29 February
// 1900 that never was; day 0 of the 1904 system is 1 January 1904.
#pragma once

#include "formula/function.h"

namespace vantora::embedded {

struct Date {
  int year = 1900;
  int month = 1;
  int day = 1;
};

inline constexpr int kDaysBetweenSystems = 1462;

// Whether the workbook of the call counts from 1904.
bool Is1904(const Call& call);
// 31 December 9999.
int LastDay(bool is_1904);

// Month and day may be any numbers; they then lead into other years and months.
int SerialOf(int year, int month, int day, bool is_1904);
// Of a day within the calendar.
Date DateOf(int serial, bool is_1904);
int DaysInMonth(int year, int month, bool is_1904);
// 0 for Sunday to 6, day 1 of the 1900 system being a Sunday.
int DayOfWeek(int serial, bool is_1904);

// A date argument's day; #NUM! outside the calendar.
int DayArgument(Call& call, std::size_t i);
// The same of any number.
int DayOf(Call& call, double serial);
// The day as a result: #NUM! outside the calendar.
Scalar DayOrError(int serial, bool is_1904);

}  // namespace vantora::embedded
