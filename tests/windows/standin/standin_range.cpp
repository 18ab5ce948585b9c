// Cells.
#include <cstdint>
#include <span>

#include "standin_parts.h"

namespace vantora::standin {
namespace {

class RangeObject final : public StandInObject {
 public:
  // What the range is made of: what Count counts, and of what Hidden tells.
  enum class Unit { kCells, kRows, kColumns };
  // What is known of the range's size without asking the host: tests count the calls of the host.
  enum class Extent { kAny, kCell };

  RangeObject(ExcelPtr excel, host::RangePtr range, Unit unit = Unit::kCells,
              Extent extent = Extent::kAny)
      : StandInObject(std::move(excel), "Range"),
        range_(std::move(range)),
        unit_(unit),
        extent_(extent) {}

  const host::RangePtr& range() const { return range_; }

 private:
  Variant Answer(const Call& call) override;
  Variant Put(const Call& call);
  Variant Part(const Call& call);
  Variant Do(const Call& call);

  Variant Value(const Call& call);
  Variant PutValue(const Call& call);
  Variant Table();
  Variant Cells(const Call& call);
  Variant Areas();
  Variant Lines(const Call& call, Unit unit);
  Variant Name();
  int Count();
  void PasteSpecial(const Call& call);
  void BorderAround(const Call& call);
  void Sort(const Call& call);
  Variant AddComment(const Call& call);

  bool IsCell() {
    return extent_ == Extent::kCell || (range_->RowsCount() == 1 && range_->ColumnsCount() == 1);
  }
  Variant Hidden();
  void SetHidden(bool hidden);
  // What `of` gives for each cell of a line, or Null where that differs.
  template <typename Of>
  Variant Common(int count, const Of& of);

