// What all objects reached through one application object share.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "hosts/excel/com_ptr.h"
#include "hosts/excel/members.h"

namespace vantora::excel {

// Used on one thread, that of the objects.
class Connection {
 public:
  using Wait = std::function<void(std::chrono::milliseconds)>;

  // `wait` is called between two attempts of a call that Excel is too busy for.
  Connection(ComPtr<IDispatch> application, Wait wait);

  // The object that all others are reached through.
  const ComPtr<IDispatch>& application() const { return application_; }

  // The member's identifier, looked up once for all objects of its kind. Throws HostError 438
  // when the object has no such member.
  DISPID IdOf(IDispatch& object, Member member) {
    DISPID id = ids_[static_cast<std::size_t>(member)];
    return id != kUnknownId ? id : LookUp(object, member);
  }

  // The result of `attempt`, which is made again for as long as Excel is busy, ten seconds at most;
  // then a HostError for `member` ("Range.Value") is thrown.
  template <typename Attempt, typename MemberText>
  HRESULT UntilNotBusy(const Attempt& attempt, const MemberText& member) {
    HRESULT result = attempt();
    return SUCCEEDED(result) ? result : RetryWhileBusy(result, attempt, member());
  }

 private:
  // The default implementation's DISPID_UNKNOWN: no member has it.
  static constexpr DISPID kUnknownId = -1;

  DISPID LookUp(IDispatch& object, Member member);
  HRESULT RetryWhileBusy(HRESULT result, const std::function<HRESULT()>& attempt,
                         const std::string& member);

  ComPtr<IDispatch> application_;
  std::array<DISPID, kMemberCount> ids_;
  Wait wait_;
};

using ConnectionPtr = std::shared_ptr<Connection>;

}  // namespace vantora::excel
