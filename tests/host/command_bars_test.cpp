#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "host/session.h"

namespace vantora::embedded {
namespace {

using host::CommandBarControlPtr;
using host::MsoControlType;
using testing::ElementsAre;

class CommandBars : public testing::Test {
 protected:
  std::vector<std::string> Captions() {
    std::vector<std::string> captions;
    for (const auto& control : bar->Controls()->Items()) captions.push_back(control->Caption());
    return captions;
  }
  CommandBarControlPtr Add(MsoControlType type, std::optional<int> before, const char* tag) {
    CommandBarControlPtr control = bar->Controls()->Add(type, before);
    control->SetCaption(tag);
    control->SetTag(tag);
    return control;
  }
  static int NumberOf(const std::function<void()>& call) {
    try {
      call();
    } catch (const HostError& error) {
      return error.number();
    }
    return 0;
  }

  std::unique_ptr<Session> session = Session::Create({"Sheet"});
  host::CommandBarPtr bar = session->application()->ActiveMenuBar();
};

TEST_F(CommandBars, HoldTheMenusThatExcelShowsBesideAWorksheet) {
  EXPECT_THAT(Captions(), ElementsAre("&File", "&Edit", "&View", "&Insert", "F&ormat", "&Tools",
                                      "&Data", "&Window", "&Help"));
  EXPECT_EQ(bar->Controls()->Items()[7]->Index(), 8);
  EXPECT_EQ(NumberOf([&] { bar->Controls()->Items()[7]->Controls(); }), 0);
}

TEST_F(CommandBars, AddBeforeAnIndexOrAtTheEnd) {
  Add(MsoControlType::kPopup, 1, "first");
  CommandBarControlPtr middle = Add(MsoControlType::kButton, 9, "middle");
  Add(MsoControlType::kPopup, std::nullopt, "last");
  Add(MsoControlType::kPopup, 13, "after last");
  EXPECT_THAT(Captions(),
              ElementsAre("first", "&File", "&Edit", "&View", "&Insert", "F&ormat", "&Tools",
                          "&Data", "middle", "&Window", "&Help", "last", "after last"));
  EXPECT_EQ(middle->Index(), 9);
  for (int index : {0, -1, 15}) {
    EXPECT_EQ(NumberOf([&] { Add(MsoControlType::kButton, index, "none"); }), 5) << index;
  }
  EXPECT_EQ(bar->Controls()->Items().size(), 13u);
}

TEST_F(CommandBars, FindTheFirstControlOfTheTopLevelByItsTag) {
  CommandBarControlPtr popup = Add(MsoControlType::kPopup, std::nullopt, "popup");
  popup->Controls()->Add(MsoControlType::kButton, std::nullopt)->SetTag("inner");
  Add(MsoControlType::kPopup, 1, "twice");
  Add(MsoControlType::kPopup, std::nullopt, "twice");
  EXPECT_EQ(bar->FindControl("inner"), nullptr);
  EXPECT_EQ(bar->FindControl("Popup"), nullptr);
  EXPECT_EQ(bar->FindControl("twice")->Index(), 1);
  bar->FindControl("twice")->Delete();
  EXPECT_EQ(bar->FindControl("twice")->Index(), 11);
}

TEST_F(CommandBars, ShowTheWholeTree) {
  CommandBarControlPtr popup = Add(MsoControlType::kPopup, 1, "Menu");
  popup->SetVisible(false);
  CommandBarControlPtr button = popup->Controls()->Add(MsoControlType::kButton, std::nullopt);
  button->SetCaption("&Entry");
  button->SetTag("2:7");
  button->SetOnAction("VA_Macro");
  button->SetFaceId(1786);
  button->SetBeginGroup(true);
  const std::vector<MenuEntry> menus = session->MenuBar();
  ASSERT_EQ(menus.size(), 10u);
  EXPECT_TRUE(menus[0].is_popup);
  EXPECT_FALSE(menus[0].visible);
  EXPECT_FALSE(menus[0].begins_group);
  ASSERT_EQ(menus[0].entries.size(), 1u);
  const MenuEntry& entry = menus[0].entries[0];
  EXPECT_FALSE(entry.is_popup);
  EXPECT_TRUE(entry.visible && entry.begins_group);
  EXPECT_EQ(entry.caption + "|" + entry.tag + "|" + entry.macro, "&Entry|2:7|VA_Macro");
  EXPECT_EQ(entry.face_id, 1786);
}

TEST_F(CommandBars, RefuseMembersThatTheKindOfControlDoesNotHave) {
  EXPECT_EQ(NumberOf([&] { Add(MsoControlType::kPopup, 1, "popup")->SetFaceId(3); }), 438);
  EXPECT_EQ(NumberOf([&] { Add(MsoControlType::kButton, 1, "button")->Controls(); }), 438);
}

TEST_F(CommandBars, EveryMemberOfADeletedControlFails) {
  CommandBarControlPtr popup = Add(MsoControlType::kPopup, 1, "popup");
  host::CommandBarControlsPtr controls = popup->Controls();
  CommandBarControlPtr inner = controls->Add(MsoControlType::kButton, std::nullopt);
  popup->Delete();
  EXPECT_EQ(bar->FindControl("popup"), nullptr);
  // What stood in a deleted popup is gone as well.
  const std::function<void()> calls[] = {
      [&] { popup->Caption(); },
      [&] { popup->SetCaption("x"); },
      [&] { popup->SetVisible(true); },
      [&] { popup->Index(); },
      [&] { popup->Delete(); },
      [&] { popup->Controls(); },
      [&] { controls->Items(); },
      [&] { controls->Add(MsoControlType::kButton, std::nullopt); },
      [&] { inner->Tag(); },
      [&] { inner->SetFaceId(1); },
      [&] { inner->Delete(); },
  };
  for (const auto& call : calls) EXPECT_EQ(NumberOf(call), -2147467259);
}

}  // namespace
}  // namespace vantora::embedded
