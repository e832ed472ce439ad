// What an exported operation is, as a row beside the rule that it calls. The emitter crosses these
// rows with the schema and writes the public headers, the one-line forwarders and the export list;
// no composed name is written by hand.
//
// A code in errors is its name in kelp/base.h, to which the emitter adds the number. Placeholders
// in result, arguments, brief and ownership:
//   $T  the C type of the object            $V  the C type of a field's value
//   $F  the C type that a field, an array's element or an arm is stored as
//   $P  the C type of a reference's table   $O  the C type of a record's object
//   $K  the C type of a table's pkey object
//   $type $field $meaning $table $object    names and the row's sentence, in texts
//   $getters $setters                       one argument for each field of the bulk forms
//   $tables $records                        how many the schema has, in the module's texts
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "model/schema.hpp"

namespace harbor {

struct Operation {
  std::string_view
      suffix;  // behind <type>_, <type>_<field>_, tbl_<t>_, tbl_<t>_<k>_ or tbl_<t>_<o>_
  std::string_view result;
  std::string_view arguments;
  // The rule in namespace harbor. A bare name is called with all arguments; a call expression is
  // taken as it stands, for operations that are a rule with some arguments fixed.
  std::string_view rule;
  std::string_view brief;
  std::string_view errors = "none";
  std::string_view ownership = {};
  bool unsafe_twin = false;   // the same operation is exported with _unsafe behind its name too
  std::uint8_t vft_slot = 0;  // KELP_VFT_...: where a table's vft has the unsafe twin; 0 for none
  bool single_underscore = false;  // keeps one underscore where a composite key's part ends in two
};

// The arguments that nearly all operations share.
inline constexpr std::string_view no_lock =
    "none is taken; the caller owns what it passes for the length of the call";
inline constexpr std::string_view caller_lock =
    "none is taken; the caller holds the database's lock";

// Operations of the module, where suffix is the whole name, of a whole enumeration, flag set or
// structure, of a field, of a table. A family's name is what the public doc blocks call it, with
// the header that defines it as the place to look; holds says which fields have it.
struct Family {
  std::string_view name;
  std::span<const Operation> operations;
  std::string_view header = __builtin_FILE();
};
struct FieldFamily {
  std::string_view name;
  bool (*holds)(const model::Field &);
  std::span<const Operation> operations;
  std::string_view header = __builtin_FILE();
};
// per_key operations carry the key part of the table's names, per_object ones the object's type.
enum class TableScope : unsigned char { table, per_key, per_object };
struct TableFamily {
  std::string_view name;
  TableScope scope;
  std::span<const Operation> operations;
  std::string_view header = __builtin_FILE();
};

}  // namespace harbor
