#include "hosts/excel/object.h"

#include <gtest/gtest.h>

#include "core/host_error.h"
#include "scripted_excel.h"

namespace vantora::excel {
namespace {

using testing::Answer;
using testing::Journal;
using testing::ScriptedExcel;

class ObjectTest : public ::testing::Test {
 protected:
  Journal journal_;
  ScriptedExcel excel_{journal_};
  ConnectionPtr connection_ =
      std::make_shared<Connection>(ComPtr<IDispatch>(), [](std::chrono::milliseconds) {});
  Object range_{connection_, ComPtr<IDispatch>::Share(excel_.range.get())};
};

TEST_F(ObjectTest, PassesNamedArgumentsBesidePositionalOnes) {
  range_.Call(Member::kRangePasteSpecial, {-4163, Variant::Missing()},
              {{L"Transpose", true}, {L"SkipBlanks", false}});
  range_.Call(Member::kRangePasteSpecial, {}, {{L"Operation", -4142}});
  // Named arguments are listed behind the positional ones, the last of them first.
  EXPECT_EQ(journal_.Take(),
            "Range.PasteSpecial call(-4163, missing, SkipBlanks:=False, Transpose:=True)\n"
            "Range.PasteSpecial call(Operation:=-4142)\n");
  EXPECT_THROW(range_.Call(Member::kRangePasteSpecial, {}, {{L"Skip", true}}), HostError);
  EXPECT_EQ(journal_.Take(), "");
}

TEST_F(ObjectTest, AssignsObjectsByReferenceAndValuesByValue) {
  range_.Put(Member::kRangeValue, Answer(excel_.comment));
  range_.Put(Member::kRangeValue, Variant("text"));
  EXPECT_EQ(journal_.Take(), "Range.Value putref(object)\nRange.Value put(\"text\")\n");
}

}  // namespace
}  // namespace vantora::excel
