#include "ui/console/user_clock.h"

#include <cstdlib>
#include <iomanip>
#include <locale>
#include <sstream>
#include <stdexcept>

#include "ui/console/terminal_text.h"

namespace vantora::ui {
namespace {

bool IsPlainLocale(const std::string& name) {
  return name.empty() || name == "C" || name == "POSIX" || name.starts_with("C.");
}

std::string PlainGeneralDate(const std::tm& time) {
  const auto two_digits = [](int number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
  };
  const int hour = time.tm_hour % 12 == 0 ? 12 : time.tm_hour % 12;
  return std::to_string(time.tm_mon + 1) + "/" + std::to_string(time.tm_mday) + "/" +
         std::to_string(time.tm_year + 1900) + " " + std::to_string(hour) + ":" +
         two_digits(time.tm_min) + ":" + two_digits(time.tm_sec) +
         (time.tm_hour < 12 ? " AM" : " PM");
}

}  // namespace

std::string TimeLocaleOfEnvironment() {
  for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    const char* name = std::getenv(variable);
    if (name != nullptr && *name != '\0') return name;
  }
  return "C";
}

std::string GeneralDate(const std::tm& time, const std::string& locale_name) {
  if (IsPlainLocale(locale_name)) return PlainGeneralDate(time);
  std::ostringstream text;
  try {
    text.imbue(std::locale(locale_name));
  } catch (const std::runtime_error&) {
    return PlainGeneralDate(time);  // named, but not installed
  }
  text << std::put_time(&time, "%x %X");
  std::string written = text.str();
  while (written.ends_with(' ')) written.pop_back();  // a locale without AM and PM
  return IsPlainText(written) ? written : PlainGeneralDate(time);
}

std::string UserClock::NowAsGeneralDate() {
  const std::time_t now = std::time(nullptr);
  std::tm local = {};
  localtime_r(&now, &local);
  return GeneralDate(local, locale_name_);
}

}  // namespace vantora::ui
