// The messages as they are stated, written down here once more and on their own: what the library
// stores and what it emits is held against these lists, so nothing here is taken from the catalogue
// that the library is built from.
#pragma once

#include <cstdint>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace messages {

enum Level : std::uint32_t { fatal = 0, error = 3, information = 6, debug = 7, none = 0xFF };

// <type> and <field> stand for names, on the type side; <t>, <k> and <record> on the table side.
struct StatedForm {
  std::string_view text;
  Level level;
  std::uint32_t rows;
};
inline void PrintTo(const StatedForm &form, std::ostream *out) { *out << form.text; }

// Texts of the type side, in the order of their number of rows.
std::span<const StatedForm> stated_type_forms();

// Texts of the table side with their rows; the levels stand in the block of a table.
std::span<const StatedForm> stated_table_forms();

// A message of a table's block, by its offset in the block of a table whose key is a field.
// <table> is the table's name, <object> the type of an object of the record, <key> the key with the
// type that holds it.
struct BlockMessage {
  std::uint32_t offset;
  std::string_view text;
  Level level;  // none: never emitted
};
inline void PrintTo(const BlockMessage &message, std::ostream *out) { *out << message.text; }
std::span<const BlockMessage> stated_block();

// The two messages behind the last block.
inline constexpr BlockMessage vft_initializing{1380, "Initializing table vft for %s", debug};
inline constexpr BlockMessage vft_error_present{
    1381, "Error already set when requesting ospf_harbor_oper table vft", debug};

// The digits of the emitter that fits a text: 1 for %s, 4 for %d and %u, 5 for %p, 0 for none.
std::string signature_of(std::string_view text);

// Whether a stored text is a row of the form.
class FormPattern {
 public:
  explicit FormPattern(std::string_view form);
  bool matches(std::string_view text) const;

 private:
  // The fixed pieces, and whether the name behind each may be empty and hold blanks.
  std::vector<std::string> pieces_;
  std::vector<bool> may_be_empty_;
};

std::string filled(std::string text, std::string_view placeholder, std::string_view name);

}  // namespace messages
