// What the late-bound layer itself costs for each kind of call, over an object that does nothing:
// Excel's own share comes on top. Prints microseconds a call.
//
//   bench-calls.exe
#include <chrono>
#include <cstdio>

#include "hosts/excel/object.h"

namespace vantora::excel {
namespace {

// Knows every member, and answers each with a number or with itself.
class Idle final : public IDispatch {
 public:
  explicit Idle(bool gives_objects) : gives_objects_(gives_objects) {}

  STDMETHODIMP QueryInterface(REFIID, void** object) override {
    AddRef();
    *object = this;
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override { return --references_; }
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT count, LCID, DISPID* ids) override {
    for (UINT i = 0; i < count; ++i) ids[i] = static_cast<DISPID>(i);
    return S_OK;
  }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                      UINT*) override {
    if (!result) return S_OK;
    if (gives_objects_) {
      AddRef();
      result->vt = VT_DISPATCH;
      result->pdispVal = this;
    } else {
      result->vt = VT_R8;
      result->dblVal = 1;
    }
    return S_OK;
  }

 private:
  bool gives_objects_;
  ULONG references_ = 1;
};

template <typename Call>
void Measure(const char* name, const Call& call) {
  constexpr int kCalls = 1'000'000;
  for (int i = 0; i < kCalls / 10; ++i) call();
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < kCalls; ++i) call();
  const std::chrono::duration<double, std::micro> time = std::chrono::steady_clock::now() - begin;
  std::printf("%-44s %7.3f\n", name, time.count() / kCalls);
}

void MeasureAll() {
  Idle numbers(false);
  Idle objects(true);
  auto connection =
      std::make_shared<Connection>(ComPtr<IDispatch>(), [](std::chrono::milliseconds) {});
  const Object cell(connection, ComPtr<IDispatch>::Share(&numbers));
  const Object sheet(connection, ComPtr<IDispatch>::Share(&objects));
  const Value number(2.5);
  std::printf("%-44s %7s\n", "Call", "us");
  Measure("a number read (Range.Value)", [&] { cell.Get(Member::kRangeValue).ToValue(); });
  Measure("a number put (Range.Value)",
          [&] { cell.Put(Member::kRangeValue, Variant::From(number)); });
  Measure("a text put", [&] { cell.Put(Member::kRangeValue, Variant("a text")); });
  Measure("an object (Worksheet.Cells)", [&] { sheet.Child(Member::kWorksheetCells, {2, 3}); });
  Measure("a method (Range.Select)", [&] { cell.Call(Member::kRangeSelect); });
  Measure("a method with three named arguments", [&] {
    cell.Call(Member::kWorksheetProtect, {},
              {{L"DrawingObjects", true}, {L"Contents", true}, {L"Scenarios", true}});
  });
}

}  // namespace
}  // namespace vantora::excel

int main() { vantora::excel::MeasureAll(); }
