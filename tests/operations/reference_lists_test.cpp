// The lists of the Reference Sheet.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "operations/client.h"
#include "operations/test_model.h"
#include "support/fake_services.h"

namespace vantora {
namespace {

using ::testing::ElementsAre;
using testing::FakeServices;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::TestModel;

// Lists from row 5 on: names B, keys D with sheets E and columns G, discrepancies I, menus K,
// charts R, configurations Y.
class Lists : public ::testing::Test {
 protected:
  Lists() {
    model.Put("Reference!A1", {"X5"});
    Flag("B", "n");
    Flag("D", "k");
    Flag("E", "s");
    Flag("G", "c");
    Flag("I", "e");
    Flag("K", "m");
    Flag("R", "g");
    Flag("Y", "h");
    model.Put("Reference!A20", {"the used range ends here"});
    model.HaveSortButtons();
  }

  void Flag(const std::string& column, const char* flag) {
    model.Put("Reference!" + column + "1", {flag});
  }
  void Down(const std::string& column, const std::vector<Value>& values) {
    int row = 5;
    for (const Value& value : values) {
      model.Put("Reference!" + column + std::to_string(row++), {value});
    }
  }
  std::vector<Value> Column(const std::string& column, int count) {
    std::vector<Value> values;
    for (int row = 5; row < 5 + count; ++row) {
      values.push_back(model.Get("Reference!" + column + std::to_string(row)));
    }
    return values;
  }
  testing::RefSheetClient& Bound() {
    client = std::make_unique<testing::RefSheetClient>(fake.services, model.application());
    return *client;
  }
  // The number of the error that the call ends with; 0 when it ends well.
  int Error(const std::string& method) {
    try {
      client->Call(method);
    } catch (const HostError& error) {
      return error.number();
    }
    return 0;
  }
  const std::vector<ui::ShownMessageBox>& boxes() { return fake.user_interface.message_boxes(); }

