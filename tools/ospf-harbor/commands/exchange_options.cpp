#include "commands/exchange_options.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>

#include "commands/commands.hpp"
#include "commands/dump_command.hpp"
#include "commands/export_command.hpp"
#include "commands/import_command.hpp"
#include "commands/send_command.hpp"
#include "ospf_tables/input_error.hpp"
#include "sources/sources.hpp"
#include "tree_exchange/stream_format.hpp"

namespace tool {

using namespace ospf_tables;
using namespace tree_exchange;

namespace {

using Texts = std::vector<std::string>;

// The values live as long as the command that was chosen.
template <typename Values>
std::shared_ptr<Values> values() {
  return std::make_shared<Values>();
}

void add_sources(CLI::App *command, Texts &sources) {
  command->add_option("--from", sources, source_help);
}

struct ShowAfter {
  bool wanted = false;
  std::string path;

  void add_to(CLI::App *command) {
    command->add_flag("--show", wanted, "Show the tree afterwards");
    command->add_option("--path", path, "What to show of it, such as area/0.0.0.0");
  }
  int run(Session &session) const { return wanted || !path.empty() ? show_path(session, path) : 0; }
};

void add_export(CLI::App &app, ExchangeCommand *chosen) {
  struct Values {
    std::string image, xml, text;
    Texts sources;
  };
  const auto given = values<Values>();
  CLI::App *command = app.add_subcommand("export", "Write the tree to files");
  auto *forms = command->add_option_group("forms");
  forms->add_option("--image", given->image, "As a tree stream of images");
  forms->add_option("--xml", given->xml, "As an XML document");
  forms->add_option("--text", given->text, "As show prints it");
  forms->require_option(1, 0);
  add_sources(command, given->sources);
  command->callback([given, chosen] {
    *chosen = [given](Session &session) {
      int status = load_sources(session, given->sources);
      const std::pair<TreeForm, const std::string &> files[] = {{TreeForm::image, given->image},
                                                                {TreeForm::xml, given->xml},
                                                                {TreeForm::text, given->text}};
      for (const auto &[form, file] : files) {
        if (file.empty()) continue;
        status = std::max(status, export_tree(session, form, file));
      }
      return status;
    };
  });
}

void add_import(CLI::App &app, ExchangeCommand *chosen) {
  struct Values {
    Texts images, documents;
    ShowAfter show;
  };
  const auto given = values<Values>();
  CLI::App *command = app.add_subcommand(
      "import", "Add trees from files; instances of the same key give way to them");
  auto *forms = command->add_option_group("forms");
  forms->add_option("--image", given->images, "Tree streams");
  forms->add_option("--xml", given->documents, "Trees' XML");
  forms->require_option(1, 0);
  given->show.add_to(command);
  command->callback([given, chosen] {
    *chosen = [given](Session &session) {
      for (const std::string &file : given->images) import_tree(session, TreeForm::image, file);
      for (const std::string &file : given->documents) import_tree(session, TreeForm::xml, file);
      return given->show.run(session);
    };
  });
}

void add_dump(CLI::App &app, ExchangeCommand *chosen) {
  const auto given = values<DumpWhat>();
  CLI::App *command = app.add_subcommand("dump", "Show what each byte of a file is");
  command->add_option("--annotate", given->file, "A tree stream, or images of records")->required();
  auto *object = command->add_option("--object", given->object,
                                     "The file is an image of an object of this type");
  command->add_option("--key", given->key, "The file is an image of a key of this table")
      ->excludes(object);
  command->callback(
      [given, chosen] { *chosen = [given](Session &) { return dump_annotated(*given); }; });
}

constexpr char seconds_text[] = "Seconds to wait for the other side";
constexpr char places[] = "unix:PATH, tcp:127.0.0.1:PORT or tcp:[::1]:PORT";
constexpr double longest_wait = 86400;
constexpr double usual_wait = 30;

void add_send(CLI::App &app, ExchangeCommand *chosen) {
  struct Values {
    std::string place;
    double seconds = usual_wait;
    Texts sources;
  };
  const auto given = values<Values>();
  CLI::App *command = app.add_subcommand("send", "Send the tree to a process that receives");
  command->add_option("--to", given->place, places)->required();
  command->add_option("--timeout", given->seconds, seconds_text)
      ->check(CLI::Range(0.001, longest_wait));
  add_sources(command, given->sources);
  command->callback([given, chosen] {
    *chosen = [given](Session &session) {
      const int status = load_sources(session, given->sources);
      return std::max(status, send_to(session, given->place, given->seconds));
    };
  });
}

void add_receive(CLI::App &app, ExchangeCommand *chosen) {
  struct Values {
    std::string place;
    double seconds = usual_wait;
    std::uint64_t limit = largest_stream;
    ShowAfter show;
  };
  const auto given = values<Values>();
  CLI::App *command = app.add_subcommand("receive", "Wait for a tree that another process sends");
  command->add_option("--at", given->place, std::string(places) + "; PORT 0 lets the system choose")
      ->required();
  command->add_option("--timeout", given->seconds, seconds_text)
      ->check(CLI::Range(0.001, longest_wait));
  command->add_option("--limit", given->limit, "The most bytes that a tree may have")
      ->check(CLI::Range(std::uint64_t{1}, largest_stream));
  given->show.add_to(command);
  command->callback([given, chosen] {
    *chosen = [given](Session &session) {
      receive_at(session, given->place, given->seconds, given->limit);
      return given->show.run(session);
    };
  });
}

}  // namespace

void add_exchange_commands(CLI::App &app, ExchangeCommand *chosen) {
  add_export(app, chosen);
  add_import(app, chosen);
  add_dump(app, chosen);
  add_send(app, chosen);
  add_receive(app, chosen);
}

bool run_exchange_line(Session &session, const std::vector<std::string> &words, int *status) {
  ExchangeCommand chosen;
  CLI::App line;
  line.set_help_flag();
  add_exchange_commands(line, &chosen);
  const auto named = line.get_subcommands(
      [&](const CLI::App *command) { return !words.empty() && command->get_name() == words[0]; });
  if (named.empty()) return false;
  try {
    line.parse(std::vector<std::string>(words.rbegin(), words.rend()));
  } catch (const CLI::ParseError &error) {
    throw InputError(words[0], error.what());
  }
  *status = chosen(session);
  return true;
}

}  // namespace tool
