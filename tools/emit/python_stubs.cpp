// The types of the Python package for editors and type checkers: a class for each type, row and
// table, with what each field gives, what it takes, and what it means. The classes themselves are
// made from docs/model.json when the package is imported.
#include <cctype>

#include "products.hpp"

namespace emit {

namespace {

using namespace harbor::model;

// ospf_area as OspfArea.
std::string python_class(std::string_view name) {
  std::string result;
  bool begins = true;
  for (const char c : name) {
    if (c != '_') result += begins ? static_cast<char>(std::toupper(c)) : c;
    begins = c == '_';
  }
  return result;
}

// By which the table of a reference is found too.
std::string python_plural(std::string_view name) {
  if (name.ends_with("s")) return std::string(name);
  if (name.ends_with("y")) return std::string(name.substr(0, name.size() - 1)) + "ies";
  return std::string(name) + "s";
}

struct PythonValue {
  std::string given;
  std::string taken;  // empty for what is not set
};

PythonValue python_number(Kind kind) {
  switch (kind) {
    case Kind::u32:
      return {"int", "Number"};
    case Kind::real:
      return {"float", "float"};
    case Kind::boolean:
      return {"bool", "bool"};
    case Kind::address:
      return {"Address | None", "AddressLike"};
    case Kind::text:
      return {"str", "str | bytes"};
    default:
      return {"int", "int"};
  }
}

PythonValue python_array(Kind element) {
  if (element == Kind::u8) return {"bytes", "bytes | bytearray | str | Iterable[int]"};
  const PythonValue value = python_number(element);
  return {"list[" + value.given + "]", "Iterable[" + value.taken + "]"};
}

PythonValue python_value(const Field &field) {
  const auto object = [&](std::string_view type) {
    return PythonValue{python_class(type), python_class(type) + " | Mapping[str, Any]"};
  };
  switch (field.kind) {
    case Kind::enumeration:
      return {python_class(field.enumeration->name),
              python_class(field.enumeration->name) + " | int | str"};
    case Kind::flags:
      return {python_class(field.flag_set->name),
              python_class(field.flag_set->name) + " | int | str | Iterable[str]"};
    case Kind::structure:
      return object(field.structure->name);
    case Kind::counter:
      return {"int", ""};
    case Kind::array:
      return python_array(field.held);
    case Kind::reference: {
      const std::string table =
          python_class(harbor::model::table(field.table).name) + "Table | None";
      return {table, table};
    }
    case Kind::arm: {
      PythonValue value =
          field.held == Kind::structure ? object(field.structure->name) : python_number(field.held);
      return {value.given + " | None", value.taken + " | None"};
    }
    default:
      return python_number(field.kind);
  }
}

std::string python_property(const Field &field) {
  const std::string name(field.name);
  const PythonValue value = python_value(field);
  std::string text = "    @property\n    def " + name + "(self) -> " + value.given +
                     ":\n        \"\"\"" + std::string(field.meaning) + "\"\"\"\n";
  if (!value.taken.empty()) {
    text += "    @" + name + ".setter\n    def " + name + "(self, value: " + value.taken +
            ") -> None: ...\n";
  }
  if (field.kind == Kind::reference && python_plural(name) != name) {
    text += "    " + python_plural(name) + " = " + name + "\n";
  }
  return text;
}

std::string python_head(const std::string &name, std::string_view bases, std::string_view meaning) {
  return "\n\nclass " + name + "(" + std::string(bases) + "):\n    \"\"\"" + std::string(meaning) +
         "\"\"\"\n";
}

std::string python_members(std::string_view name, std::string_view base, std::string_view meaning,
                           std::span<const Member> members, bool are_bits) {
  std::string text = python_head(python_class(name), base, meaning);
  for (const Member &member : members) {
    text += "    " + std::string(member.name) + " = " +
            std::to_string(are_bits ? 1u << member.value : member.value) + "  # " +
            std::string(member.meaning) + "\n";
  }
  return text;
}

std::string python_table(const Table &table) {
  const std::string row = python_class(table.name) + "Row";
  const std::string key = table.key_structure != nullptr ? python_class(table.key_structure->name)
                                                         : python_value(*table.key).given;
  return python_head(row, "Row, " + python_class(table.record->name), table.meaning) +
         "    @property\n    def key(self) -> " + key +
         ": ...\n    @property\n    def table(self) -> " + python_class(table.name) +
         "Table: ...\n" + python_head(python_class(table.name) + "Table", "Table", table.meaning) +
         "    def __getitem__(self, key: Any) -> " + row +
         ": ...\n    def rows(self, source: int = 1) -> Iterator[" + row +
         "]: ...\n    def values(self) -> Iterator[" + row +
         "]: ...  # type: ignore[override]\n    def first(self) -> " + row +
         " | None: ...\n    def add(self, fields: Mapping[str, Any] | Structure | None = None, /, "
         "*,\n            key: Any = None, source: int = 1, **more: Any) -> " +
         row + ": ...\n";
}

constexpr std::string_view stubs_head =
    "# The classes of the model. Written by the emitter from the schema; `make emit` renews it.\n"
    "from ipaddress import (IPv4Address, IPv4Interface, IPv4Network, IPv6Address, "
    "IPv6Interface,\n                       IPv6Network)\n"
    "from typing import Any, Iterable, Iterator, Mapping, Union\n\n"
    "from ._objects import Structure\n"
    "from ._row import Row\n"
    "from ._tables import Table\n"
    "from ._values import Enumeration, Flags\n\n"
    "Address = Union[IPv4Address, IPv6Address, IPv4Interface, IPv6Interface]\n"
    "AddressLike = Union[Address, IPv4Network, IPv6Network, str, None]\n"
    "Number = Union[int, str, IPv4Address]\n";

}  // namespace

void write_python_stubs(Writer &writer) {
  std::string text(stubs_head);
  for (const Enumeration *type : all_enumerations) {
    text += python_members(type->name, "Enumeration", type->meaning, type->members, false);
  }
  for (const FlagSet *type : all_flag_sets) {
    text += python_members(type->name, "Flags", type->meaning, type->members, true);
  }
  for (const Structure *type : structures) {
    text += python_head(python_class(type->name), "Structure", type->meaning);
    for (const Field *field : type->fields) text += python_property(*field);
  }
  for (const Table *table : all_tables) text += python_table(*table);
  writer.file("python/ospf_harbor/_types.pyi", text);
}

}  // namespace emit