  host::RangePtr range_;
  Unit unit_;
  Extent extent_;
};

[[noreturn]] void NotWhole(const char* what) {
  throw HostError(HostError::kApplicationDefined,
                  std::string("Unable to use the ") + what + " property of the Range class");
}

Variant RangeObject::Answer(const Call& call) {
  std::string_view name = call.member().name;
  const bool is_known_of_lines = name == "Count" || name == "Hidden" || name == "OutlineLevel";
  if (unit_ != Unit::kCells && !is_known_of_lines) Refuse(call);
  if (call.is_put()) return Put(call);
  if (name == "Value") return Value(call);
  if (name == "Formula") {
    if (!IsCell()) throw NotServed{"the formulas of several cells"};
    return Variant(std::string_view(range_->Formula()));
  }
  if (name == "HasFormula") {
    if (extent_ == Extent::kCell) return range_->HasFormula();
    return Common(range_->RowsCount(),
                  [&](int row) { return range_->Cells(row, 1)->HasFormula(); });
  }
  if (name == "Row") return range_->Row();
  if (name == "Column") return range_->Column();
  if (name == "Count") return Count();
  if (name == "Left") return range_->Left();
  if (name == "Width") return range_->Width();
  if (name == "Hidden") return Hidden();
  if (name == "RowHeight") {
    if (extent_ == Extent::kCell) return range_->RowHeight();
    return Common(range_->RowsCount(), [&](int row) { return range_->Cells(row, 1)->RowHeight(); });
  }
  if (name == "ColumnWidth") {
    if (extent_ == Extent::kCell) return range_->ColumnWidth();
    return Common(range_->ColumnsCount(),
                  [&](int column) { return range_->Cells(1, column)->ColumnWidth(); });
  }
  if (name == "OutlineLevel") {
    if (unit_ != Unit::kRows) NotWhole("OutlineLevel");
    if (extent_ == Extent::kCell) return range_->OutlineLevel();
    return Common(range_->RowsCount(),
                  [&](int row) { return range_->Cells(row, 1)->OutlineLevel(); });
  }
  if (call.member().access == Access::kMethod) return Do(call);
  return Part(call);
}

// Members that give objects.
Variant RangeObject::Part(const Call& call) {
  std::string_view name = call.member().name;
  if (name == "Cells") return Cells(call);
  if (name == "Rows") return Lines(call, Unit::kRows);
  if (name == "Columns") return Lines(call, Unit::kColumns);
  if (name == "Areas") return Areas();
  if (name == "Worksheet") return MadeWorksheet(excel(), range_->Worksheet());
  if (name == "Name") return Name();
  if (name == "Interior") return MadeInterior(excel(), range_->Interior());
  if (name == "Font") return MadeFont(excel(), range_->Font());
  if (name == "Borders") return MadeBorders(excel(), range_);
  Refuse(call);
}

Variant RangeObject::Put(const Call& call) {
  std::string_view name = call.member().name;
  if (name == "Value") return PutValue(call);
  if (name == "Formula") {
    range_->SetFormula(call.PutText());
  } else if (name == "Hidden") {
    SetHidden(call.PutBool());
  } else if (name == "RowHeight") {
    range_->SetRowHeight(call.PutDouble());
  } else if (name == "ColumnWidth") {
    range_->SetColumnWidth(call.PutDouble());
  } else if (name == "OutlineLevel") {
    if (unit_ != Unit::kRows) NotWhole("OutlineLevel");
    range_->SetOutlineLevel(call.PutInt());
  } else if (name == "HorizontalAlignment") {
    range_->SetHorizontalAlignment(static_cast<host::XlHAlign>(
        call.PutEnumerated({1, 5, 7, -4108, -4117, -4130, -4131, -4152})));
  } else if (name == "WrapText") {
    range_->SetWrapText(call.PutBool());
  } else {
    Refuse(call);
  }
  return {};
}

Variant RangeObject::Do(const Call& call) {
  std::string_view name = call.member().name;
  if (name == "AddComment") return AddComment(call);
  if (name == "PasteSpecial") {
    PasteSpecial(call);
    return Done();
  }
  if (name == "Insert") {
    call.RefuseFrom(1);
    range_->Insert(static_cast<host::XlInsertShiftDirection>(call.Enumerated(0, {-4161, -4121})));
    return Done();
  }
  if (name == "BorderAround") {
    BorderAround(call);
    return Done();
  }
  if (name == "Sort") {
    Sort(call);
    return Done();
  }
  call.RefuseFrom(0);
  if (name == "Copy") {
    range_->Copy();
  } else if (name == "Select") {
    range_->Select();
  } else if (name == "Activate") {
    range_->Activate();
  } else if (name == "Clear") {
    range_->Clear();
  } else if (name == "ClearContents") {
    range_->ClearContents();
  } else if (name == "ClearFormats") {
    range_->ClearFormats();
  } else if (name == "ListNames") {
    range_->ListNames();
  } else {
    Refuse(call);
  }
  return Done();
}

Variant RangeObject::Value(const Call& call) {
  call.RefuseFrom(0);
  return IsCell() ? Variant::From(range_->Value()) : Table();
}

// One value for all cells, or a block of one column with a value for each row.
Variant RangeObject::PutValue(const Call& call) {
  call.RefuseFrom(0);
  const Variant& given = call.put_value();
  if (!given.IsArray()) {
    auto value = given.ToValue();
    if (!value) throw NotServed{"a put of a value of this type"};
    range_->SetValue(*value);
    return {};
  }
  SAFEARRAY* array = given.get().parray;
  const auto rows = static_cast<LONG>(range_->RowsCount());
  LONG first_row = 0, last_row = -1, first_column = 0, last_column = -1;
  if (given.type() != (VT_ARRAY | VT_VARIANT) || SafeArrayGetDim(array) != 2 ||
      range_->ColumnsCount() != 1 || FAILED(SafeArrayGetLBound(array, 1, &first_row)) ||
      FAILED(SafeArrayGetUBound(array, 1, &last_row)) ||
      FAILED(SafeArrayGetLBound(array, 2, &first_column)) ||
      FAILED(SafeArrayGetUBound(array, 2, &last_column)) || first_column != last_column ||
      last_row - first_row + 1 != rows) {
    throw NotServed{"a put of an array of another shape than one column and the range's rows"};
  }
  std::vector<vantora::Value> values;
  for (LONG row = first_row; row <= last_row; ++row) {
    Variant element;
    LONG place[] = {row, first_column};
    SafeArrayGetElement(array, place, element.Receive());
    auto value = element.ToValue();
    if (!value) throw NotServed{"a put of an array with values of this type"};
    values.push_back(*value);
  }
  range_->SetValues(values);
  return {};
}

// The values of several cells: an array of rows and columns, counted from 1.
Variant RangeObject::Table() {
  LONG rows = range_->RowsCount();
  LONG columns = range_->ColumnsCount();
  SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(rows), 1}, {static_cast<ULONG>(columns), 1}};
  Variant table;
  VARIANT* place = table.Receive();
  place->parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
  place->vt = VT_ARRAY | VT_VARIANT;
  for (LONG row = 1; row <= rows; ++row) {
    for (LONG column = 1; column <= columns; ++column) {
      Variant value = Variant::From(range_->Cells(row, column)->Value());
      LONG indices[] = {row, column};
      SafeArrayPutElement(place->parray, indices, const_cast<VARIANT*>(&value.get()));
    }
  }
  return table;
}

Variant RangeObject::Cells(const Call& call) {
  if (!call.Has(0) && !call.Has(1)) return MadeRange(excel(), range_);
  return MadeCell(excel(), range_->Cells(call.Int(0), call.Int(1)));
}

Variant RangeObject::Areas() {
  std::vector<Variant> areas;
  for (host::RangePtr& area : range_->Areas()) areas.push_back(MadeRange(excel(), std::move(area)));
  return MadeCollection(excel(), "Areas", std::move(areas));
}

Variant RangeObject::Lines(const Call& call, Unit unit) {
  call.RefuseFrom(0);
  return Made(new RangeObject(excel(), range_, unit, extent_));
}

