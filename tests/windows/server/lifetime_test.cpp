// What many short-lived sessions leave behind: nothing.
#include <gmock/gmock.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Orvanemcro1.h"
#include "component/com/com_class.h"
#include "excel/scripted_excel.h"
#include "hosts/excel/text.h"
#include "server/loaded_dll.h"
#include "server/message_boxes.h"
#include "server/stand_in.h"

namespace vantora::com {
namespace {

using excel::Variant;
using excel::testing::Journal;
using excel::testing::ScriptedExcel;
using excel::testing::ScriptedObject;

// Lets the cells of row 1 hold all flags of a Reference Sheet, so that no message box appears.
void GiveReferenceSheet(ScriptedExcel& excel, Journal& journal) {
  auto value = [&journal](VARIANT* result, EXCEPINFO*) {
    static const std::map<std::string, const char*> kTexts = {
        {"Worksheet.Cells get(1, 1)", "X14"}, {"Worksheet.Cells get(1, 2)", "n"},
        {"Worksheet.Cells get(1, 3)", "k"},   {"Worksheet.Cells get(1, 4)", "c"},
        {"Worksheet.Cells get(1, 5)", "s"},
    };
    if (!result) return S_OK;
    auto text = kTexts.find(journal.calls.at(journal.calls.size() - 2));
    Variant answer = text == kTexts.end() ? Variant() : Variant(text->second);
    return VariantCopy(result, const_cast<VARIANT*>(&answer.get()));
  };
  excel.range->Has("Value", excel::testing::MemberKind::kReadWrite, value);
}

std::vector<ULONG> References(const ScriptedExcel& excel) {
  std::vector<ULONG> counts;
  for (const auto* object :
       {&excel.comment, &excel.interior, &excel.range, &excel.first_sheet, &excel.second_sheet,
        &excel.worksheets, &excel.name, &excel.names, &excel.workbook, &excel.application}) {
    (*object)->AddRef();
    counts.push_back((*object)->Release());
  }
  return counts;
}

// The number that the next handle gets: handles that are kept push it up.
std::intptr_t NextHandle() {
  HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  EXPECT_NE(event, nullptr);
  CloseHandle(event);
  return reinterpret_cast<std::intptr_t>(event);
}

// The bytes of memory that belong to this process alone.
std::size_t PrivateBytes() {
  std::size_t bytes = 0;
  MEMORY_BASIC_INFORMATION region;
  for (const char* place = nullptr; VirtualQuery(place, &region, sizeof(region)) != 0;
       place = static_cast<const char*>(region.BaseAddress) + region.RegionSize) {
    if (region.State == MEM_COMMIT && region.Type == MEM_PRIVATE) bytes += region.RegionSize;
  }
  EXPECT_GT(bytes, 0u);
  return bytes;
}

// Calls a method without a result, late-bound, with at most one argument, by reference, as scripts
// do.
HRESULT CallLate(IDispatch& object, const wchar_t* member, const Variant* argument) {
  auto* name = const_cast<wchar_t*>(member);
  DISPID id = 0;
  HRESULT found = object.GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(found)) return found;
  VARIANT reference;
  reference.vt = VT_BYREF | VT_VARIANT;
  if (argument) reference.pvarVal = const_cast<VARIANT*>(&argument->get());
  DISPPARAMS parameters = {&reference, nullptr, argument ? 1u : 0u, 0};
  EXCEPINFO exception = {};
  HRESULT outcome = object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                                  nullptr, &exception, nullptr);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  return outcome == DISP_E_EXCEPTION ? exception.scode : outcome;
}

// One session of a macro: every class, calls of both kinds. Returns the outcomes that are not as
// they should be.
int RunSession(const LoadedDll& dll, IDispatch* application, HRESULT expected) {
  int surprises = 0;
  auto expect = [&](HRESULT outcome, HRESULT wanted) { surprises += outcome != wanted; };
  auto globals = dll.Create<_clsGlobals>(CLSID_clsGlobals);
  expect(globals->putref_App(application), S_OK);
  ComPtr<IDispatch> read;
  expect(globals->get_App(read.Receive()), S_OK);
  Variant argument(globals.get());

  auto ref_sheet = dll.Create<_clsRefSheet>(CLSID_clsRefSheet);
  expect(ref_sheet->Init(argument.get()), expected);
  BSTR version = SysAllocString(L"2.0");
  expect(ref_sheet->PutDLLVersion(version), S_OK);
  SysFreeString(version);

  auto late_ref_sheet = dll.Create<IDispatch>(CLSID_clsRefSheet);
  expect(CallLate(*late_ref_sheet, L"Init", &argument), expected);
  const Variant text("2.1");
  if (expected == S_OK) expect(CallLate(*late_ref_sheet, L"PutDLLVersion", &text), S_OK);

  auto year_end = dll.Create<_clsYearEnd>(CLSID_clsYearEnd);
  expect(year_end->Init(argument.get()), S_OK);
  SetErrorInfo(0, nullptr);
  return surprises;
}

