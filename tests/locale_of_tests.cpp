// Part of every test program: runs it under the locale that VANTORA_TEST_LOCALE names, as a program
// does that greets its user in his language. No number that this system reads or writes follows it.
#include <cstdlib>
#include <iostream>
#include <locale>
#include <stdexcept>

namespace {

[[maybe_unused]] const bool is_set = [] {
  const char* name = std::getenv("VANTORA_TEST_LOCALE");
  if (!name || !*name) return false;
  try {
    std::locale::global(std::locale(name));
  } catch (const std::runtime_error&) {
    std::cout << "Skipped: The locale " << name << " is not installed.\n" << std::flush;
    std::_Exit(77);
  }
  return true;
}();

}  // namespace
