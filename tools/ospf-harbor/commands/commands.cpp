#include "commands/commands.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>

#include "commands/help_texts.hpp"
#include "commands/source_choice.hpp"
#include "ospf_tables/system_error.hpp"
#include "ospf_tables/tree.hpp"
#include "traces/trace_file.hpp"

namespace tool {

using namespace ospf_tables;

#define GROUP(name, sentence)
#define COMMAND(name) extern const Command name##_command;
#include "commands/list.inc"
#undef GROUP
#undef COMMAND

namespace {

struct Group {
  const char *name;
  const char *sentence;
};

#define GROUP(name, sentence) Group{name, sentence},
#define COMMAND(name)
constexpr std::array groups = {
#include "commands/list.inc"
};
#undef GROUP
#undef COMMAND

#define GROUP(name, sentence)
#define COMMAND(name) &name##_command,
constexpr const Command *commands[] = {
#include "commands/list.inc"
};
#undef GROUP
#undef COMMAND

// What the words that were parsed ask for.
struct Chosen {
  const Command *command = nullptr;
  Run run;
  SourceChoice choice;

  int operator()(Session *session) const {
    if (!help_text(command->name).statuses.one_is_an_answer) return run_at_sites(session);
    try {
      return run_at_sites(session);
    } catch (const InputError &error) {
      throw UsageError(error.what());
    }
  }

  bool only_reads() const { return command->needs == Needs::tree || command->needs == Needs::told; }

 private:
  // Readers of a store see the sites that it has, unless one was chosen.
  int run_at_sites(Session *session) const {
    if (session == nullptr || !session->is_store() || session->is_site_chosen() || !only_reads()) {
      return load_and_run(session);
    }
    std::vector<Site> sites;
    session->reading([&] { sites = sites_of(*session); });
    if (sites.empty()) sites.push_back({});
    if (sites.size() > 1 && command->sites == Sites::one) {
      std::string list;
      for (const Site &site : sites) list += (list.empty() ? "" : "; ") + text_of(site);
      throw UsageError(command->name, "--store", "a store of several sites (" + list + ")",
                       "--tenant or --source to choose one");
    }
    int status = 1;
    for (const Site &site : sites) {
      session->set_site(site, sites.size() > 1 || site != Site{});
      status = std::min(status, load_and_run(session));
    }
    session->set_site({});
    return status;
  }

