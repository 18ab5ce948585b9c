// Newer functions have names of their own in files: users see "IFS(", files say "_xlfn.IFS(".
#pragma once

#include <string>
#include <string_view>

namespace vantora::embedded {

// The formula as files write it. Functions that have their prefix already keep it.
std::string WithFilePrefixes(std::string_view formula);
// The formula as users see it.
std::string WithoutFilePrefixes(std::string formula);

}  // namespace vantora::embedded
