// What surrounds the command: its streams, the user's services, and what is known of the terminal.
#pragma once

#include <functional>
#include <istream>
#include <ostream>

#include "core/host.h"
#include "core/user_interface.h"

namespace vantora::cli {

struct Environment {
  std::istream& in;
  std::ostream& out;  // results
  std::ostream& err;  // everything meant for the person
  Clock& clock;
  FileVersions& file_versions;
  // Whether questions without an answer given beforehand can be put to someone on `err` and `in`.
  bool interactive = false;
  // Whether `err` is a terminal, on which a line can be redrawn.
  bool shows_progress = false;
  // Columns of a line of `err`.
  std::function<int()> width = [] { return 80; };
  // What the operation gets as its host application, made from the workbook's; may be null.
  std::function<host::ApplicationPtr(host::ApplicationPtr)> wrap_application = nullptr;
};

}  // namespace vantora::cli
