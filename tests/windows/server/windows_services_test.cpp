#include "component/com/windows_services.h"

#include <gmock/gmock.h>

#include "component/com/automation.h"
#include "ui/windows/window_text.h"

namespace vantora::com {
namespace {

TEST(WindowsClockTest, WritesTheCurrentDateAndTimeAsTheUserReadsThem) {
  std::wstring text = ui::ToUtf16(WindowsClock().NowAsGeneralDate());
  DATE date = 0;
  ASSERT_EQ(VarDateFromStr(text.data(), LOCALE_USER_DEFAULT, 0, &date), S_OK);
  SYSTEMTIME now;
  DATE current = 0;
  GetLocalTime(&now);
  SystemTimeToVariantTime(&now, &current);
  EXPECT_NEAR(date, current, 1) << "days";
}

TEST(WindowsFileVersionsTest, TellsWhatAFileHasAndWhatItHasNot) {
  WindowsFileVersions versions;
  EXPECT_THAT(versions.ProgramFilesFolder(), ::testing::HasSubstr(":\\Program Files"));
  EXPECT_EQ(versions.Size("C:\\no such file.dll"), 0u);

  std::string file = ui::ToUtf8(VANTORA_DLL);
  std::size_t size = versions.Size(file);
  ASSERT_GT(size, 0u);
  auto information = versions.Read(file, size);
  ASSERT_TRUE(information);
  auto translation = versions.Query(*information, "\\VarFileInfo\\Translation");
  ASSERT_TRUE(translation);
  EXPECT_EQ(translation->size(), 4u);
  EXPECT_FALSE(versions.Query(*information, "\\StringFileInfo\\040904B0\\NoSuchEntry"));
  EXPECT_FALSE(versions.Read("C:\\no such file.dll", size));
}

}  // namespace
}  // namespace vantora::com