TEST(LifetimeTest, ManySessionsLeaveNothingBehind) {
  constexpr int kSessions = 10'000;
  constexpr int kWarmUp = 500;
  constexpr HRESULT kRefused = static_cast<HRESULT>(0x800A03EC);
  ASSERT_HRESULT_SUCCEEDED(CoInitialize(nullptr));
  LoadedDll dll;
  ASSERT_TRUE(dll.loaded());
  Journal journal;
  {
    ScriptedExcel excel(journal);
    GiveReferenceSheet(excel, journal);
    RefusingApplication refusing;
    const std::vector<ULONG> references = References(excel);
    const int objects = journal.living_objects;
    MessageBoxes boxes(IDOK);
    std::intptr_t next_handle = 0;
    std::size_t bytes = 0;
    int surprises = 0;
    int writes = 0;
    for (int session = 0; session < kSessions; ++session) {
      if (session == kWarmUp) next_handle = NextHandle(), bytes = PrivateBytes();
      surprises += RunSession(dll, excel.application.get(), S_OK);
      writes += journal.calls.back() == "Range.Value put(\"2.1\")";
      surprises += RunSession(dll, &refusing, kRefused);
      journal.Take();
    }
    EXPECT_EQ(surprises, 0);
    EXPECT_EQ(writes, kSessions);
    EXPECT_EQ(dll.CanUnloadNow(), S_OK);
    EXPECT_EQ(References(excel), references);
    EXPECT_EQ(journal.living_objects, objects);
    EXPECT_EQ(refusing.references(), 0u);
    EXPECT_LE(NextHandle(), next_handle + 40) << "ten handles";
    // Fifty bytes a session would be nearly twice as much.
    EXPECT_LT(PrivateBytes(), bytes + 250'000);
    EXPECT_THAT(boxes.Stop(), ::testing::IsEmpty());
  }
  EXPECT_EQ(journal.living_objects, 0);
  CoUninitialize();
}

// A method that is called of each class; null for the one that has none. Methods that show
// something whatever Excel says are called before Init, when they do nothing.
struct Method {
  const CLSID& class_id;
  const wchar_t* name;
  bool before_init = false;
};
const Method kMethods[] = {
    {CLSID_clsRefSheet, L"NamesListPopulate"},
    {CLSID_clsYearEnd, L"SaveHistoryYear"},
    {CLSID_clsFreeze, L"SetSpinnerstoBase"},
    {CLSID_clsPlanningSpinners, L"SpinnerChange"},
    {CLSID_clsDisplayModes, L"MultiWindowUD"},
    {CLSID_clsRatiosCompDataSet, L"RatiosCompDataSet"},
    {CLSID_clsDevelopmentMode, L"AlignSheets"},
    {CLSID_clsClearAllData, L"ClearAllData", true},
    {CLSID_clsMenuManagement, L"CreateVAMenuBar"},
    {CLSID_clsDashboard, L"BuildChartList"},
    {CLSID_clsCopyWorksheet, L"CopyWorksheet", true},
    {CLSID_clsHider, L"AtOpen"},
    {CLSID_clsChartListControl, nullptr},
    {CLSID_clsNameManagement, L"NameDefinition", true},
    {CLSID_clsFormatting, L"LeftFormat"},
};

// Makes an object of each class, the session context among them, binds it, calls it and lets it go.
// Gives what the calls ended with.
std::vector<HRESULT> CallEveryClass(const LoadedDll& dll, IDispatch* application) {
  std::vector<HRESULT> outcomes;
  auto globals = dll.Create<_clsGlobals>(CLSID_clsGlobals);
  globals->putref_App(application);
  ComPtr<IDispatch> read;
  outcomes.push_back(globals->get_App(read.Receive()));
  const Variant argument(globals.get());
  for (const Method& method : kMethods) {
    auto object = dll.Create<IDispatch>(method.class_id);
    const auto call = [&] {
      if (method.name) outcomes.push_back(CallLate(*object, method.name, nullptr));
    };
    if (method.before_init) call();
    outcomes.push_back(CallLate(*object, L"Init", &argument));
    if (!method.before_init) call();
  }
  SetErrorInfo(0, nullptr);
  return outcomes;
}

// One object of each class that has been called late-bound.
std::vector<ComPtr<IDispatch>> OneOfEach(const LoadedDll& dll) {
  std::vector<ComPtr<IDispatch>> objects;
  for (const Method& method : kMethods) {
    objects.push_back(dll.Create<IDispatch>(method.class_id));
    CallLate(*objects.back(), L"NoSuchMember", nullptr);
  }
  return objects;
}

TEST(LifetimeTest, EveryClassLeavesNothingBehind) {
  constexpr int kCycles = 10'000;  // of sixteen objects each
  constexpr int kWarmUp = 500;
  // The first objects of a class each read its description, which goes with them. Later on some
  // objects stay and keep the descriptions, or most of the time would be spent reading.
  constexpr int kDescribedAnew = 1'000;
  ASSERT_HRESULT_SUCCEEDED(CoInitialize(nullptr));
  LoadedDll dll;
  RefusingApplication refusing;
  MessageBoxes boxes(IDOK);
  const std::vector<HRESULT> outcomes = CallEveryClass(dll, &refusing);
  EXPECT_THAT(outcomes, ::testing::Contains(static_cast<HRESULT>(0x800A03EC)).Times(11));
  std::intptr_t next_handle = 0;
  std::size_t bytes = 0;
  int surprises = 0;
  std::vector<ComPtr<IDispatch>> kept;
  for (int cycle = 0; cycle < kCycles; ++cycle) {
    if (cycle == kDescribedAnew) kept = OneOfEach(dll);
    if (cycle == kWarmUp) next_handle = NextHandle(), bytes = PrivateBytes();
    surprises += CallEveryClass(dll, &refusing) != outcomes;
  }
  kept.clear();
  EXPECT_EQ(surprises, 0);
  EXPECT_THAT(boxes.Stop(), ::testing::IsEmpty());
  EXPECT_EQ(dll.CanUnloadNow(), S_OK);
  EXPECT_EQ(refusing.references(), 0u);
  EXPECT_LE(NextHandle(), next_handle + 40) << "ten handles";
  // Two bytes an object would be more.
  EXPECT_LT(PrivateBytes(), bytes + 250'000);
  CoUninitialize();
}

}  // namespace
}  // namespace vantora::com
