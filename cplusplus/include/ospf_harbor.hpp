// The operational data model of OSPF in C++20: objects that own themselves, fields with types of
// the standard library, tables as ranges. Headers alone, over the C functions of ospf_harbor_oper
// and kelp; what a function here calls can be read in one line.
//
//   ospf_harbor::database database("example");
//   ospf_harbor::session session(database);
//   ospf_harbor::tree<ospf_harbor::area_rules> areas(session);
//   auto area = areas.add(51);
//   area->add_interface("core").object().set_cost(10);
//   for (auto row : areas) std::cout << row.to_text();
//
// <ospf_harbor/receive.hpp> takes images from outside; it needs ospf_harbor_check too and is
// included on its own.
#pragma once

#include <ospf_harbor/feed.hpp>
#include <ospf_harbor/model.hpp>
