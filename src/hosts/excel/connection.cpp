#include "hosts/excel/connection.h"

#include <algorithm>
#include <utility>

#include "hosts/excel/call_error.h"
#include "hosts/excel/variant.h"

namespace vantora::excel {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kFirstWait{10};
constexpr milliseconds kLongestWait{500};
constexpr std::chrono::seconds kPatience{10};

}  // namespace

Connection::Connection(ComPtr<IDispatch> application, Wait wait)
    : application_(std::move(application)), wait_(std::move(wait)) {
  ids_.fill(kUnknownId);
}

DISPID Connection::LookUp(IDispatch& object, Member member) {
  LPOLESTR name = const_cast<LPOLESTR>(NameOf(member));
  DISPID id = kUnknownId;
  auto full_name = [member] { return FullNameOf(member); };
  HRESULT result = UntilNotBusy(
      [&] { return object.GetIDsOfNames(IID_NULL, &name, 1, kMacroLocale, &id); }, full_name);
  if (FAILED(result)) throw CallError(result, {}, full_name());
  return ids_[static_cast<std::size_t>(member)] = id;
}

HRESULT Connection::RetryWhileBusy(HRESULT result, const std::function<HRESULT()>& attempt,
                                   const std::string& member) {
  milliseconds waited{0};
  for (milliseconds wait = kFirstWait; IsBusy(result); wait = std::min(wait * 2, kLongestWait)) {
    if (waited >= kPatience) {
      throw BusyError(result, member, static_cast<int>(kPatience.count()));
    }
    wait_(wait);
    waited += wait;
    result = attempt();
  }
  return result;
}

}  // namespace vantora::excel
