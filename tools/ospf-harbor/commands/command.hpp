// A command of the tool: its name, a sentence, what it needs, its options and its run. A command is
// one file of this folder that defines one of these, and one line of list.inc; the command line,
// the shell, help, completion and man pages all read that list.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

#include "ospf_tables/session.hpp"
#include "usage_error.hpp"

namespace tool {

enum class Needs {
  nothing,
  session,  // the database of the run, which it changes within Session::changing
  tree,     // the same to read it, with what `--from` names loaded first into a private one
  told,     // the same, loaded by the command itself, which asks for more than tables hold
};

// What a command does with a store that holds several sites, when none was chosen.
enum class Sites {
  one,   // it is refused
  each,  // it runs for each, and names it in what it prints
};

enum class Stands { everywhere, on_the_command_line, in_the_shell };

// Gives the status: 0, or 1 when something is wrong with the data. The session is null for a
// command that needs nothing. It may throw.
using Run = std::function<int(ospf_tables::Session *session)>;

struct Command {
  const char *name;  // one word, or a group's and its own, as "load frr"
  const char *sentence;
  Needs needs;
  // Adds the options and gives what runs when they have been parsed into what it holds.
  Run (*set_up)(CLI::App &app);
  Stands stands = Stands::everywhere;
  bool hidden = false;  // from help and completion
  // For the man page: paragraphs with empty lines between them, and what is typed and printed.
  const char *description = nullptr;
  const char *example = nullptr;
  Sites sites = Sites::one;
};

}  // namespace tool
