// Completion for shells, made of the list of commands: a script that knows the words of each
// command.
#include <iostream>
#include <memory>

#include "commands/commands.hpp"

namespace tool {

namespace {

// What may be asked for: the program (""), a group ("load"), a command ("load frr").
struct Place {
  std::string words;
  CLI::App *app;
};

std::vector<Place> places_of(CLI::App &app, const std::string &words = "") {
  std::vector<Place> places{{words, &app}};
  for (CLI::App *below : commands_of(app)) {
    for (Place &place : places_of(*below, words + (words.empty() ? "" : " ") + below->get_name())) {
      places.push_back(std::move(place));
    }
  }
  return places;
}

// Those of the program may stand behind a command too.
std::vector<const CLI::Option *> options_at(const Place &place, CLI::App &program) {
  std::vector<const CLI::Option *> options = options_of(*place.app);
  if (place.app != &program) {
    for (const CLI::Option *option : options_of(program)) options.push_back(option);
  }
  std::erase_if(options, [](const CLI::Option *option) { return !option->nonpositional(); });
  return options;
}

std::string quoted(const std::string &text) {
  std::string result = "'";
  for (const char c : text) result += c == '\'' ? "'\\''" : std::string(1, c);
  return result + "'";
}

// |load|load frr|...|
std::string all_words(const std::vector<Place> &places) {
  std::string words;
  for (const Place &place : places) words += place.words + "|";
  return words;
}

void print_bash(CLI::App &program) {
  const std::vector<Place> places = places_of(program);
  std::cout << "# Completion of ospf-harbor for bash.\n"
               "_ospf_harbor() {\n"
               "  local current=${COMP_WORDS[COMP_CWORD]} path='' word next words='' files=''\n"
               "  for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
               "    next=${path:+$path }$word\n"
               "    case '"
            << all_words(places)
            << "' in *\"|$next|\"*) path=$next ;; esac\n"
               "  done\n"
               "  case $path in\n";
  for (const Place &place : places) {
    const std::vector<CLI::App *> commands = commands_of(*place.app);
    std::cout << "    " << quoted(place.words) << ") words='";
    for (const CLI::App *below : commands) std::cout << below->get_name() << " ";
    std::cout << "--help";
    for (const CLI::Option *option : options_at(place, program)) {
      for (const std::string &name : option->get_snames()) std::cout << " -" << name;
      for (const std::string &name : option->get_lnames()) std::cout << " --" << name;
    }
    std::cout << "'" << (commands.empty() ? " files=yes" : "") << " ;;\n";
  }
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

// A word and what it means, as _describe takes them.
std::string described(std::string word, const std::string &meaning) {
  return " " + quoted(std::move(word) + ":" + meaning);
}

void print_zsh(CLI::App &program) {
  const std::vector<Place> places = places_of(program);
  std::cout << "#compdef ospf-harbor\n"
               "# Completion of ospf-harbor for zsh.\n"
               "_ospf-harbor() {\n"
               "  local place='' word next files=''\n"
               "  local -a commands options\n"
               "  for word in \"${(@)words[2,CURRENT-1]}\"; do\n"
               "    next=${place:+$place }$word\n"
               "    case '"
            << all_words(places)
            << "' in *\"|$next|\"*) place=$next ;; esac\n"
               "  done\n"
               "  case $place in\n";
  for (const Place &place : places) {
    const std::vector<CLI::App *> commands = commands_of(*place.app);
    std::cout << "    (" << quoted(place.words) << ")\n      commands=(";
    for (const CLI::App *below : commands) {
      std::cout << described(below->get_name(), below->get_description());
    }
    std::cout << " )\n      options=(" << described("--help", "Print help");
    for (const CLI::Option *option : options_at(place, program)) {
      const std::string meaning = option->get_description();
      for (const std::string &name : option->get_snames()) {
        std::cout << described("-" + name, meaning);
      }
      for (const std::string &name : option->get_lnames()) {
        std::cout << described("--" + name, meaning);
      }
    }
    std::cout << " )\n" << (commands.empty() ? "      files=yes\n" : "") << "      ;;\n";
  }
  std::cout << "  esac\n"
               "  if [[ $words[CURRENT] == -* ]]; then\n"
               "    _describe -o option options\n"
               "  else\n"
               "    (( $#commands )) && _describe command commands\n"
               "    [[ -n $files ]] && _files\n"
               "  fi\n"
               "}\n"
               "if [[ $funcstack[1] == _ospf-harbor ]]; then\n"
               "  _ospf-harbor \"$@\"\n"
               "else\n"
               "  compdef _ospf-harbor ospf-harbor\n"
               "fi\n";
}

void print_fish(CLI::App &program) {
  const std::vector<Place> places = places_of(program);
  std::cout << "# Completion of ospf-harbor for fish.\n"
               "function __ospf_harbor_at\n"
               "  set -l place ''\n"
               "  for word in (commandline -opc)[2..-1]\n"
               "    set -l next (string trim -- \"$place $word\")\n"
               "    if contains -- $next";
  for (const Place &place : places) std::cout << " " << quoted(place.words);
  std::cout << "\n"
               "      set place $next\n"
               "    end\n"
               "  end\n"
               "  test \"$place\" = \"$argv[1]\"\n"
               "end\n";
  for (const Place &place : places) {
    const std::string begin =
        "complete -c ospf-harbor -n \"__ospf_harbor_at " + quoted(place.words) + "\"";
    for (const CLI::App *below : commands_of(*place.app)) {
      std::cout << begin << " -f -a " << below->get_name() << " -d "
                << quoted(below->get_description()) << "\n";
    }
    std::cout << begin << " -l help -d 'Print help'\n";
    for (const CLI::Option *option : options_at(place, program)) {
      std::cout << begin;
      for (const std::string &name : option->get_snames()) std::cout << " -s " << name;
      for (const std::string &name : option->get_lnames()) std::cout << " -l " << name;
      if (option->get_items_expected_max() > 0) std::cout << " -r";
      std::cout << " -d " << quoted(option->get_description()) << "\n";
    }
  }
}

struct Shell {
  const char *name;
  void (*print)(CLI::App &program);
};
constexpr Shell shells[] = {{"bash", print_bash}, {"zsh", print_zsh}, {"fish", print_fish}};

Run set_up_completion(CLI::App &app) {
  const auto chosen = std::make_shared<std::string>();
  app.add_option("SHELL", *chosen, "bash, zsh or fish")
      ->required()
      ->check(CLI::IsMember({"bash", "zsh", "fish"}));
  return [chosen](ospf_tables::Session *) {
    for (const Shell &shell : shells) {
      if (*chosen == shell.name) with_parser(shell.print);
    }
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
