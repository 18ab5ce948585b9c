#include "component/com/automation_error.h"

#include <gmock/gmock.h>

#include <new>
#include <stdexcept>

#include "core/host_error.h"
#include "hosts/excel/text.h"

namespace vantora::com {
namespace {

constexpr IID kInterface = {
    0xca687334, 0xcf47, 0x499d, {0xb5, 0x2d, 0x72, 0xab, 0x04, 0x96, 0xd8, 0x33}};

// What an early-bound client sees of each kind of exception.
struct Failure {
  const char* name;
  void (*raise)();
  HRESULT result;
  const char* source;
  const char* text;  // a part of it
};

void PrintTo(const Failure& failure, std::ostream* out) { *out << failure.name; }

class FailureTest : public ::testing::TestWithParam<Failure> {};

TEST_P(FailureTest, BecomesAnAutomationError) {
  HRESULT result = Guarded(kInterface, L"clsTest", GetParam().raise);
  EXPECT_EQ(result, GetParam().result);
  ComPtr<IErrorInfo> information;
  ASSERT_EQ(GetErrorInfo(0, information.Receive()), S_OK);
  BSTR source = nullptr;
  BSTR text = nullptr;
  GUID iid = {};
  information->GetSource(&source);
  information->GetDescription(&text);
  information->GetGUID(&iid);
  EXPECT_EQ(excel::ToUtf8(source), GetParam().source);
  EXPECT_THAT(excel::ToUtf8(text), ::testing::HasSubstr(GetParam().text));
  EXPECT_TRUE(iid == kInterface);
  SysFreeString(source);
  SysFreeString(text);
}

constexpr char kOwnSource[] = "Orvanemcro1.clsTest";
INSTANTIATE_TEST_SUITE_P(
    All, FailureTest,
    ::testing::Values(
        Failure{"HostNumber", [] { throw HostError(9, "Subscript\n\u00e9"); },
                static_cast<HRESULT>(0x800A0009), "Microsoft Excel", "Subscript\n\u00e9"},
        Failure{"HostResult", [] { throw HostError(static_cast<int>(0x80010108), "gone", "X"); },
                static_cast<HRESULT>(0x80010108), "X", "gone"},
        Failure{"HostNumberOutOfRange", [] { throw HostError(70000, "odd", "X"); }, E_FAIL, "X",
                "odd"},
        Failure{"Memory", [] { throw std::bad_alloc(); }, E_OUTOFMEMORY, kOwnSource, "memory"},
        Failure{"Exception", [] { throw std::runtime_error("what happened"); }, E_FAIL, kOwnSource,
                "what happened"},
        Failure{"Unknown", [] { throw 1; }, E_FAIL, kOwnSource, "unknown error"}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace vantora::com
