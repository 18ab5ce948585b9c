// The platform's plain services: the user's clock, and no version information of files.
#pragma once

#include <ctime>
#include <string>
#include <string_view>

#include "core/user_interface.h"

namespace vantora::ui {

// A date and time as the locale of that name writes them, date before time; "11/21/2026 2:31:05 PM"
// for the "C" locale, for one that is not installed and for one that does not write UTF-8.
std::string GeneralDate(const std::tm& time, const std::string& locale_name);

// The name of the locale that the environment asks for times: LC_ALL, else LC_TIME, else LANG.
std::string TimeLocaleOfEnvironment();

// The system's local time in the user's format.
class UserClock : public Clock {
 public:
  explicit UserClock(std::string locale_name = TimeLocaleOfEnvironment())
      : locale_name_(std::move(locale_name)) {}
  std::string NowAsGeneralDate() override;

 private:
  std::string locale_name_;
};

// A platform whose files carry no version information.
class NoFileVersions : public FileVersions {
 public:
  std::string ProgramFilesFolder() override { return ""; }
  std::size_t Size(std::string_view) override { return 0; }
  std::optional<std::vector<std::byte>> Read(std::string_view, std::size_t) override {
    return std::nullopt;
  }
  std::optional<std::vector<std::byte>> Query(const std::vector<std::byte>&,
                                              std::string_view) override {
    return std::nullopt;
  }
};

}  // namespace vantora::ui
