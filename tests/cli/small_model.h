// A small model as a file in a directory of its own, and the command run on it.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "cli/environment.h"
#include "host/session.h"
#include "support/fake_services.h"
#include "support/temporary_folder.h"

namespace vantora::testing {

// Writes a workbook with two sheets:
//   Planning   B2:F2 2021 to 2025 (planning_fiscal_year), C5 =SUM('Data 01'!J3:O3), which is 21,
//              D5 =WEBSERVICE('Data 01'!N3), whose last value is 5
//   Data 01    A1 "S"; J3:O3 1 to 6, P3 =O3*2, which is 12; J4:O4 "a" to "f"; AA1 "k" (marker)
void WriteSmallModel(const std::filesystem::path& path);

std::string BytesOf(const std::filesystem::path& path);

// What one call of the command gave.
struct CommandResult {
  int exit_code = -1;
  std::string out;
  std::string err;
};

// A directory that holds "model.xlsm" and disappears with this object.
class SmallModel {
 public:
  SmallModel();

  std::filesystem::path path(const std::string& name = "model.xlsm") const {
    return folder_ / name;
  }
  // The names of the files there, sorted, each with a blank behind it.
  std::string Files() const;
  // The model holds what it held at first, and no other file is there.
  bool Untouched() const { return Files() == "model.xlsm " && BytesOf(path()) == bytes_; }
  const std::string& bytes() const { return bytes_; }

  // `vantora run <model>` and these arguments.
  CommandResult Run(std::vector<std::string> arguments);
  // Any arguments.
  CommandResult Command(const std::vector<std::string>& arguments);

  // As in cli::Environment, for the calls to come; `typed` is what stands on the input.
  std::string typed;
  bool interactive = false;
  bool shows_progress = false;
  std::function<host::ApplicationPtr(host::ApplicationPtr)> wrap_application;

 private:
  TemporaryFolder folder_;
  std::string bytes_;
};

// A cell of a saved workbook: "'Data 01'!N3".
Value CellOf(const std::filesystem::path& path, const std::string& reference);

}  // namespace vantora::testing
