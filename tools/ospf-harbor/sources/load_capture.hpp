// `load capture`: reads packet captures, or listens on an interface, and puts the network that they
// show into the tables. Files are read together in the order of their packets' times, so that
// captures of several links of one network make one picture. Nothing is ever sent. `collect` keeps
// a store up with what it hears.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "ospf_tables/session.hpp"
#include "sources/heard.hpp"

namespace tool {

struct CaptureOptions {
  std::vector<std::string> files;    // "-" is standard input
  std::string interface;             // to listen on; then there are no files
  unsigned seconds = 0;              // how long; 0 is until SIGINT or SIGTERM
  std::string at{};                  // only what was heard until then, see time_point.hpp
  Heard *heard = nullptr;            // takes what happened meanwhile
  bool json = false;                 // the report as one JSON object a line
  bool as_heard = false;             // the ages of LSAs, not as of the end
  std::vector<std::string> names{};  // of the files for people, where these are others
};

// Says what was loaded on `report`, unless that is null, and what was wrong to standard error, by
// kind with the number of the first packet. 0 when all was sound; 1 when something was not and the
// rest is loaded. With no OSPF packet at all the tree stays as it was.
int load_capture(ospf_tables::Session &session, const CaptureOptions &options,
                 std::FILE *report = stdout);

// Listens on the interface, and within a second of a change has it committed to the store: an LSA,
// an adjacency, an interface, a router that fell silent. Timers are told as of the last commit,
// ages as LSAs were heard. Says how much on standard output when it ends. 0 when all was sound,
// else as load_capture.
int collect_capture(ospf_tables::Session &session, const CaptureOptions &options);

}  // namespace tool
