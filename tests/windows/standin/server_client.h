// What clients of the server leave behind for tests of the calls themselves.
#pragma once

#include <map>
#include <string>

namespace vantora::testing {

// How often the last client that ended called each member of Excel ("Range.Value").
const std::map<std::string, int>& CallsOfLastClient();

}  // namespace vantora::testing
