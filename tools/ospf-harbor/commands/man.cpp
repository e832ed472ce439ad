// Man pages, made of the list of commands: one of the program, or one of a command.
#include <algorithm>
#include <cctype>
#include <iostream>
#include <memory>
#include <sstream>

#include "commands/commands.hpp"
#include "commands/help_texts.hpp"

namespace tool {

namespace {

// Text as it may stand in a page: nothing in it is taken for a request.
std::string plain_roff(const std::string &text) {
  std::string result;
  for (const char c : text) {
    if (c == '\\') {
      result += "\\e";
    } else if (c == '-') {
      result += "\\-";
    } else if (c == '\'') {
      result += "\\(aq";
    } else {
      result += c;
    }
  }
  return result.starts_with(".") ? "\\&" + result : result;
}

void print_options(const CLI::App &app) {
  for (const CLI::Option *option : options_of(app)) {
    std::cout << ".TP\n.B " << plain_roff(option->get_name(option->get_positional()));
    if (!option->get_positional() && option->get_items_expected_max() > 0) std::cout << " VALUE";
    std::cout << '\n' << plain_roff(option->get_description()) << '\n';
  }
}

void print_command(CLI::App &app, const std::string &name) {
  if (const auto below = commands_of(app); !below.empty()) {
    for (CLI::App *each : below) print_command(*each, name + " " + each->get_name());
    return;
  }
  std::cout << ".SS " << plain_roff(name) << '\n' << plain_roff(app.get_description()) << ".\n";
  print_options(app);
}

void print_lines(const std::string &text) {
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    std::cout << (line.empty() ? ".PP" : plain_roff(line)) << '\n';
  }
}

std::string name_of(const std::vector<std::string> &words) {
  std::string name;
  for (const std::string &word : words) name += (name.empty() ? "" : " ") + word;
  return name;
}

std::string as_sentence(std::string text) {
  text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
  return text + ".";
}

void print_statuses(const std::vector<std::string> &words) {
  const Statuses &statuses = help_text(name_of(words)).statuses;
  std::cout << ".SH EXIT STATUS\n";
  int number = 0;
  for (const char *meaning : {statuses.zero, statuses.one, statuses.two}) {
    std::cout << ".TP\n.B " << number++ << '\n' << plain_roff(as_sentence(meaning)) << '\n';
  }
}

// What a command says of itself beyond its options.
void print_more(const std::vector<std::string> &words) {
  const Command *command = find_command(name_of(words));
  if (command == nullptr) return;
  if (command->description != nullptr) {
    std::cout << ".SH DESCRIPTION\n";
    print_lines(command->description);
  }
  if (command->example == nullptr) return;
  std::cout << ".SH EXAMPLE\n.nf\n";
  std::istringstream in(command->example);
  for (std::string line; std::getline(in, line);) std::cout << plain_roff(line) << '\n';
  std::cout << ".fi\n";
}

void print_page(CLI::App &program, const std::vector<std::string> &words) {
  CLI::App &app = command_named(program, words);
  std::string title = "ospf-harbor";
  std::string name = title;
  for (const std::string &word : words) {
    title += "-" + word;
    name += " " + word;
  }
  std::string sentence = app.get_description();
  if (sentence.ends_with(".")) sentence.pop_back();
  std::cout << ".TH " << title << " 1 \"\" \"ospf-harbor " HARBOR_VERSION "\"\n"
            << ".SH NAME\n"
            << plain_roff(title) << " \\- " << plain_roff(sentence) << '\n'
            << ".SH SYNOPSIS\n.B " << plain_roff(name)
            << (commands_of(app).empty() ? "" : " COMMAND") << "\n[OPTION...] [ARGUMENT...]\n";
  if (commands_of(app).empty()) {
    std::cout << ".SH OPTIONS\n";
    print_options(app);
  } else {
    if (&app == &program) {
      std::cout << ".SH OPTIONS\nThey may stand before or behind a command.\n";
      print_options(program);
    }
    std::cout << ".SH COMMANDS\n";
    print_command(app, name);
  }
  print_more(words);
  print_statuses(words);
}

Run set_up_man(CLI::App &app) {
  const auto words = std::make_shared<std::vector<std::string>>();
  app.add_option("COMMAND", *words, "The command; the page of the program without it");
  return [words](ospf_tables::Session *) {
    with_parser([&](CLI::App &program) { print_page(program, *words); });
    return 0;
  };
}

}  // namespace

extern const Command man_command;
const Command man_command{"man",      "Print a man page",          Needs::nothing,
                          set_up_man, Stands::on_the_command_line, true};

}  // namespace tool
