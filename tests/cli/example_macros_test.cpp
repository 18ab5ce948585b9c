// The example macros for a model workbook fit the component: every call in them names a member that
// exists, with as many arguments as it takes, and no member is left without a macro.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>

#include "component/class_table.h"
#include "core/convert.h"
#include "core/globals.h"
#include "host/session.h"
#include "presentation/menu_management.h"
#include "support/fake_services.h"

namespace vantora {
namespace {

using component::PublicClass;

const std::filesystem::path kExamples = std::filesystem::path(VANTORA_SOURCE_DIR) / "examples";

std::string TextOf(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::vector<std::filesystem::path> ModuleFiles() {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(kExamples / "workbook-macros")) {
    const std::string extension = entry.path().extension();
    if (extension == ".bas" || extension == ".cls") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

// A line without its comment and with all string literals empty.
std::string Code(const std::string& line) {
  std::string code;
  bool quoted = false;
  for (char c : line) {
    if (c == '"') {
      quoted = !quoted;
    } else if (quoted) {
      continue;
    } else if (c == '\'') {
      break;
    }
    code += c;
  }
  return code;
}

// The statements of a module, each on one line.
std::vector<std::string> StatementsOf(const std::string& text) {
  std::vector<std::string> statements;
  std::string pending;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.ends_with('\r')) line.pop_back();
    pending += Code(line);
    if (pending.ends_with(" _")) {
      pending.erase(pending.size() - 2);
      continue;
    }
    statements.push_back(std::move(pending));
    pending.clear();
  }
  return statements;
}

// The number of arguments in a list without the parentheses around it, or up to the one that closes
// it.
int ArgumentCount(std::string_view list) {
  list = TrimBlanks(list);
  if (list.empty() || list.front() == ')') return 0;
  int count = 1;
  int depth = 0;
  for (char c : list) {
    if (c == '(') ++depth;
    if (c == ')' && depth-- == 0) break;
    if (c == ',' && depth == 0) ++count;
  }
  return count;
}

struct MemberCall {
  std::string where;
  std::string class_name;
  std::string member;
  int arguments = 0;
};

// The calls of the component's members in a module.
std::vector<MemberCall> CallsIn(const std::filesystem::path& file) {
  static const std::regex kVariable(R"((\w+) As Orvanemcro1\.(\w+))");
  static const std::regex kProcedure(R"(^(Public|Private) (Sub|Function) \w+)");
  static const std::regex kMember(R"((^|[^.\w])(\w+)\.(\w+))");
  // The session's functions are named after the classes that they give.
  std::map<std::string, std::string> session;
  for (const PublicClass& entry : component::PublicClasses()) {
    session[std::string(entry.name.substr(3))] = entry.name;
    session["m" + std::string(entry.name.substr(3))] = entry.name;
  }
  std::vector<MemberCall> calls;
  auto objects = session;
  for (const std::string& statement : StatementsOf(TextOf(file))) {
    std::smatch match;
    if (std::regex_search(statement, match, kProcedure)) objects = session;
    if (std::regex_search(statement, match, kVariable)) objects[match[1]] = match[2];
    for (std::sregex_iterator at(statement.begin(), statement.end(), kMember), end; at != end;
         ++at) {
      const auto object = objects.find((*at)[2]);
      if (object == objects.end()) continue;
      const std::string before = statement.substr(0, at->position(2));
      const std::string after = at->suffix();
      const std::string_view start = TrimBlanks(before);
      const bool is_statement = start.empty() || start.ends_with("Then");
      const int arguments = is_statement             ? ArgumentCount(after)
                            : after.starts_with("(") ? ArgumentCount(after.substr(1))
                                                     : 0;
      calls.push_back(
          {file.filename().string() + ": " + statement, object->second, (*at)[3], arguments});
    }
  }
  return calls;
}

std::vector<MemberCall> AllCalls() {
  std::vector<MemberCall> calls;
  for (const auto& file : ModuleFiles())
    std::ranges::move(CallsIn(file), std::back_inserter(calls));
  return calls;
}

// Members that are not in the table: they take or hold objects.
bool IsObjectMember(const MemberCall& call) {
  return call.member == "Init" ||
         (call.class_name == "clsGlobals" && (call.member == "App" || call.member == "Menus"));
}

TEST(ExampleMacros, CallMembersThatExistWithTheirArguments) {
  const std::vector<MemberCall> calls = AllCalls();
  EXPECT_GT(calls.size(), 120u);
  for (const MemberCall& call : calls) {
    if (IsObjectMember(call)) {
      EXPECT_EQ(call.arguments, call.member == "Init" ? 1 : 0) << call.where;
      continue;
    }
    const PublicClass* entry = component::FindClass(call.class_name);
    ASSERT_NE(entry, nullptr) << call.where;
    const component::Method* method = component::FindMethod(*entry, call.member);
    EXPECT_NE(method, nullptr) << call.where;
    if (!method) continue;
    const auto& parameters = method->parameters;
    const auto required = std::ranges::count(parameters, false, &component::Parameter::is_optional);
    EXPECT_GE(call.arguments, required) << call.where;
    EXPECT_LE(call.arguments, static_cast<int>(parameters.size())) << call.where;
  }
}

TEST(ExampleMacros, UseEveryMemberOfEveryClass) {
  std::set<std::u32string> called;
  for (const MemberCall& call : AllCalls()) {
    called.insert(CaseFolded(call.class_name + "." + call.member));
  }
  for (const PublicClass& entry : component::PublicClasses()) {
    for (const component::Method& method : entry.methods) {
      const std::string name = std::string(entry.name) + "." + std::string(method.name);
      EXPECT_TRUE(called.contains(CaseFolded(name))) << name;
    }
  }
}

// The names of the public procedures without arguments.
std::set<std::u32string> MacroNames() {
  static const std::regex kMacro(R"(Public Sub (\w+)\(\))");
  std::set<std::u32string> names;
  for (const auto& file : ModuleFiles()) {
    const std::string text = TextOf(file);
    for (std::sregex_iterator at(text.begin(), text.end(), kMacro), end; at != end; ++at) {
      EXPECT_TRUE(names.insert(CaseFolded((*at)[1].str())).second) << "twice: " << (*at)[1];
    }
  }
  return names;
}

void ExpectMacros(const std::vector<embedded::MenuEntry>& entries,
                  const std::set<std::u32string>& macros) {
  for (const embedded::MenuEntry& entry : entries) {
    if (!entry.macro.empty()) {
      EXPECT_TRUE(macros.contains(CaseFolded(entry.macro))) << entry.macro;
    }
    ExpectMacros(entry.entries, macros);
  }
}

TEST(ExampleMacros, OfferWhatTheDemonstrationModelAndTheComponentName) {
  const std::set<std::u32string> macros = MacroNames();
  for (const char* name : {"VA_Spinner", "ResetKeySortButtons", "resetNamesSortButtons"}) {
    EXPECT_TRUE(macros.contains(CaseFolded(name))) << name;
  }
  auto session = embedded::Session::Open(kExamples / "demo-model.xlsm");
  session->Worksheet("Dashboard")->Activate();
  testing::FakeServices fake;
  clsGlobals globals(fake.services);
  globals.SetApp(session->application());
  clsMenuManagement menus(fake.services);
  menus.Init(&globals);
  menus.CreateVAMenuBar();
  menus.CreateDashboardMenuBar();
  ExpectMacros(session->MenuBar(), macros);
}

TEST(ExampleMacros, TellTheUserWhatEndedThem) {
  static const std::regex kProcedure(
      R"((Public|Private) Sub (VA_\w+|Workbook_\w+|Sort\w+)\([^]*?End Sub)");
  for (const auto& file : ModuleFiles()) {
    const std::string text = TextOf(file);
    EXPECT_NE(text.find("\r\nOption Explicit\r\n"), std::string::npos) << file;
    // Excel imports only text with its own line ends.
    EXPECT_EQ(std::ranges::count(text, '\n'), std::ranges::count(text, '\r')) << file;
    for (std::sregex_iterator at(text.begin(), text.end(), kProcedure), end; at != end; ++at) {
      const std::string procedure = at->str();
      EXPECT_NE(procedure.find("On Error GoTo Failed"), std::string::npos) << procedure;
      EXPECT_NE(procedure.find("ShowFailure \"" + (*at)[2].str() + "\""), std::string::npos)
          << procedure;
    }
  }
}

}  // namespace
}  // namespace vantora
