// Names over an open workbook.
#include "host/objects.h"

namespace vantora::embedded {
namespace {

class EmbeddedName : public host::Name {
 public:
  EmbeddedName(BookHandle book, std::string name)
      : book_(std::move(book)), name_(std::move(name)) {}

  std::string OwnName() override { return name_; }

  host::RangePtr RefersToRange() override;

  void Delete() override;

 private:
  BookHandle book_;
  std::string name_;
};

host::RangePtr EmbeddedName::RefersToRange() {
  const DefinedName* name = book_->model().FindName(name_, book_->active_sheet());
  auto place = name ? book_->PlaceOf(*name) : std::nullopt;
  if (!place) {
    Refuse("Application-defined or object-defined error: the name \"" + name_ +
           "\" does not refer to a range.");
  }
  return MakeRange(book_, place->sheet, place->area);
}

void EmbeddedName::Delete() { RefuseMember("Name.Delete"); }

class EmbeddedNames : public host::Names {
 public:
  explicit EmbeddedNames(BookHandle book) : book_(std::move(book)) {}

  host::NamePtr Item(std::string_view name) override;

  bool Add(std::string_view name, std::string_view refers_to_r1c1) override;

 private:
  BookHandle book_;
};

host::NamePtr EmbeddedNames::Item(std::string_view name) {
  if (!book_->model().FindName(name, book_->active_sheet())) {
    Refuse("Application-defined or object-defined error: the workbook has no name \"" +
           std::string(name) + "\".");
  }
  return std::make_shared<EmbeddedName>(book_, std::string(name));
}

bool EmbeddedNames::Add(std::string_view, std::string_view) { RefuseMember("Names.Add"); }

}  // namespace

host::NamesPtr MakeNames(BookHandle book) {
  return std::make_shared<EmbeddedNames>(std::move(book));
}

}  // namespace vantora::embedded
