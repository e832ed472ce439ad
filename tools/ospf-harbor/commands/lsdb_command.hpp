// `lsdb`: lists the link-state databases of the tables.
#pragma once

#include <string>
#include <vector>

#include "commands/command.hpp"
#include "ospf_tables/session.hpp"
#include "views/lsdb_filter.hpp"

namespace tool {

struct LsdbOptions {
  LsdbFilter filter;
  bool detail = false;
  bool json = false;
};

// The options of the filter, for any command that has one.
void add_filter_options(CLI::App &command, LsdbFilter &filter);
// The words of a line, read as the command's options. Throws InputError.
void parse_words(CLI::App &command, const char *name, std::vector<std::string> words);

// Everything but where the database comes from.
void add_lsdb_options(CLI::App &command, LsdbOptions &options);

// With `--from`, whose sources are loaded first.
Command add_lsdb_command(CLI::App &app);

// The words behind "lsdb", as a line of `shell` has them. Throws InputError.
LsdbOptions parse_lsdb_words(const std::vector<std::string> &words);

// Prints the listing to standard output; 1, with a word on standard error, when it would be empty.
int run_lsdb(ospf_tables::Session &session, const LsdbOptions &options);

}  // namespace tool
