// Work on one sheet after the other, spread over the processor's cores.
#pragma once

#include <functional>

namespace vantora::embedded {

// Calls work(0) to work(count - 1), each once, on as many threads as there are cores. When calls
// throw, the exception of the lowest number is thrown in the end.
void ForEachInParallel(int count, const std::function<void(int)>& work);

}  // namespace vantora::embedded
