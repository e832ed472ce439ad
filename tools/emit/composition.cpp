#include "composition.hpp"

#include <kelp/base.h>

#include <stdexcept>

#include "families.hpp"

namespace emit {

using harbor::model::all_tables;
using harbor::model::record_count;
using harbor::model::Shape;

std::string replaced(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos;
       at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

std::string with_counts(std::string_view text) {
  return replaced(replaced(std::string(text), "$tables", std::to_string(all_tables.size())),
                  "$records", std::to_string(record_count));
}

void wrap(std::string &out, std::string_view text, std::string_view first, std::string_view next) {
  std::string line(first);
  bool empty = true;
  std::size_t at = 0;
  while (at < text.size()) {
    std::size_t end = text.find(' ', at);
    if (end == std::string_view::npos) end = text.size();
    const std::string_view word = text.substr(at, end - at);
    at = end + 1;
    if (word.empty()) continue;
    if (!empty && line.size() + 1 + word.size() > 98) {
      out += line + "\n";
      line = next;
      empty = true;
    }
    if (!empty) line += ' ';
    line += word;
    empty = false;
  }
  out += line + "\n";
}

namespace {

std::string number_type(Kind kind) {
  switch (kind) {
    case Kind::u8:
      return "uint8_t";
    case Kind::u16:
      return "uint16_t";
    case Kind::u32:
    case Kind::counter:
      return "uint32_t";
    case Kind::real:
      return "double";
    case Kind::boolean:
      return "kelp_boolean";
    case Kind::address:
      return "ip_address";
    case Kind::text:
      return "kelp_vstring";
    default:
      return {};
  }
}

std::string value_type(const Field &field) {
  const Kind kind = field.kind == Kind::array ? field.held : field.kind;
  if (kind == Kind::enumeration || kind == Kind::flags) return "uint32_t";
  return number_type(kind);
}

// One argument for each field of the bulk forms, with a comma behind each.
std::string bulk_arguments(const Structure &type, bool getters) {
  std::string list;
  for (const Field *field : type.fields) {
    if (!harbor::structure_values::is_in_bulk(type, *field, !getters)) continue;
    list += value_type(*field) + (getters ? " *" : " ") + std::string(field->name) + ", ";
  }
  return list;
}

// What the placeholders of a row stand for at one place of the schema.
struct Place {
  std::string prefix;     // what stands before the suffix
  std::string cr_prefix;  // the same for operations that keep a single underscore
  std::string bindings;   // template arguments of the rule, or its first argument
  bool binds_by_argument = false;
  std::vector<std::pair<std::string, std::string>> words;
};

std::string filled(std::string_view text, const Place &place) {
  std::string result(text);
  for (const auto &[from, to] : place.words) result = replaced(result, from, to);
  return result;
}

// The names of the parameters, in order.
std::vector<std::string> parameter_names(const std::string &arguments) {
  std::vector<std::string> names;
  std::string current;
  const auto take = [&] {
    std::size_t end = current.find_last_not_of(" ");
    if (end == std::string::npos) return;
    current.resize(end + 1);
    const std::size_t begin = current.find_last_of(" *&") + 1;
    if (current.substr(begin) != "void") names.push_back(current.substr(begin));
    current.clear();
  };
  for (char c : arguments) {
    if (c == ',') {
      take();
    } else {
      current += c;
    }
  }
  take();
  return names;
}

std::string call_of(const Operation &operation, const Place &place, const std::string &arguments) {
  std::string call;
  if (operation.rule.find('(') != std::string_view::npos) {
    call = filled(operation.rule, place);
  } else {
    call = std::string(operation.rule);
    if (!place.binds_by_argument && !place.bindings.empty()) call += "<" + place.bindings + ">";
    call += "(";
    bool first = true;
    if (place.binds_by_argument && !place.bindings.empty()) {
      call += place.bindings;
      first = false;
    }
    for (const std::string &name : parameter_names(arguments)) {
      call += (first ? "" : ", ") + name;
      first = false;
    }
    call += ")";
  }
  return "harbor::" + call;
}

struct Code {
  std::string_view name;
  int number;
};
#define CODE(name) \
  Code { #name, name }
constexpr std::array codes{
    CODE(KELP_ERR_PERMISSION),  CODE(KELP_ERR_NOT_FOUND), CODE(KELP_ERR_INPUT_OUTPUT),
    CODE(KELP_ERR_TOO_LONG),    CODE(KELP_ERR_AGAIN),     CODE(KELP_ERR_NO_MEMORY),
    CODE(KELP_ERR_BAD_ADDRESS), CODE(KELP_ERR_BUSY),      CODE(KELP_ERR_EXISTS),
    CODE(KELP_ERR_INVALID),     CODE(KELP_ERR_NO_SPACE),  CODE(KELP_ERR_DEADLOCK),
    CODE(KELP_ERR_EPOCH),       CODE(KELP_ERR_NO_ROOM),   CODE(KELP_ERR_NOT_SUPPORTED),
    CODE(KELP_ERR_TIMED_OUT),
};
#undef CODE

int number_of(std::string_view name) {
  for (const Code &code : codes) {
    if (code.name == name) return code.number;
  }
  throw std::runtime_error("an operation's row names " + std::string(name) +
                           ", a code that tools/emit/composition.cpp does not list");
}

// With its number behind each code's name.
std::string with_numbers(std::string text) {
  for (std::size_t at = text.find("KELP_ERR_"); at != std::string::npos;
       at = text.find("KELP_ERR_", at)) {
    std::size_t end = at;
    while (end < text.size() && (text[end] == '_' || (text[end] >= 'A' && text[end] <= 'Z'))) ++end;
    const std::string number =
        " (" + std::to_string(number_of(std::string_view(text).substr(at, end - at))) + ")";
    text.insert(end, number);
    at = end + number.size();
  }
  return text;
}

// The header of a family as the compiler saw it, from the project's folder on.
std::string project_path(std::string_view header) {
  return std::string(header.substr(header.rfind("src/")));
}

template <typename Family>
std::string doc_of(const Operation &operation, const Place &place, const Family &family,
                   std::string_view lock) {
  std::string doc;
  wrap(doc, filled(with_counts(operation.brief), place), "/* ", " * ");
  wrap(doc, with_numbers(filled(operation.errors, place)), " * Errors: ", " *   ");
  if (!operation.ownership.empty()) {
    wrap(doc, filled(operation.ownership, place), " * Ownership: ", " *   ");
  }
  wrap(doc, lock, " * Lock: ", " *   ");
  doc += " * Family: " + std::string(family.name) + " (" + project_path(family.header) + ") */\n";
  return doc;
}

template <typename Family>
void add(Unit &unit, const Operation &operation, const Place &place, const Family &family,
         std::string_view lock) {
  const std::string &prefix = operation.single_underscore ? place.cr_prefix : place.prefix;
  Function function;
  function.name = prefix + std::string(operation.suffix);
  function.result = filled(operation.result, place);
  function.arguments = filled(operation.arguments, place);
  function.call = call_of(operation, place, function.arguments);
  function.doc = doc_of(operation, place, family, lock);
  unit.functions.push_back(function);
  if (operation.unsafe_twin) {
    function.doc = "/* The same operation as " + function.name + "; neither locks. */\n";
    function.name += "_unsafe";
    unit.functions.push_back(function);
  }
}

Place place_of_type(std::string_view scope, std::string_view name) {
  Place place;
  place.prefix = place.cr_prefix = std::string(name) + "_";
  place.bindings = "harbor::model::" + std::string(scope) + "::" + std::string(name);
  place.words = {
      {"$type", std::string(name)}, {"$T", std::string(name)}, {"$bindings", place.bindings}};
  return place;
}

}  // namespace

std::string storage_type(const Field &field) {
  switch (field.kind) {
    case Kind::enumeration:
      return std::string(field.enumeration->name);
    case Kind::flags:
      return std::string(field.flag_set->name);
    case Kind::structure:
      return std::string(field.structure->name);
    case Kind::array:
    case Kind::arm:
      return field.held == Kind::structure ? std::string(field.structure->name)
                                           : number_type(field.held);
    case Kind::reference:
      return "tbl_" + std::string(harbor::model::table(field.table).name) + "_table";
    default:
      return number_type(field.kind);
  }
}

std::string_view form_of(const Field &field) {
  switch (field.kind) {
    case Kind::enumeration:
      return "enumeration";
    case Kind::flags:
      return "flag set";
    case Kind::structure:
      return "embedded";
    case Kind::counter:
      return "counter";
    case Kind::array:
      return "array";
    case Kind::reference:
      return "reference";
    case Kind::arm:
      return "arm";
    default:
      return "scalar";
  }
}

std::string key_part(const Table &table) {
  if (table.shape() == Shape::composite_key) return std::string(table.key_structure->name) + "_";
  return std::string(table.record->name) + "_" + std::string(table.key->name);
}

Unit module_unit() {
  Unit unit{"module", "Operations of the module as a whole.", {}};
  const Place place;
  for (const auto &family : harbor::module_families) {
    for (const Operation &operation : family.operations) {
      add(unit, operation, place, family, harbor::no_lock);
    }
  }
  return unit;
}

Unit unit_of(const Enumeration &type) {
  Unit unit{std::string(type.name), std::string(type.meaning), {}};
  const Place place = place_of_type("enumerations", type.name);
  for (const auto &family : harbor::enumeration_families) {
    for (const Operation &operation : family.operations) {
      add(unit, operation, place, family, harbor::no_lock);
    }
  }
  return unit;
}

Unit unit_of(const FlagSet &type) {
  Unit unit{std::string(type.name), std::string(type.meaning), {}};
  const Place place = place_of_type("flag_sets", type.name);
  for (const auto &family : harbor::flag_set_families) {
    for (const Operation &operation : family.operations) {
      add(unit, operation, place, family, harbor::no_lock);
    }
  }
  return unit;
}

Unit unit_of(const Structure &type) {
  Unit unit{std::string(type.name), std::string(type.meaning), {}};
  Place place = place_of_type("types", type.name);
  place.words.push_back({"$getters", bulk_arguments(type, true)});
  place.words.push_back({"$setters", bulk_arguments(type, false)});
  for (const auto &family : harbor::structure_families) {
    for (const Operation &operation : family.operations) {
      add(unit, operation, place, family, harbor::no_lock);
    }
  }
  for (const Field *field : type.fields) {
    Place at = place_of_type("types", type.name);
    at.prefix = at.cr_prefix = std::string(type.name) + "_" + std::string(field->name) + "_";
    at.bindings +=
        ", harbor::model::fields::" + std::string(type.name) + "::" + std::string(field->name);
    at.words.back().second = at.bindings;
    at.words.push_back({"$field", std::string(field->name)});
    at.words.push_back({"$meaning", std::string(field->meaning)});
    at.words.push_back({"$F", storage_type(*field)});
    at.words.push_back({"$P", storage_type(*field)});
    at.words.push_back({"$V", value_type(*field)});
    for (const auto &family : harbor::field_families) {
      if (!family.holds(*field)) continue;
      for (const Operation &operation : family.operations) {
        add(unit, operation, at, family, harbor::no_lock);
      }
    }
  }
  return unit;
}

Unit unit_of(const Table &table) {
  const std::string name = "tbl_" + std::string(table.name);
  Unit unit{name, std::string(table.meaning), {}};
  const bool composite = table.shape() == Shape::composite_key;
  Place place;
  place.binds_by_argument = true;
  place.bindings = "harbor::facts_of<harbor::model::tables::" + std::string(table.name) + ">";
  place.prefix = place.cr_prefix = name + "_";
  const std::string record(table.record->name);
  const std::string key(composite ? table.key_structure->name : table.record->name);
  place.words = {{"$table", name},
                 {"$bindings", place.bindings},
                 {"$encodings",
                  "harbor::encodings_of<harbor::model::tables::" + std::string(table.name) + ">"},
                 {"$K", key}};
  for (const auto &family : harbor::table_families) {
    for (const Operation &operation : family.operations) {
      switch (family.scope) {
        case harbor::TableScope::table:
          add(unit, operation, place, family, harbor::caller_lock);
          break;
        case harbor::TableScope::per_key: {
          Place at = place;
          at.prefix = name + "_" + key_part(table) + "_";
          at.cr_prefix = composite ? name + "_" + key + "_" : at.prefix;
          add(unit, operation, at, family, harbor::caller_lock);
          break;
        }
        case harbor::TableScope::per_object:
          for (std::size_t object = 0; object < (composite ? 2u : 1u); ++object) {
            Place at = place;
            const std::string type = composite && object == 0 ? key : record;
            at.prefix = at.cr_prefix = name + "_" + type + "_";
            at.words.push_back({"$object_index", std::to_string(object)});
            at.words.push_back({"$object", type});
            at.words.push_back({"$O", type});
            at.bindings += ", " + std::to_string(object);
            add(unit, operation, at, family, harbor::caller_lock);
          }
          break;
      }
    }
  }
  return unit;
}

}  // namespace emit
