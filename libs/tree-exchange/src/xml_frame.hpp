// The elements and attributes of a tree's XML document around its records; the writer and the
// reader share them.
#pragma once

namespace tree_exchange::xml {

inline constexpr char tree[] = "ospf_harbor_tree";
inline constexpr char name_space[] = "urn:ospf-harbor:tree";
inline constexpr char version[] = "1";
inline constexpr char module[] = "ospf_harbor_oper";
inline constexpr char table[] = "table";
inline constexpr char row[] = "row";

}  // namespace tree_exchange::xml
