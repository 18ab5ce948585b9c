// Dates and times, and their parts.
#include <algorithm>
#include <cmath>
#include <ctime>

#include "formula/calendar.h"
#include "formula/date_text.h"
#include "formula/functions.h"

namespace vantora::embedded {
namespace {

Operand DateFromParts(Call& call) {
  int year = call.Integer(0);
  const int month = call.Integer(1), day = call.Integer(2);
  const bool is_1904 = Is1904(call);
  if (call.failed()) return {};
  constexpr int kFar = 200000;
  if (year < 0 || year > 9999 || std::abs(month) > kFar || std::abs(day) > 10 * kFar) {
    return Scalar::Error(CellError::kNum);
  }
  if (year < 1900) year += 1900;
  return DayOrError(SerialOf(year, month, day, is_1904), is_1904);
}

Date DateArgument(Call& call) { return DateOf(DayArgument(call, 0), Is1904(call)); }
Operand Year(Call& call) { return Scalar::Number(DateArgument(call).year); }
Operand Month(Call& call) { return Scalar::Number(DateArgument(call).month); }
Operand Day(Call& call) { return Scalar::Number(DateArgument(call).day); }

// The date moved by the months of the second argument. Neither may be a Boolean.
Date MovedByMonths(Call& call) {
  if (call.Value(0).IsBoolean() || call.Value(1).IsBoolean()) call.Fail(CellError::kValue);
  Date date = DateOf(DayArgument(call, 0), Is1904(call));
  const int months = date.year * 12 + date.month - 1 + std::clamp(call.Integer(1), -200000, 200000);
  date.year = static_cast<int>(std::floor(months / 12.0));
  date.month = months - date.year * 12 + 1;
  if (date.year < 1899 || date.year > 9999) {
    call.Fail(CellError::kNum);
    return {};
  }
  return date;
}

Operand MonthsLater(Call& call) {
  const Date date = MovedByMonths(call);
  const bool is_1904 = Is1904(call);
  const int day = std::min(date.day, DaysInMonth(date.year, date.month, is_1904));
  return DayOrError(SerialOf(date.year, date.month, day, is_1904), is_1904);
}

Operand EndOfMonth(Call& call) {
  const Date date = MovedByMonths(call);
  const bool is_1904 = Is1904(call);
  return DayOrError(SerialOf(date.year, date.month + 1, 1, is_1904) - 1, is_1904);
}

// 1 for Sunday in the first kind of numbering, which day 1 of the 1900 system is taken to be.
Operand Weekday(Call& call) {
  const int from_sunday = DayOfWeek(DayArgument(call, 0), Is1904(call));
  const int kind = call.Integer(1, 1);
  if (kind == 1) return Scalar::Number(from_sunday + 1);
  if (kind == 2) return Scalar::Number((from_sunday + 6) % 7 + 1);
  if (kind == 3) return Scalar::Number((from_sunday + 6) % 7);
  // 11 to 17: the week starts on Monday to Sunday.
  if (kind >= 11 && kind <= 17) {
    return Scalar::Number((from_sunday + 7 - (kind - 10) % 7) % 7 + 1);
  }
  return Scalar::Error(CellError::kNum);
}

Operand Days(Call& call) {
  return Scalar::Number(static_cast<double>(DayArgument(call, 0)) - DayArgument(call, 1));
}

double NowSerial(bool is_1904) {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
#ifdef _WIN32
  localtime_s(&local, &now);
#else
  localtime_r(&now, &local);
#endif
  const double seconds = local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec;
  return SerialOf(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, is_1904) + seconds / 86400;
}

Operand Now(Call& call) { return Scalar::Number(NowSerial(Is1904(call))); }
Operand Today(Call& call) { return Scalar::Number(std::floor(NowSerial(Is1904(call)))); }

// The part of the day, rounded to the second.
int SecondOfDay(Call& call) {
  const double number = call.Number(0);
  if (number < 0) call.Fail(CellError::kNum);
  return static_cast<int>(std::llround((number - std::floor(number)) * 86400)) % 86400;
}
Operand Hour(Call& call) { return Scalar::Number(SecondOfDay(call) / 3600); }
Operand Minute(Call& call) { return Scalar::Number(SecondOfDay(call) / 60 % 60); }
Operand Second(Call& call) { return Scalar::Number(SecondOfDay(call) % 60); }

Operand Time(Call& call) {
  const int hour = call.Integer(0), minute = call.Integer(1), second = call.Integer(2);
  const double seconds = hour * 3600.0 + minute * 60.0 + second;
  if (std::max({hour, minute, second}) > 32767 || seconds < 0) {
    return Scalar::Error(CellError::kNum);
  }
  return Scalar::Number(std::fmod(seconds, 86400) / 86400);
}

// What a text tells of a date and a time; nullopt, and #VALUE! or the end of the evaluation, when
// it tells neither or may be read in two ways.
std::optional<DateTime> DateTimeArgument(Call& call) {
  const bool is_1904 = Is1904(call);
  const std::string_view text = call.Text(0);
  if (call.failed()) return std::nullopt;
  const int this_year = DateOf(static_cast<int>(NowSerial(is_1904)), is_1904).year;
  const DateText found = ReadDateTime(text, is_1904, this_year);
  if (found.kind == DateText::Kind::kAmbiguous) {
    call.evaluator().Stop("the text \"" + std::string(text) +
                          "\" is a date whose day and month may be exchanged");
  } else if (found.kind == DateText::Kind::kNone) {
    call.Fail(CellError::kValue);
  } else {
    return found.value;
  }
  return std::nullopt;
}

Operand DateValue(Call& call) {
  const std::optional<DateTime> found = DateTimeArgument(call);
  return Scalar::Number(found ? found->day : 0);
}
Operand TimeValue(Call& call) {
  const std::optional<DateTime> found = DateTimeArgument(call);
  return Scalar::Number(found ? found->time : 0);
}

constexpr FunctionEntry kFunctions[] = {
    {"DATE", 3, 3, "v", DateFromParts},
    {"DATEVALUE", 1, 1, "v", DateValue},
    {"DAY", 1, 1, "v", Day},
    {"DAYS", 2, 2, "v", Days},
    {"EDATE", 2, 2, "v", MonthsLater},
    {"EOMONTH", 2, 2, "v", EndOfMonth},
    {"HOUR", 1, 1, "v", Hour},
    {"MINUTE", 1, 1, "v", Minute},
    {"MONTH", 1, 1, "v", Month},
    {"NOW", 0, 0, "v", Now, kVolatile},
    {"SECOND", 1, 1, "v", Second},
    {"TIME", 3, 3, "v", Time},
    {"TIMEVALUE", 1, 1, "v", TimeValue},
    {"TODAY", 0, 0, "v", Today, kVolatile},
    {"WEEKDAY", 1, 2, "v", Weekday},
    {"YEAR", 1, 1, "v", Year},
};

}  // namespace

std::span<const FunctionEntry> DateFunctions() { return kFunctions; }

}  // namespace vantora::embedded
