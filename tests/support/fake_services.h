// What a public class is created with, for tests: answers given beforehand, a clock that stands
// still, and no version information.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/user_interface.h"
#include "ui/scripted/scripted_user_interface.h"

namespace vantora::testing {

class FixedClock : public Clock {
 public:
  std::string NowAsGeneralDate() override { return "11/21/2026 2:31:05 PM"; }
};

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

inline std::vector<ui::Answer> Answers(const std::vector<std::string>& texts) {
  std::vector<ui::Answer> answers;
  for (const std::string& text : texts) answers.push_back(ui::ParseAnswer(text));
  return answers;
}

struct FakeServices {
  explicit FakeServices(const std::vector<std::string>& answers = {})
      : user_interface(Answers(answers)) {}

  ui::ScriptedUserInterface user_interface;
  FixedClock clock;
  NoFileVersions file_versions;
  Services services{user_interface, clock, file_versions};
};

}  // namespace vantora::testing
