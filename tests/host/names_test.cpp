// Names, ranges of several areas, hidden sheets and saves of operations in the embedded host.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "host/session.h"
#include "support/temporary_folder.h"

namespace vantora::embedded {
namespace {

using host::XlSheetVisibility;
using ::testing::HasSubstr;

class Names : public ::testing::Test {
 protected:
  host::NamesPtr All() { return session_->application()->ActiveWorkbook()->Names(); }
  WorkbookModel& Model() { return session_->file().model(); }
  std::string RefersTo(std::string_view name) {
    const DefinedName* found = Model().FindName(name, 0);
    return found ? found->refers_to : "none";
  }
  std::string NameOf(std::string_view cells) {
    host::NamePtr name = session_->Range(cells)->Name();
    return name ? name->OwnName() : "none";
  }
  template <typename Call>
  std::string Refusal(Call&& call) {
    try {
      call();
    } catch (const HostError& error) {
      return error.description();
    }
    return "";
  }

  std::unique_ptr<Session> session_ = Session::Create({"Plan", "My Plan", "Other"});
};

TEST_F(Names, AreDefinedAsExcelAllows) {
  const struct {
    const char* name;
    const char* reference;
    const char* refers_to;  // "none" when it is refused
  } cases[] = {
      {"Rows", "=Plan!R12C1:R12C28", "Plan!$A$12:$AB$12"},
      {"Back", "=plan!R12C28:R10C1", "Plan!$A$10:$AB$12"},
      {"One", "=R2C3", "Plan!$C$2"},
      {"Whole", "=Other!R3:R4", "Other!$3:$4"},
      {"Quoted", "='My Plan'!C2", "'My Plan'!$B:$B"},
      {"Blank", "=My Plan!R1C1", "none"},
      {"Missing", "=Nowhere!R1C1", "none"},
      {"Relative", "=Plan!R[1]C1", "none"},
      {"NoSign", "Plan!R1C1", "none"},
      {"Outside", "=Plan!R1048577C1", "none"},
      {"Mixed", "=Plan!R1C1:R2", "none"},
      {"Umsatz_\xC3\x84.1?", "=Plan!R1C1", "Plan!$A$1"},
      {"\\x", "=Plan!R1C1", "Plan!$A$1"},
      {"XFE1", "=Plan!R1C1", "Plan!$A$1"},  // behind the last column
      {"Q1", "=Plan!R1C1", "none"},
      {"XFD1048576", "=Plan!R1C1", "none"},
      {"r1c1", "=Plan!R1C1", "none"},
      {"C", "=Plan!R1C1", "none"},
      {"1st", "=Plan!R1C1", "none"},
      {"two words", "=Plan!R1C1", "none"},
      {"a-b", "=Plan!R1C1", "none"},
      {"Plan!x", "=Plan!R1C1", "none"},
      {"\xE2\x82\xAC", "=Plan!R1C1", "none"},
      {"TRUE", "=Plan!R1C1", "none"},
      {"Print_Area", "=Plan!R1C1", "none"},
      {"", "=Plan!R1C1", "none"},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(std::string(one.name) + " " + one.reference);
    EXPECT_EQ(All()->Add(one.name, one.reference), std::string_view(one.refers_to) != "none");
    EXPECT_EQ(RefersTo(one.name), one.refers_to);
  }
  EXPECT_TRUE(All()->Add(std::string(255, 'n'), "=Plan!R1C1"));
  EXPECT_FALSE(All()->Add(std::string(256, 'n'), "=Plan!R1C1"));
}

TEST_F(Names, WhatDependsOnThemFollowsTheirDefinition) {
  session_->Range("A1")->SetValue(3);
  session_->Range("A2")->SetValue(5);
  session_->Range("C1")->SetValue("=rate*2");
  session_->Range("D1")->SetValue("=C1+1");
  EXPECT_EQ(session_->Range("D1")->Value(), Value(CellError::kName));
  All()->Add("Rate", "=Plan!R1C1");
  EXPECT_EQ(session_->Range("D1")->Value(), Value(7));
  All()->Add("RATE", "=Plan!R2C1");
  EXPECT_EQ(session_->Range("D1")->Value(), Value(11));
  EXPECT_EQ(All()->Item("rate")->OwnName(), "RATE");
  host::NamePtr name = All()->Item("Rate");
  name->Delete();
  EXPECT_EQ(session_->Range("D1")->Value(), Value(CellError::kName));
  EXPECT_THAT(Refusal([&] { name->RefersToRange(); }), HasSubstr("was deleted"));
  EXPECT_THAT(Refusal([&] { All()->Item("Rate"); }), HasSubstr("no name \"Rate\""));
}

TEST_F(Names, OfARangeAreThoseOfExactlyItsCells) {
  Model().names.push_back({.name = "zeta", .scope = -1, .refers_to = "Plan!$A$1:$B$1"});
  Model().names.push_back({.name = "Local", .scope = 1, .refers_to = "'My Plan'!$C$1"});
  EXPECT_EQ(NameOf("A1:B1"), "zeta");
  EXPECT_EQ(NameOf("A1"), "none");
  EXPECT_EQ(NameOf("'My Plan'!C1"), "'My Plan'!Local");
  All()->Add("Alpha", "=Plan!R1C1:R1C2");
  EXPECT_EQ(NameOf("A1:B1"), "Alpha") << "the first by alphabet";
  All()->Item("Alpha")->Delete();
  EXPECT_EQ(NameOf("A1:B1"), "zeta");
  All()->Add("zeta", "=Plan!R5C1");
  EXPECT_EQ(NameOf("A1:B1"), "none");
  EXPECT_EQ(NameOf("A5"), "zeta");
  session_->Range("A:A")->Insert(host::XlInsertShiftDirection::kToRight);
  EXPECT_EQ(NameOf("B5"), "zeta");
}

TEST_F(Names, ManyAreDefinedAndDeletedWithoutReadingAllEachTime) {
  const int rows = 3000;
  for (int row = 1; row <= rows; ++row) {
    const std::string number = std::to_string(row);
    ASSERT_TRUE(All()->Add("n_" + number, "=Plan!R" + number + "C1:R" + number + "C28"));
    ASSERT_EQ(NameOf("A" + number + ":AB" + number), "n_" + number);
  }
  for (int row = 1; row < rows; ++row) All()->Item("n_" + std::to_string(row))->Delete();
  EXPECT_EQ(NameOf("A3000:AB3000"), "n_3000");
  EXPECT_EQ(Model().names.size(), 1u);
}

TEST_F(Names, SheetsAreHiddenButForTheLast) {
  auto sheet = [&](const char* name) { return session_->Worksheet(name); };
  sheet("My Plan")->Activate();
  sheet("My Plan")->SetVisible(XlSheetVisibility::kVeryHidden);
  EXPECT_EQ(session_->application()->ActiveSheet()->Name(), "Other");
  sheet("Other")->SetVisible(XlSheetVisibility::kHidden);
  EXPECT_EQ(session_->application()->ActiveSheet()->Name(), "Plan");
  EXPECT_THAT(Refusal([&] { sheet("Plan")->SetVisible(XlSheetVisibility::kHidden); }),
              HasSubstr("\"Plan\" is the last visible sheet"));
  EXPECT_THAT(Refusal([&] { sheet("Other")->Activate(); }), HasSubstr("is hidden"));
  Model().structure_is_protected = true;
  EXPECT_THAT(Refusal([&] { sheet("Other")->SetVisible(XlSheetVisibility::kVisible); }),
              HasSubstr("structure of the workbook is protected"));
}

class Saves : public Names {
 protected:
  Saves() {
    session_->DirectSaves(
        [this](const SaveRequest& request) { return folder_ / ("book" + request.ending); });
  }
  host::WorkbookPtr Book() { return session_->application()->ActiveWorkbook(); }

