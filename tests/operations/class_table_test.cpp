#include "component/class_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/globals.h"
#include "operations/year_end_fixture.h"
#include "support/fake_services.h"

namespace vantora::component {
namespace {

using ::testing::ElementsAre;

std::vector<std::string_view> NamesOf(const auto& entries) {
  std::vector<std::string_view> names;
  for (const auto& entry : entries) names.push_back(entry.name);
  return names;
}

TEST(ClassTable, ListsThePublicClassesInDeclarationOrder) {
  EXPECT_THAT(
      NamesOf(PublicClasses()),
      ElementsAre("clsGlobals", "clsRefSheet", "clsYearEnd", "clsFreeze", "clsPlanningSpinners",
                  "clsDisplayModes", "clsRatiosCompDataSet", "clsDevelopmentMode",
                  "clsClearAllData", "clsMenuManagement", "clsDashboard", "clsCopyWorksheet",
                  "clsHider", "clsChartListControl", "clsNameManagement", "clsFormatting"));
  EXPECT_THAT(NamesOf(FindClass("clsyearend")->methods),
              ElementsAre("SaveHistoryYear", "SaveCurrentYear", "SaveLastYear", "ShiftHistory",
                          "CopyCurrentYear"));
  EXPECT_EQ(FindClass("clsNone"), nullptr);
  EXPECT_EQ(FindMethod(*FindClass("clsYearEnd"), "Init"), nullptr);
}

TEST(ClassTable, CreatesObjectsThatKnowTheirClass) {
  testing::FakeServices fake;
  for (const PublicClass& entry : PublicClasses()) {
    EXPECT_FALSE(entry.help.empty()) << entry.name;
    EXPECT_EQ(entry.create(fake.services)->class_name(), entry.name);
    for (const Method& method : entry.methods) EXPECT_FALSE(method.help.empty()) << method.name;
  }
}

class ClassTableCalls : public testing::YearEndTest {
 protected:
  Value Call(std::string_view class_name, std::string_view method_name,
             const std::vector<std::string>& answers, std::vector<Argument> arguments = {}) {
    fake = std::make_unique<testing::FakeServices>(answers);
    clsGlobals globals(fake->services);
    globals.SetApp(model.application());
    const PublicClass* entry = FindClass(class_name);
    auto object = entry->create(fake->services);
    if (auto* bound = dynamic_cast<BoundObject*>(object.get())) bound->Init(&globals);
    return FindMethod(*entry, method_name)->call(*object, arguments);
  }
};

TEST_F(ClassTableCalls, RunTheMethodOfThatName) {
  EXPECT_EQ(Call("clsGlobals", "version", {}),
            Value("1: No version information available for DLL"));
  model.Put("Planning!A1", {"X14", "n", "k", "c", "s"});
  Call("clsRefSheet", "PutDLLVersion", {}, {Value("2.1")});
  EXPECT_EQ(model.Get("Planning!C6"), Value(2.1));  // a put reads a number as one

  const std::string comment = "frmSaveComments:butNoText";
  Call("clsYearEnd", "SaveCurrentYear", {"OK", comment});
  EXPECT_EQ(model.Get("Plant!T5"), Value(26));
  Call("clsYearEnd", "SaveLastYear", {"OK", comment});
  EXPECT_EQ(model.Get("Plant!U5"), Value(25));
  Call("clsYearEnd", "SaveHistoryYear", {"frmSaveHistoryPrompt:butGO", "OK", comment});
  EXPECT_EQ(model.Get("Plant!V5"), Value(21));
  Call("clsYearEnd", "ShiftHistory", {"OK"});
  EXPECT_EQ(model.Get("Plant!J5"), Value(22));
  Call("clsYearEnd", "CopyCurrentYear", {"OK"});
  EXPECT_EQ(model.Get("Plant!N5"), Value(26));
}

}  // namespace
}  // namespace vantora::component
