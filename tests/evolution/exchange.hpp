// What a peer program does with objects of its own edition's types: makes them, sets fields by the
// path of their names, and shows them as lines of text. All through exported functions, found by
// their composed names; only by-reference fields, whose identifiers name no table here, are written
// and read in memory. A failure is thrown with what failed; an exchange of images ends by it.
#pragma once

#include <kelp/embed.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "model/layout.hpp"

namespace evolution {

using Path = std::vector<std::string>;
Path split(const std::string &text, char separator);

// "0408".
std::string hexadecimal(const std::uint8_t *bytes, std::size_t count);

[[noreturn]] void give_up(const std::string &what);
void must_be_zero(std::uint32_t err, const std::string &what);

// An exported function by its name.
void *exported(const std::string &name);
template <typename Result, typename... Arguments>
Result call(const std::string &name, Arguments... arguments) {
  return reinterpret_cast<Result (*)(Arguments...)>(exported(name))(arguments...);
}

inline constexpr std::uint32_t space = 0;

inline std::string of(const harbor::model::Structure &type, const char *suffix) {
  return std::string(type.name) + "_" + suffix;
}
inline std::string of(const harbor::model::Structure &type, const harbor::model::Field &field,
                      const char *suffix) {
  return of(type, "") + std::string(field.name) + "_" + suffix;
}

// A field in memory.
template <typename Value>
Value &at(const harbor::model::Structure &type, const harbor::model::Field &field, void *object) {
  return *reinterpret_cast<Value *>(static_cast<std::uint8_t *>(object) +
                                    harbor::model::offset(type, field));
}

// A row by its name, null when there is none.
template <typename List>
auto *found(const List &list, std::string_view name) {
  for (const auto *row : list) {
    if (row->name == name) return row;
  }
  return static_cast<decltype(list[0])>(nullptr);
}

// An object, or the record around one or two of them, by the name of its type or table.
class Exchanged {
 public:
  // tbl_<t> makes a record of that table, any other name an object of that type.
  Exchanged(kelp_handle *handle, const std::string &name);
  // The objects of a record that stands in a table.
  Exchanged(kelp_handle *handle, const std::string &table, void *record);

  // "<path> <value>": a number, text, address, identifier or list of elements; an arm becomes the
  // selected one, {} where it is a structure. "." is the value of an enumeration or flag set.
  void set_value(const std::string &path, const std::string &value);
  // The state byte of a field, and those of an array's elements.
  void set_state(const std::string &path, const std::string &value);
  void set_element_states(const std::string &path, const std::string &values);
  // The object is to carry an ra-data block.
  void mark_ra_data();

  // The record of a table's objects, made when first asked for.
  void *record();
  // The object of a structure, or the last one of a record.
  void *object() const { return objects_.back().second; }

  std::vector<std::uint8_t> image();
  // Reads an image into the object, or into a new record, and gives the bytes consumed.
  std::uint32_t read(const std::vector<std::uint8_t> &image, bool reuse);

  // A line for each field: path, code, value, variant, state.
  //   area_id 0 10 - 2
  // A "-" stands for what there is none of. raised: each object is brought to its type's highest
  // variant first, so that fields are seen that its own variant refuses.
  std::vector<std::string> show(bool raised) const;

 private:
  std::vector<const harbor::model::Structure *> types_of_table();
  void with_field(const std::string &path,
                  const std::function<void(const harbor::model::Structure &,
                                           const harbor::model::Field &, void *)> &act);
  void set_field(const harbor::model::Structure &type, const harbor::model::Field &field,
                 void *object, const std::string &value);
  // Calls set(suffix, arguments) for each of the elements, which commas part.
  template <typename Set>
  void set_elements(const harbor::model::Field &field, const std::string &values, Set set);
  // A new arm, with the value where it is no structure.
  void *arm_of(const harbor::model::Field &field, const std::string &value, std::uint32_t *err);
  void set_light_value(const std::string &value);

  kelp_handle *handle_;
  std::string name_;
  const harbor::model::Table *table_ = nullptr;
  void *record_ = nullptr;
  // The objects and their types: one, or a key and its data. No structure: enumeration or flag set.
  std::vector<std::pair<const harbor::model::Structure *, void *>> objects_;
};

}  // namespace evolution
