// The console user interface on a real terminal: a child process behind a pseudo terminal.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <functional>

#include "core/progress_dialog.h"
#include "ui/console/console_user_interface.h"
#include "ui/console/terminal_text.h"

namespace vantora::ui {
namespace {

using testing::HasSubstr;

// False where no pseudo-terminals are mounted.
bool HasTerminals() {
  int master = 0;
  int slave = 0;
  if (openpty(&master, &slave, nullptr, nullptr, nullptr) != 0) return false;
  close(master);
  close(slave);
  return true;
}

// A process with a terminal of 40 columns; what it shows is read, and what its user types is
// written.
class ProcessOnTerminal {
 public:
  explicit ProcessOnTerminal(const std::function<void(ConsoleUserInterface&, std::ostream&)>& run) {
    winsize size = {};
    size.ws_row = 25;
    size.ws_col = 40;
    pid_ = forkpty(&master_, nullptr, nullptr, &size);
    if (pid_ != 0) return;
    alarm(60);  // a child that waits for what never comes must not keep the tests waiting
    std::ifstream in("/dev/tty");
    std::ofstream out("/dev/tty");
    {
      ConsoleUserInterface console(Terminal(in, out, [] { return TerminalWidth(STDIN_FILENO); }),
                                   ConsoleUserInterface::Progress::kShown);
      run(console, out);
    }
    out.flush();
    _exit(0);
  }
  ~ProcessOnTerminal() {
    if (pid_ > 0) Wait();
    close(master_);
  }

  // Reads until `text` has been shown since the last call; gives what was shown up to there.
  std::string ReadUntil(const std::string& text) {
    while (unseen_.find(text) == std::string::npos) {
      char buffer[512];
      const ssize_t count = read(master_, buffer, sizeof buffer);
      if (count <= 0) {
        ADD_FAILURE() << "never shown: " << text << "\nshown instead: " << unseen_;
        return unseen_;
      }
      unseen_.append(buffer, static_cast<std::size_t>(count));
    }
    const std::size_t end = unseen_.find(text) + text.size();
    const std::string seen = unseen_.substr(0, end);
    unseen_.erase(0, end);
    return seen;
  }

  void Type(const std::string& keys) {
    EXPECT_EQ(write(master_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }

  // The status as waitpid gives it.
  int Wait() {
    char buffer[512];
    while (read(master_, buffer, sizeof buffer) > 0) continue;
    int status = -1;
    waitpid(pid_, &status, 0);
    pid_ = -1;
    return status;
  }

 private:
  int master_ = -1;
  pid_t pid_ = -1;
  std::string unseen_;
};

constexpr char kCtrlC[] = "\x03";
constexpr char kCtrlD[] = "\x04";

TEST(ConsoleOnTerminal, PromptsGoOnAfterCtrlDAndCtrlCIsTheProgressCancelButton) {
  if (!HasTerminals()) GTEST_SKIP() << "There are no pseudo-terminals here.";
  ProcessOnTerminal process([](ConsoleUserInterface& console, std::ostream& out) {
    out << static_cast<int>(console.MessageBox("First", kOkCancel, "T")) << " closed\n";
    out << static_cast<int>(console.MessageBox("Second", kYesNo, "T")) << " answered\n";
    frmProgressBar progress(console);
    progress.SetTitle("A title that is long enough to be cut");
    progress.ShowForm();
    for (double value = 0; !progress.Cancelled(); value = value < 90 ? value + 10 : 0) {
      progress.SetProgress(value);
      usleep(1000);
    }
    progress.Unload();
    out << "cancelled\n";
  });
  process.ReadUntil("[Enter: OK]: ");
  process.Type(kCtrlD);
  process.ReadUntil("2 closed");
  process.ReadUntil("[Enter: Yes]: ");
  process.Type("no\n");
  process.ReadUntil("7 answered");
  EXPECT_THAT(process.ReadUntil("20%"), HasSubstr("A title that is"));
  const std::string redrawn = process.ReadUntil("30%");
  EXPECT_EQ(redrawn.find('\n'), std::string::npos);
  EXPECT_LT(DisplayWidth(redrawn.substr(redrawn.rfind('\r') + 1)), 40);
  process.Type(kCtrlC);
  process.ReadUntil("cancelled\r\n");
  const int status = process.Wait();
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}

TEST(ConsoleOnTerminal, CtrlCAtAPromptEndsTheProgram) {
  if (!HasTerminals()) GTEST_SKIP() << "There are no pseudo-terminals here.";
  ProcessOnTerminal process([](ConsoleUserInterface& console, std::ostream&) {
    frmProgressBar progress(console);
    progress.ShowForm();
    console.MessageBox("Text", kOkCancel, "T");
  });
  process.ReadUntil("[Enter: OK]: ");
  process.Type(kCtrlC);
  const int status = process.Wait();
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT) << status;
}

}  // namespace
}  // namespace vantora::ui
