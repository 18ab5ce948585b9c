#include "hosts/excel/call_error.h"

#include <cstdio>

#include "hosts/excel/text.h"

namespace vantora::excel {

namespace {

constexpr int kInvalidArgument = 5;
constexpr int kTypeMismatch = 13;
constexpr int kObjectNotSet = 91;
constexpr int kAutomationError = 440;

// Not in the system's headers: what Excel answers while a cell is being edited or a dialog box is
// open.
constexpr HRESULT kExcelIgnoresCall = static_cast<HRESULT>(0x800AC472);
// Likewise: what a deleted sheet or the range of a closed workbook answers.
constexpr HRESULT kObjectDeleted = static_cast<HRESULT>(0x800401A8);

constexpr char kGone[] =
    "failed: the object no longer exists in Excel; its workbook or sheet was closed or deleted";

// Results with a number of their own in the macro language. `words` ends a sentence that starts
// with the member's name.
struct KnownResult {
  HRESULT result;
  int number;
  const char* words;
} constexpr kKnownResults[] = {
    {DISP_E_MEMBERNOTFOUND, 438, "is not a member that Excel offers in this way"},
    {DISP_E_UNKNOWNNAME, 438, "is not a member of this object, or an argument's name is unknown"},
    {DISP_E_TYPEMISMATCH, kTypeMismatch, "was called with a value of the wrong type"},
    {DISP_E_BADVARTYPE, kTypeMismatch, "was called with a value of a type that Excel rejects"},
    {DISP_E_OVERFLOW, 6, "was called with a number that is too large"},
    {DISP_E_BADPARAMCOUNT, 450, "was called with the wrong number of arguments"},
    {DISP_E_PARAMNOTOPTIONAL, 449, "was called without an argument that it needs"},
    {DISP_E_PARAMNOTFOUND, 448, "has no argument of that name"},
    {DISP_E_NONAMEDARGS, 446, "does not take arguments by name"},
    {DISP_E_BADINDEX, 9, "was called with an index out of range"},
    {DISP_E_DIVBYZERO, 11, "divided by zero"},
    {E_INVALIDARG, kInvalidArgument, "was called with an argument that Excel rejects"},
    {E_NOTIMPL, 445, "is not available in this Excel"},
    {E_NOINTERFACE, 430, "gave an object that can't be used this way"},
    {E_OUTOFMEMORY, 7, "failed: there is not enough memory"},
    {E_ACCESSDENIED, 70, "failed: access was denied"},
    {HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE), 462, "failed: Excel is no longer running"},
    {kObjectDeleted, 424, kGone},
    {RPC_E_DISCONNECTED, static_cast<int>(RPC_E_DISCONNECTED), kGone},
};

const KnownResult* Find(HRESULT result) {
  for (const KnownResult& known : kKnownResults) {
    if (known.result == result) return &known;
  }
  return nullptr;
}

// As a macro's error object shows it: the low word of the control facility, where Excel's own
// numbers are (0x800A03EC is 1004), and any other result as a whole.
int NumberOf(HRESULT result) {
  if (const KnownResult* known = Find(result)) return known->number;
  if (HRESULT_FACILITY(result) == FACILITY_CONTROL) return HRESULT_CODE(result);
  return static_cast<int>(result);
}

std::string Hexadecimal(HRESULT result) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(result));
  return text;
}

// Windows' own sentence for `result`, without its line end; empty when it has none.
std::string SystemMessage(HRESULT result) {
  wchar_t text[512];
  DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                static_cast<DWORD>(result), 0, text, 512, nullptr);
  while (length != 0 && (text[length - 1] <= L' ' || text[length - 1] == L'.')) --length;
  return ToUtf8(std::wstring_view(text, length));
}

std::string Describe(HRESULT result, const std::string& member) {
  if (const KnownResult* known = Find(result)) return member + " " + known->words + ".";
  std::string meaning = SystemMessage(result);
  return member + " failed: " + (meaning.empty() ? "automation error" : meaning) + " (" +
         Hexadecimal(result) + ").";
}

}  // namespace

EXCEPINFO* ExceptionInfo::Receive() {
  Free();
  info_ = {};
  return &info_;
}

void ExceptionInfo::Complete() {
  if (!info_.pfnDeferredFillIn) return;
  auto fill_in = info_.pfnDeferredFillIn;
  info_.pfnDeferredFillIn = nullptr;
  fill_in(&info_);
}

void ExceptionInfo::Free() {
  SysFreeString(info_.bstrSource);
  SysFreeString(info_.bstrDescription);
  SysFreeString(info_.bstrHelpFile);
}

bool IsBusy(HRESULT result) {
  return result == RPC_E_CALL_REJECTED || result == RPC_E_SERVERCALL_RETRYLATER ||
         result == kExcelIgnoresCall;
}

bool IsRefusal(const HostError& error) {
  return error.number() == HostError::kApplicationDefined || error.number() == kInvalidArgument;
}

HostError CallError(HRESULT result, const EXCEPINFO& info, const std::string& member) {
  if (result != DISP_E_EXCEPTION) {
    return HostError(NumberOf(result), Describe(result, member));
  }
  int number = info.wCode != 0 ? info.wCode : NumberOf(info.scode);
  if (number == 0) number = kAutomationError;
  std::string description = ToUtf8(info.bstrDescription);
  if (description.empty()) {
    description = Find(info.scode) ? Describe(info.scode, member)
                                   : "Excel refused " + member + " without saying why (error " +
                                         std::to_string(number) + ").";
  }
  std::string source = ToUtf8(info.bstrSource);
  return source.empty() ? HostError(number, description) : HostError(number, description, source);
}

HostError BusyError(HRESULT result, const std::string& member, int seconds) {
  return HostError(NumberOf(result),
                   "Excel was busy for " + std::to_string(seconds) + " seconds and did not take " +
                       member +
                       ". Finish editing the cell or close the open dialog box in Excel, "
                       "then run the operation again.");
}

HostError WrongTypeError(const std::string& member, const std::string& expected) {
  return HostError(kTypeMismatch, member + " did not give " + expected + ".");
}

HostError NothingError(const std::string& member) {
  return HostError(kObjectNotSet, member + " gave no object.");
}

}  // namespace vantora::excel
