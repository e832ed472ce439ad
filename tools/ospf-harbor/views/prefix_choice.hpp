// A prefix that people ask for, with how others have to match it.
#pragma once

#include <string>

#include "ospf_routes/address.hpp"

namespace tool {

inline constexpr char prefix_help[] =
    "Only this prefix; with + behind it also those within it, with @ those that cover it";

// "10.0.0.0/8" alone, with "+" also what is within it, with "@" what covers it.
struct PrefixChoice {
  enum class Match { all, exact, longer, covering };
  Match match = Match::all;
  std::string text;  // without the sign

  // Throws UsageError when no family has such a prefix.
  static PrefixChoice parse(const std::string &text);
  bool meets(const ospf_routes::Prefix &prefix, ospf_routes::Family family) const;
  // Does not meet it, but covers what was asked for or is within it, or is of the same address.
  bool is_near(const ospf_routes::Prefix &prefix, ospf_routes::Family family) const;
};

}  // namespace tool
