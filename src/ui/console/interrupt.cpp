#include "ui/console/interrupt.h"

#include <atomic>

namespace vantora::ui {
namespace {

// The signal may arrive on any thread, so a lock-free atomic rather than a sig_atomic_t.
std::atomic<bool> interrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free);

void OnInterrupt(int) { interrupted = true; }

}  // namespace

InterruptAsButton::InterruptAsButton() {
  interrupted = false;
  sigaction(SIGINT, nullptr, &previous_);
  if (previous_.sa_handler == SIG_IGN) return;
  struct sigaction action = {};
  action.sa_handler = OnInterrupt;
  // Reset after the first: whoever presses again does not want to wait for the operation. Restart,
  // because a file that is being read must not fail for it.
  action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART;
  sigaction(SIGINT, &action, nullptr);
}

InterruptAsButton::~InterruptAsButton() {
  sigaction(SIGINT, &previous_, nullptr);
  if (Take()) raise(SIGINT);
}

bool InterruptAsButton::Take() { return interrupted.exchange(false); }

}  // namespace vantora::ui
