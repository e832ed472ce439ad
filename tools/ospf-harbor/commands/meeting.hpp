// What `send` and `receive` have in common: how long they wait, where, and the token of a TCP port.
#pragma once

#include <chrono>
#include <string>

#include "commands/command.hpp"
#include "tree_exchange/endpoint.hpp"
#include "tree_exchange/handover.hpp"

namespace tool {

inline constexpr char places_help[] = "unix:PATH, tcp:127.0.0.1:PORT or tcp:[::1]:PORT";

struct Meeting {
  std::string place;
  std::string token;
  double seconds = 30;

  void add_to(CLI::App &app, const char *option, const std::string &help,
              const std::string &token_help) {
    app.add_option(option, place, help)->required();
    app.add_option("--token", token,
                   token_help +
                       "; other users see command lines, so OSPF_HARBOR_TOKEN in the "
                       "environment serves too")
        ->envname("OSPF_HARBOR_TOKEN")
        ->check([](const std::string &text) {
          return tree_exchange::is_token(text)
                     ? std::string()
                     : "expected 1 to 64 printable characters without blanks";
        });
    app.add_option("--timeout", seconds, "Seconds to wait for the other side")
        ->check(CLI::Range(0.001, 86400.0));
  }
  std::chrono::milliseconds time() const {
    return std::chrono::milliseconds(static_cast<std::int64_t>(seconds * 1000));
  }
  // option: for messages, such as "send --to".
  tree_exchange::Endpoint endpoint(const char *option) const {
    try {
      return tree_exchange::parse_endpoint(option, place);
    } catch (const ospf_tables::InputError &error) {
      throw UsageError(error.what());
    }
  }
};

}  // namespace tool
