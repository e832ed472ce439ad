// Events for people and as JSON lines.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "ospf_events/event.hpp"
#include "views/router_names.hpp"

namespace tool {

// `captures`: by the number of the source that packets name.
std::string json_line(const ospf_events::Event &event, const std::vector<std::string> &captures,
                      const RouterNames &names);

// A line each; the day stands above the first line of it.
class EventPrinter {
 public:
  EventPrinter(const std::vector<std::string> &captures, const RouterNames &names, std::FILE *out)
      : captures_(captures), names_(names), out_(out) {}
  void print(const ospf_events::Event &event);

 private:
  const std::vector<std::string> &captures_;
  const RouterNames &names_;
  std::FILE *out_;
  std::string day_;
};

}  // namespace tool
