#include "planning_model.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "sheet_stream.h"
#include "zip_stream.h"

namespace vantora::bench {
namespace {

// Columns of a data sheet.
constexpr int kLabel = 2;
constexpr int kKey = 5;
constexpr int kAddend = 6;
constexpr int kGrowth = 7;
constexpr int kFactor = 8;
constexpr int kFirstYear = 10;      // J
constexpr int kCurrentYear = 15;    // O
constexpr int kFirstPlanYear = 16;  // P
constexpr int kLastYear = 25;       // Y
constexpr int kTotal = 26;          // Z
constexpr int kFlagColumn = 27;     // AA, of the Planning sheet
constexpr int kBaseFlag = 28;       // AB
constexpr int kSave = 29;           // AC, of the Planning sheet
constexpr int kMarker = 30;         // AD
constexpr int kYears = kLastYear - kFirstYear + 1;
constexpr int kFirstBlockRow = 6;
constexpr int kBlockRows = 10;
constexpr int kNameCount = 300;
constexpr int kLabelCount = 500;

// Indices of cellXfs in kStyles.
enum Style { kPlain, kHeader, kInput, kCalculated, kSum, kPercent };

// Shared strings before the labels.
enum SharedString {
  kFlagS,
  kFlagX,
  kFlagK,
  kFlagN,
  kFlagE,
  kFlagC,
  kTitleText,
  kUnitText,
  kBase,
  kSpinnerBase,
  kFlagF,
  kSaveFlag,
  kInflationFlag,
  kMoves,
  kInflates,
  kEndFlag,
  kRatioFlag,
  kFirstLabel
};

using Years = std::array<double, kYears>;

constexpr std::string_view kXml = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";
constexpr std::string_view kMain = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";

std::string SheetName(int sheet) {
  return (sheet < 9 ? "Data 0" : "Data ") + std::to_string(sheet + 1);
}

// Factors of the lookup table on the Reference sheet, for the keys 1 to 12.
double LookupFactor(int key) { return 0.5 + key * 0.0625; }
// Yearly factor of the Planning sheet.
double PlanningFactor(int year) { return 1 + (year % 4) * 0.0078125; }

// An input value with two decimals, in hundredths.
std::int64_t InputCents(int sheet, int row, int year) {
  return 10000 + (sheet * 7919 + row * 104729 + year * 1299709) % 90000;
}

double Sum(const Years& values, int first, int last) {
  double sum = 0;
  for (int year = first; year <= last; ++year) sum += values[year];
  return sum;
}

// One data sheet: blocks of ten rows, each with the kinds of rows that a model has.
class DataSheet {
 public:
  DataSheet(ZipStream& zip, int sheet, int rows)
      : sheet_(sheet),
        rows_(rows),
        out_(zip, "xl/worksheets/sheet" + std::to_string(sheet + 3) + ".xml", kHead) {}

  // `linked` holds for each block the values of the row that the next sheet links to: those of the
  // sheet before, replaced by this sheet's.
  ModelCounts Write(std::vector<Years>& linked) {
    WriteHead();
    std::size_t block = 0;
    for (int row = kFirstBlockRow; row + kBlockRows - 1 <= rows_; row += kBlockRows, ++block) {
      if (linked.size() <= block) linked.resize(block + 1);
      WriteBlock(row, linked[block]);
    }
    return out_.End(
        "<pageMargins left=\"0.7\" right=\"0.7\" top=\"0.75\" bottom=\"0.75\" "
        "header=\"0.3\" footer=\"0.3\"/>");
  }

 private:
  static constexpr std::string_view kHead =
      "<sheetViews><sheetView workbookViewId=\"0\"><pane xSplit=\"4\" ySplit=\"4\" "
      "topLeftCell=\"E5\" activePane=\"bottomRight\" state=\"frozen\"/></sheetView></sheetViews>"
      "<sheetFormatPr defaultRowHeight=\"15\"/><cols><col min=\"2\" max=\"2\" width=\"30.7109375\" "
      "customWidth=\"1\"/><col min=\"10\" max=\"26\" width=\"12.7109375\" "
      "customWidth=\"1\"/></cols>";

