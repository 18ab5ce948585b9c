// Arrays of every kind that a macro or a script can pass.
#include "component/com/array_argument.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "core/host_error.h"
#include "hosts/excel/variant.h"

namespace vantora::com {
namespace {

using excel::Variant;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// How the array reaches the member.
enum class Passing { kItself, kByReference, kInAVariable };

struct Case {
  const char* description;
  VARTYPE type;
  LONG first;
  bool fixed;
  Passing passing;
};

constexpr Case kCases[] = {
    {"a macro's array of texts", VT_BSTR, 0, false, Passing::kByReference},
    {"from 1", VT_BSTR, 1, false, Passing::kByReference},
    {"of fixed size", VT_BSTR, 1, true, Passing::kByReference},
    {"VARIANTs of fixed size", VT_VARIANT, 0, true, Passing::kByReference},
    {"a script's array", VT_VARIANT, 0, false, Passing::kInAVariable},
    {"a script's array from 1", VT_VARIANT, 1, false, Passing::kInAVariable},
    {"an array by value", VT_BSTR, 0, false, Passing::kItself},
};

// An array with numbers `first` to `last`, as a client holds it.
class ClientArray {
 public:
  ClientArray(VARTYPE type, LONG first, LONG last, bool fixed = false) : type_(type) {
    SAFEARRAYBOUND bound{static_cast<ULONG>(last - first + 1), first};
    variable_.vt = VT_ARRAY | type;
    variable_.parray = SafeArrayCreate(type, 1, &bound);
    if (fixed) variable_.parray->fFeatures |= FADF_FIXEDSIZE;
  }
  ~ClientArray() { variable_.parray->fFeatures &= ~FADF_FIXEDSIZE; }

  void Put(LONG number, const Variant& value) {
    VARIANT copy = value.get();
    void* memory = type_ == VT_VARIANT ? static_cast<void*>(&copy)
                   : type_ == VT_BSTR  ? static_cast<void*>(copy.bstrVal)
                                       : &copy.byref;
    EXPECT_EQ(SafeArrayPutElement(variable_.parray, &number, memory), S_OK);
  }
  Variant Get(LONG number) const {
    Variant value;
    VARIANT* place = value.Receive();
    if (type_ != VT_VARIANT) place->vt = type_;
    EXPECT_EQ(SafeArrayGetElement(variable_.parray, &number,
                                  type_ == VT_VARIANT ? static_cast<void*>(place) : &place->byref),
              S_OK);
    return value;
  }
  VARIANT Pass(Passing passing) {
    VARIANT argument = variable_;
    if (passing == Passing::kByReference) {
      argument.vt = VT_BYREF | VT_ARRAY | type_;
      argument.pparray = &variable_.parray;
    } else if (passing == Passing::kInAVariable) {
      argument.vt = VT_BYREF | VT_VARIANT;
      argument.pvarVal = &variable_;
    }
    return argument;
  }

 private:
  VARTYPE type_;
  OwnedVariant variable_;
};

TEST(ArrayArgument, TakesTextsInOrderAndByTheirNumbers) {
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.description);
    ClientArray array(c.type, c.first, c.first + 2, c.fixed);
    for (LONG i = 0; i < 3; ++i) array.Put(c.first + i, Variant(i == 2 ? "Größe" : "plan"));
    ArrayArgument argument(array.Pass(c.passing));
    EXPECT_THAT(argument.Texts(), ElementsAre("plan", "plan", "Größe"));
    std::vector<std::string> numbered = {"plan", "plan", "Größe"};
    if (c.first == 1) numbered.insert(numbered.begin(), "");
    EXPECT_EQ(argument.NumberedTexts(), numbered);
  }
}

TEST(ArrayArgument, FillsTextsInPlace) {
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.description);
    ClientArray array(c.type, c.first, c.first + 2, c.fixed);
    ArrayArgument argument(array.Pass(c.passing));
    argument.PutNumbered(std::vector<std::string>{"zero", "one", "Größe", "three", "beyond"});
    EXPECT_EQ(array.Get(c.first).ToText(), c.first == 0 ? "zero" : "one");
    EXPECT_EQ(array.Get(2).ToText(), "Größe");
    EXPECT_EQ(array.Get(c.first + 2).ToText(), c.first == 0 ? "Größe" : "three");
  }
}

