// A host object, called late-bound.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/excel/com_ptr.h"
#include "hosts/excel/connection.h"
#include "hosts/excel/variant.h"

namespace vantora::excel {

// An argument that is passed by its name.
struct NamedArgument {
  const wchar_t* name;
  Variant value;
};

// Arguments are given in the order of the member's declaration. Every call throws HostError when
// Excel refuses it, with Excel's own number, text and source.
class Object {
 public:
  using Arguments = std::initializer_list<Variant>;
  using NamedArguments = std::initializer_list<NamedArgument>;

  Object(ConnectionPtr connection, ComPtr<IDispatch> dispatch);

  IDispatch* dispatch() const { return dispatch_.get(); }
  const ConnectionPtr& connection() const { return connection_; }

  // What a property, or a method with a result, gives.
  Variant Get(Member member, Arguments arguments = {}, NamedArguments named = {}) const;
  // The same for members that give a number, a Boolean or a text. HostError 13 for anything else.
  int GetInt(Member member) const;
  double GetDouble(Member member) const;
  bool GetBool(Member member) const;
  std::string GetText(Member member) const;
  // The same for members that give an object. HostError 91 when they give none.
  Object Child(Member member, Arguments arguments = {}, NamedArguments named = {}) const;
  // The same where it may give none; empty then.
  std::optional<Object> FindChild(Member member, Arguments arguments = {},
                                  NamedArguments named = {}) const;
  // A method whose result nobody needs.
  void Call(Member member, Arguments arguments = {}, NamedArguments named = {}) const;
  // Assigns a value, or by reference where `value` is an object.
  void Put(Member member, const Variant& value) const;
  // A method without arguments that only this object has, such as a routine of a sheet's own code
  // module. HostError 438 when it has none of that name.
  void CallOwn(std::string_view method) const;

  // The objects of the collection, in its order. HostError 13 when it holds something else.
  std::vector<Object> Items(Member collection) const;
  // The same for a collection that can't be enumerated: it is asked for each object by its place.
  std::vector<Object> Items(Member collection, Member count, Member item) const;
  // Whether the object has a member of that name, which is how its kind is told: a chart sheet has
  // no `UsedRange`.
  bool Has(const wchar_t* name) const;
  // Whether both are the same object, however they were reached.
  bool IsSame(const Object& other) const;

 private:
  void InvokeWith(Member member, WORD kind, Arguments arguments, NamedArguments named,
                  VARIANT* result) const;
  void Invoke(Member member, WORD kind, DISPPARAMS& parameters, VARIANT* result) const;
  // `describe` gives the member's name for a reader; it is called when the call fails.
  template <typename Describe>
  void InvokeById(DISPID id, const Describe& describe, WORD kind, DISPPARAMS& parameters,
                  VARIANT* result) const;
  std::vector<DISPID> IdsOfArguments(Member member, NamedArguments named) const;

  ConnectionPtr connection_;
  ComPtr<IDispatch> dispatch_;
};

}  // namespace vantora::excel
