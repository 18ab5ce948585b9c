// How many calls of Excel an operation takes. Each costs time in a large workbook, so that what a
// cell takes has a limit.
#include <gmock/gmock.h>

#include <cstdio>
#include <functional>

#include "operations/client.h"
#include "operations/test_model.h"
#include "server_client.h"
#include "support/fake_services.h"

namespace vantora::testing {
namespace {

struct Operation {
  const char* name;
  std::function<void(YearEndClient&)> run;
  // Saving a year copies whole columns: it takes no calls for a row.
  int most_calls_a_row;
};

TestModel ModelOf(int rows) {
  TestModel model({"Data"});
  model.Put("Data!A1", {"S"});
  for (int row = 2; row <= rows; ++row) {
    model.Put("Data!J" + std::to_string(row), {1, 2, 3, 4, 5, 6});
  }
  model.Name("marker", "Data!$R$1");
  model.Name("planning_fiscal_year", "Data!$C$1");
  return model;
}

std::map<std::string, int> CallsOf(const Operation& operation, int rows) {
  TestModel model = ModelOf(rows);
  FixedClock clock;
  NoFileVersions versions;
  ui::ScriptedUserInterface yes({}, ui::ScriptedUserInterface::WhenExhausted::kYes);
  Services services{yes, clock, versions};
  {
    YearEndClient client(services, model.application());
    operation.run(client);
  }
  return CallsOfLastClient();
}

TEST(CallCount, OfOneMoreRowIsLimited) {
  constexpr int kRows = 20;
  constexpr int kMoreRows = 120;
  const Operation operations[] = {
      {"ShiftHistory", [](YearEndClient& c) { c.ShiftHistory(); }, 2},
      {"CopyCurrentYear", [](YearEndClient& c) { c.CopyCurrentYear(); }, 6},
      {"SaveCurrentYear", [](YearEndClient& c) { c.SaveCurrentYear(); }, 0},
      {"SaveHistoryYear", [](YearEndClient& c) { c.SaveHistoryYear(); }, 0},
  };
  std::printf("%-16s %-24s %s\n", "Operation", "Member", "Calls a row");
  for (const Operation& operation : operations) {
    std::map<std::string, int> few = CallsOf(operation, kRows);
    double total = 0;
    for (const auto& [member, count] : CallsOf(operation, kMoreRows)) {
      double calls = static_cast<double>(count - few[member]) / (kMoreRows - kRows);
      if (calls == 0) continue;
      total += calls;
      std::printf("%-16s %-24s %5.2f\n", operation.name, member.c_str(), calls);
    }
    std::printf("%-16s %-24s %5.2f\n", operation.name, "all", total);
    EXPECT_GT(few["Range.Select"] + few["Range.Value"], 0) << operation.name << " did nothing";
    EXPECT_LE(total, operation.most_calls_a_row) << operation.name;
  }
}

}  // namespace
}  // namespace vantora::testing
