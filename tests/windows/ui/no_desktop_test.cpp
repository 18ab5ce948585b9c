// A program without a desktop: run with the variable DISPLAY unset.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>

#include "core/progress_dialog.h"
#include "dialogs/frm_save_history_prompt.h"
#include "ui/windows/windows_user_interface.h"

namespace vantora::ui {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

std::string ErrorOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "no error";
}

TEST(NoDesktop, IsReportedInPlainWords) {
  const HWND probe =
      CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
  if (probe) {
    DestroyWindow(probe);
    GTEST_SKIP() << "there is a desktop";
  }
  WindowsUserInterface user_interface;
  EXPECT_THAT(ErrorOf([&] { user_interface.MessageBox("Save first?", kOkCancel, "Vantora"); }),
              AllOf(HasSubstr("Save first?"), HasSubstr("can't be shown"), HasSubstr("desktop")));
  frmSaveHistoryPrompt prompt;
  prompt.YearCaptionAdd("2021");
  EXPECT_THAT(ErrorOf([&] { user_interface.ShowModal(prompt); }),
              AllOf(HasSubstr("frmSaveHistoryPrompt"), HasSubstr("desktop")));
  EXPECT_FALSE(prompt.visible());
  EXPECT_THAT(ErrorOf([&] { frmProgressBar progress(user_interface); }),
              AllOf(HasSubstr("frmProgressBar"), HasSubstr("desktop")));
}

}  // namespace
}  // namespace vantora::ui
