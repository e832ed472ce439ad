// What may stand at the end of a line of the shell: commands, options, files, and what the tables
// hold, such as router IDs and paths of the tree.
#pragma once

#include <string>
#include <vector>

#include "ospf_tables/session.hpp"

namespace tool {

struct Completion {
  std::string word;
  bool is_whole = true;  // else something may follow in the same word
};

// The words that go on from `begun`, behind those of the line, in order.
std::vector<Completion> completions(ospf_tables::Session &session,
                                    const std::vector<std::string> &words,
                                    const std::string &begun);

}  // namespace tool
