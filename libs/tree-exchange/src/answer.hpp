// The lines that two processes say to each other around a tree stream.
#pragma once

#include <string>
#include <string_view>

#include "tree_exchange/handover.hpp"

namespace tree_exchange {

inline constexpr std::size_t longest_answer = 2048;
inline constexpr std::string_view accepted = "ok ";
inline constexpr std::string_view refused = "refused ";

inline std::string token_line(const Token &token) { return "token " + token + "\n"; }

inline ByteView bytes_of(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t *>(text.data()), text.size()};
}

}  // namespace tree_exchange
