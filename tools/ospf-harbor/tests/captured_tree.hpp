// The rows that a capture was loaded into, read back with the library's getters: each LSA with its
// place in the tree and its typed fields as one text, interfaces and neighbours as their values.
// Tests hold these against what other programs say of the same capture.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ospf_tables/session.hpp"

namespace captured {

struct Lsa {
  unsigned version = 0;      // of the instance
  unsigned instance_id = 0;  // by the instance's router ID
  std::string area;          // its ID; empty for one of the instance
  std::string interface;     // its name; empty for one of the area or instance
  bool is_link_row = false;  // link_scope_lsa, else area_scope_lsa
  std::uint32_t container = 0;
  std::uint32_t row_version = 0;  // of a link_scope_lsa
  std::string name;               // type, link-state ID, router, sequence and checksum
  unsigned age = 0;
  std::string fields;  // of header and body, in the form of the reference files
  std::vector<std::uint8_t> raw;
  bool completed = false;
};

struct Interface {
  unsigned version = 0;
  std::string area;
  std::string name;
  unsigned hello_interval = 0;
  unsigned dead_interval = 0;
  unsigned priority = 0;
  unsigned cost = 0;
  unsigned network_type = 0;
  std::string dr, bdr, state;
  unsigned authentication = 0;
  std::string algorithm;
  std::vector<std::string> neighbors;  // "router address state"
  std::vector<std::string> static_neighbors;
};

struct Tree {
  std::vector<std::string> areas;  // "version area"
  std::vector<Lsa> lsas;
  std::vector<Interface> interfaces;
};

Tree read(ospf_tables::Session &session);

}  // namespace captured
