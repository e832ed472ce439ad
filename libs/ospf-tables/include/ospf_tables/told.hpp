// What sources tell of a network and no table has a field for. It stands beside the tables of a
// private database for as long as a run lasts; stores and trees that travel do not have it, and who
// shows it shows nothing in its place then.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

namespace ospf_tables {

// What the ages of LSAs are as of.
struct Ages {
  bool as_heard = false;  // each as its LSA was heard
  std::int64_t time = 0;  // else all as of this time, in nanoseconds since 1970
  bool operator==(const Ages &) const = default;
};

struct ToldOfNeighbor {
  std::optional<std::uint8_t> priority;
  std::string evidence;  // what the state rests on
};

struct ToldOfInterface {
  std::string address;
  std::string prefix;
  std::optional<std::uint32_t> mtu;
  bool authentication = false;  // what the table has of it is what the source says
  std::string type;             // where the model has none like it: "virtual", "loopback"
  std::optional<std::uint32_t> cost;
  bool silent = false;  // it was heard, but no more
};

// Names of routers by their ID.
using RouterNames = std::map<std::uint32_t, std::string>;

// By area ID; interfaces by their name too, neighbours by that and their router ID.
struct ToldOfInstance {
  std::optional<Ages> ages;  // of LSAs; empty where routers told them
  std::map<std::uint32_t, std::string> area_kinds;
  std::map<std::pair<std::uint32_t, std::string>, ToldOfInterface> interfaces;
  std::map<std::tuple<std::uint32_t, std::string, std::string>, ToldOfNeighbor> neighbors;
};

// By the key of the instance's row, such as "ipv4,10.0.0.1".
using Told = std::map<std::string, ToldOfInstance>;

}  // namespace ospf_tables
