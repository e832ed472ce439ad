// `ospf-harbor trace FILE`: prints binary trace records, one a line, with texts out of the file of
// the library that wrote them.
#pragma once

#include <ostream>
#include <string>

namespace tool {

struct TraceOptions {
  std::string file;
  std::string shared_object;  // empty: the one that this program runs with
  std::string level = "debug";
  bool tells_hidden = false;  // says how many records were of a lower level
  bool follow = false;
  double seconds = 0;  // how long to follow, 0 for ever
};

// Lines go to out, what is wrong with single records to complaints. 0, or 1 when a record had no
// text, or bytes that are no record were passed over. Throws for a file that cannot be read on,
// with what was before it printed, and for one that holds no record at all.
int print_trace(const TraceOptions &options, std::ostream &out, std::ostream &complaints);

}  // namespace tool
