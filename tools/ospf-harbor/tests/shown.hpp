// What `show` prints of a session's tree, or of what lies at a path.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

#include "views/show.hpp"

inline std::string shown(ospf_tables::Session &session, const std::string &path = "") {
  char *text = nullptr;
  std::size_t size = 0;
  std::FILE *out = open_memstream(&text, &size);
  tool::show(session, path, out);
  std::fclose(out);
  std::string result(text, size);
  std::free(text);
  return result;
}
