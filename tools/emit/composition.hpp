// How names and signatures are composed: an operation's row crossed with a type, a field or a table
// gives the exported name, the C prototype, the call of the rule and the doc block.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "model/lists.hpp"
#include "module/operation.hpp"

namespace emit {

using harbor::Operation;
using harbor::model::Enumeration;
using harbor::model::Field;
using harbor::model::FlagSet;
using harbor::model::Kind;
using harbor::model::Structure;
using harbor::model::Table;

// One exported function, composed.
struct Function {
  std::string name;
  std::string result;
  std::string arguments;  // a C parameter list
  std::string call;       // the expression that the forwarder returns
  std::string doc;        // a C comment
};

// The public header, the forwarders and the names of one type or table.
struct Unit {
  std::string name;  // the type's name, or tbl_<t>, or "module"
  std::string meaning;
  std::vector<Function> functions;
};

Unit module_unit();
Unit unit_of(const Enumeration &type);
Unit unit_of(const FlagSet &type);
Unit unit_of(const Structure &type);
Unit unit_of(const Table &table);

// Adds the text in lines of less than 100 columns, the first behind first, the others behind next.
void wrap(std::string &out, std::string_view text, std::string_view first, std::string_view next);

std::string storage_type(const Field &field);
std::string_view form_of(const Field &field);  // as the headers name it: "scalar", "arm"
std::string key_part(const Table &table);      // <record>_<field>, or <key type>_
std::string replaced(std::string text, std::string_view from, std::string_view to);
std::string with_counts(std::string_view text);  // $tables and $records filled in

}  // namespace emit
