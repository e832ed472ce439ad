// What the tables have of interfaces: in what neighbours differ by what each says of itself, where
// no packets were heard that show it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ospf_findings/finding.hpp"
#include "ospf_routes/database.hpp"

namespace ospf_findings {

// What a source does not tell is empty.
struct InterfaceFacts {
  struct Neighbor {
    ospf_routes::RouterId router = 0;
    std::optional<ospf_routes::Address> address;
    bool is_heard = false;  // its hellos are taken
    bool hears_us = false;  // and list this router
    bool is_full = false;
  };

  std::uint8_t version = 0;
  std::uint8_t instance = 0;
  ospf_routes::AreaId area = 0;
  ospf_routes::RouterId router = 0;
  std::string name;  // with its router's
  std::optional<ospf_routes::Address> address;
  std::vector<ospf_routes::Prefix> prefixes;  // of the link
  std::optional<bool> elects;                 // a designated router
  std::optional<std::uint16_t> hello_interval;
  std::optional<std::uint16_t> dead_interval;
  std::optional<std::uint32_t> mtu;
  std::string authentication;  // "none", "key" for any algorithm, or its name
  std::vector<Neighbor> neighbors;
};

// Of interfaces that take part. The databases tell prefixes of links, and whether areas take
// externals, where their routers' LSAs are there.
std::vector<Finding> findings_of(std::vector<InterfaceFacts> interfaces,
                                 const std::vector<ospf_routes::Database> &databases);

}  // namespace ospf_findings
