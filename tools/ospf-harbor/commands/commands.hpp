// The registry of commands and the ways to run one: as the command line of the program has it, or
// as a line of the shell. Both build the same parser from the same list and say the same when it
// fails.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "commands/command.hpp"

namespace tool {

// The program: parses the words behind its name, runs, and says what went wrong on standard error.
// The status: 0; 1 for wrong data, or output that cannot be written; 2 for wrong words.
int run_program(const char *const *begin, const char *const *end);

inline constexpr char no_memory_message[] =
    "ospf-harbor: found no memory for more, expected some\n";

// One command, with the words of its line, on a database that is there. Throws UsageError for words
// that are wrong, and what the command throws.
int run_words(ospf_tables::Session &session, std::vector<std::string> words);

// The same, with what is thrown said on standard error.
int run_line(ospf_tables::Session &session, std::vector<std::string> words);

// Prints the help of the command that the words name, or of all. Throws UsageError.
int print_help(const std::vector<std::string> &words);

// Parses the words of a command line and runs nothing. Throws UsageError.
void check_words(const std::vector<std::string> &words);

// The parser of the command line, or of the shell, for what is made of it. Hidden commands have the
// group "".
void with_parser(const std::function<void(CLI::App &program)> &act,
                 Stands here = Stands::on_the_command_line);

// The parser of the command or group that the words name. Throws UsageError.
CLI::App &command_named(CLI::App &program, const std::vector<std::string> &words);

// The command of a name such as "load frr"; null for a group's.
const Command *find_command(const std::string &name);

// The commands or groups below a parser, in their order.
std::vector<CLI::App *> commands_of(CLI::App &app);

// The options of a parser and of its option groups, but for --help.
std::vector<const CLI::Option *> options_of(const CLI::App &app);

}  // namespace tool
