// What commands tell beside their result: one line each on standard error, so that standard output
// holds nothing but what was asked for.
#pragma once

#include <cstdio>
#include <string>

#include "ospf_tables/input_error.hpp"
#include "ospf_tables/tree.hpp"
#include "tree_exchange/stream_format.hpp"

namespace tool {

inline void note(const std::string &text) {
  std::fflush(stdout);
  std::fprintf(stderr, "%s\n", ospf_tables::in_one_line(text).c_str());
}

inline std::string rows_text(std::uint64_t rows) {
  return tree_exchange::number_text(rows, "row", "rows");
}

// True, and said, when there is no tree to work on.
inline bool nothing_is_loaded(ospf_tables::Session &session, const char *command) {
  if (ospf_tables::root_table(session, false) != nullptr) return false;
  note(std::string("ospf-harbor: ") + command + ": nothing is loaded");
  return true;
}

}  // namespace tool