  void WriteHead() {
    out_.BeginRow(1);
    out_.Text(1, kFlagS, kPlain);
    out_.Text(kLabel, kTitleText, kHeader);
    // Three sheets of four have their own flag, not all in the same column.
    if (sheet_ % 4 != 3) out_.Text(kMarker + sheet_ % 3, kFlagK, kPlain);
    out_.EndRow();
    out_.BeginRow(4);
    for (int year = 0; year < kYears; ++year) {
      out_.Number(kFirstYear + year, 2004 + year, kHeader);
    }
    out_.EndRow();
  }

  void WriteBlock(int first, Years& linked) {
    out_.BeginRow(first);
    out_.Text(kLabel, kTitleText, kHeader);
    out_.Blank(kKey, kHeader);
    out_.Blank(kTotal, kHeader);
    // Holds the base case of the inputs above it.
    if (first > kFirstBlockRow) out_.Text(kBaseFlag, kSpinnerBase, kPlain);
    out_.EndRow();
    std::array<Years, 8> lines{};
    lines[1] = WriteGrowth(first + 1);
    lines[2] = WriteGrowthWithAddend(first + 2);
    lines[3] = WriteLookup(first + 3, lines[1]);
    lines[4] = WriteFactor(first + 4);
    lines[5] = WriteInputs(first + 5);
    lines[6] = linked = WriteLink(first + 6, lines[1], linked);
    lines[7] = WriteRatio(first + 7, lines[1]);
    WriteSums(first + 8, lines);
    WriteInputs(first + 9, true);
  }

  int KeyOf(int row) const { return 1 + (row + sheet_) % 12; }
  double AddendOf(int row) const { return 1 + row % 16; }
  // In ten-thousandths.
  int GrowthOf(int row) const { return 101 + 37 * (row % 7); }
  double FactorOf(int row) const { return 20 + row % 50; }
  std::string At(int column, int row) const { return Place(column, row); }

  void Begin(int row) {
    out_.BeginRow(row);
    out_.Text(kLabel, kFirstLabel + row % kLabelCount, kPlain);
    out_.Number(kKey, KeyOf(row), kInput);
    out_.Number(kAddend, AddendOf(row), kInput);
    out_.Number(kGrowth, GrowthOf(row) / 10000.0, kPercent);
    out_.Number(kFactor, FactorOf(row), kInput);
  }

  void End(int row, const Years& values, bool is_base = false) {
    out_.Formula(kTotal, "SUM(" + At(kCurrentYear, row) + ":" + At(kLastYear, row) + ")",
                 Sum(values, kCurrentYear - kFirstYear, kYears - 1), kSum);
    if (is_base) out_.Text(kBaseFlag, kBase, kPlain);
    out_.EndRow();
  }

  // Inputs from column J to `last`.
  Years Inputs(int row, int last) {
    Years values{};
    for (int column = kFirstYear; column <= last; ++column) {
      int year = column - kFirstYear;
      values[year] = static_cast<double>(InputCents(sheet_, row, year)) / 100;
      out_.Number(column, values[year], kInput);
    }
    return values;
  }

  void Filled(int first_column, const std::string& formula, const Years& values, int style) {
    for (int column = first_column; column <= kLastYear; ++column) {
      double value = values[column - kFirstYear];
      if (column == first_column) {
        out_.Master(column, kLastYear, formula, value, style);
      } else {
        out_.Follow(column, value, style);
      }
    }
  }

  Years WriteGrowth(int row) {
    Begin(row);
    Years values = Inputs(row, kCurrentYear);
    std::int64_t cents = InputCents(sheet_, row, kCurrentYear - kFirstYear);
    for (int year = kFirstPlanYear - kFirstYear; year < kYears; ++year) {
      cents = (cents * (10000 + GrowthOf(row)) + 5000) / 10000;
      values[year] = static_cast<double>(cents) / 100;
    }
    Filled(kFirstPlanYear, "ROUND(" + At(kCurrentYear, row) + "*(1+$" + At(kGrowth, row) + "),2)",
           values, kCalculated);
    End(row, values);
    return values;
  }

