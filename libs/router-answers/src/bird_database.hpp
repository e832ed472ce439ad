// BIRD's databases out of "lsadb" and "state all"; bird_reader.hpp says how far.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "router_answers/database.hpp"
#include "text_answer.hpp"

namespace router_answers {

// What "state all" says of one router, or one network, in an area.
struct BirdNode {
  struct Line {
    std::string word;    // "router", "network", "stubnet", "vlink", "xnetwork", "xrouter",
                         // "external", "nssa-ext", "address"
    std::string target;  // a router ID, a prefix, or [ROUTER-INTERFACE] of an OSPFv3 network
    std::uint32_t metric = 0;
    bool type_2 = false;
    std::string via;
    std::uint32_t tag = 0;
  };
  std::uint32_t router = 0;  // of a network the designated one
  std::string network;       // empty for a router
  bool own = false;          // the router at distance 0
  std::vector<Line> lines;
};

struct BirdState {
  std::map<std::uint32_t, std::vector<BirdNode>> areas;
  std::vector<BirdNode> asbrs;  // of areas that are not the router's
  std::optional<std::uint32_t> own_router_id() const;
};

BirdState read_bird_state(const TextAnswer &text);

// `state` may be empty; then there are headers alone. Throws InputError.
void read_bird_lsadb(const TextAnswer &text, std::uint8_t version, const BirdState &state,
                     Database &database);

}  // namespace router_answers
