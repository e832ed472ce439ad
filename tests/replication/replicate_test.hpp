// What tests of `ospf-harbor replicate` have in common: a server, and the words of the command.
#pragma once

#include "engine.hpp"

namespace replication_tests {

// Until the process has said so on standard error.
inline bool says(const tool_tests::Process &process, const std::string &text) {
  for (int tries = 0; tries < 3000; ++tries) {
    if (process.err().find(text) != std::string::npos) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

class Replicate : public tool_tests::ProcessTest {
 protected:
  std::vector<std::string> words(const std::string &direction, const std::string &store) const {
    return {"replicate", direction,  url_of(server_.port()), "--name", "site",
            "--store",   file(store)};
  }

  Server server_{folder_ / "engine"};
};

}  // namespace replication_tests