  Years WriteGrowthWithAddend(int row) {
    Begin(row);
    Years values = Inputs(row, kCurrentYear);
    for (int year = kFirstPlanYear - kFirstYear; year < kYears; ++year) {
      values[year] = values[year - 1] * (1 + GrowthOf(row) / 10000.0) + AddendOf(row);
    }
    Filled(kFirstPlanYear,
           At(kCurrentYear, row) + "*(1+$" + At(kGrowth, row) + ")+$" + At(kAddend, row), values,
           kCalculated);
    End(row, values);
    return values;
  }

  Years WriteLookup(int row, const Years& base) {
    Begin(row);
    Years values{};
    for (int column = kFirstYear; column <= kLastYear; ++column) {
      int year = column - kFirstYear;
      values[year] = LookupFactor(KeyOf(row)) * base[year];
      out_.Formula(column,
                   "INDEX(Reference!$AB$14:$AB$25,MATCH($" + At(kKey, row) +
                       ",Reference!$AA$14:$AA$25,0))*" + At(column, row - 2),
                   values[year], kCalculated);
    }
    End(row, values);
    return values;
  }

  Years WriteFactor(int row) {
    Begin(row);
    Years values{};
    for (int column = kFirstYear; column <= kLastYear; ++column) {
      values[column - kFirstYear] = LookupFactor(1) * FactorOf(row);
      out_.Formula(column, "IFERROR(Reference!$AB$14*$" + At(kFactor, row) + ",0)",
                   values[column - kFirstYear], kCalculated);
    }
    End(row, values);
    return values;
  }

  Years WriteInputs(int row, bool is_base = false) {
    Begin(row);
    Years values = Inputs(row, kLastYear);
    End(row, values, is_base);
    return values;
  }

  Years WriteLink(int row, const Years& base, const Years& before) {
    Begin(row);
    Years values = Inputs(row, kCurrentYear);
    for (int column = kFirstPlanYear; column <= kLastYear; ++column) {
      int year = column - kFirstYear;
      std::string formula = "Planning!" + Letters(column) + "$5*" + At(column, row - 5);
      values[year] = PlanningFactor(year) * base[year];
      if (sheet_ > 0) {
        formula += "+'" + SheetName(sheet_ - 1) + "'!" + At(column, row) + "/2";
        values[year] += before[year] / 2;
      }
      out_.Formula(column, formula, values[year], kCalculated);
    }
    End(row, values);
    return values;
  }

  Years WriteRatio(int row, const Years& base) {
    Begin(row);
    Years values = Inputs(row, kCurrentYear);
    for (int year = kFirstPlanYear - kFirstYear; year < kYears; ++year) {
      values[year] = base[year - 1] == 0 ? 0 : base[year] / base[year - 1] - 1;
    }
    std::string before = At(kCurrentYear, row - 6);
    Filled(kFirstPlanYear,
           "IF(" + before + "=0,0," + At(kFirstPlanYear, row - 6) + "/" + before + "-1)", values,
           kPercent);
    End(row, values);
    return values;
  }

  void WriteSums(int row, const std::array<Years, 8>& lines) {
    Begin(row);
    Years values{};
    for (int year = 0; year < kYears; ++year) {
      for (int line = 1; line < 8; ++line) values[year] += lines[line][year];
    }
    Filled(kFirstYear, "SUM(" + At(kFirstYear, row - 7) + ":" + At(kFirstYear, row - 1) + ")",
           values, kSum);
    End(row, values);
  }

