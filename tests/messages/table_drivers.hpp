// How each message of a table's block is driven: functions that bring about, for any table, the
// condition under which the message goes out.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "messages/table_case.hpp"

namespace messages {

// object: which object of the record, for the messages that each of them has.
using TableDriver = void (*)(const TableCase &table, std::uint32_t object);

struct OffsetDriver {
  std::uint32_t offset;
  TableDriver drive;
};

std::span<const OffsetDriver> table_drivers();   // opening and freeing
std::span<const OffsetDriver> record_drivers();  // records, their handlers, places and images

// What a type record says that has fewer variants than any object.
inline constexpr std::uint32_t no_variants = 0xFFFFFFFF;

}  // namespace messages
