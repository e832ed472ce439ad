// Completion for bash, made of the list of commands: a script that knows the words of each command.
#include <iostream>
#include <memory>

#include "commands/commands.hpp"

namespace tool {

namespace {

std::string option_words(const CLI::App &app) {
  std::string words = "--help";
  for (const CLI::Option *option : options_of(app)) {
    for (const std::string &name : option->get_snames()) words += " -" + name;
    for (const std::string &name : option->get_lnames()) words += " --" + name;
  }
  return words;
}

void print_case(CLI::App &app, const std::string &path) {
  std::string words;
  for (const CLI::App *below : commands_of(app)) words += below->get_name() + " ";
  std::cout << "    '" << path << "') words='" << words << option_words(app) << "'"
            << (commands_of(app).empty() ? " files=yes" : "") << " ;;\n";
  for (CLI::App *below : commands_of(app)) {
    print_case(*below, path + (path.empty() ? "" : " ") + below->get_name());
  }
}

void print_paths(CLI::App &app, const std::string &path) {
  for (CLI::App *below : commands_of(app)) {
    const std::string name = path + (path.empty() ? "" : " ") + below->get_name();
    std::cout << '|' << name;
    print_paths(*below, name);
  }
}

void print_script(CLI::App &program) {
  std::cout << "# Completion of ospf-harbor for bash; source it.\n"
               "_ospf_harbor() {\n"
               "  local current=${COMP_WORDS[COMP_CWORD]} path='' word next words='' files=''\n"
               "  for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
               "    next=${path:+$path }$word\n"
               "    case '";
  print_paths(program, "");
  std::cout << "|' in *\"|$next|\"*) path=$next ;; esac\n"
               "  done\n"
               "  case $path in\n";
  print_case(program, "");
  std::cout << "  esac\n"
               "  COMPREPLY=()\n"
               "  case $current in\n"
               "    -*) ;;\n"
               "    *) [ -n \"$files\" ] && COMPREPLY=($(compgen -f -- \"$current\")) ;;\n"
               "  esac\n"
               "  COMPREPLY+=($(compgen -W \"$words\" -- \"$current\"))\n"
               "}\n"
               "complete -o filenames -F _ospf_harbor ospf-harbor\n";
}

Run set_up_completion(CLI::App &app) {
  const auto shell = std::make_shared<std::string>();
  app.add_option("SHELL", *shell, "bash")->required()->check(CLI::IsMember({"bash"}));
  return [shell](ospf_tables::Session *) {
    with_parser(print_script);
    return 0;
  };
}

}  // namespace

extern const Command completion_command;
const Command completion_command{"completion",
                                 "Print a script that completes command lines",
                                 Needs::nothing,
                                 set_up_completion,
                                 Stands::on_the_command_line,
                                 true};

}  // namespace tool
