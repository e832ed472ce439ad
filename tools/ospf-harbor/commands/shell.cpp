// The shell: commands one a line on one database. A line is cut into words as a command line is, so
// that a name may hold blanks.
#include <cstdio>
#include <iostream>

#include "commands/commands.hpp"

namespace tool {

namespace {

bool at_end = false;

// Blanks part words, but for those in '...' or "..." or behind a backslash.
std::vector<std::string> words_of(const std::string &line) {
  std::vector<std::string> words;
  bool inside = false;
  char quote = 0;
  for (std::size_t at = 0; at < line.size(); ++at) {
    const char c = line[at];
    if (quote == 0 && (c == ' ' || c == '\t' || c == '\r')) {
      inside = false;
      continue;
    }
    if (!inside) words.emplace_back();
    inside = true;
    if (c == quote) {
      quote = 0;
    } else if (quote == 0 && (c == '\'' || c == '"')) {
      quote = c;
    } else if (c == '\\' && quote != '\'' && at + 1 < line.size()) {
      words.back() += line[++at];
    } else {
      words.back() += c;
    }
  }
  if (quote != 0) {
    throw UsageError("line", "", std::string("no second ") + quote, "each quote twice");
  }
  return words;
}

int run_text(ospf_tables::Session &session, const std::string &line) {
  try {
    const std::vector<std::string> words = words_of(line);
    return words.empty() || words[0][0] == '#' ? 0 : run_line(session, words);
  } catch (const UsageError &error) {
    std::fprintf(stderr, "ospf-harbor: %s\n", error.what());
    return 2;
  }
}

// The worst status of all lines.
int run_shell(ospf_tables::Session &session) {
  int status = 0;
  std::string line;
  at_end = false;
  while (!at_end && std::getline(std::cin, line)) {
    status = std::max(status, run_text(session, line));
    std::fflush(stdout);
  }
  return status;
}

Run set_up_shell(CLI::App &) {
  return [](ospf_tables::Session *session) { return run_shell(*session); };
}

Run set_up_end(CLI::App &) {
  return [](ospf_tables::Session *) {
    at_end = true;
    return 0;
  };
}

}  // namespace

extern const Command shell_command, exit_command, quit_command;
const Command shell_command{"shell",
                            "Read commands from standard input, one a line, on one database",
                            Needs::session, set_up_shell, Stands::on_the_command_line};
const Command exit_command{"exit", "End the shell", Needs::nothing, set_up_end,
                           Stands::in_the_shell};
const Command quit_command{"quit", "End the shell", Needs::nothing, set_up_end,
                           Stands::in_the_shell};

}  // namespace tool
