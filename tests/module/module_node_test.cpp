// A module's node in the list of modules: linking it once, and taking it out.
#include "module/module_node.hpp"

#include <gtest/gtest.h>

namespace {

using harbor::module_frame::link_module;
using harbor::module_frame::unlink_module;

struct Node : kelp_module_node {
  Node() : kelp_module_node{"node", nullptr, nullptr, nullptr} {}
  std::uint8_t linked = 0;
};
struct List : kelp_module_list {
  List() : kelp_module_list{0, nullptr, &first} {}
};

TEST(ModuleNode, IsLinkedBehindTheLast) {
  List list;
  Node first;
  Node second;
  link_module(first, list, first.linked);
  link_module(second, list, second.linked);
  EXPECT_EQ(list.count, 2u);
  EXPECT_EQ(list.first, &first);
  EXPECT_EQ(first.next, &second);
  EXPECT_EQ(first.prev_link, &list.first);
  EXPECT_EQ(second.next, nullptr);
  EXPECT_EQ(second.prev_link, &first.next);
  EXPECT_EQ(list.tail_link, &second.next);
  EXPECT_EQ(second.linked, 1);
}

// Whatever stood in the node before.
TEST(ModuleNode, IsTheEndOfTheListOnceItIsLinked) {
  List list;
  Node node;
  node.next = &node;
  link_module(node, list, node.linked);
  EXPECT_EQ(node.next, nullptr);
}

TEST(ModuleNode, IsNotLinkedTwice) {
  List list;
  Node node;
  link_module(node, list, node.linked);
  link_module(node, list, node.linked);
  EXPECT_EQ(list.count, 1u);
  EXPECT_EQ(node.next, nullptr);
}

TEST(ModuleNode, LooksAtTheLowBitOfTheLinkedByteAlone) {
  List list;
  Node node;
  node.linked = 2;
  link_module(node, list, node.linked);
  EXPECT_EQ(list.count, 1u);
  EXPECT_EQ(node.linked, 1);
}

TEST(ModuleNode, LeavesTheListFromTheMiddle) {
  List list;
  Node nodes[3];
  for (Node &node : nodes) link_module(node, list, node.linked);
  unlink_module(nodes[1], list);
  EXPECT_EQ(list.count, 2u);
  EXPECT_EQ(nodes[0].next, &nodes[2]);
  EXPECT_EQ(nodes[2].prev_link, &nodes[0].next);
  EXPECT_EQ(list.tail_link, &nodes[2].next);
  EXPECT_EQ(nodes[1].next, nullptr);
  EXPECT_EQ(nodes[1].prev_link, nullptr);
}

TEST(ModuleNode, LeavesTheListFromItsEnd) {
  List list;
  Node nodes[2];
  for (Node &node : nodes) link_module(node, list, node.linked);
  unlink_module(nodes[1], list);
  EXPECT_EQ(list.tail_link, &nodes[0].next);
  EXPECT_EQ(nodes[0].next, nullptr);
  unlink_module(nodes[0], list);
  EXPECT_EQ(list.tail_link, &list.first);
  EXPECT_EQ(list.first, nullptr);
  EXPECT_EQ(list.count, 0u);
}

TEST(ModuleNode, ThatIsNotLinkedLeavesTheListAndItsCountAlone) {
  List list;
  Node linked;
  Node node;
  link_module(linked, list, linked.linked);
  unlink_module(node, list);
  EXPECT_EQ(list.count, 1u);
  EXPECT_EQ(list.first, &linked);
  EXPECT_EQ(list.tail_link, &linked.next);
}

TEST(ModuleNode, OnceUnlinkedIsNeverLinkedAgain) {
  List list;
  Node node;
  link_module(node, list, node.linked);
  unlink_module(node, list);
  EXPECT_EQ(node.linked, 1);
  link_module(node, list, node.linked);
  EXPECT_EQ(list.count, 0u);
  EXPECT_EQ(list.first, nullptr);
}

}  // namespace
