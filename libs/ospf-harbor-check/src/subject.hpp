// What an image or document is of: a kind and a name, looked up in the rows of the schema. Called
// first by every entry of the library.
#pragma once

#include <kelp/wire.h>

#include <string_view>

#include "model/lists.hpp"
#include "ospf_harbor_check.h"

namespace ospf_harbor_check {

namespace model = harbor::model;

// The frame of a record: the message header and the table's identity.
inline constexpr std::size_t luid_size = 16;
inline constexpr std::size_t frame_size = KELP_WIRE_MESSAGE_HEADER_SIZE + luid_size;

// Exactly one row is there; none in what find_subject does not know.
struct Subject {
  const model::Structure *structure = nullptr;
  const model::Enumeration *enumeration = nullptr;
  const model::FlagSet *flag_set = nullptr;
  const model::Table *table = nullptr;

  bool is_known() const {
    return structure != nullptr || enumeration != nullptr || flag_set != nullptr ||
           table != nullptr;
  }
};

Subject find_subject(std::uint32_t kind, std::string_view name);

// The name with its prefix, as a text that stays.
const char *table_name(const model::Table &table);

// The table of an identity of 16 bytes; null for none.
const model::Table *table_with(const std::uint8_t *luid);

// Whether the bytes are the table's identity.
bool has_luid(const model::Table &table, const std::uint8_t *luid);

}  // namespace ospf_harbor_check
