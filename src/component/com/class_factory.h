// What creates the server's objects for its clients.
#pragma once

#include <atomic>

#include "component/com/automation.h"
#include "component/com/com_class.h"
#include "component/com/module.h"

namespace vantora::com {

class ClassFactory final : public IClassFactory {
 public:
  explicit ClassFactory(const ComClass& com_class) : com_class_(com_class) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override;
  STDMETHODIMP_(ULONG) Release() override;

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override;
  STDMETHODIMP LockServer(BOOL lock) override;

 private:
  ~ClassFactory() = default;

  ModuleUse module_use_;  // first, so that it ends last
  const ComClass& com_class_;
  std::atomic<ULONG> references_ = 1;
};

}  // namespace vantora::com
