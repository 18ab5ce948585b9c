// Serial numbers as dates. Day 1 of the 1900 system is 1 January 1900, and day 60 is a 29 February
// 1900 that never was; day 0 of the 1904 system is 1 January 1904.
#pragma once

namespace vantora::embedded {

struct CalendarDate {
  int year = 1900;
  int month = 1;
  int day = 1;
  // 0 for Sunday, in the 1900 system as its 29 February 1900 makes it.
  int weekday = 0;
};

// 31 December 9999.
int LastCalendarDay(bool date_1904);
// `serial` is from 0 to LastCalendarDay. Day 0 of the 1900 system is the 0th of January 1900.
CalendarDate CalendarDateOf(int serial, bool date_1904);

}  // namespace vantora::embedded
