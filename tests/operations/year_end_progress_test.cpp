// What the progress dialog shows while the year-end operations run.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "operations/year_end_fixture.h"

namespace vantora {
namespace {

using ::testing::ElementsAreArray;

// Writes down what each drawing of the progress dialog shows, and answers OK to everything.
class ProgressReader : public ui::ScriptedUserInterface {
 public:
  ProgressReader() : ScriptedUserInterface({}, WhenExhausted::kYes) {}
  void ShowModeless(Form& form) override {
    ScriptedUserInterface::ShowModeless(form);
    drawn.push_back(form.caption() + "|" + form.Find("lblMessage")->caption() + "|" +
                    form.Find("lblFront")->caption());
  }
  std::vector<std::string> drawn;
};

TEST(YearEndProgress, NamesTheOperationTheSheetAndTheStep) {
  struct Case {
    std::function<void(testing::YearEndClient&)> run;
    std::vector<std::string> drawn;
  } const cases[] = {
      {[](testing::YearEndClient& object) { object.SaveCurrentYear(); },
       {"Save Current Year at marker||54%", "Save Current Year at marker|copying cells in Data|0%",
        "Save Current Year at marker|copying cells in Data|100%",
        "Save Current Year at marker|copying cells in Plant|0%",
        "Save Current Year at marker|copying cells in Plant|100%"}},
      // Four columns, then the used rows.
      {[](testing::YearEndClient& object) { object.ShiftHistory(); },
       {"Shift History||54%", "Shift History|copying cells in Data|25%",
        "Shift History|copying cells in Data|50%", "Shift History|copying cells in Data|75%",
        "Shift History|copying cells in Data|100%", "Shift History|copying cells in Data|0%",
        "Shift History|copying cells in Data|33%", "Shift History|copying cells in Data|67%",
        "Shift History|copying cells in Data|100%", "Shift History|copying cells in Plant|25%",
        "Shift History|copying cells in Plant|50%", "Shift History|copying cells in Plant|75%",
        "Shift History|copying cells in Plant|100%", "Shift History|copying cells in Plant|0%",
        "Shift History|copying cells in Plant|25%", "Shift History|copying cells in Plant|50%",
        "Shift History|copying cells in Plant|75%", "Shift History|copying cells in Plant|100%"}},
      {[](testing::YearEndClient& object) { object.CopyCurrentYear(); },
       {"Copy current year to prior year||54%",
        "Copy current year to prior year|copying cells in Data|0%",
        "Copy current year to prior year|copying cells in Data|50%",
        "Copy current year to prior year|copying cells in Data|100%",
        "Copy current year to prior year|copying cells in Plant|0%",
        "Copy current year to prior year|copying cells in Plant|33%",
        "Copy current year to prior year|copying cells in Plant|67%",
        "Copy current year to prior year|copying cells in Plant|100%"}},
  };
  for (const Case& c : cases) {
    testing::TestModel model = testing::YearEndModel();
    ProgressReader reader;
    testing::FixedClock clock;
    testing::NoFileVersions versions;
    Services services{reader, clock, versions};
    testing::YearEndClient object(services, model.application());
    c.run(object);
    EXPECT_THAT(reader.drawn, ElementsAreArray(c.drawn));
  }
}

}  // namespace
}  // namespace vantora