Variant RangeObject::Name() {
  host::NamePtr name = range_->Name();
  if (!name) throw HostError(HostError::kApplicationDefined, "The range has no name of its own.");
  return MadeName(excel(), std::move(name));
}

int RangeObject::Count() {
  if (unit_ == Unit::kRows) return range_->RowsCount();
  if (unit_ == Unit::kColumns) return range_->ColumnsCount();
  std::int64_t cells = std::int64_t{range_->RowsCount()} * range_->ColumnsCount();
  if (cells > INT32_MAX) throw HostError(HostError::kOverflow, "Overflow");
  return static_cast<int>(cells);
}

void RangeObject::PasteSpecial(const Call& call) {
  using host::XlPasteSpecialOperation;
  auto paste = call.Has(0) ? static_cast<host::XlPasteType>(call.Enumerated(
                                 0, {-4104, -4122, -4123, -4144, -4163, 6, 7, 8, 11, 12, 13, 14}))
                           : host::XlPasteType::kAll;
  if (call.Has(1) && call.Enumerated(1, {2, 3, 4, 5, -4142}) != -4142) {
    throw NotServed{"an operation"};
  }
  range_->PasteSpecial(paste, XlPasteSpecialOperation::kNone, call.Has(2) && call.Bool(2),
                       call.Has(3) && call.Bool(3));
}

// A line style and a weight exclude each other.
void RangeObject::BorderAround(const Call& call) {
  if (call.Has(0)) Refuse(call);
  call.RefuseFrom(3);
  range_->BorderAround(static_cast<host::XlBorderWeight>(call.Enumerated(1, {1, 2, 4, -4138})),
                       call.Int(2));
}

// Two keys, both ascending, a guessed heading: what the component sorts by.
void RangeObject::Sort(const Call& call) {
  constexpr int kKey1 = 0, kKey2 = 2;
  struct Served {
    std::size_t place;
    int value;
    int if_left_out;
  };
  constexpr Served kServed[] = {
      {1, 1, 1},   // Order1: ascending
      {4, 1, 1},   // Order2
      {7, 0, 2},   // Header: guessed; there is none when left out
      {8, 1, 1},   // OrderCustom
      {9, 0, 0},   // MatchCase
      {10, 1, 1},  // Orientation: top to bottom
      {12, 0, 0},  // DataOption1
      {13, 0, 0},  // DataOption2
  };
  for (const Served& served : kServed) {
    int value = call.Has(served.place) ? call.Int(served.place) : served.if_left_out;
    if (value != served.value) {
      throw NotServed{"another " + std::string(call.member().arguments[served.place])};
    }
  }
  for (std::size_t place : {3, 5, 6, 11, 14}) {
    if (call.Has(place)) Refuse(call);
  }
  host::RangePtr key1 = RangeOf(call.Object(kKey1));
  host::RangePtr key2 = RangeOf(call.Object(kKey2));
  if (!key1 || !key2) throw NotServed{"a key that is no range"};
  range_->Sort(key1, key2);
}

Variant RangeObject::AddComment(const Call& call) {
  host::CommentPtr comment = range_->AddComment();
  if (call.Has(0)) comment->Text(call.Text(0));
  return MadeComment(excel(), std::move(comment));
}

// Excel tells and changes it of rows and of columns, not of cells.
Variant RangeObject::Hidden() {
  if (unit_ == Unit::kRows) return range_->RowsHidden();
  if (unit_ == Unit::kColumns) return range_->ColumnsHidden();
  NotWhole("Hidden");
}

void RangeObject::SetHidden(bool hidden) {
  if (unit_ == Unit::kRows) {
    range_->SetRowsHidden(hidden);
  } else if (unit_ == Unit::kColumns) {
    range_->SetColumnsHidden(hidden);
  } else {
    NotWhole("Hidden");
  }
}

template <typename Of>
Variant RangeObject::Common(int count, const Of& of) {
  constexpr int kMost = 10000;
  if (count > kMost) throw NotServed{"a property of that many lines"};
  const auto first = of(1);
  for (int line = 2; line <= count; ++line) {
    if (of(line) == first) continue;
    Variant null;
    null.Receive()->vt = VT_NULL;
    return null;
  }
  return Variant(first);
}

}  // namespace

Variant MadeRange(const ExcelPtr& excel, host::RangePtr range) {
  return range ? Made(new RangeObject(excel, std::move(range))) : Nothing();
}

Variant MadeCell(const ExcelPtr& excel, host::RangePtr cell) {
  return Made(new RangeObject(excel, std::move(cell), RangeObject::Unit::kCells,
                              RangeObject::Extent::kCell));
}

host::RangePtr RangeOf(IDispatch* object) {
  auto* range = dynamic_cast<RangeObject*>(object);
  return range ? range->range() : nullptr;
}

}  // namespace vantora::standin
