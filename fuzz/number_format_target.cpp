// A number format's code, shown for numbers and a text.
#include <limits>

#include "formula/number_format.h"
#include "fuzz_support.h"

using namespace vantora::embedded;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const NumberFormat format(std::string_view(reinterpret_cast<const char*>(data), size));
  constexpr double kNumbers[] = {0,
                                 1,
                                 -1,
                                 0.5,
                                 -1234567.891,
                                 45000.75,
                                 1e-20,
                                 1e300,
                                 -1e15,
                                 2958465.9,
                                 std::numeric_limits<double>::max()};
  for (double number : kNumbers) {
    format.Show(number, false);
    format.Show(number, true);
  }
  format.Show(std::string_view("text"));
  return 0;
}