  TestModel model{{"Cover", "Reference"}};
  FakeServices fake{{"OK", "OK"}};
  std::unique_ptr<testing::RefSheetClient> client;
};

TEST_F(Lists, SelectionGoesToTheFirstEmptyRowOfTheDecidingColumn) {
  Down("D", {"K1", "K2", "", "K4"});
  Down("I", {"", "second"});
  Down("R", {1, 2, 3});
  Down("B", {"name"});
  struct Case {
    const char* method;
    const char* selected;
    const char* deselected;
  } const cases[] = {
      {"KeysList", "Reference!D5:G6", "Reference!D3"},
      {"NamesList", "Reference!B5:C5", "Reference!B3"},
      {"DiscrList", "Reference!I5", "Reference!I3"},  // an empty list
      {"ChartsList", "Reference!R5:W7", "Reference!R3"},
  };
  testing::RefSheetClient& lists = Bound();
  for (const Case& c : cases) {
    model.Activate("Cover");
    lists.Call(std::string(c.method) + "Select");
    EXPECT_EQ(model.Selection(), c.selected);
    model.Activate("Cover");
    lists.Call(std::string(c.method) + "Deselect");
    EXPECT_EQ(model.Selection(), c.deselected);
  }
}

TEST_F(Lists, ThatFillTheUsedRangeAreTheirFirstRow) {
  // The model's rule. It counts the used rows, so a used range that starts lower ends sooner.
  Down("D", std::vector<Value>(16, "key"));
  testing::RefSheetClient& lists = Bound();
  lists.Call("KeysListSelect");
  EXPECT_EQ(model.Selection(), "Reference!D5:G5");
  model.Put("Reference!A21", {"one row more"});
  lists.Call("KeysListSelect");
  EXPECT_EQ(model.Selection(), "Reference!D5:G20");
}

TEST_F(Lists, KeysLieBetweenTheirOutermostColumns) {
  Flag("E", "");
  Flag("J", "K");  // the rightmost one counts
  Flag("H", "S");  // the columns are now G (c), H (s), J (k)
  Down("J", {"key", "other"});
  Bound().Call("KeysListSelect");
  EXPECT_EQ(model.Selection(), "Reference!G5:J6");
}

TEST_F(Lists, KeysAreLoadedAsBlocksAndCleared) {
  model.Sheet("Reference")->Cells(5, 4)->Interior()->SetColorIndex(6);
  testing::RefSheetClient& lists = Bound();
  lists.Load("KeysListLoadKeysCol", {"K2", "K1"});
  lists.Load("KeysListLoadSheetsCol", {"Plant", "Data"});
  lists.Load("KeysListLoadColsCol", {"9", "26"});
  EXPECT_THAT(Column("D", 3), ElementsAre(Value("K2"), Value("K1"), Value()));
  EXPECT_THAT(Column("E", 2), ElementsAre(Value("Plant"), Value("Data")));
  EXPECT_THAT(Column("G", 2), ElementsAre(Value(9), Value(26)));
  EXPECT_EQ(model.Alignment("Reference!G6"), " horizontal=\"left\"");
  EXPECT_EQ(model.Alignment("Reference!E6"), "");

  model.Put("Reference!F6", {"between"});
  lists.Call("KeysListClear");
  EXPECT_THAT(Column("D", 2), ElementsAre(Value(), Value()));
  EXPECT_EQ(model.Get("Reference!F6"), Value());
  EXPECT_EQ(model.Alignment("Reference!G6"), "");
  EXPECT_EQ(model.Sheet("Reference")->Cells(5, 4)->Interior()->ColorIndex(), host::kColorIndexNone);
}

TEST_F(Lists, LoadsAsManyRowsAsAreCounted) {
  testing::RefSheetClient& lists = Bound();
  const std::vector<std::string> values = {"a", "b", "c"};
  lists.Call("DiscrListLoadCol", {values, Value(2)});
  EXPECT_THAT(Column("I", 3), ElementsAre(Value("a"), Value("b"), Value()));
  lists.Call("DiscrListLoadCol", {values, Value(4)});
  EXPECT_EQ(model.Get("Reference!I8"), Value(CellError::kNotAvailable));
  lists.Call("DiscrListLoadCol", {values, Value(0)});
  EXPECT_THAT(Column("I", 3), ElementsAre(Value("a"), Value("b"), Value("c")));
}

TEST_F(Lists, DiscrepanciesDoNotWrap) {
  for (int row = 5; row <= 6; ++row) {
    model.Sheet("Reference")->Cells(row, 9)->SetWrapText(true);
  }
  testing::RefSheetClient& lists = Bound();
  lists.Load("DiscrListLoadCol", {"a line of text"});
  EXPECT_EQ(model.Alignment("Reference!I5"), "");
  EXPECT_EQ(model.Alignment("Reference!I6"), " wrapText=\"1\"");
  lists.Call("DiscrListClear");
  EXPECT_EQ(model.Get("Reference!I5"), Value());
}

TEST_F(Lists, KeysSortByKeyOrBySheet) {
  Down("D", {"k2", "K10", "k1", "K1"});
  Down("E", {"A", "B", "B", "A"});
  Down("G", {9, 26, 9, 30});
  testing::RefSheetClient& lists = Bound();
  lists.Call("KeysListSortbyKey");
  EXPECT_THAT(Column("D", 4), ElementsAre(Value("K1"), Value("k1"), Value("K10"), Value("k2")));
  EXPECT_EQ(model.Selection(), "Reference!D3");
  lists.Call("KeysListSortbySheet");
  EXPECT_THAT(Column("E", 4), ElementsAre(Value("A"), Value("A"), Value("B"), Value("B")));
  EXPECT_THAT(Column("G", 4), ElementsAre(Value(9), Value(30), Value(9), Value(26)));
}

TEST_F(Lists, NamesAreListedAndBrokenOnesMarked) {
  model.Name("zeta", "Cover!$A$1");
  model.Name("Beta", "Cover!#REF!");
  model.Name("alpha", "\"no. #1\"");
  Down("B", {"old", "names"});
  for (int row = 5; row <= 7; ++row) {
    model.Sheet("Reference")->Cells(row, 3)->Interior()->SetColorIndex(6);
  }
  testing::RefSheetClient& lists = Bound();
  lists.Call("NamesListPopulate");
  EXPECT_THAT(Column("B", 4), ElementsAre(Value("alpha"), Value("Beta"), Value("zeta"), Value()));
  EXPECT_THAT(Column("C", 3),
              ElementsAre(Value("=\"no. #1\""), Value("=Cover!#REF!"), Value("=Cover!$A$1")));
  const auto fill = [&](int row) {
    return model.Sheet("Reference")->Cells(row, 3)->Interior()->ColorIndex();
  };
  EXPECT_EQ(fill(5), 45);  // any "#" counts
  EXPECT_EQ(fill(6), 45);
  EXPECT_EQ(fill(7), host::kColorIndexNone);
  ASSERT_THAT(boxes(), SizeIs(1));
  EXPECT_EQ(boxes()[0].text,
            "One or more Excel names have errors.  \n"
            "Look for the flagged entries in the list on the References Sheet.");
  EXPECT_EQ(boxes()[0].style, kOkOnly);
  EXPECT_EQ(boxes()[0].title, "Orvanemcro1");

  lists.Call("NamesListSortbySheet");
  EXPECT_THAT(Column("B", 3), ElementsAre(Value("alpha"), Value("Beta"), Value("zeta")));
  model.Put("Reference!C7", {"'=A"});
  lists.Call("NamesListSortbySheet");
  EXPECT_THAT(Column("B", 3), ElementsAre(Value("alpha"), Value("zeta"), Value("Beta")));
  lists.Call("NamesListSortbyName");
  EXPECT_THAT(Column("B", 3), ElementsAre(Value("alpha"), Value("Beta"), Value("zeta")));
}

TEST_F(Lists, NamesOfAWorkbookWithoutNamesLeaveAnEmptyList) {
  Down("B", {"old"});
  model.Sheet("Reference")->Cells(5, 3)->Interior()->SetColorIndex(6);
  Bound().Call("NamesListPopulate");
  EXPECT_EQ(model.Get("Reference!B5"), Value());
  EXPECT_EQ(model.Sheet("Reference")->Cells(5, 3)->Interior()->ColorIndex(), host::kColorIndexNone);
  EXPECT_THAT(boxes(), IsEmpty());
}

TEST_F(Lists, MenusEndWhereItemAndSubItemAreEmpty) {
  model.Put("Reference!K5", {" Reports ", Value(), "note", Value(), "note", Value()});
  model.Put("Reference!K6", {Value(), "Print ", "note", " VA_Print ", Value(), 4.5});
  model.Put("Reference!K8", {"never reached"});
  testing::RefSheetClient& lists = Bound();
  EXPECT_FALSE(lists.Is("MenusListIteratorIsMore"));
  lists.Call("MenusListIteratorInit");
  EXPECT_TRUE(lists.Is("MenusListIteratorIsMore"));
  EXPECT_EQ(lists.Text("MenusListItem"), "Reports");
  EXPECT_EQ(lists.Text("MenusListSubItem"), "");
  EXPECT_EQ(lists.Number("MenusListFaceID"), 0);
  lists.Call("MenusListIteratorNext");
  EXPECT_TRUE(lists.Is("MenusListIteratorIsMore"));
  EXPECT_EQ(lists.Text("MenusListItem"), "");
  EXPECT_EQ(lists.Text("MenusListSubItem"), "Print");
  EXPECT_EQ(lists.Text("MenusListMacroName"), "VA_Print");
  EXPECT_EQ(lists.Number("MenusListFaceID"), 4);
  lists.Call("MenusListIteratorNext");
  EXPECT_FALSE(lists.Is("MenusListIteratorIsMore"));
}

TEST_F(Lists, NumbersThatAreNoneOrTooLargeAreErrors) {
  struct Case {
    const char* cell;
    Value value;
    const char* method;
    int error;
  } const cases[] = {
      {"P5", "face", "MenusListIteratorInit", HostError::kTypeMismatch},
      {"P5", CellError::kRef, "MenusListIteratorInit", HostError::kTypeMismatch},
      {"P5", 32768, "MenusListIteratorInit", HostError::kOverflow},
      {"P5", " 32767 ", "MenusListIteratorInit", 0},
      {"R5", 3e9, "ChartsListIteratorInit", HostError::kOverflow},
      {"R5", 40000, "ChartsListIteratorInit", 0},
      {"R5", "third", "ChartsListIteratorInit", 0},
      {"Y5", "", "ConfigsListIteratorInit", HostError::kTypeMismatch},
      {"Y5", "one", "ConfigsListIteratorInit", HostError::kTypeMismatch},
      {"Y5", -32769, "ConfigsListIteratorInit", HostError::kOverflow},
  };
  Bound();
  for (const Case& c : cases) {
    model.Put(std::string("Reference!") + c.cell, {c.value});
    EXPECT_EQ(Error(c.method), c.error) << c.cell << " " << c.error;
  }
}

TEST_F(Lists, ErrorsOfNumbersNameTheCellAndWhatToDo) {
  struct Case {
    const char* cell;
    Value value;
    const char* method;
    const char* text;
  } const cases[] = {
      {"Y5", Value(), "ConfigsListIteratorInit",
       "Type mismatch: Reference!Y5 is empty, and a number is wanted there. Enter one, or 0 behind "
       "the last entry of a list."},
      {"Y5", "one", "ConfigsListIteratorInit",
       "Type mismatch: Reference!Y5 holds \"one\", and a number is wanted there. Enter one."},
      {"P5", 32768, "MenusListIteratorInit",
       "Overflow: Reference!P5 holds 32768, which is too large. Enter a smaller number there."},
  };
  Bound();
  for (const Case& c : cases) {
    model.Put(std::string("Reference!") + c.cell, {c.value});
    try {
      client->Call(c.method);
      ADD_FAILURE() << c.method << " takes " << c.cell;
    } catch (const HostError& error) {
      EXPECT_EQ(error.description(), c.text);
    }
  }
}

TEST_F(Lists, ChartsEndAtTheFirstEmptyTitle) {
  model.Put("Reference!R5", {"'12", 1, " Sales "});
  model.Put("Reference!R6", {"none", 2, "Costs"});
  model.Put("Reference!R7", {13, 1, " "});
  testing::RefSheetClient& lists = Bound();
  lists.Call("ChartsListIteratorInit");
  EXPECT_EQ(lists.Text("ChartsTitle"), "Sales");
  EXPECT_EQ(lists.Number("ChartsColumn"), 12);
  lists.Call("ChartsListIteratorNext");
  EXPECT_EQ(lists.Text("ChartsTitle"), "Costs");
  EXPECT_EQ(lists.Number("ChartsColumn"), 0);
  EXPECT_TRUE(lists.Is("ChartsListIteratorIsMore"));
  lists.Call("ChartsListIteratorNext");
  EXPECT_FALSE(lists.Is("ChartsListIteratorIsMore"));
}

TEST_F(Lists, ChartsAreLoadedAndSortedByColumnAndPosition) {
  testing::RefSheetClient& lists = Bound();
  lists.Load("ChartsListKeysListLoadColsCol", {"10", "9", "10"});
  lists.Load("ChartsListLoadPosCol", {"2", "1", "1"});
  lists.Load("ChartsListLoadTitlesCol", {"c", "a", "b"});
  model.Put("Reference!W5", {"with c"});
  lists.Call("ChartsListSort");
  EXPECT_THAT(Column("T", 3), ElementsAre(Value("a"), Value("b"), Value("c")));
  EXPECT_EQ(model.Get("Reference!W7"), Value("with c"));
  lists.Call("ChartsListClear");
  EXPECT_THAT(Column("T", 3), ElementsAre(Value(), Value(), Value()));
  EXPECT_EQ(model.Get("Reference!W7"), Value());
}

TEST_F(Lists, ConfigurationsAreReadAtTheirNumbers) {
  model.Put("Reference!Y5", {1, "one"});
  model.Put("Reference!Y6", {5, "beyond the array"});
  model.Put("Reference!Y7", {"' 2 ", " two "});
  model.Put("Reference!Y8", {0, "ends the list"});
  model.Put("Reference!Y9", {3, "three"});
  testing::RefSheetClient& lists = Bound();
  std::vector<std::string> configs = {"old", "old", "old", "old"};
  lists.ConfigsListGet(configs);
  EXPECT_THAT(configs, ElementsAre("one", "two", "", ""));
  EXPECT_EQ(lists.Number("cCount"), 2);

  lists.Call("ConfigsListIteratorInit");
  EXPECT_EQ(lists.Text("ConfigsName"), "one");
  lists.Call("ConfigsListIteratorNext");
  lists.Call("ConfigsListIteratorNext");
  EXPECT_EQ(lists.Text("ConfigsName"), "two");
  EXPECT_EQ(lists.Number("ConfigsNum"), 2);
}

TEST_F(Lists, ConfigurationsAreWrittenWithoutGaps) {
  Down("Y", {7, 8, 9, 10, 11});
  Down("Z", {"x", "x", "x", "x", "stays"});
  testing::RefSheetClient& lists = Bound();
  lists.ConfigsListPut({"first", "", "third", ""});
  EXPECT_THAT(Column("Y", 5), ElementsAre(Value(1), Value(3), Value(0), Value(0), Value(11)));
  EXPECT_THAT(Column("Z", 5),
              ElementsAre(Value("first"), Value("third"), Value(), Value(), Value("stays")));
  EXPECT_EQ(model.Selection(), "Reference!Y5:Z8");
}

TEST_F(Lists, ThatAreNotDefinedDoNothing) {
  const std::vector<std::string> is_defined = {"KeysListIsDefined",    "NamesListIsDefined",
                                               "DiscrListIsDefined",   "ChartsListIsDefined",
                                               "ConfigsListIsDefined", "MenusListIsDefined"};
  for (const std::string& method : is_defined) EXPECT_TRUE(Bound().Is(method)) << method;

  model.Put("Reference!A1", {"X2"});  // no room for headings above
  testing::RefSheetClient& lists = Bound();
  for (const std::string& method : is_defined) EXPECT_FALSE(lists.Is(method)) << method;
  model.RecordChanges();
  model.Activate("Cover");
  for (const char* method :
       {"KeysListSelect", "KeysListDeselect", "KeysListClear", "KeysListSortbyKey",
        "KeysListSortbySheet", "NamesListDeselect", "NamesListPopulate", "NamesListSortbyName",
        "DiscrListSelect", "DiscrListClear", "ChartsListSort", "ChartsListClear",
        "ChartsListIteratorInit", "ConfigsListIteratorInit", "MenusListIteratorInit"}) {
    lists.Call(method);
  }
  for (const char* method : {"KeysListLoadKeysCol", "DiscrListLoadCol", "ChartsListLoadPosCol"}) {
    lists.Load(method, {"value"});
  }
  EXPECT_FALSE(lists.Is("NamesListSelect"));
  EXPECT_FALSE(lists.Is("MenusListIteratorIsMore"));
  lists.ConfigsListPut({"name"});
  std::vector<std::string> configs = {"kept"};
  lists.ConfigsListGet(configs);
  EXPECT_THAT(configs, ElementsAre("kept"));
  EXPECT_EQ(model.ActiveSheet(), "Cover");
  EXPECT_THAT(model.Changes(), IsEmpty());

  // One of the three columns is not enough for the keys.
  model.Put("Reference!A1", {"X5"});
  Flag("G", "");
  EXPECT_FALSE(Bound().Is("KeysListIsDefined"));
}

TEST(SortButtons, ThatTheWorkbookLacksAreAnErrorOfTheCaller) {
  TestModel model({"Reference"});
  model.Put("Reference!A1", {"X5", "n", "k", "c", "s"});
  model.Name("broken", "Reference!#REF!");
  FakeServices fake{{"OK"}};
  testing::RefSheetClient lists(fake.services, model.application());
  for (const char* method : {"KeysListResetSortButtons", "NamesListPopulate"}) {
    try {
      lists.Call(method);
      ADD_FAILURE() << method;
    } catch (const HostError& error) {
      EXPECT_EQ(error.number(), HostError::kMemberNotSupported);
    }
  }
  EXPECT_THAT(fake.user_interface.message_boxes(), IsEmpty());
}

}  // namespace
}  // namespace vantora
