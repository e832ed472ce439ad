// The options of commands that read tables: what is loaded first.
#pragma once

#include <string>
#include <vector>

#include "commands/command.hpp"
#include "sources/name_list.hpp"
#include "sources/sources.hpp"

namespace tool {

inline void add_ages_option(CLI::App &app, bool &as_heard) {
  app.add_flag("--as-heard", as_heard,
               "Ages of captured LSAs as each was heard, not as of the last packet");
}

inline void add_names_option(CLI::App &app, std::string &names) {
  app.add_option("--names", names,
                 "A list of names to show beside router IDs: lines such as \"10.0.0.1 core1\"");
}

struct SourceChoice {
  std::vector<std::string> sources;
  std::string at;
  bool as_heard = false;
  std::string names;

  void add_to(CLI::App &app) {
    app.add_option("SOURCE,--from", sources, source_help);
    app.add_option("--at", at,
                   "Captures only up to this time: 2026-11-22T08:30:00.5Z, 08:30:00, or +12.5 for "
                   "seconds behind the first packet");
    add_ages_option(app, as_heard);
    add_names_option(app, names);
  }

  // Throws UsageError for what cannot be: sources beside a store, a time without sources.
  void check(const char *command, bool is_store) const {
    if (is_store && !sources.empty()) {
      throw UsageError(command, "--from", "it beside a store",
                       "one of the two; load and import fill a store");
    }
    if (sources.empty() && !at.empty()) {
      throw UsageError(command, "--at", "no --from", "captures whose packets have times");
    }
  }

  // Into the session. 0 when all was sound, 1 when something was not and the rest is loaded.
  int load(ospf_tables::Session &session, const char *command, Heard *heard = nullptr) const {
    check(command, session.is_store());
    const int status = sources.empty() ? 0 : load_sources(session, sources, {at, heard, as_heard});
    if (!names.empty()) read_names(names, session.names());
    return status;
  }
};

}  // namespace tool
