// What the tests of commands on recorded networks share: where a network's answers and packets are,
// a command with a source behind it, and what it prints as JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "support/processes.hpp"

namespace tool_tests {

class RecordingTest : public ProcessTest {
 protected:
  using ordered_json = nlohmann::ordered_json;

  static std::string recording(const std::string &name) {
    return places::recordings() + "/" + name;
  }
  static std::string capture_of(const std::string &name) { return recording(name) + "/all.pcap"; }

  Said ask(const std::string &line, const std::string &source) {
    std::istringstream in(line);
    std::vector<std::string> words;
    for (std::string word; in >> word;) words.push_back(word);
    words.insert(words.end(), {"--from", source});
    return run(words);
  }

  static std::vector<ordered_json> lines(const std::string &text) {
    std::vector<ordered_json> all;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) all.push_back(ordered_json::parse(line));
    return all;
  }
};

}  // namespace tool_tests
