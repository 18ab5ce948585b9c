// A small model with a dashboard.
#pragma once

#include "operations/test_model.h"

namespace vantora::testing {

// Cover is active. Dashboard has six used columns of 108.75 points; Reference holds the chart list
// in columns G to I and the configurations in N and O, both empty, from row 14 down.
inline TestModel DashboardModel() {
  TestModel model({"Cover", "Dashboard", "Reference"});
  model.Put("Dashboard!A1", {"D"});
  model.Put("Dashboard!F2", {"end"});
  for (int column = 1; column <= 6; ++column) {
    model.Sheet("Dashboard")->Columns(column)->SetColumnWidth(20);
  }
  model.Put("Reference!A1", {"X", "n", "k", "c", "s"});
  model.Put("Reference!G1", {"g"});
  model.Put("Reference!N1", {"h"});
  // The used range goes on below the lists.
  model.Put("Reference!A99", {"end"});
  return model;
}

}  // namespace vantora::testing
