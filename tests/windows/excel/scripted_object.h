// A stand-in for an object of Excel: it offers the members it was told to have, answers as told,
// and writes down every call. It is as strict as Excel about how a member is called.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "hosts/excel/com_ptr.h"
#include "hosts/excel/variant.h"

namespace vantora::excel::testing {

// What happened to all objects of one test.
struct Journal {
  // "Worksheet.Cells get(2, 3)", "Range.Insert call(-4161)", "Comment.Visible put(False)".
  std::vector<std::string> calls;
  // How often each "Kind.Member" was looked up.
  std::map<std::string, int> look_ups;
  int living_objects = 0;

  // Identifiers differ from kind to kind, also for members of one name.
  std::map<std::string, DISPID> ids;

  // The calls since the last time, one a line.
  std::string Take();
};

enum class MemberKind { kMethod, kRead, kReadWrite };

// Answers a call: fills `result` (null when the caller wants none) or `info`.
using Reply = std::function<HRESULT(VARIANT* result, EXCEPINFO* info)>;

Reply Gives(Variant value);
// DISP_E_EXCEPTION with these details; empty texts are null.
Reply Raises(SCODE scode, WORD code, const char* source, const char* description);
Reply FailsWith(HRESULT result);

class ScriptedObject : public IDispatch {
 public:
  ScriptedObject(Journal& journal, std::string kind);
  static ComPtr<ScriptedObject> Make(Journal& journal, const std::string& kind);

  // Without a reply a call gives nothing. `arguments` are the names a caller may use.
  void Has(const std::string& member, MemberKind kind, Reply reply = {},
           std::vector<std::string> arguments = {});
  // A property whose puts are shown to `take`.
  void TakesPut(const std::string& member, std::function<void(const VARIANT& value)> take);
  // The objects it enumerates.
  void Holds(std::vector<ComPtr<ScriptedObject>> items) { items_ = std::move(items); }
  // The next `times` look-ups and calls end with `result`, which need not be a plain one.
  void IsBusy(int times, Reply reply) { busy_times_ = times, busy_reply_ = std::move(reply); }

  STDMETHOD(QueryInterface)(REFIID iid, void** object) override;
  STDMETHOD_(ULONG, AddRef)() override;
  STDMETHOD_(ULONG, Release)() override;
  STDMETHOD(GetTypeInfoCount)(UINT*) override { return E_NOTIMPL; }
  STDMETHOD(GetTypeInfo)(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHOD(GetIDsOfNames)
  (REFIID iid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
  STDMETHOD(Invoke)
  (DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
   EXCEPINFO* info, UINT* wrong_argument) override;

 private:
  struct ScriptedMember {
    std::string name;
    MemberKind kind;
    Reply reply;
    std::vector<std::string> arguments;
    std::function<void(const VARIANT& value)> take;
  };

  virtual ~ScriptedObject();
  HRESULT Enumerate(VARIANT* result);
  void Record(const ScriptedMember& member, WORD flags, const DISPPARAMS& parameters);

  Journal& journal_;
  std::string kind_;
  std::map<DISPID, ScriptedMember> members_;
  std::vector<ComPtr<ScriptedObject>> items_;
  int busy_times_ = 0;
  Reply busy_reply_;
  ULONG references_ = 1;
};

}  // namespace vantora::excel::testing
