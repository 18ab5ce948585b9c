#include "ui/console/terminal_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantora::ui {
namespace {

using testing::ElementsAre;

TEST(TerminalText, WrapsAtBlanksAndKeepsLineBreaks) {
  EXPECT_THAT(WrapText("one two  three\n\nfour", 8), ElementsAre("one two", "three", "", "four"));
  EXPECT_THAT(WrapText("abcdefghij kl", 4), ElementsAre("abcd", "efgh", "ij", "kl"));
  EXPECT_THAT(WrapText("日本語", 4), ElementsAre("日本", "語"));
  EXPECT_THAT(WrapText("", 4), ElementsAre(""));
  EXPECT_THAT(WrapText("日", 1), ElementsAre("日"));
}

TEST(TerminalText, MeasuresAndCutsInColumns) {
  EXPECT_EQ(DisplayWidth("Umsätze"), 7);
  EXPECT_EQ(DisplayWidth("e\xCC\x81 日本"), 6);
  EXPECT_EQ(CutToWidth("Planning", 8), "Planning");
  EXPECT_EQ(CutToWidth("Planning", 7), "Plan...");
  EXPECT_EQ(CutToWidth("日本語日本語", 8), "日本...");
  EXPECT_EQ(CutToWidth("日本", 3), "日");
  EXPECT_EQ(CutToWidth("Planning", 0), "");
}

TEST(TerminalText, TypedTextMustBeText) {
  EXPECT_TRUE(IsPlainText("Umsätze\t日本"));
  EXPECT_FALSE(IsPlainText("a\x1b[A"));
  EXPECT_FALSE(IsPlainText("\xC3"));
  EXPECT_FALSE(IsPlainText("\xC0\x80"));
  EXPECT_FALSE(IsPlainText("\xED\xA0\x80"));
}

}  // namespace
}  // namespace vantora::ui
