// What the commands that calculate with databases share: which instances they look at, how they
// name routers and prefixes, and how they tell what databases lack.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "commands/command.hpp"
#include "ospf_routes/changes.hpp"
#include "ospf_routes/routes.hpp"
#include "ospf_tables/lsdb_view.hpp"
#include "views/prefix_choice.hpp"

namespace tool {

// As the command line has it; empty texts mean all.
struct InstanceChoice {
  bool v2 = false;
  bool v3 = false;
  std::string instance;  // a number of 8 bits

  // Throws InputError when the text is none.
  bool meets(std::uint8_t of_version, std::uint8_t of_instance) const;
};

void add_instance_options(CLI::App &command, InstanceChoice &choice);

// What if: changes to the databases, as the command line has them.
class WhatIf {
 public:
  void add_to(CLI::App &app);
  bool is_asked() const;
  // For each database what it becomes; nothing where no change is asked for, and where the routers
  // that changes name are not there but are elsewhere. Throws InputError and UsageError.
  std::vector<std::optional<ospf_routes::Database>> applied(
      const std::vector<ospf_routes::Database> &databases, ospf_routes::Rules rules) const;

  // Puts what they become in place of the databases, and leaves out those without. Throws the same.
  void replace(std::vector<ospf_routes::Database> &databases, ospf_routes::Rules rules) const;

 private:
  std::vector<ospf_routes::Change> changes() const;

  std::vector<std::string> without_;
  std::vector<std::string> without_routers_;
  std::vector<std::string> costs_;
  std::vector<std::string> with_;
};

// The databases of these LSAs that are chosen. Throws InputError when there is none.
std::vector<ospf_routes::Database> chosen_databases(const std::vector<ospf_tables::LsdbEntry> &lsas,
                                                    const InstanceChoice &choice,
                                                    const char *command);

// The routers of these that have a database. Throws InputError with the nearest that exist.
ospf_routes::RouterId router_named(const std::string &option, const std::string &text,
                                   const std::vector<ospf_routes::Calculator> &calculators);

// Of all routes the prefixes that share most bits with an address or a prefix, as "10.0.0.0/8,
// ..."; empty when the text is neither, or there are none.
std::string nearest_prefixes(const std::string &text,
                             const std::vector<ospf_routes::Calculator> &calculators,
                             const std::vector<ospf_routes::Database> &databases);

// To standard error, a line each; of many the first ones and how many more there are.
void tell_lacks(const char *command, const ospf_routes::Database &database,
                const std::vector<std::string> &lacks);

}  // namespace tool
