#include "commands/shell_completion.hpp"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <map>
#include <set>

#include "commands/commands.hpp"
#include "ospf_tables/lsdb_view.hpp"
#include "ospf_tables/row_keys.hpp"
#include "views/show.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

using Words = std::set<std::string>;

enum class Kind { commands, files, routers, areas, paths };

// What the values of options are, where it is not a file.
const std::map<std::string, Kind> &kinds_of_options() {
  static const std::map<std::string, Kind> kinds{{"--router", Kind::routers},
                                                 {"--adv-router", Kind::routers},
                                                 {"--without-router", Kind::routers},
                                                 {"--area", Kind::areas},
                                                 {"--path", Kind::paths}};
  return kinds;
}

// The same of what stands without an option.
Kind kind_of_positional(const std::string &command) {
  if (command == "show") return Kind::paths;
  if (command == "path") return Kind::routers;
  if (command == "help") return Kind::commands;
  return Kind::files;
}

// Of "area/0.0.0.0/interface/eth0" the word "interface".
std::string last_kind(const std::string &path) {
  const std::size_t key = path.rfind('/');
  const std::size_t kind = path.rfind('/', key - 1);
  return path.substr(kind == path.npos ? 0 : kind + 1, key - (kind == path.npos ? 0 : kind + 1));
}

// A path goes on a part at a time: the kinds of rows below what it names so far, and their keys.
void find_paths(Session &session, const std::string &begun, std::vector<Completion> &all) {
  const std::size_t slash = begun.rfind('/');
  const std::string before = slash == begun.npos ? "" : begun.substr(0, slash);
  const bool is_key = slash != begun.npos && std::ranges::count(before, '/') % 2 == 0;
  const std::string kind = before.substr(before.rfind('/') + 1);
  Words found;
  visit_path(session, before, [&](const RowView &row) {
    if (is_key && row.kind == kind) {
      found.insert(before + "/" + row.key);
      return false;
    }
    const bool is_below = row.path.size() > 0 && !is_key;
    if (is_below) found.insert((before.empty() ? "" : before + "/") + std::string(row.kind) + "/");
    return true;
  });
  // The rows that the path names itself are of no kind below it.
  if (!is_key && !before.empty()) found.erase(before + "/" + last_kind(before) + "/");
  for (const std::string &word : found) {
    if (word.starts_with(begun)) all.push_back({word, false});
  }
}

void find_files(const std::string &begun, std::vector<Completion> &all) {
  namespace fs = std::filesystem;
  const std::size_t slash = begun.rfind('/');
  const std::string folder = slash == begun.npos ? "" : begun.substr(0, slash + 1);
  const std::string name = begun.substr(folder.size());
  std::error_code error;
  for (fs::directory_iterator at(folder.empty() ? "." : folder, error), end; !error && at != end;
       at.increment(error)) {
    const std::string found = at->path().filename().string();
    if (!found.starts_with(name) || (name.empty() && found.starts_with('.'))) continue;
    std::error_code unknown;
    const bool is_folder = at->is_directory(unknown);
    all.push_back({folder + found + (is_folder ? "/" : ""), !is_folder});
  }
}

Words ids_in_tables(Session &session, Kind kind) {
  Words found;
  for (const LsdbEntry &entry : read_lsdb(session)) {
    if (kind == Kind::routers) found.insert(dotted(entry.lsa.adv_router));
    if (kind == Kind::areas && entry.area) found.insert(dotted(*entry.area));
  }
  return found;
}

void add_words(const Words &words, const std::string &begun, std::vector<Completion> &all) {
  for (const std::string &word : words) {
    if (word.starts_with(begun)) all.push_back({word, true});
  }
}

// The command or group that words begin with, and how many of them name it.
std::pair<CLI::App *, std::size_t> command_of(CLI::App &app,
                                              const std::vector<std::string> &words) {
  CLI::App *at = &app;
  std::size_t used = 0;
  for (; used < words.size() && !commands_of(*at).empty(); ++used) {
    const auto below = commands_of(*at);
    const auto found = std::ranges::find_if(
        below, [&](const CLI::App *each) { return each->get_name() == words[used]; });
    if (found == below.end()) break;
    at = *found;
  }
  return {at, used};
}

Words names_of(CLI::App &app) {
  Words names;
  for (const CLI::App *each : commands_of(app)) names.insert(each->get_name());
  return names;
}

const CLI::Option *option_named(const CLI::App &app, const std::string &word) {
  for (const CLI::Option *option : options_of(app)) {
    if (option->check_name(word)) return option;
  }
  return nullptr;
}

Words option_names(const CLI::App &app) {
  Words names{"--help"};
  for (const CLI::Option *option : options_of(app)) {
    for (const std::string &name : option->get_lnames()) names.insert("--" + name);
  }
  return names;
}

// What is expected behind the words of a command.
Kind kind_behind(CLI::App &command, const std::vector<std::string> &words, std::size_t used) {
  if (words.size() > used) {
    const CLI::Option *option = option_named(command, words.back());
    if (option != nullptr && option->get_items_expected_max() > 0) {
      const auto &kinds = kinds_of_options();
      const auto kind = kinds.find(words.back());
      return kind == kinds.end() ? Kind::files : kind->second;
    }
  }
  return kind_of_positional(command.get_name());
}

std::vector<Completion> completions_in(CLI::App &app, Session &session,
                                       const std::vector<std::string> &words,
                                       const std::string &begun) {
  std::vector<Completion> all;
  const auto [command, used] = command_of(app, words);
  if (!commands_of(*command).empty()) {
    if (used == words.size()) add_words(names_of(*command), begun, all);
    return all;
  }
  if (begun.starts_with("-")) {
    add_words(option_names(*command), begun, all);
    return all;
  }
  const Kind kind = kind_behind(*command, words, used);
  switch (kind) {
    case Kind::files:
      find_files(begun, all);
      break;
    case Kind::commands: {
      const auto [below, there] = command_of(app, {words.begin() + 1, words.end()});
      if (there + 1 == words.size()) add_words(names_of(*below), begun, all);
      break;
    }
    case Kind::paths:
      session.reading([&] { find_paths(session, begun, all); });
      break;
    default:
      session.reading([&] { add_words(ids_in_tables(session, kind), begun, all); });
  }
  std::ranges::sort(all, {}, &Completion::word);
  return all;
}

}  // namespace

std::vector<Completion> completions(Session &session, const std::vector<std::string> &words,
                                    const std::string &begun) {
  std::vector<Completion> all;
  try {
    with_parser([&](CLI::App &app) { all = completions_in(app, session, words, begun); },
                Stands::in_the_shell);
  } catch (const std::exception &) {
    // A line can be typed without help.
    all.clear();
  }
  return all;
}

}  // namespace tool
