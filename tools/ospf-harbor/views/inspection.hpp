// `ospf-harbor inspect LIBRARY`: prints what a library's file carries for tools: build record, type
// manifest and message tables, as text for people or as JSON, one object a line.
#pragma once

#include <ostream>
#include <string>

namespace tool {

struct InspectOptions {
  std::string shared_object;
  bool messages = false;  // every message, not just counts
  bool json = false;
};

// What can be read goes to out; what is wrong with any part, to complaints, with 1 as the result.
// Throws InputError for a file that cannot be read at all.
int inspect(const InspectOptions &options, std::ostream &out, std::ostream &complaints);

}  // namespace tool
