// What sources tell besides what the tables hold: who asks for it gives one of these to whoever
// loads them.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ospf_events/timeline.hpp"
#include "ospf_findings/configured.hpp"

namespace tool {

struct Heard {
  std::vector<std::string> captures;  // whose packets events name, by the number of the source
  std::unique_ptr<ospf_events::Timeline> timeline;          // null without captures
  std::vector<ospf_events::Event> events;                   // as they came
  std::function<void(const ospf_events::Event &)> at_once;  // may be empty
  std::optional<ospf_decode::Time> first;                   // of the first packet
  std::vector<ospf_findings::Finding> between_routers;      // what their answers differ in
  std::vector<ospf_findings::Configuration> configurations;
};

}  // namespace tool