  int load_and_run(Session *session) const {
    if (command->needs != Needs::tree) return run(session);
    int status = choice.load(*session, command->name);
    session->reading([&] { status = std::max(status, run(session)); });
    return status;
  }
};

CLI::App *named(CLI::App &app, const std::string &name) {
  const auto found =
      app.get_subcommands([&](const CLI::App *each) { return each->get_name() == name; });
  return found.empty() ? nullptr : found.front();
}

CLI::App *parent_of(CLI::App &app, const std::string &name) {
  const std::size_t space = name.find(' ');
  if (space == name.npos) return &app;
  const std::string group = name.substr(0, space);
  if (CLI::App *there = named(app, group); there != nullptr) return there;
  const auto row = std::find_if(groups.begin(), groups.end(),
                                [&](const Group &each) { return each.name == group; });
  CLI::App *added = app.add_subcommand(group, row->sentence);
  added->require_subcommand(1);
  added->fallthrough();
  added->set_help_all_flag();
  return added;
}

// Adds the commands that stand here, or all. Parsing sets *chosen.
void add_commands(CLI::App &app, Stands here, Chosen *chosen) {
  app.require_subcommand(1);
  for (const Command *command : commands) {
    if (command->stands != here && command->stands != Stands::everywhere &&
        here != Stands::everywhere) {
      continue;
    }
    const std::string name = command->name;
    CLI::App *own =
        parent_of(app, name)->add_subcommand(name.substr(name.rfind(' ') + 1), command->sentence);
    own->fallthrough();
    own->set_help_all_flag();
    if (command->hidden) own->group("");
    own->footer(footer_of(name));
    const Run run = command->set_up(*own);
    const auto choice = std::make_shared<SourceChoice>();
    if (command->needs == Needs::tree) choice->add_to(*own);
    own->callback([=] { *chosen = {command, run, *choice}; });
  }
}

// The words of the commands that were parsed, such as "load frr".
std::string parsed_name(const CLI::App &app) {
  std::string name;
  for (const CLI::App *at = &app; !at->get_subcommands().empty();) {
    at = at->get_subcommands().front();
    name += (name.empty() ? "" : " ") + at->get_name();
  }
  return name;
}

std::string names_below(CLI::App &app) {
  std::string names;
  for (const CLI::App *each : commands_of(app)) {
    names += (names.empty() ? "" : ", ") + each->get_name();
  }
  return names;
}

[[noreturn]] void unknown_command(CLI::App &app, CLI::App &group, const std::string &word) {
  const std::string name = (&group == &app ? "" : group.get_name() + " ") + word;
  throw UsageError("unknown command \"" + name + "\"; there are " + names_below(group));
}

// The command that a line does not have, told before the parser tells of what is behind it.
void check_name(CLI::App &app, const std::vector<std::string> &words) {
  if (words.empty() && !commands_of(app).empty())
    throw UsageError("a command is needed; \"ospf-harbor help\" lists them");
  CLI::App *at = &app;
  for (const std::string &word : words) {
    if (commands_of(*at).empty()) return;
    if (word.starts_with("-")) return;
    CLI::App *below = named(*at, word);
    if (below == nullptr) unknown_command(app, *at, word);
    at = below;
  }
}

// Parses the words; false when they asked for help, which has been printed.
bool parse(CLI::App &app, std::vector<std::string> words) {
  try {
    check_name(app, words);
    std::reverse(words.begin(), words.end());
    app.parse(std::move(words));
    return true;
  } catch (const CLI::CallForHelp &) {
    std::cout << wrapped(app.help());
    return false;
  } catch (const CLI::CallForAllHelp &) {
    std::cout << wrapped(app.help("", CLI::AppFormatMode::All));
    return false;
  } catch (const CLI::Success &asked) {
    app.exit(asked, std::cout, std::cerr);
    return false;
  } catch (const CLI::ParseError &error) {
    const std::string name = parsed_name(app);
    // Behind options of the program, which may come first.
    const std::vector<std::string> left = app.remaining();
    if (name.empty() && !left.empty() && !left.front().starts_with("-")) {
      unknown_command(app, app, left.front());
    }
    throw UsageError((name.empty() ? "" : name + ": ") + error.what() + "; \"ospf-harbor help" +
                     (name.empty() ? "" : " " + name) + "\" tells more");
  }
}

// The program's own options, beside those of commands.
struct Program {
  CLI::App app{"Looks at OSPF networks: loads what routers say into typed tables and shows them.",
               "ospf-harbor"};
  TraceFile trace_file{app};
  std::string store;
  Site site;
  Chosen chosen;

  std::optional<Site> chosen_site() const {
    const bool any = app.count("--tenant") + app.count("--source") != 0;
    return any ? std::optional(site) : std::nullopt;
  }

