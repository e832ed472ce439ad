// Small texts of FRR's answers, JSON and vtysh alike, as the numbers that stand in LSAs. Each
// refuses what it does not know by JsonView::fail.
#pragma once

#include <string>
#include <string_view>

#include "ospf_decode/address.hpp"
#include "router_answers/json_view.hpp"

namespace router_answers {

// A dotted quad.
std::uint32_t dotted_of(const JsonView &view, const char *expected);
std::uint32_t dotted_of(const JsonView &view, const std::string &text, const char *expected);

// An area: "0.0.0.1", "1", with a note such as " [Stub]" behind it.
std::uint32_t area_of(const JsonView &view, const std::string &text);

// A number in hexadecimal digits, with or without 0x.
std::uint32_t hexadecimal_of(const JsonView &view, std::uint32_t highest, const char *expected);

// Flags as FRR draws them: names where a flag is set, dashes where it is not, the highest first:
// "*|O|-|-|-|-|E|-", "--|P|--|--|--". Flags that it draws without a separator are a letter each:
// "------EB". A star stands for a flag that the router does not tell and counts as not set.
std::uint32_t flags_of(const JsonView &view, unsigned count, const char *expected);
std::uint32_t letters_of(const JsonView &view, unsigned count, const char *expected);

ospf_decode::Ipv6Bytes address_v6_of(const JsonView &view, const char *expected);
// "2001:db8::/32", "10.0.0.0/8" (of an IPv4 address family).
ospf_decode::PrefixV3 prefix_of(const JsonView &view, const char *expected);

std::uint32_t mask_of_length(std::uint32_t length);

}  // namespace router_answers
