// Shows what each byte of a tree stream, or of record images one behind the other, is: offset,
// bytes in hexadecimal, meaning. What is sound is named; then comes what is wrong, and the bytes
// behind it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "tree_exchange/table_rules.hpp"

namespace tree_exchange {

using LineSink = std::function<void(std::string_view line)>;

// A tree stream. The text of what is wrong with it, empty for nothing.
std::string annotate_stream(ByteView bytes, const LineSink &line);

// An image of `kind` (enum ospf_harbor_check_kind) of the type or table of that name; record images
// of any table, one or more, with an empty name. Result as above.
std::string annotate_image(std::uint32_t kind, const std::string &name, ByteView bytes,
                           const LineSink &line);

}  // namespace tree_exchange
