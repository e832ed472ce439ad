// What the runtime's tests share: a database with a handle, and type records and objects made by
// hand, since no module of types is there.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "kelp/core.h"
#include "kelp/embed.h"
#include "kelp/oid.h"

namespace kelp_test {

// A type record with variant info of its own.
struct Type {
  explicit Type(const std::string &name, const std::string &kind = "type", int variants = 2,
                std::uint8_t identity = 7, const std::string &module = "test_module") {
    record.magic = KELP_TYPE_MAGIC;
    for (int i = 0; i < 16; ++i) {
      record.md5[i] = static_cast<std::uint8_t>(identity + i);
      std::snprintf(record.md5_text + 2 * i, 3, "%02x", record.md5[i]);
    }
    std::snprintf(record.type_name, sizeof record.type_name, "%s", name.c_str());
    std::snprintf(record.module_name, sizeof record.module_name, "%s", module.c_str());
    std::snprintf(record.kind, sizeof record.kind, "%s", kind.c_str());
    record.resolved_variant = -1;
    entries.resize(static_cast<std::size_t>(variants));
    for (int i = 0; i < variants; ++i) {
      entries[static_cast<std::size_t>(i)].variant_id = static_cast<std::uint32_t>(i);
      entries[static_cast<std::size_t>(i)].used_length = 16 + 8 * static_cast<std::uint32_t>(i);
    }
    info = {static_cast<std::int8_t>(variants), entries.data()};
    record.varinfo = &info;
  }
  Type(const Type &) = delete;
  Type &operator=(const Type &) = delete;

  kelp_type_record record = {};
  kelp_variant_info info = {};
  std::vector<kelp_variant_entry> entries;
};

struct Object {
  kelp_object_header header;
  std::uint32_t value;
};

// A write that was announced.
struct Write {
  const void *address;
  std::size_t length;
  std::uint32_t space_id;
  std::uint32_t origin;
};

// An open database with one handle. Objects go through make and drop; at the end nothing may be
// left.
class DatabaseTest : public ::testing::Test {
 protected:
  DatabaseTest() { open(); }
  ~DatabaseTest() override { shut(); }

  void open(const kelp_database_options *options = nullptr,
            const kelp_handle_options *handle_options = nullptr) {
    kelp_error error;
    database = kelp_database_open_private("test", options, &error);
    EXPECT_NE(database, nullptr) << error.text;
    handle = kelp_handle_create(database, handle_options, &error);
    EXPECT_NE(handle, nullptr) << error.text;
  }

  void shut() {
    kelp_handle_destroy(handle);
    kelp_error error;
    EXPECT_EQ(kelp_database_close(database, &error), 0);
    EXPECT_STREQ(error.text, expected_close_text.c_str());
    handle = nullptr;
    database = nullptr;
    kelp_tenant_set(0);
  }

  void reopen(const kelp_database_options &options) {
    shut();
    open(&options);
  }
  void reopen(const kelp_handle_options &options) {
    shut();
    open(nullptr, &options);
  }

  void *allocate(std::size_t size) { return handle->obj_alloc(handle->obj_pool, 0, size); }
  void release(void *pointer) { handle->obj_free(handle->obj_pool, 0, pointer); }

  template <typename T>
  T *make(kelp_type_record *type = nullptr) {
    auto *made = static_cast<T *>(allocate(sizeof(T)));
    std::memset(static_cast<void *>(made), 0, sizeof(T));
    std::memcpy(static_cast<void *>(made), &type, sizeof type);
    return made;
  }

  kelp_memory_statistics memory() const {
    kelp_memory_statistics statistics;
    kelp_database_memory(database, &statistics);
    return statistics;
  }

  // Records the writes announced from now on.
  void watch_writes() {
    kelp_handle_set_write_observer(
        handle,
        [](void *context, const void *address, std::size_t length, std::uint32_t space_id,
           std::uint32_t origin) {
          static_cast<std::vector<Write> *>(context)->push_back(
              {address, length, space_id, origin});
        },
        &writes);
  }

  kelp_database *database = nullptr;
  kelp_handle *handle = nullptr;
  std::uint32_t err = 0;
  std::string expected_close_text;
  std::vector<Write> writes;
};

}  // namespace kelp_test
