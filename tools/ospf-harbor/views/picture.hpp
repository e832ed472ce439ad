// A topology as it is drawn: what stands at which node and line, in which colour. Every form of
// picture is made of this, and none of them asks the topology.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "views/topology.hpp"
#include "views/topology_way.hpp"

namespace tool {

struct PictureChoice {
  bool stubs = false;      // stub networks too, and the prefixes of point-to-point links
  bool addresses = false;  // of interfaces, at their ends of lines
  WayOver way{};
};

struct PictureColours {
  std::string fill;
  std::string line;
};

// Of lines and nodes that came, went or changed, and of those that did not.
const PictureColours &colours_of(TopologyChange change);
const char *name_of(TopologyChange change);  // empty for none

struct PictureArea {
  std::uint32_t id = 0;
  std::string title;  // "area 0.0.0.1, NSSA"
  PictureColours colours;
};

enum class PicturePart { router, network, stub };

struct PictureNode {
  PicturePart part = PicturePart::router;
  std::string name;                // no other node has it
  std::vector<std::size_t> areas;  // by their places in the picture
  std::string title;
  std::vector<std::string> lines;  // below it, smaller
  bool is_whole = true;            // an LSA tells of it
  bool is_boundary = false;
  bool is_on_way = false;
  TopologyChange change = TopologyChange::none;
  std::uint32_t router = 0;  // what it stands for
  NetworkId network{};
};

enum class PictureLine { solid, one_sided, virtual_link, multipoint };

struct PictureEdge {
  std::size_t nodes[2] = {};
  std::size_t area = 0;  // by its place in the picture
  PictureLine line = PictureLine::solid;
  std::string costs[2];  // at its ends, empty where nobody says one
  std::string addresses[2];
  std::string label;  // in the middle
  bool is_between_routers = false;
  bool is_on_way = false;
  TopologyChange change = TopologyChange::none;
};

struct Picture {
  InstanceName instance;
  std::string title;
  std::size_t routers = 0;  // a picture of many is drawn with less detail
  bool is_difference = false;
  bool shows_addresses = false;
  std::vector<PictureArea> areas;
  std::vector<PictureNode> nodes;
  std::vector<PictureEdge> edges;

  bool has(PictureLine line) const;
  bool has_way() const;
};

Picture picture_of(const Topology &topology, const PictureChoice &choice);

// What the signs of a picture mean, as far as they are in it.
std::vector<std::string> legend_of(const Picture &picture);

}  // namespace tool
