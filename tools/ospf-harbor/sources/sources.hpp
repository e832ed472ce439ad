// What `--from` names, loaded into the tables of this run: captures, folders of captures, folders
// with what a routing daemon says, folders of such folders, tree streams and trees' XML, told apart
// by what is there. Several routers' answers are one network, as a capture of it would be. Files
// may be packed by gzip, and "-" is standard input.
#pragma once

#include <string>
#include <vector>

#include "ospf_tables/session.hpp"
#include "sources/heard.hpp"

namespace tool {

inline constexpr char source_help[] =
    "Captures or folders of them, folders with routers' answers, tree streams or trees' XML; files "
    "may be packed by gzip, and - is standard input";

struct SourceOptions {
  std::string at{};        // of captures only what was heard until then, see time_point.hpp
  Heard *heard = nullptr;  // takes what the tables have no room for
  bool as_heard = false;   // the ages of captured LSAs, not as of the last packet
};

// Captures are read together. Reports on what was loaded are left out, so that the output of a
// command is its own; what is wrong is told on standard error. 0 when all was sound, 1 when
// something was not and the rest is loaded. Throws InputError for a source that is none.
int load_sources(ospf_tables::Session &session, const std::vector<std::string> &sources,
                 const SourceOptions &options = {});

}  // namespace tool
