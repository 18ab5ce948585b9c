#include "host/sheet_protection.h"

#include "host/objects.h"
#include "package/sheet_reader.h"
#include "package/xml_scanner.h"

namespace vantora::embedded {
namespace {

// Value of an attribute of the sheet's protection; "" when there is none.
std::string ProtectionAttribute(OpenWorkbook& book, int sheet, std::string_view name) {
  const MarkupElement* protection = book.file().markup(sheet).Find("sheetProtection");
  if (!protection) return "";
  XmlScanner xml(protection->text);
  while (xml.Next() != XmlScanner::Token::kStart) {
  }
  return std::string(xml.Attribute(name).value_or(""));
}

// The password's older form is a number of 16 bits in hexadecimal digits (0: none), the newer one a
// hash with its algorithm.
bool HasPassword(OpenWorkbook& book, int sheet) {
  return ProtectionAttribute(book, sheet, "password").find_first_not_of('0') != std::string::npos ||
         !ProtectionAttribute(book, sheet, "hashValue").empty();
}

}  // namespace

void ProtectSheet(OpenWorkbook& book, int sheet_id) {
  SheetModel& sheet = book.sheet(sheet_id);
  if (sheet.is_protected && HasPassword(book, sheet_id)) return;
  SheetMarkup& markup = book.file().markup(sheet_id);
  const std::string text =
      "<" + markup.prefix + "sheetProtection sheet=\"1\" objects=\"1\" scenarios=\"1\"/>";
  MarkupElement& protection = markup.FindOrInsert("sheetProtection");
  if (protection.text != text) {
    protection.text = text;
    markup.changed = true;
  }
  sheet.is_protected = true;
}

void UnprotectSheet(OpenWorkbook& book, int sheet_id) {
  SheetModel& sheet = book.sheet(sheet_id);
  if (!sheet.is_protected) return;
  if (HasPassword(book, sheet_id)) {
    Refuse("The password you supplied is not correct: the sheet \"" + sheet.name +
           "\" is protected with a password. Unprotect it in Excel first.");
  }
  book.file().markup(sheet_id).Remove("sheetProtection");
  sheet.is_protected = false;
}

bool MayFormatRows(OpenWorkbook& book, int sheet) {
  if (!book.sheet(sheet).is_protected) return true;
  const std::string forbidden = ProtectionAttribute(book, sheet, "formatRows");
  return !forbidden.empty() && !IsTrue(forbidden);
}

}  // namespace vantora::embedded
