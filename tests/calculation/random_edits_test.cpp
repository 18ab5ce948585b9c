// Random edits and insertions: after each, the workbook must read as if it had been typed anew.
#include <gtest/gtest.h>

#include <map>
#include <random>

#include "calculation/test_book.h"

namespace vantora::embedded {
namespace {

constexpr int kColumns = 9;
constexpr int kRows = 8;

class RandomEdits {
 public:
  // Without formulas that mean something else once columns are inserted.
  RandomEdits(unsigned seed, bool place_independent)
      : random_(seed), place_independent_(place_independent) {
    book_.AddName("one", "Data!$C$2");
    book_.AddName("several", "Other!$B$1:$D$3");
    book_.AddName("both", "one+SUM(several)");
  }

  TestBook& book() { return book_; }

  // A number, a formula in one cell or filled over a block, or nothing. Tells what it did.
  std::string Edit() {
    Area area{Upto(kRows), Upto(kColumns), 0, 0};
    bool block = Upto(4) == 1;
    area.last_row = block ? std::min(kRows, area.first_row + Upto(3)) : area.first_row;
    area.last_column = block ? std::min(kColumns, area.first_column + Upto(3)) : area.first_column;
    std::string place = std::string(Sheet()) + "!" + ToA1(area);
    std::string content;
    switch (Upto(5)) {
      case 1:
        break;
      case 2:
      case 3:
        content = std::to_string(Upto(9));
        break;
      default:
        // As a rule formulas look to the left, so that few of them go in circles.
        last_allowed_ = Upto(8) == 1 ? kColumns : std::max(area.first_column - 1, 1);
        content = area.first_column == 1 ? "=1" : "=" + Term() + "+" + Term();
    }
    book_.Put(place, content);
    return place + " " + content;
  }

  ColumnInsertion Insertion() { return {Upto(3) - 1, Upto(kColumns), Upto(2)}; }

 private:
  int Upto(int limit) { return std::uniform_int_distribution(1, limit)(random_); }
  const char* Sheet() {
    static constexpr const char* kSheets[] = {"Data", "Other", "Third"};
    return kSheets[Upto(3) - 1];
  }

  std::string Cell() {
    std::string column = ColumnLetters(Upto(last_allowed_));
    std::string row = std::to_string(Upto(kRows));
    return (Upto(4) == 1 ? "$" : "") + column + (Upto(4) == 1 ? "$" : "") + row;
  }

  std::string Reference() {
    std::string sheet = Upto(3) == 1 ? std::string(Sheet()) + "!" : "";
    switch (Upto(8)) {
      case 1: {
        std::string column = ColumnLetters(Upto(last_allowed_));
        return sheet + column + ":" + column;
      }
      case 2:
      case 3:
        return sheet + Cell() + ":" + Cell();
      default:
        return sheet + Cell();
    }
  }

  std::string Term() {
    switch (Upto(place_independent_ ? 8 : 11)) {
      case 1:
        if (last_allowed_ > 3) return "one";
        return Cell();
      case 2:
        if (last_allowed_ > 4) return "both";
        return Cell();
      case 3:
        return "IF(" + Cell() + ">3," + Cell() + "," + Cell() + ")";
      case 9:
        return "COLUMN(" + Reference() + ")";
      case 10:
        return "SUM(Data:Other!" + Cell() + ")";
      case 11:
        return "COLUMNS(" + Reference() + ")";
      default:
        return "SUM(" + Reference() + ")";
    }
  }

  std::mt19937 random_;
  bool place_independent_;
  // The last column that a new formula may refer to.
  int last_allowed_ = kColumns;
  TestBook book_;
};

class RandomEditsTest : public ::testing::TestWithParam<unsigned> {};

TEST_P(RandomEditsTest, ReadAsIfTypedAnew) {
  RandomEdits edits(GetParam(), false);
  std::string history;
  for (int step = 0; step < 80; ++step) {
    if (step % 7 == 6) {
      ColumnInsertion insertion = edits.Insertion();
      edits.book().calculator().InsertColumns(insertion);
      history += "insert " + std::to_string(insertion.sheet) + " " +
                 ColumnLetters(insertion.column) + " " + std::to_string(insertion.count) + "\n";
    } else {
      history += edits.Edit() + "\n";
    }
    // Now and then several edits come before the next read.
    if (step % 3 == 0) continue;
    ASSERT_EQ(edits.book().Dump(), edits.book().Retyped()->Dump()) << history;
  }
}

std::map<std::string, std::string> Values(TestBook& book, const ColumnInsertion* to_come) {
  std::map<std::string, std::string> values;
  for (const auto& sheet : book.model().sheets) {
    for (int column = 1; column <= sheet->cells.LastColumn(); ++column) {
      sheet->cells.ForEachInColumn(column, 1, kMaxRow, [&](int row, const Cell& cell) {
        if (!cell.has_content()) return;
        CellAddress after{row, column};
        if (to_come && to_come->sheet == sheet->id && column >= to_come->column) {
          after.column += to_come->count;
        }
        values[sheet->name + "!" + ToA1(after)] =
            book.Value(sheet->name + "!" + ToA1(CellAddress{row, column}));
      });
    }
  }
  return values;
}

TEST_P(RandomEditsTest, AnInsertionChangesNoValue) {
  RandomEdits edits(GetParam() + 1000, true);
  TestBook& book = edits.book();
  for (int step = 0; step < 40; ++step) {
    edits.Edit();
    if (step % 4) continue;
    ColumnInsertion insertion = edits.Insertion();
    auto expected = Values(book, &insertion);
    book.calculator().InsertColumns(insertion);
    ASSERT_EQ(Values(book, nullptr), expected);
    // Not only because nothing was calculated: from the formulas' new texts it is the same.
    ASSERT_EQ(Values(*book.Retyped(), nullptr), expected);
  }
}

// Columns of many rows: running sums both ways, shares of one cell, and sums of windows.
TEST_P(RandomEditsTest, TallColumnsAreCalculatedCompletely) {
  std::mt19937 random(GetParam());
  auto upto = [&](int limit) { return std::uniform_int_distribution(1, limit)(random); };
  TestBook book;
  book.Put("A1:A400", "1");
  book.Put("B1:B400", "=SUM(A$1:A1)");
  book.Put("C1:C400", "=SUM(A1:A$400)*$A$7");
  book.Put("D1:D390", "=B1+SUM(C1:C10)");
  for (int round = 0; round < 6; ++round) {
    for (int step = 0; step < 40; ++step) {
      std::string row = std::to_string(upto(400));
      switch (upto(6)) {
        case 1:
          book.Value(std::string(1, static_cast<char>('A' + upto(3))) + row);
          break;
        case 2:
          book.Put("D" + row, upto(2) == 1 ? "4" : "=A$" + row + "+1");
          break;
        default:
          book.Put("A" + row, std::to_string(upto(9)));
      }
    }
    book.calculator().CalculateAll();
    auto retyped = book.Retyped();
    for (int row = 1; row <= 400; ++row) {
      for (const char* column : {"B", "C", "D"}) {
        std::string place = column + std::to_string(row);
        ASSERT_FALSE(book.IsMarked(place)) << place;
        ASSERT_EQ(book.Stored(place), retyped->Value(place)) << place << " round " << round;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomEditsTest, ::testing::Range(1u, 13u));

}  // namespace
}  // namespace vantora::embedded
