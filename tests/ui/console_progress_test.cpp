#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "core/progress_dialog.h"
#include "ui/console/terminal_text.h"
#include "ui/console_fixture.h"

namespace vantora::ui {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

// What a terminal shows in its one line after all the carriage returns.
std::string LineOnScreen(const std::string& written) {
  std::string line;
  std::size_t column = 0;
  for (const char c : written) {
    if (c == '\r') {
      column = 0;
      continue;
    }
    if (column >= line.size()) line.resize(column + 1, ' ');
    line[column++] = c;
  }
  const std::size_t last = line.find_last_not_of(' ');
  return last == std::string::npos ? "" : line.substr(0, last + 1);
}

TEST(ConsoleProgress, IsOneLineRedrawnInPlace) {
  TypedConsole console("");
  frmProgressBar progress(console.user_interface());
  progress.SetTitle("Save Last Year at marker");
  EXPECT_EQ(console.shown(), "");
  progress.ShowForm();
  EXPECT_EQ(LineOnScreen(console.shown()), "Save Last Year at marker [#####-----]  54%");
  progress.SetText("copying cells in Data 01");
  progress.SetProgress(100);
  EXPECT_EQ(LineOnScreen(console.shown()),
            "Save Last Year at marker: copying cells in Data 01 [##########] 100%");
  progress.SetText("");
  progress.SetProgress(0);
  EXPECT_EQ(LineOnScreen(console.shown()), "Save Last Year at marker [----------]   0%");
  EXPECT_EQ(console.shown().find('\n'), std::string::npos);
  progress.Unload();
  EXPECT_EQ(LineOnScreen(console.shown()), "");
  EXPECT_THAT(console.shown(), EndsWith("\r"));
}

TEST(ConsoleProgress, LineIsCutToTheTerminalsWidth) {
  for (const int width : {120, 80, 60, 40, 12, 8}) {
    TypedConsole console("", width);
    frmProgressBar progress(console.user_interface());
    progress.SetTitle("Copy current year to prior year");
    progress.SetText("copying cells in Umsätze 日本 with a rather long name of a sheet");
    progress.ShowForm();
    EXPECT_LT(DisplayWidth(LineOnScreen(console.shown())), width) << width;
    EXPECT_THAT(LineOnScreen(console.shown()), EndsWith("54%"));
  }
}

TEST(ConsoleProgress, MessageBoxInterruptsTheLineAndItComesBack) {
  TypedConsole console("\n");
  frmProgressBar progress(console.user_interface());
  progress.SetTitle("Title");
  progress.ShowForm();
  console.user_interface().MessageBox("Text", kOkOnly, "Box");
  const std::string shown = console.shown();
  EXPECT_THAT(shown, HasSubstr("\r\n[Box]\nText\n"));
  progress.SetProgress(60);
  EXPECT_EQ(LineOnScreen(console.shown().substr(shown.size())), "Title [######----]  60%");
}

TEST(ConsoleProgress, HiddenProgressWritesNothingAndLeavesCtrlCAlone) {
  TypedConsole console("", 80, ConsoleUserInterface::Progress::kHidden);
  frmProgressBar progress(console.user_interface());
  progress.ShowForm();
  progress.SetProgress(80);
  struct sigaction action = {};
  sigaction(SIGINT, nullptr, &action);
  EXPECT_EQ(action.sa_handler, SIG_DFL);
  EXPECT_EQ(console.shown(), "");
}

TEST(ConsoleProgress, CtrlCPressesCancelOnceMessagesAreProcessed) {
  TypedConsole console("");
  frmProgressBar progress(console.user_interface());
  progress.SetTitle("Title");
  progress.ShowForm();
  raise(SIGINT);
  EXPECT_FALSE(progress.Cancelled());
  progress.SetProgress(60);
  EXPECT_TRUE(progress.Cancelled());
  EXPECT_THAT(LineOnScreen(console.shown()), HasSubstr("Title: Cancelling, please wait..."));
  progress.Unload();
}

using ConsoleProgressDeathTest = testing::Test;

TEST(ConsoleProgressDeathTest, CtrlCEndsTheProgramWhereNoButtonTakesIt) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  const auto killed = testing::KilledBySignal(SIGINT);
  EXPECT_EXIT(
      {
        TypedConsole console("");
        frmProgressBar progress(console.user_interface());
        progress.ShowForm();
        raise(SIGINT);
        raise(SIGINT);
      },
      killed, "");
  // Pressed too late for the operation to see it.
  EXPECT_EXIT(
      {
        TypedConsole console("");
        frmProgressBar progress(console.user_interface());
        progress.ShowForm();
        raise(SIGINT);
        progress.Unload();
      },
      killed, "");
  EXPECT_EXIT(
      {
        TypedConsole console("");
        frmProgressBar progress(console.user_interface());
        progress.ShowForm();
        progress.Unload();
        raise(SIGINT);
      },
      killed, "");
}

}  // namespace
}  // namespace vantora::ui
