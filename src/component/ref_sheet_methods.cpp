#include "component/ref_sheet_methods.h"

#include <type_traits>

#include "refsheet/ref_sheet.h"

namespace vantora::component {
namespace {

// A member without arguments, with or without a result.
template <auto member>
Method Plain(std::string_view name, std::string_view help, std::string_view asks = "") {
  return {.name = name,
          .parameters = {},
          .asks = asks,
          .help = help,
          .call = [](PublicObject& object, std::span<Argument>) {
            auto& ref_sheet = static_cast<clsRefSheet&>(object);
            if constexpr (std::is_void_v<decltype((ref_sheet.*member)())>) {
              (ref_sheet.*member)();
              return Value();
            } else {
              return Value((ref_sheet.*member)());
            }
          }};
}

// A member that writes an array of texts into a column of a list.
template <auto member>
Method Load(std::string_view name, std::string_view help) {
  return {
      .name = name,
      .parameters =
          {{.name = "values", .type = ParameterType::kTexts, .help = "the texts, one a row"},
           {.name = "count", .type = ParameterType::kInteger, .help = "how many of them to write"}},
      .asks = "",
      .help = help,
      .call = [](PublicObject& object, std::span<Argument> arguments) {
        (static_cast<clsRefSheet&>(object).*member)(
            std::get<std::vector<std::string>>(arguments[0]),
            static_cast<int>(std::get<Value>(arguments[1]).AsNumber()));
        return Value();
      }};
}

// A member that takes or fills the dashboard's configurations.
template <auto member>
Method Configs(std::string_view name, std::string_view help, bool is_filled) {
  return {.name = name,
          .parameters = {{.name = "configs",
                          .type = ParameterType::kNumberedTexts,
                          .help = "the names of configurations 1, 2, ...",
                          .is_filled = is_filled}},
          .asks = "",
          .help = help,
          .call = [](PublicObject& object, std::span<Argument> arguments) {
            (static_cast<clsRefSheet&>(object).*
             member)(std::get<std::vector<std::string>>(arguments[0]));
            return Value();
          }};
}

Method PutDLLVersion() {
  return {.name = "PutDLLVersion",
          .parameters = {{.name = "versionText",
                          .type = ParameterType::kText,
                          .help = "the text to write"}},
          .asks = "",
          .help = "Writes the version line into cell C6 of the Reference Sheet",
          .call = [](PublicObject& object, std::span<Argument> arguments) {
            static_cast<clsRefSheet&>(object).PutDLLVersion(std::get<Value>(arguments[0]).AsText());
            return Value();
          }};
}

}  // namespace

std::vector<Method> RefSheetMethods() {
  using R = clsRefSheet;
  return {
      PutDLLVersion(),

      Plain<&R::KeysListSelect>("KeysListSelect", "Selects the planning keys list"),
      Plain<&R::KeysListDeselect>("KeysListDeselect", "Selects the heading of the planning keys"),
      Plain<&R::KeysListClear>("KeysListClear", "Clears the planning keys list"),
      Plain<&R::KeysListIsDefined>("KeysListIsDefined",
                                   "Returns whether there is a planning keys list"),
      Load<&R::KeysListLoadKeysCol>("KeysListLoadKeysCol", "Writes the keys of the keys list"),
      Load<&R::KeysListLoadSheetsCol>("KeysListLoadSheetsCol",
                                      "Writes the sheets of the keys list"),
      Load<&R::KeysListLoadColsCol>("KeysListLoadColsCol",
                                    "Writes the column numbers of the keys list"),
      Plain<&R::KeysListSortbyKey>("KeysListSortbyKey", "Sorts the planning keys by key"),
      Plain<&R::KeysListSortbySheet>("KeysListSortbySheet", "Sorts the planning keys by sheet"),
      Plain<&R::KeysListResetSortButtons>("KeysListResetSortButtons",
                                          "Resets the sort buttons of the planning keys"),

      Plain<&R::NamesListSelect>("NamesListSelect",
                                 "Selects the names list; returns whether it did"),
      Plain<&R::NamesListDeselect>("NamesListDeselect", "Selects the heading of the names list"),
      Plain<&R::NamesListIsDefined>("NamesListIsDefined", "Returns whether there is a names list"),
      Plain<&R::NamesListPopulate>("NamesListPopulate",
                                   "Lists the workbook's names and marks those with errors",
                                   "message (OK) when names have errors"),
      Plain<&R::NamesListSortbyName>("NamesListSortbyName", "Sorts the names list by name"),
      Plain<&R::NamesListSortbySheet>("NamesListSortbySheet",
                                      "Sorts the names list by what the names refer to"),

      Plain<&R::DiscrListSelect>("DiscrListSelect", "Selects the key discrepancy list"),
      Plain<&R::DiscrListDeselect>("DiscrListDeselect",
                                   "Selects the heading of the key discrepancies"),
      Plain<&R::DiscrListClear>("DiscrListClear", "Clears the key discrepancy list"),
      Plain<&R::DiscrListIsDefined>("DiscrListIsDefined",
                                    "Returns whether there is a key discrepancy list"),
      Load<&R::DiscrListLoadCol>("DiscrListLoadCol", "Writes the lines of the discrepancy list"),

      Plain<&R::ChartsListSelect>("ChartsListSelect", "Selects the charts list"),
      Plain<&R::ChartsListDeselect>("ChartsListDeselect", "Selects the heading of the charts list"),
      Plain<&R::ChartsListClear>("ChartsListClear", "Clears the charts list"),
      Plain<&R::ChartsListIsDefined>("ChartsListIsDefined",
                                     "Returns whether there is a charts list"),
      Load<&R::ChartsListKeysListLoadColsCol>("ChartsListKeysListLoadColsCol",
                                              "Writes the columns of the charts list"),
      Load<&R::ChartsListLoadPosCol>("ChartsListLoadPosCol",
                                     "Writes the positions of the charts list"),
      Load<&R::ChartsListLoadTitlesCol>("ChartsListLoadTitlesCol",
                                        "Writes the titles of the charts list"),
      Plain<&R::ChartsListSort>("ChartsListSort", "Sorts the charts by column and position"),
      Plain<&R::ChartsListIteratorInit>("ChartsListIteratorInit", "Goes to the first chart"),
      Plain<&R::ChartsListIteratorNext>("ChartsListIteratorNext", "Goes to the next chart"),
      Plain<&R::ChartsListIteratorIsMore>("ChartsListIteratorIsMore",
                                          "Returns whether there is a current chart"),
      Plain<&R::ChartsTitle>("ChartsTitle", "Returns the current chart's title"),
      Plain<&R::ChartsColumn>("ChartsColumn", "Returns the current chart's column"),

      Configs<&R::ConfigsListGet>(
          "ConfigsListGet", "Reads the configurations into as many elements as are given", true),
      Plain<&R::cCount>("cCount", "Returns how many configurations were read"),
      Configs<&R::ConfigsListPut>("ConfigsListPut", "Writes the configurations list anew", false),
      Plain<&R::ConfigsListIsDefined>("ConfigsListIsDefined",
                                      "Returns whether there is a configurations list"),
      Plain<&R::ConfigsListIteratorInit>("ConfigsListIteratorInit",
                                         "Goes to the first configuration"),
      Plain<&R::ConfigsListIteratorNext>("ConfigsListIteratorNext",
                                         "Goes to the next configuration"),
      Plain<&R::ConfigsListIteratorIsMore>("ConfigsListIteratorIsMore",
                                           "Returns whether there is a current configuration"),
      Plain<&R::ConfigsName>("ConfigsName", "Returns the current configuration's name"),
      Plain<&R::ConfigsNum>("ConfigsNum", "Returns the current configuration's number"),

      Plain<&R::MenusListIteratorInit>("MenusListIteratorInit", "Goes to the first menu entry"),
      Plain<&R::MenusListIteratorNext>("MenusListIteratorNext", "Goes to the next menu entry"),
      Plain<&R::MenusListIteratorIsMore>("MenusListIteratorIsMore",
                                         "Returns whether there is a current menu entry"),
      Plain<&R::MenusListItem>("MenusListItem", "Returns the current menu entry's item"),
      Plain<&R::MenusListSubItem>("MenusListSubItem", "Returns the current menu entry's sub-item"),
      Plain<&R::MenusListMacroName>("MenusListMacroName",
                                    "Returns the macro of the current menu entry"),
      Plain<&R::MenusListFaceID>("MenusListFaceID",
                                 "Returns the button face of the current menu entry"),
      Plain<&R::MenusListIsDefined>("MenusListIsDefined", "Returns whether there is a menu table"),
  };
}

}  // namespace vantora::component
