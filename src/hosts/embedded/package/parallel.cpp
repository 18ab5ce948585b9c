#include "package/parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <system_error>
#include <thread>
#include <vector>

namespace vantora::embedded {

void ForEachInParallel(int count, const std::function<void(int)>& work) {
  std::atomic<int> next = 0;
  std::vector<std::exception_ptr> failures(static_cast<std::size_t>(count));
  auto run = [&] {
    for (int i = next++; i < count; i = next++) {
      try {
        work(i);
      } catch (...) {
        failures[static_cast<std::size_t>(i)] = std::current_exception();
      }
    }
  };
  int threads =
      std::min(count, static_cast<int>(std::max(1u, std::thread::hardware_concurrency())));
  {
    std::vector<std::jthread> others;
    try {
      for (int i = 1; i < threads; ++i) others.emplace_back(run);
    } catch (const std::system_error&) {
      // No more threads are to be had: those there are do the work.
    }
    run();
  }
  for (const std::exception_ptr& failure : failures) {
    if (failure) std::rethrow_exception(failure);
  }
}

}  // namespace vantora::embedded
