#include "ui/console/user_clock.h"

#include <gtest/gtest.h>

#include <locale>
#include <stdexcept>

namespace vantora::ui {
namespace {

std::tm At(int hour, int minute, int second) {
  std::tm time = {};
  time.tm_year = 126;
  time.tm_mon = 10;
  time.tm_mday = 21;
  time.tm_hour = hour;
  time.tm_min = minute;
  time.tm_sec = second;
  return time;
}

TEST(GeneralDate, PlainLocaleWritesMonthFirstAndTwelveHours) {
  EXPECT_EQ(GeneralDate(At(14, 31, 5), "C"), "11/21/2026 2:31:05 PM");
  EXPECT_EQ(GeneralDate(At(0, 0, 0), "POSIX"), "11/21/2026 12:00:00 AM");
  EXPECT_EQ(GeneralDate(At(12, 5, 59), "C.UTF-8"), "11/21/2026 12:05:59 PM");
}

TEST(GeneralDate, LocaleThatIsNotInstalledIsReadAsThePlainOne) {
  EXPECT_EQ(GeneralDate(At(11, 0, 7), "xx_NOWHERE.UTF-8"), "11/21/2026 11:00:07 AM");
}

TEST(GeneralDate, InstalledLocaleWritesItsOwnWay) {
  std::string written;
  try {
    std::locale german("de_DE.UTF-8");
    written = GeneralDate(At(14, 31, 5), "de_DE.UTF-8");
  } catch (const std::runtime_error&) {
    GTEST_SKIP() << "The locale de_DE.UTF-8 is not installed.";
  }
  EXPECT_EQ(written, "21.11.2026 14:31:05");
}

}  // namespace
}  // namespace vantora::ui
