// A list of changes as JSON.
#pragma once

#include <nlohmann/json.hpp>

#include "host/session.h"

namespace vantora::cli {

// Inserted columns, cells before and after, other changes in words.
nlohmann::ordered_json ChangesJson(const embedded::ChangeList& changes);

}  // namespace vantora::cli
