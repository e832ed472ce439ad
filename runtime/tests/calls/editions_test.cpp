// Which types of a store a program of another edition of its schema shares: those of the same
// names, laid out alike, whose objects find room in those that the store has.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "support.hpp"

namespace {

using kelp_test::Type;

kelp_type_record *entered = nullptr;

void enter(kelp_handle *handle, std::uint32_t space_id, std::uint32_t *) {
  auto *copy = static_cast<kelp_type_record_copy *>(
      handle->type_alloc(handle->type_pool, KELP_SPACE_RUNTIME, sizeof(kelp_type_record_copy)));
  *copy = {*entered, 0, 0};
  handle->type_table_insert(handle->type_table, space_id, entered->md5_text, copy);
  kelp_update_variant_info(handle, space_id, copy, entered, 1);
}

// A module of the process while this exists.
class Module {
 public:
  explicit Module(kelp_type_record *type) : types_{type, nullptr} {
    node_ = {"editions", types_, nullptr, kelp_module_tot_root.tail_link};
    *kelp_module_tot_root.tail_link = &node_;
    kelp_module_tot_root.tail_link = &node_.next;
    ++kelp_module_tot_root.count;
  }
  Module(const Module &) = delete;
  Module &operator=(const Module &) = delete;
  ~Module() {
    *node_.prev_link = nullptr;
    kelp_module_tot_root.tail_link = node_.prev_link;
    --kelp_module_tot_root.count;
  }

 private:
  kelp_type_record *types_[2];
  kelp_module_node node_;
};

// A store to which the type "area" came with objects of 24 bytes in one variant.
class EditionsTest : public testing::Test {
 protected:
  EditionsTest() {
    std::string name = "/tmp/kelp-editions-" + std::string(6, 'X');
    folder = mkdtemp(name.data());
    database = kelp_database_open_file((folder + "/store").c_str(), nullptr, &error);
    handle = kelp_handle_create(database, nullptr, &error);
    first.entries[0].alloc_slop = 8;
    entered = &first.record;
    EXPECT_EQ(kelp_lock_write(handle, &error), 0) << error.text;
    copy = kelp_type_info_ptr_get(handle, 0, &first.record, enter);
    EXPECT_NE(copy, &first.record);
    EXPECT_EQ(kelp_unlock(handle, &error), 0) << error.text;
  }
  ~EditionsTest() override {
    kelp_handle_destroy(handle);
    kelp_database_close(database, nullptr);
    std::filesystem::remove_all(folder);
  }

  // The record that objects of the other edition's type get under the write lock.
  kelp_type_record *record_for(Type &other) {
    const Module module(&other.record);
    EXPECT_EQ(kelp_lock_write(handle, &error), 0) << error.text;
    entered = &other.record;
    kelp_type_record *found = kelp_type_info_ptr_get(handle, 0, &other.record, enter);
    committed = kelp_unlock(handle, &error);
    return found;
  }

  std::string folder;
  kelp_error error = {};
  kelp_database *database = nullptr;
  kelp_handle *handle = nullptr;
  kelp_type_record *copy = nullptr;
  std::int32_t committed = 0;
  Type first{"area", "type", 1, 7};
};

constexpr std::uint32_t kRoom = 24 + 64;

TEST_F(EditionsTest, ObjectsThatFindRoomAreOfOneType) {
  Type other{"area", "type", 2, 90};
  other.entries[0].alloc_slop = kRoom - 16;
  EXPECT_EQ(record_for(other), copy);
  EXPECT_EQ(committed, 0);
  EXPECT_EQ(copy->varinfo->n_variants, 2);  // as the writer of the later edition told the store
}

TEST_F(EditionsTest, ObjectsThatOutgrowTheirRoomAreRefused) {
  Type other{"area", "type", 2, 90};
  other.entries[0].alloc_slop = kRoom - 16 + 1;
  EXPECT_EQ(record_for(other), &other.record);
  EXPECT_EQ(committed, KELP_ERR_INVALID);
  EXPECT_NE(std::string(error.text).find("objects of 24 bytes (room for 88)"), std::string::npos)
      << error.text;
}

TEST_F(EditionsTest, ObjectsThatAreLaidOutOtherwiseAreRefused) {
  Type other{"area", "type", 2, 90};
  other.entries[0].used_length += 8;
  EXPECT_EQ(record_for(other), &other.record);
  EXPECT_EQ(committed, KELP_ERR_INVALID);
}

TEST_F(EditionsTest, NamesOfModuleAndTypeCount) {
  Type of_other_module{"area", "type", 1, 90, "other_module"};
  Type of_other_name{"areas", "type", 1, 120};
  for (Type *other : {&of_other_module, &of_other_name}) {
    EXPECT_NE(record_for(*other), copy);
    EXPECT_EQ(committed, 0) << error.text;
  }
}

TEST_F(EditionsTest, EachObjectHasRoomForThoseOfTheOthers) {
  const Module module(&first.record);
  ASSERT_EQ(kelp_lock_write(handle, &error), 0) << error.text;
  const auto bytes_for = [&](std::size_t size) {
    kelp_memory_statistics before{}, after{};
    kelp_database_memory(database, &before);
    EXPECT_NE(handle->obj_alloc(handle->obj_pool, 0, size), nullptr);
    kelp_database_memory(database, &after);
    return after.live_bytes - before.live_bytes;
  };
  EXPECT_EQ(bytes_for(24), kRoom);
  EXPECT_EQ(bytes_for(32), 32u);
  EXPECT_EQ(kelp_rollback(handle, &error), 0);
}

}  // namespace
