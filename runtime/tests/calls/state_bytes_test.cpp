// Distances of nested state bytes.
#include "support.hpp"

namespace {

using kelp_test::DatabaseTest;
using kelp_test::Object;

class DistancesTest : public DatabaseTest {
 protected:
  struct Parent {
    Object own;
    Object children[200];
  };
};

TEST_F(DistancesTest, DistanceIsKeptBesideTheObject) {
  auto *parent = make<Parent>();
  Object *child = &parent->children[3];
  watch_writes();
  kelplib_update_sttr_offset(handle, 6, child, 0xFFFFFFF0u);
  EXPECT_EQ(kelplib_get_sttr_offset(handle, 6, child), 0xFFFFFFF0u);
  EXPECT_EQ(child->header.obj_flags, OBJ_STTR_RELOCATED);
  EXPECT_NE(handle->hd_mapped, 0u);
  ASSERT_EQ(writes.size(), 1u);
  EXPECT_EQ(writes[0].address, &child->header.obj_flags);
  EXPECT_EQ(writes[0].length, 1u);
  EXPECT_EQ(writes[0].space_id, 6u);

  std::memset(static_cast<void *>(child), 0xEE, sizeof *child);
  EXPECT_EQ(kelplib_get_sttr_offset(handle, 6, child), 0xFFFFFFF0u);
  release(parent);
}

TEST_F(DistancesTest, SecondUpdateReplacesAndAnnouncesNothing) {
  auto *parent = make<Parent>();
  kelplib_update_sttr_offset(handle, 0, &parent->own, 5);
  watch_writes();
  kelplib_update_sttr_offset(handle, 0, &parent->own, 9);
  EXPECT_EQ(kelplib_get_sttr_offset(handle, 0, &parent->own), 9u);
  EXPECT_TRUE(writes.empty());
  release(parent);
}

TEST_F(DistancesTest, DestroyForgetsOneAndLeavesTheBytes) {
  auto *parent = make<Parent>();
  kelplib_update_sttr_offset(handle, 0, &parent->children[0], 5);
  kelplib_update_sttr_offset(handle, 0, &parent->children[1], 6);
  watch_writes();
  kelp_hd_mapping_destroy(handle, 0, &parent->children[0], &err);
  EXPECT_EQ(err, 0u);
  EXPECT_EQ(kelplib_get_sttr_offset(handle, 0, &parent->children[0]), 0u);
  EXPECT_EQ(kelplib_get_sttr_offset(handle, 0, &parent->children[1]), 6u);
  EXPECT_EQ(parent->children[0].header.obj_flags, OBJ_STTR_RELOCATED);
  EXPECT_TRUE(writes.empty());
  EXPECT_NE(handle->hd_mapped, 0u);
  kelp_hd_mapping_destroy(handle, 0, &parent->children[1], &err);
  EXPECT_EQ(handle->hd_mapped, 0u);
  kelp_hd_mapping_destroy(handle, 0, &parent->children[1], &err);
  EXPECT_EQ(err, 0u);
  kelp_hd_mapping_destroy(handle, 0, nullptr, &err);
  EXPECT_EQ(err, 22u);
  release(parent);
}

TEST_F(DistancesTest, FreedMemoryTakesItsDistancesAlong) {
  auto *first = make<Parent>();
  auto *second = make<Parent>();
  for (int i = 0; i < 200; ++i) {
    kelplib_update_sttr_offset(handle, 0, &first->children[i], static_cast<std::uint32_t>(i + 1));
    kelplib_update_sttr_offset(handle, 0, &second->children[i],
                               static_cast<std::uint32_t>(i + 1000));
  }
  release(first);
  for (int i = 0; i < 200; ++i) {
    EXPECT_EQ(kelplib_get_sttr_offset(handle, 0, &first->children[i]), 0u);
    EXPECT_EQ(kelplib_get_sttr_offset(handle, 0, &second->children[i]),
              static_cast<std::uint32_t>(i + 1000));
  }
  release(second);
  EXPECT_EQ(kelplib_get_sttr_offset(handle, 0, &second->children[0]), 0u);
}

TEST_F(DistancesTest, FreedMemoryLeavesThoseOfItsNeighbours) {
  std::vector<Object *> blocks;
  for (std::uint32_t i = 0; i < 100; ++i) {
    blocks.push_back(static_cast<Object *>(allocate(64)));
    std::memset(static_cast<void *>(blocks.back()), 0, 64);
    kelplib_update_sttr_offset(handle, 0, blocks.back(), i + 1);
  }
  for (std::size_t i = 0; i < 100; i += 2) release(blocks[i]);
  for (std::uint32_t i = 0; i < 100; ++i) {
    EXPECT_EQ(kelplib_get_sttr_offset(handle, 0, blocks[i]), i % 2 == 0 ? 0 : i + 1);
  }
  for (std::size_t i = 1; i < 100; i += 2) release(blocks[i]);
}

TEST_F(DistancesTest, FreedLargeMemoryTakesItsDistancesAlong) {
  auto *block = static_cast<char *>(allocate(1 << 20));
  auto *object = reinterpret_cast<Object *>(block + 700000);
  std::memset(static_cast<void *>(object), 0, sizeof *object);
  kelplib_update_sttr_offset(handle, 0, object, 77);
  release(block);
  EXPECT_EQ(kelplib_get_sttr_offset(handle, 0, object), 0u);
}

TEST_F(DistancesTest, NewHandleAndLockSeeThatDistancesAreKnown) {
  auto *parent = make<Parent>();
  kelp_handle *early = kelp_handle_create(database, nullptr, nullptr);
  EXPECT_EQ(early->hd_mapped, 0u);
  kelplib_update_sttr_offset(handle, 0, &parent->own, 5);
  kelp_handle *late = kelp_handle_create(database, nullptr, nullptr);
  EXPECT_NE(late->hd_mapped, 0u);
  ASSERT_EQ(kelp_lock_write(early, nullptr), 0);
  EXPECT_NE(early->hd_mapped, 0u);
  EXPECT_EQ(kelplib_get_sttr_offset(early, 0, &parent->own), 5u);
  kelp_handle_destroy(early);
  kelp_handle_destroy(late);
  release(parent);
}

}  // namespace