  testing::TemporaryFolder folder_;
};

TEST_F(Saves, HoldTheStateOfTheirMomentAndWaitForTheirName) {
  const auto target = folder_ / "book.xlsx";
  session_->Worksheet("Other")->SetVisible(XlSheetVisibility::kVeryHidden);
  session_->Range("A1:B2,D4")->Select();
  All()->Add("beta", "=Plan!R1C1");
  All()->Add("Alpha", "=Plan!R2C1");
  Book()->Save();
  session_->Range("A1")->SetValue("later");
  session_->Worksheet("Other")->SetVisible(XlSheetVisibility::kVisible);
  EXPECT_FALSE(std::filesystem::exists(target));
  session_->CommitSaves();
  auto saved = Session::Open(target);
  EXPECT_EQ(saved->Range("A1")->Value(), Value());
  EXPECT_EQ(saved->Worksheet("Other")->Visible(), XlSheetVisibility::kVeryHidden);
  EXPECT_EQ(saved->application()->Selection()->Areas().size(), 2u);
  EXPECT_EQ(saved->file().model().names.at(0).name, "Alpha") << "by alphabet";

  Book()->Save();
  session_.reset();
  EXPECT_EQ(Session::Open(target)->Range("A1")->Value(), Value()) << "never put in place";
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 1);
}

TEST_F(Saves, AsAMacroEnabledOrAnOldWorkbook) {
  Book()->SaveAs("/elsewhere/Model.xlsm", host::XlFileFormat::kOpenXmlWorkbookMacroEnabled);
  EXPECT_EQ(Book()->Name(), "Model.xlsm");
  session_->CommitSaves();
  EXPECT_TRUE(Session::Open(folder_ / "book.xlsm")->file().is_macro_enabled());
}

TEST_F(Saves, TheOldFormatNeedsLibreOffice) {
  const std::string path = getenv("PATH");
  setenv("PATH", folder_.path().c_str(), 1);
  EXPECT_THAT(Refusal([&] { Book()->SaveAs("Old.xls", host::XlFileFormat::kExcel8); }),
              HasSubstr("no program \"soffice\""));
  setenv("PATH", path.c_str(), 1);
  EXPECT_THAT(session_->saves().failure(), HasSubstr("soffice"));
  EXPECT_FALSE(session_->saves().any());
  EXPECT_EQ(Book()->Name(), "Book1");
  if (std::system("command -v soffice > /dev/null") != 0) {
    GTEST_SKIP() << "LibreOffice is not installed.";
  }
  Book()->SaveAs("Old.xls", host::XlFileFormat::kExcel8);
  session_->CommitSaves();
  EXPECT_THAT(Refusal([&] { Book()->Save(); }), "");
  std::string text;
  try {
    Session::Open(folder_ / "book.xls");
  } catch (const FileError& error) {
    text = error.what();
  }
  EXPECT_THAT(text, HasSubstr("old .xls format"));
}

TEST_F(Saves, ASaveNobodyDirectsIsRefused) {
  session_->DirectSaves(nullptr);
  EXPECT_THAT(Refusal([&] { Book()->Save(); }), HasSubstr("nothing says where to"));
}

}  // namespace
}  // namespace vantora::embedded
