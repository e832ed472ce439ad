// Values of an image as people read them. Called by the walk when somebody looks on.
#pragma once

#include <span>

#include "fixed_text.hpp"
#include "model/schema.hpp"

namespace ospf_harbor_check {

using Bytes = std::span<const std::uint8_t>;

// A number in network byte order.
std::uint64_t number_in(Bytes bytes);

// The number that an object holds for one on the wire.
std::uint32_t held_value(const harbor::model::Enumeration &type, std::uint32_t wire);

void put_real(TextBuffer &text, Bytes bytes);
void put_quoted(TextBuffer &text, Bytes bytes);
void put_digits(TextBuffer &text, Bytes bytes);
void put_address(TextBuffer &text, std::uint8_t family, Bytes bytes);
void put_member(TextBuffer &text, const harbor::model::Enumeration &type, std::uint32_t wire);
void put_members(TextBuffer &text, const harbor::model::FlagSet &type, std::uint8_t flags);

}  // namespace ospf_harbor_check
