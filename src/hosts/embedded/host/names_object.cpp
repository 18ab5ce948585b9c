// Names over an open workbook.
#include "host/objects.h"

namespace vantora::embedded {
namespace {

class EmbeddedName : public host::Name {
 public:
  EmbeddedName(BookHandle book, NameKey key) : book_(std::move(book)), key_(std::move(key)) {}

  std::string OwnName() override { return book_->names().DisplayName(key_); }
  host::RangePtr RefersToRange() override;
  void Delete() override;

 private:
  // The name that this one stands for; refuses one that was deleted.
  const DefinedName& Defined();

  BookHandle book_;
  NameKey key_;
};

const DefinedName& EmbeddedName::Defined() {
  const DefinedName* name = book_->names().Get(key_);
  if (!name) {
    Refuse("Application-defined or object-defined error: the name \"" + key_.name +
           "\" was deleted.");
  }
  return *name;
}

host::RangePtr EmbeddedName::RefersToRange() {
  auto place = book_->PlaceOf(Defined());
  if (!place) {
    Refuse("Application-defined or object-defined error: the name \"" + key_.name +
           "\" does not refer to a range.");
  }
  return MakeRange(book_, place->sheet, place->area);
}

void EmbeddedName::Delete() {
  Defined();
  book_->names().Delete(key_);
}

class EmbeddedNames : public host::Names {
 public:
  explicit EmbeddedNames(BookHandle book) : book_(std::move(book)) {}

  host::NamePtr Item(std::string_view name) override;
  bool Add(std::string_view name, std::string_view refers_to_r1c1) override {
    return book_->DefineName(name, refers_to_r1c1);
  }

 private:
  BookHandle book_;
};

host::NamePtr EmbeddedNames::Item(std::string_view name) {
  std::optional<NameKey> key = book_->names().Find(name, book_->active_sheet());
  if (!key) {
    Refuse("Application-defined or object-defined error: the workbook has no name \"" +
           std::string(name) + "\".");
  }
  return MakeName(book_, std::move(*key));
}

}  // namespace

host::NamesPtr MakeNames(BookHandle book) {
  return std::make_shared<EmbeddedNames>(std::move(book));
}

host::NamePtr MakeName(BookHandle book, NameKey key) {
  return std::make_shared<EmbeddedName>(std::move(book), std::move(key));
}

}  // namespace vantora::embedded
