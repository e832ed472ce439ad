// The worked examples of the man pages: each that shows what is printed shows just that, on a
// recorded network.
#include <gtest/gtest.h>

#include "commands/commands.hpp"
#include "recording_test.hpp"

namespace {

struct Example {
  const char *command;
  const char *network;  // whose capture the example calls site.pcap
  int status;
};

class Examples : public tool_tests::RecordingTest, public testing::WithParamInterface<Example> {};

// Lines that the page breaks are one where they are printed.
std::string without_breaks(std::string text) {
  std::erase(text, '\n');
  return text;
}

TEST_P(Examples, ShowWhatIsPrinted) {
  const auto [name, network, status] = GetParam();
  const tool::Command *command = tool::find_command(name);
  ASSERT_NE(command, nullptr);
  ASSERT_NE(command->example, nullptr);
  const std::string example = command->example;
  const std::string prompt = "$ ospf-harbor ";
  ASSERT_TRUE(example.starts_with(prompt));
  const std::size_t typed = example.find('\n');
  std::istringstream in(example.substr(prompt.size(), typed - prompt.size()));
  std::vector<std::string> words;
  bool first_line = false;
  for (std::string word; in >> word;) {
    first_line = word == "|";  // to "head -1"
    if (first_line) break;
    words.push_back(word == "site.pcap" ? capture_of(network) : word);
  }
  const Said said = run(words);
  EXPECT_EQ(said.status, status) << said.err;
  const std::string printed = first_line ? said.out.substr(0, said.out.find('\n')) : said.out;
  const std::string shown = example.substr(typed + 1);
  // A second command, without its output, may stand below.
  EXPECT_EQ(without_breaks(printed), without_breaks(shown.substr(0, shown.find("\n$ "))));
}

INSTANTIATE_TEST_SUITE_P(
    Commands, Examples,
    testing::Values(Example{"check", "sameid", 1}, Example{"diff", "forged", 1},
                    Example{"events", "mismatch", 0}, Example{"failures", "virtual", 0},
                    Example{"model", "virtual", 0}, Example{"path", "virtual", 0},
                    Example{"routes", "virtual", 0}),
    [](const auto &info) { return std::string(info.param.command); });

}  // namespace