  int sheet_;
  int rows_;
  SheetStream out_;
};

ModelCounts WriteReferenceSheet(ZipStream& zip) {
  SheetStream out(zip, "xl/worksheets/sheet1.xml", "");
  out.BeginRow(1);
  out.Text(1, kFlagX, kPlain);
  out.Text(2, kFlagN, kPlain);
  out.Text(4, kFlagK, kPlain);
  out.Text(5, kFlagC, kPlain);
  out.Text(6, kFlagS, kPlain);
  out.Text(8, kFlagE, kPlain);
  out.EndRow();
  for (int row = 14; row < 14 + 12; ++row) {
    out.BeginRow(row);
    out.Number(27, row - 13, kInput);
    out.Number(28, LookupFactor(row - 13), kInput);
    out.EndRow();
  }
  return out.End("");
}

// Yearly factors, which are the inflation as well, and one spin button with as many projects as a
// data sheet has rows; its linked cell is D8.
ModelCounts WritePlanningSheet(ZipStream& zip, int projects) {
  constexpr int kSpinnerRow = 8;
  SheetStream out(zip, "xl/worksheets/sheet2.xml", "");
  out.BeginRow(1);
  out.Text(1, kUnitText, kPlain);
  out.Text(kFlagColumn, kFlagF, kPlain);
  out.Text(kSave, kSaveFlag, kPlain);
  out.EndRow();
  out.BeginRow(5);
  double sum = 0;
  for (int year = 0; year < kYears; ++year) {
    out.Number(kFirstYear + year, PlanningFactor(year), kInput);
    sum += PlanningFactor(year);
  }
  out.Formula(kTotal, "SUM(J5:Y5)", sum, kSum);
  out.Text(kFlagColumn, kInflationFlag, kPlain);
  out.EndRow();
  out.BeginRow(kSpinnerRow);
  out.Number(4, 1, kInput);
  out.EndRow();
  const int end_row = kSpinnerRow + projects + 1;
  for (int row = kSpinnerRow + 1; row < end_row; ++row) {
    out.BeginRow(row);
    out.Text(kLabel, kFirstLabel + row % kLabelCount, kPlain);
    for (int column = kFirstPlanYear; column <= kLastYear; ++column) {
      out.Number(column, static_cast<double>(InputCents(0, row, column)) / 100, kInput);
    }
    out.Text(kFlagColumn, row % 2 == 0 ? kMoves : kInflates, kPlain);
    out.EndRow();
  }
  out.BeginRow(end_row);
  out.Number(4, 1, kInput);
  out.Text(kFlagColumn, kEndFlag, kPlain);
  out.EndRow();
  return out.End(
      "<legacyDrawing xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/"
      "relationships\" r:id=\"rId1\"/>");
}

void WriteSpinButton(ZipStream& zip) {
  zip.Begin("xl/worksheets/_rels/sheet2.xml.rels");
  zip.Write(
      std::string(kXml) +
      "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
      "<Relationship Id=\"rId1\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/"
      "relationships/vmlDrawing\" Target=\"../drawings/vmlDrawing1.vml\"/></Relationships>");
  zip.Begin("xl/drawings/vmlDrawing1.vml");
  zip.Write(
      "<xml xmlns:v=\"urn:schemas-microsoft-com:vml\" "
      "xmlns:x=\"urn:schemas-microsoft-com:office:excel\"><v:shape id=\"Spinner_x0020_1\">"
      "<x:ClientData ObjectType=\"Spin\"><x:FmlaLink>$D$8</x:FmlaLink></x:ClientData></v:shape>"
      "</xml>");
}

// A hundred ratios, and ten blocks of comparison data that take up the other rows.
ModelCounts WriteRatioSheet(ZipStream& zip, ModelSize size) {
  constexpr int kCode = 5;
  constexpr int kDataKey = 9;
  constexpr int kRatios = 100;
  constexpr int kBlocks = 10;
  constexpr int kRowsOfRatio = kBlocks + 1;
  SheetStream out(zip, "xl/worksheets/sheet" + std::to_string(size.sheets + 3) + ".xml", "");
  int row = 1;
  auto write = [&](auto fill) {
    out.BeginRow(row++);
    fill();
    out.EndRow();
  };
  write([&] { out.Text(1, kRatioFlag, kPlain); });
  write([&] { out.Number(kCode, 1, kInput); });
  for (int ratio = 1; ratio <= kRatios; ++ratio) {
    write([&] { out.Number(1, ratio, kInput); });
    row += kRowsOfRatio - 1;
  }
  write([&] { out.Number(kCode, 99, kInput); });
  const int data_rows = size.rows / kBlocks;
  for (int block = 1; block <= kBlocks; ++block) {
    write([&] { out.Number(kCode, 100 * block, kInput); });
    for (int data = 0; data < data_rows; ++data) {
      write([&] {
        out.Number(kDataKey, 1 + data % kRatios, kInput);
        for (int year = 0; year <= kCurrentYear - kFirstYear; ++year) {
          if ((data + year) % 3 != 0) {
            out.Number(kFirstYear + year, static_cast<double>(InputCents(block, data, year)) / 100,
                       kInput);
          }
        }
      });
    }
    write([&] { out.Number(kCode, 100 * block + 91, kInput); });
  }
  return out.End("");
}

void WriteSharedStrings(ZipStream& zip) {
  zip.Begin("xl/sharedStrings.xml");
  std::string text(kXml);
  text.append("<sst xmlns=\"").append(kMain).append("\">");
  for (std::string_view one : {"S F Z", "X14", "k", "n", "e", "c", "Plan by line", "thousands", "B",
                               "BS", "f", "s", "x", "s", "i", "end", "G"}) {
    text.append("<si><t>").append(one).append("</t></si>");
  }
  for (int label = 0; label < kLabelCount; ++label) {
    text += "<si><t>Position " + std::to_string(label + 1) + " of the plan</t></si>";
  }
  zip.Write(text += "</sst>");
}

constexpr std::string_view kStyles =
    "<fonts count=\"2\"><font><sz val=\"10\"/><name val=\"Arial\"/></font><font><b/><sz "
    "val=\"10\"/>"
    "<name val=\"Arial\"/></font></fonts><fills count=\"4\"><fill><patternFill "
    "patternType=\"none\"/>"
    "</fill><fill><patternFill patternType=\"gray125\"/></fill><fill><patternFill "
    "patternType=\"solid\"><fgColor rgb=\"FF1F497D\"/><bgColor "
    "indexed=\"64\"/></patternFill></fill>"
    "<fill><patternFill patternType=\"solid\"><fgColor rgb=\"FFD9D9D9\"/><bgColor indexed=\"64\"/>"
    "</patternFill></fill></fills><borders count=\"1\"><border><left/><right/><top/><bottom/>"
    "<diagonal/></border></borders><cellStyleXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" "
    "fillId=\"0\" borderId=\"0\"/></cellStyleXfs><cellXfs count=\"6\">"
    "<xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\" xfId=\"0\"/>"
    "<xf numFmtId=\"0\" fontId=\"1\" fillId=\"2\" borderId=\"0\" xfId=\"0\" applyFill=\"1\"/>"
    "<xf numFmtId=\"4\" fontId=\"0\" fillId=\"0\" borderId=\"0\" xfId=\"0\" "
    "applyNumberFormat=\"1\" "
    "applyProtection=\"1\"><protection locked=\"0\"/></xf>"
    "<xf numFmtId=\"4\" fontId=\"0\" fillId=\"3\" borderId=\"0\" xfId=\"0\" applyFill=\"1\"/>"
    "<xf numFmtId=\"4\" fontId=\"1\" fillId=\"3\" borderId=\"0\" xfId=\"0\" applyFill=\"1\"/>"
    "<xf numFmtId=\"10\" fontId=\"0\" fillId=\"3\" borderId=\"0\" xfId=\"0\" applyFill=\"1\"/>"
    "</cellXfs>";

void WriteWorkbookParts(ZipStream& zip, ModelSize size) {
  std::string types(kXml), book(kXml), links(kXml);
  types +=
      "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\"><Default "
      "Extension=\"rels\" "
      "ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
      "<Default Extension=\"vml\" "
      "ContentType=\"application/vnd.openxmlformats-officedocument.vmlDrawing\"/>"
      "<Default Extension=\"xml\" ContentType=\"application/xml\"/><Override PartName=\"/xl/"
      "workbook.xml\" ContentType=\"application/vnd.ms-excel.sheet.macroEnabled.main+xml\"/>";
  book.append("<workbook xmlns=\"")
      .append(kMain)
      .append(
          "\" "
          "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/"
          "relationships\"><sheets>");
  links += "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">";
  const std::string kType = "application/vnd.openxmlformats-officedocument.spreadsheetml.";
  auto add = [&](const std::string& id, const std::string& kind, const std::string& target,
                 const std::string& type) {
    types += "<Override PartName=\"/xl/" + target + "\" ContentType=\"" + kType + type + "+xml\"/>";
    links += "<Relationship Id=\"" + id +
             "\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/" +
             kind + "\" Target=\"" + target + "\"/>";
  };
  for (int sheet = 1; sheet <= size.sheets + 3; ++sheet) {
    std::string number = std::to_string(sheet);
    std::string name = sheet == 1                 ? "Reference"
                       : sheet == 2               ? "Planning"
                       : sheet == size.sheets + 3 ? "Ratios"
                                                  : SheetName(sheet - 3);
    book += "<sheet name=\"" + name + "\" sheetId=\"" + number + "\" r:id=\"rId" + number + "\"/>";
    add("rId" + number, "worksheet", "worksheets/sheet" + number + ".xml", "worksheet");
  }
  add("rIdStyles", "styles", "styles.xml", "styles");
  add("rIdStrings", "sharedStrings", "sharedStrings.xml", "sharedStrings");
  book +=
      "</sheets><definedNames><definedName name=\"marker\">'Data 01'!$AD$1</definedName>"
      "<definedName name=\"planning_fiscal_year\">'Data 01'!$J$4:$N$4</definedName>";
  for (int name = 0; name < kNameCount; ++name) {
    std::string row = std::to_string(kFirstBlockRow + name % (size.rows - kFirstBlockRow));
    book += "<definedName name=\"line_" + std::to_string(1000 + name) + "\">'" +
            SheetName(name % size.sheets) + "'!$J$" + row + ":$Y$" + row + "</definedName>";
  }
  zip.Begin("[Content_Types].xml");
  zip.Write(types += "</Types>");
  zip.Begin("_rels/.rels");
  zip.Write(
      std::string(kXml) +
      "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
      "<Relationship Id=\"rId1\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/"
      "relationships/officeDocument\" Target=\"xl/workbook.xml\"/></Relationships>");
  zip.Begin("xl/workbook.xml");
  zip.Write(book += "</definedNames><calcPr calcId=\"152511\"/></workbook>");
  zip.Begin("xl/_rels/workbook.xml.rels");
  zip.Write(links += "</Relationships>");
  zip.Begin("xl/styles.xml");
  zip.Write(std::string(kXml) + "<styleSheet xmlns=\"" + std::string(kMain) + "\">" +
            std::string(kStyles) + "</styleSheet>");
}

}  // namespace

ModelCounts WritePlanningModel(const std::filesystem::path& path, ModelSize size) {
  ZipStream zip(path);
  WriteWorkbookParts(zip, size);
  WriteSharedStrings(zip);
  ModelCounts counts;
  auto add = [&](ModelCounts more) {
    counts.cells += more.cells;
    counts.formulas += more.formulas;
  };
  add(WriteReferenceSheet(zip));
  add(WritePlanningSheet(zip, size.rows));
  WriteSpinButton(zip);
  std::vector<Years> linked;
  for (int sheet = 0; sheet < size.sheets; ++sheet) {
    add(DataSheet(zip, sheet, size.rows).Write(linked));
  }
  add(WriteRatioSheet(zip, size));
  zip.Close();
  return counts;
}

}  // namespace vantora::bench