TEST(ArrayArgument, TakesAndFillsFlags) {
  for (VARTYPE type : {VT_BOOL, VT_VARIANT, VT_I2}) {
    ClientArray array(type, 1, 3);
    array.Put(2, Variant(true));
    ArrayArgument argument(array.Pass(Passing::kByReference));
    EXPECT_THAT(argument.NumberedFlags(), ElementsAre(false, false, true, false)) << type;
    argument.PutNumbered(std::vector<bool>{true, true, false, true});
    EXPECT_EQ(array.Get(1).ToBool(), true) << type;
    EXPECT_EQ(array.Get(2).ToBool(), false) << type;
    EXPECT_EQ(array.Get(3).ToBool(), true) << type;
  }
}

TEST(ArrayArgument, TakesElementsOfOtherKindsAsTexts) {
  ClientArray array(VT_VARIANT, 0, 3);
  array.Put(0, Variant(12));
  array.Put(1, Variant(true));
  array.Put(3, Variant("text"));
  EXPECT_THAT(ArrayArgument(array.Pass(Passing::kByReference)).Texts(),
              ElementsAre("12", "True", "", "text"));
  ClientArray numbers(VT_I4, 0, 0);
  EXPECT_THAT(ArrayArgument(numbers.Pass(Passing::kByReference)).Texts(), ElementsAre("0"));
}

TEST(ArrayArgument, OfUnusualBoundsKeepsItsNumbers) {
  ClientArray below(VT_BSTR, -1, 1);
  below.Put(-1, Variant("minus one"));
  below.Put(1, Variant("one"));
  EXPECT_THAT(ArrayArgument(below.Pass(Passing::kByReference)).NumberedTexts(),
              ElementsAre("", "one"));
  ClientArray above(VT_BSTR, 3, 4);
  ArrayArgument argument(above.Pass(Passing::kByReference));
  argument.PutNumbered(std::vector<std::string>{"0", "1", "2", "3"});
  EXPECT_EQ(above.Get(3).ToText(), "3");
  EXPECT_EQ(above.Get(4).ToText(), "");
  EXPECT_EQ(argument.NumberedTexts().size(), 5u);
}

TEST(ArrayArgument, WithoutASizeIsEmpty) {
  SAFEARRAY* none = nullptr;
  VARIANT argument;
  VariantInit(&argument);
  argument.vt = VT_BYREF | VT_ARRAY | VT_BSTR;
  argument.pparray = &none;
  EXPECT_THAT(ArrayArgument(argument).Texts(), IsEmpty());
  EXPECT_THAT(ArrayArgument(argument).NumberedTexts(), IsEmpty());
}

TEST(ArrayArgument, RefusesWhatIsNoListOfTexts) {
  const auto number_of = [](const auto& call) {
    try {
      call();
    } catch (const HostError& error) {
      return error.number();
    }
    return 0;
  };
  Variant text("text");
  EXPECT_EQ(number_of([&] { ArrayArgument{text.get()}; }), HostError::kTypeMismatch);
  SAFEARRAYBOUND bounds[] = {{2, 0}, {2, 0}};
  OwnedVariant table;
  table.vt = VT_ARRAY | VT_BSTR;
  table.parray = SafeArrayCreate(VT_BSTR, 2, bounds);
  EXPECT_EQ(number_of([&] { ArrayArgument{table}; }), HostError::kTypeMismatch);
  ClientArray flags(VT_VARIANT, 0, 0);
  flags.Put(0, Variant("neither"));
  ArrayArgument argument(flags.Pass(Passing::kByReference));
  EXPECT_EQ(number_of([&] { argument.NumberedFlags(); }), HostError::kTypeMismatch);
}

}  // namespace
}  // namespace vantora::com
