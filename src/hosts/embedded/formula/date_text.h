// Texts that are dates and times, the way they would be typed in English.
#pragma once

#include <string_view>

namespace vantora::embedded {

struct DateTime {
  int day = 0;      // serial number; 0 for a time alone
  double time = 0;  // part of a day; "25:30" is an hour and a half
};

struct DateText {
  enum class Kind {
    kNone,
    kDateTime,
    kAmbiguous,  // "1/2/2020": which number is the month depends on the user's settings
  };
  Kind kind = Kind::kNone;
  DateTime value;
};

// "2020-03-31", "2020/3/31", "3/31/2020", "31-Mar-2020", "31 March 20", "March 31, 2020",
// "Mar-2020", "31-Mar" (of this year), "14:30", "2:30:15 PM", "9 AM", a date with a time behind it.
// Years of two digits are those from 1930 to 2029. When `this_year` is negative, a date without its
// year is none.
DateText ReadDateTime(std::string_view text, bool is_1904, int this_year);

}  // namespace vantora::embedded
