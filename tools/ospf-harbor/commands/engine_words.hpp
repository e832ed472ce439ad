// The words by which commands are told of the engine that carries a site's rows.
#pragma once

#include <CLI/CLI.hpp>
#include <csignal>
#include <string>

#include "ospf_replication/jetstream.hpp"
#include "ospf_replication/subjects.hpp"
#include "usage_error.hpp"

namespace tool {

struct EngineWords {
  std::string site;
  ospf_replication::EngineOptions engine;

  void add_to(CLI::App &app) {
    app.add_option("--name", site, "The name of the site: letters, digits, '-' and '_'");
    app.add_option("--credentials", engine.credentials, "A credentials file of the engine");
    app.add_option("--tls-authorities", engine.authorities,
                   "The certificates to believe, PEM; with it the connection has to be TLS");
    app.add_option("--tls-certificate", engine.certificate, "The own certificate, PEM");
    app.add_option("--tls-key", engine.key, "Its key, PEM");
  }

  void check(const char *command) const {
    if (!ospf_replication::is_site_name(site)) {
      throw UsageError(command, "--name", "\"" + site + "\"",
                       "1 to 64 letters, digits, '-' or '_'");
    }
    if (engine.certificate.empty() != engine.key.empty()) {
      throw UsageError(command, "--tls-certificate and --tls-key", "one of them", "both");
    }
  }
};

}  // namespace tool
