// The shell: commands one a line on one database. A line is cut into words as a command line is, so
// that a name may hold blanks. Where a person types, lines are edited, remembered and completed.
#include <algorithm>
#include <cstdio>
#include <iostream>

#include "commands/commands.hpp"
#include "commands/line_editor.hpp"
#include "commands/shell_words.hpp"

namespace tool {

namespace {

bool at_end = false;

std::vector<std::string> words_of(const std::string &line) {
  ShellWords split = split_words(line);
  if (split.open_quote != 0) {
    throw UsageError("line", "", std::string("no second ") + split.open_quote, "each quote twice");
  }
  return std::move(split.words);
}

int run_text(ospf_tables::Session &session, const std::string &line) {
  try {
    const std::vector<std::string> words = words_of(line);
    return words.empty() || words[0].starts_with('#') ? 0 : run_line(session, words);
  } catch (const UsageError &error) {
    std::fprintf(stderr, "ospf-harbor: %s\n", error.what());
    return 2;
  }
}

// The worst status of all lines, each of which next() gives until there is none.
int run_lines(ospf_tables::Session &session, const std::function<bool(std::string &line)> &next) {
  int status = 0;
  at_end = false;
  for (std::string line; !at_end && next(line);) {
    status = std::max(status, run_text(session, line));
    std::fflush(stdout);
  }
  return status;
}

int run_shell(ospf_tables::Session &session) {
  if (!LineEditor::is_at_terminal()) {
    return run_lines(session, [](std::string &line) { return bool(std::getline(std::cin, line)); });
  }
  LineEditor editor([&](const std::vector<std::string> &words, const std::string &begun) {
    return completions(session, words, begun);
  });
  return run_lines(session, [&](std::string &line) { return editor.next(line); });
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

constexpr char shell_description[] =
    R"(Runs the commands of lines on one database, so that what one line loads the
next ones show. Blanks part words but in quotes and behind a backslash; a
line that begins with # is passed over. The status is the worst of all
lines; exit, quit or the end of the lines end it.

At a terminal lines are edited and remembered, in .ospf_harbor_history of
the home folder, and the Tab key completes commands, options, files, router
and area IDs, and paths of the tree. ^R searches the lines before, ^C leaves
the line.
)";

}  // namespace

extern const Command shell_command, exit_command, quit_command;
const Command shell_command{"shell",
                            "Read commands from standard input, one a line, on one database",
                            Needs::session,
                            set_up_shell,
                            Stands::on_the_command_line,
                            false,
                            shell_description};
const Command exit_command{"exit", "End the shell", Needs::nothing, set_up_end,
                           Stands::in_the_shell};
const Command quit_command{"quit", "End the shell", Needs::nothing, set_up_end,
                           Stands::in_the_shell};

}  // namespace tool
