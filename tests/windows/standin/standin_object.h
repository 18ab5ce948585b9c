// An object of the stand-in for Excel: takes late-bound calls as Excel does, and writes down each
// call that the documented object model does not allow.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/host.h"
#include "hosts/excel/com_ptr.h"
#include "hosts/excel/variant.h"
#include "object_model.h"

namespace vantora::standin {

using excel::ComPtr;
using excel::Variant;

class StandInObject;

// What all objects of one stand-in share.
struct Excel {
  host::ApplicationPtr application;
  // Calls that Excel would not take, or that the stand-in can't serve. A test fails on any.
  std::vector<std::string> failures;
  int living_objects = 0;
  // By "Range.Value"; a put counts as "Range.Value=".
  std::map<std::string, int> calls;
  // The worksheets in use: a sheet is one object, however it is reached.
  std::vector<std::pair<host::WorksheetPtr, StandInObject*>> worksheets;
  // The names of sheet routines that were looked up.
  std::vector<std::string> routines;
};
using ExcelPtr = std::shared_ptr<Excel>;

// A call that Excel would serve and the stand-in does not.
struct NotServed {
  std::string what;
};

// A call of a member, its arguments at the places of their declaration.
class Call {
 public:
  Call(const DocumentedMember& member, bool is_put) : member_(member), is_put_(is_put) {
    arguments_.resize(member.arguments.size());
  }

  const DocumentedMember& member() const { return member_; }
  bool is_put() const { return is_put_; }
  // Whether the argument at the 0-based place was passed.
  bool Has(std::size_t place) const { return arguments_.at(place).has_value(); }
  // HostError 13 for a value of another type, or none.
  int Int(std::size_t place) const;
  bool Bool(std::size_t place) const;
  std::string Text(std::size_t place) const;
  bool IsText(std::size_t place) const { return At(place).type() == VT_BSTR; }
  // Null when the argument is no object.
  IDispatch* Object(std::size_t place) const;
  // An enumeration's value. HostError 1004 for one that the enumeration does not have.
  int Enumerated(std::size_t place, std::initializer_list<int> values) const;
  // The value of a put, and the same of the type that the property has: HostError 13 for a value
  // that does not convert, 1004 for a number that is none of the enumeration's.
  const Variant& put_value() const { return put_value_; }
  int PutInt() const;
  int PutEnumerated(std::initializer_list<int> values) const;
  double PutDouble() const;
  bool PutBool() const;
  std::string PutText() const;
  // Throws NotServed unless the arguments from this place on were left out.
  void RefuseFrom(std::size_t place) const;

 private:
  friend class StandInObject;
  const Variant& At(std::size_t place) const;

  const DocumentedMember& member_;
  bool is_put_;
  std::vector<std::optional<Variant>> arguments_;
  Variant put_value_;
};

class StandInObject : public IDispatch {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override;
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                             DISPID* ids) override;
  STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters,
                      VARIANT* result, EXCEPINFO* info, UINT* wrong_argument) override;

 protected:
  // Made with one reference.
  StandInObject(ExcelPtr excel, std::string_view kind);
  virtual ~StandInObject() { --excel_->living_objects; }

  // Throws HostError for what Excel refuses, NotServed for what only the stand-in does not do.
  virtual Variant Answer(const Call& call) = 0;
  // Whether the object has a routine of its own besides its kind's members, as a sheet with a code
  // module has, and a call of it.
  virtual bool HasRoutine(const std::string&) { return false; }
  virtual void CallRoutine(const std::string& name) { throw NotServed{"the routine " + name}; }
  // The objects of a collection.
  virtual std::vector<Variant> Items() { throw NotServed{"an enumeration"}; }

  const ExcelPtr& excel() const { return excel_; }

 private:
  DISPID IdOfRoutine(const std::string& name);
  HRESULT Fail(HRESULT result, std::string_view member, std::string_view what);
  HRESULT Bind(Call& call, const DISPPARAMS& parameters);
  HRESULT Run(const std::string& member, EXCEPINFO* info, VARIANT* result,
              const std::function<Variant()>& body);

  ExcelPtr excel_;
  std::string_view kind_;
  ULONG references_ = 1;
};

}  // namespace vantora::standin