  explicit Program(Stands here = Stands::on_the_command_line) {
    app.set_help_all_flag("--help-all", "Help of all commands");
    app.footer(footer_of(""));
    app.set_version_flag("--version", "ospf-harbor " HARBOR_VERSION);
    app.add_option("--store", store,
                   "A file that holds the tables, shared with other processes; commands that load "
                   "make it. Without it the tables are those of this run alone");
    app.add_option(
        "--tenant", site.tenant,
        "Whose rows of the store are meant, where sites that are followed into one store "
        "have a number each. Without it and --source lists show each site by name, and "
        "what fills a store means tenant 0");
    app.add_option(
           "--source", site.source,
           "The same where sites are told apart by the source of their rows, of one tenant; 1 "
           "is the usual source")
        ->check(CLI::Range(1, KELP_SRC_SHADOW - 1));
    add_commands(app, here, &chosen);
  }
};

// One command on the store, which what only reads does not make.
int run_on_store(const Chosen &chosen, const std::string &store, const std::optional<Site> &site) {
  if (chosen.command->needs == Needs::nothing) {
    throw UsageError(chosen.command->name, "--store", "\"" + store + "\"",
                     "no store for a command that neither loads nor shows tables");
  }
  const bool reads = chosen.only_reads();
  if (reads) chosen.choice.check(chosen.command->name, true);
  Session session(store, reads ? Session::Missing::is_refused : Session::Missing::is_made);
  if (site) session.choose_site(*site);
  return chosen(&session);
}

int run_chosen(const Program &program) {
  const Command &command = *program.chosen.command;
  if (program.app.count("--store") != 0) {
    return run_on_store(program.chosen, program.store, program.chosen_site());
  }
  if (command.needs == Needs::nothing) return program.chosen(nullptr);
  if (command.needs == Needs::tree && program.chosen.choice.sources.empty()) {
    throw UsageError(command.name, "--from", "nothing", "what to load, or a --store");
  }
  Session session;
  return program.chosen(&session);
}

int run_command_line(std::vector<std::string> words) {
  Program program;
  if (!parse(program.app, std::move(words))) return 0;
  program.trace_file.open();
  const int status = run_chosen(program);
  program.trace_file.close();
  return status;
}

// What was printed has arrived, or it is an error of whoever printed it.
int written(int status) {
  errno = 0;
  std::cout.flush();
  const bool flushed = std::fflush(stdout) == 0;
  const int reason = errno;
  if (flushed && std::cout.good() && std::ferror(stdout) == 0) return status;
  std::cout.clear();
  std::clearerr(stdout);
  throw cannot("write to", "standard output",
               reason == 0 ? "it takes nothing" : std::strerror(reason));
}

template <typename Act>
int saying_what_fails(Act act) {
  const auto say = [](const std::exception &failure) {
    std::fflush(stdout);
    std::fprintf(stderr, "ospf-harbor: %s\n", in_one_line(failure.what()).c_str());
  };
  try {
    return written(act());
  } catch (const UsageError &error) {
    say(error);
    return 2;
  } catch (const std::bad_alloc &) {
    std::fflush(stdout);
    std::fputs(no_memory_message, stderr);
    return 1;
  } catch (const std::exception &failure) {
    say(failure);
    return 1;
  }
}

}  // namespace

int run_program(const char *const *begin, const char *const *end) {
  return saying_what_fails([&] { return run_command_line({begin, end}); });
}

int run_words(Session &session, std::vector<std::string> words) {
  CLI::App app{"", "ospf-harbor"};
  Chosen chosen;
  add_commands(app, Stands::in_the_shell, &chosen);
  return parse(app, std::move(words)) ? chosen(&session) : 0;
}

int run_line(Session &session, std::vector<std::string> words) {
  return saying_what_fails([&] { return run_words(session, std::move(words)); });
}

int print_help(const std::vector<std::string> &words) {
  Program all(Stands::everywhere);
  CLI::App &app = command_named(all.app, words);
  std::string before = words.empty() ? "" : all.app.get_name();
  for (std::size_t at = 0; at + 1 < words.size(); ++at) before += " " + words[at];
  std::cout << wrapped(app.help(before));
  return 0;
}

void check_words(const std::vector<std::string> &words) {
  Program program;
  parse(program.app, words);
}

void with_parser(const std::function<void(CLI::App &program)> &act, Stands here) {
  Program program(here);
  act(program.app);
}

CLI::App &command_named(CLI::App &program, const std::vector<std::string> &words) {
  if (!words.empty()) check_name(program, words);
  CLI::App *at = &program;
  for (const std::string &word : words) at = at->get_subcommand(word);
  return *at;
}

const Command *find_command(const std::string &name) {
  for (const Command *command : commands) {
    if (command->name == name) return command;
  }
  return nullptr;
}

std::vector<CLI::App *> commands_of(CLI::App &app) {
  return app.get_subcommands(
      [](const CLI::App *each) { return !each->get_name().empty() && !each->get_group().empty(); });
}

std::vector<const CLI::Option *> options_of(const CLI::App &app) {
  std::vector<const CLI::Option *> options;
  for (const CLI::Option *option : app.get_options()) {
    if (option != app.get_help_ptr()) options.push_back(option);
  }
  for (const CLI::App *group : app.get_subcommands([](const CLI::App *) { return true; })) {
    if (!group->get_name().empty()) continue;
    for (const CLI::Option *option : options_of(*group)) options.push_back(option);
  }
  return options;
}

}  // namespace tool
