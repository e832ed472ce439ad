// Man pages, made of the list of commands: one of the program, or one of a command.
#include <algorithm>
#include <cctype>
#include <fstream>
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

void print_options(std::ostream &out, const CLI::App &app) {
  for (const CLI::Option *option : options_of(app)) {
    const bool has_name = option->nonpositional();
    out << ".TP\n.B " << plain_roff(option->get_name(!has_name));
    if (has_name && option->get_items_expected_max() > 0) out << " VALUE";
    out << '\n' << plain_roff(option->get_description()) << '\n';
  }
}

void print_command(std::ostream &out, CLI::App &app, const std::string &name) {
  if (const auto below = commands_of(app); !below.empty()) {
    for (CLI::App *each : below) print_command(out, *each, name + " " + each->get_name());
    return;
  }
  out << ".SS " << plain_roff(name) << '\n' << plain_roff(app.get_description()) << ".\n";
  print_options(out, app);
}

void print_lines(std::ostream &out, const std::string &text) {
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    out << (line.empty() ? ".PP" : plain_roff(line)) << '\n';
  }
}

std::string name_of(const std::vector<std::string> &words) {
  std::string name;
  for (const std::string &word : words) name += (name.empty() ? "" : " ") + word;
  return name;
}

std::string page_name(const std::vector<std::string> &words) {
  std::string title = "ospf-harbor";
  for (const std::string &word : words) title += "-" + word;
  return title;
}

std::string as_sentence(std::string text) {
  text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
  return text + ".";
}

void print_statuses(std::ostream &out, const std::vector<std::string> &words) {
  const Statuses &statuses = help_text(name_of(words)).statuses;
  out << ".SH EXIT STATUS\n";
  int number = 0;
  for (const char *meaning : {statuses.zero, statuses.one, statuses.two}) {
    out << ".TP\n.B " << number++ << '\n' << plain_roff(as_sentence(meaning)) << '\n';
  }
}

// What a command says of itself beyond its options.
void print_more(std::ostream &out, const std::vector<std::string> &words) {
  const Command *command = find_command(name_of(words));
  if (command == nullptr) return;
  if (command->description != nullptr) {
    out << ".SH DESCRIPTION\n";
    print_lines(out, command->description);
  }
  std::istringstream typed(help_text(name_of(words)).examples);
  std::istringstream printed(command->example == nullptr ? "" : command->example);
  out << ".SH EXAMPLES\n.nf\n";
  for (std::string line; std::getline(typed, line);) {
    out << plain_roff("$ ospf-harbor " + line) << '\n';
  }
  if (command->example != nullptr) out << '\n';
  for (std::string line; std::getline(printed, line);) out << plain_roff(line) << '\n';
  out << ".fi\n";
}

void print_page(std::ostream &out, CLI::App &program, const std::vector<std::string> &words) {
  CLI::App &app = command_named(program, words);
  const std::string title = page_name(words);
  const std::string name = "ospf-harbor" + (words.empty() ? "" : " " + name_of(words));
  std::string sentence = app.get_description();
  if (sentence.ends_with(".")) sentence.pop_back();
  out << ".TH " << title << " 1 \"\" \"ospf-harbor " HARBOR_VERSION "\"\n"
      << ".SH NAME\n"
      << plain_roff(title) << " \\- " << plain_roff(sentence) << '\n'
      << ".SH SYNOPSIS\n.B " << plain_roff(name) << (commands_of(app).empty() ? "" : " COMMAND")
      << "\n[OPTION...] [ARGUMENT...]\n";
  if (commands_of(app).empty()) {
    out << ".SH OPTIONS\n";
    print_options(out, app);
  } else {
    if (&app == &program) {
      out << ".SH OPTIONS\nThey may stand before or behind a command.\n";
      print_options(out, program);
    }
    out << ".SH COMMANDS\n";
    print_command(out, app, name);
  }
  print_more(out, words);
  print_statuses(out, words);
}

// A file of its title for the program, each group and each command.
void write_pages(const std::string &folder, CLI::App &program, CLI::App &app,
                 std::vector<std::string> words) {
  const std::string path = folder + "/" + page_name(words) + ".1";
  std::ofstream out(path);
  print_page(out, program, words);
  if (!out.flush()) throw std::runtime_error("cannot write " + path);
  for (CLI::App *below : commands_of(app)) {
    words.push_back(below->get_name());
    write_pages(folder, program, *below, words);
    words.pop_back();
  }
}

Run set_up_man(CLI::App &app) {
  const auto words = std::make_shared<std::vector<std::string>>();
  const auto folder = std::make_shared<std::string>();
  CLI::Option *one =
      app.add_option("COMMAND", *words, "The command; the page of the program without it");
  app.add_option("--folder", *folder, "Write all pages into this folder, as man finds them")
      ->excludes(one);
  return [words, folder](ospf_tables::Session *) {
    with_parser([&](CLI::App &program) {
      if (folder->empty()) {
        print_page(std::cout, program, *words);
      } else {
        write_pages(*folder, program, program, {});
      }
    });
    return 0;
  };
}

}  // namespace

extern const Command man_command;
const Command man_command{"man",      "Print a man page",          Needs::nothing,
                          set_up_man, Stands::on_the_command_line, true};

}  // namespace tool
