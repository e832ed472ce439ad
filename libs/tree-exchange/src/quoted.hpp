// A text as error messages show it.
#pragma once

#include <string>
#include <string_view>

namespace tree_exchange {

inline std::string quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

}  // namespace tree_exchange
