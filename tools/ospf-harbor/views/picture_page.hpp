// Pictures as one page for browsers: it holds all that it shows, asks no network for anything, and
// runs nothing but its own script. What comes from networks is data in it, and shown as text alone.
#pragma once

#include <string>
#include <vector>

#include "views/lsa_differences.hpp"
#include "views/picture.hpp"

namespace tool {

struct PageLsa {
  const ospf_tables::LsdbEntry *entry = nullptr;
  TopologyChange change = TopologyChange::none;
  std::vector<FieldChange> fields;  // of one that changed
};

// One choice of the page: a picture, and the LSAs that tell of its parts.
struct PagePicture {
  Picture picture;
  std::vector<PageLsa> lsas;
};

// Those of one instance, each LSA once.
std::vector<PageLsa> page_lsas(const std::vector<ospf_tables::LsdbEntry> &entries,
                               const InstanceName &instance);
// Those that two lists have, with their changes.
std::vector<PageLsa> page_lsas(const std::vector<ospf_tables::LsdbEntry> &before,
                               const std::vector<ospf_tables::LsdbEntry> &after,
                               const InstanceName &instance);

// Graphviz lays the pictures out. Throws std::runtime_error as laid_out() does.
std::string page_of(const std::vector<PagePicture> &pictures);

}  // namespace tool
