// A small model with two history sheets and the objects that work on it.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "operations/client.h"
#include "operations/test_model.h"
#include "support/fake_services.h"

namespace vantora::testing {

// Cover is active and takes no part. Data holds the name "marker" (column R) and has no flag in row
// 1, Plant flags columns Q and T with "k". Planning holds the fiscal years and takes no part.
inline TestModel YearEndModel() {
  TestModel model({"Cover", "Data", "Plant", "Planning"});
  model.Put("Cover!A1", {"Cover"});
  model.Put("Cover!J3", {1, 2, 3, 4, 5, 6});
  model.Put("Data!A1", {"S"});
  model.Put("Data!J3", {11, 12, 13, 14, 15, "=N3*2"});
  model.Put("Data!J4", {"a", "b", "=K3+1", "d", "e", "f"});
  model.Fill("Data!O4");
  model.Put("Data!R4", {"old"});
  model.Put("Plant!A1", {"plant s"});
  model.Put("Plant!J5", {21, 22, 23, 24, 25, 26});
  model.Put("Plant!Q1", {"k"});
  model.Put("Plant!T1", {"K"});
  model.Put("Planning!C2", {2021, 2022, "FY 2023", 2024, 2025});
  model.Name("marker", "Data!$R$1");
  model.Name("planning_fiscal_year", "Planning!$C$2");
  return model;
}

class YearEndTest : public ::testing::Test {
 protected:
  // An initialised object that will get these answers.
  YearEndClient& YearEnd(const std::vector<std::string>& answers) {
    year_end.reset();
    fake = std::make_unique<FakeServices>(answers);
    year_end = std::make_unique<YearEndClient>(fake->services, model.application());
    model.RecordChanges();
    return *year_end;
  }
  // The text of the n-th message box, up to the advice that all confirmations share.
  std::string Confirmed(std::size_t n = 0) {
    std::string text = fake->user_interface.message_boxes().at(n).text;
    return text.substr(0, text.find("\n\nIt's a good idea"));
  }
  bool ScreenUpdating() { return model.application()->ScreenUpdating(); }

  TestModel model = YearEndModel();
  std::unique_ptr<FakeServices> fake;
  std::unique_ptr<YearEndClient> year_end;
};

}  // namespace vantora::testing
