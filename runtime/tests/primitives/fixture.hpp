// A handle whose hooks are watched: what the tests of the primitives, of text, XML and images stand
// on. The handle is a real one on a private database; its hooks are replaced by ones that record
// the call and hand it on.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "kelp/core.h"
#include "kelp/embed.h"
#include "kelp/primitives.h"
#include "kelp/wire.h"
#include "kelp/xml.h"

namespace kelp_test {

inline constexpr uint32_t kSpace = 77;

// One call of write_notify, with the bytes that the range held at that moment.
struct Announcement {
  const void *address;
  size_t length;
  std::string bytes_before;
};

inline std::string bytes_at(const void *address, size_t length) {
  return std::string(static_cast<const char *>(address), length);
}

// The first length bytes of an image in a block of exactly that size, so that the address sanitizer
// sees a reader that goes further.
class ExactCopy {
 public:
  ExactCopy(const void *image, int32_t length)
      : size_(length > 0 ? static_cast<size_t>(length) : 0), bytes_(new char[size_]) {
    std::memcpy(bytes_.get(), image, size_);
  }
  const char *get() const { return bytes_.get(); }

 private:
  size_t size_;
  std::unique_ptr<char[]> bytes_;
};

class PrimitiveTest : public ::testing::Test {
 protected:
  void SetUp() override {
    kelp_error error = {};
    database_ = kelp_database_open_private("primitives", nullptr, &error);
    ASSERT_NE(database_, nullptr);
    handle_ = kelp_handle_create(database_, nullptr, &error);
    ASSERT_NE(handle_, nullptr);
    current_ = this;
    alloc_ = handle_->obj_alloc;
    free_ = handle_->obj_free;
    notify_ = handle_->write_notify;
    handle_->obj_alloc = alloc;
    handle_->obj_free = release;
    handle_->write_notify = notify;
  }

  void TearDown() override {
    EXPECT_EQ(live_blocks_, expected_live_blocks_) << "blocks that were not given back";
    handle_->obj_alloc = alloc_;
    handle_->obj_free = free_;
    handle_->write_notify = notify_;
    current_ = nullptr;
    kelp_handle_destroy(handle_);
    kelp_database_close(database_, nullptr);
  }

  uint32_t last_error() const {
    return static_cast<uint32_t>(kelp_handle_last_error(handle_, nullptr));
  }

  // The word holds the code, and so does the handle's last error; both are then cleared.
  void expect_failure(uint32_t code) {
    EXPECT_EQ(err_, code);
    EXPECT_EQ(last_error(), code);
    clear_failure();
  }

  void expect_success() {
    EXPECT_EQ(err_, 0u);
    EXPECT_EQ(last_error(), 0u);
  }

  void clear_failure() {
    err_ = 0;
    kelp_clear_last_error(handle_);
  }

  // Exactly one announcement since the last take, of that range.
  void expect_announced(const void *address, size_t length) {
    ASSERT_EQ(announced_.size(), 1u);
    EXPECT_EQ(announced_[0].address, address);
    EXPECT_EQ(announced_[0].length, length);
    announced_.clear();
  }

  void expect_nothing_announced() { EXPECT_TRUE(announced_.empty()); }

  void assign(kelp_vstring *vstring, std::string_view text) {
    kelp_vstring_assign(handle_, kSpace, vstring, text.data(), text.size(), &err_);
    announced_.clear();
  }

  static std::string text_of(const kelp_vstring &vstring) {
    return std::string(kelp_vstring_text(&vstring), vstring.length);
  }

  kelp_database *database_ = nullptr;
  kelp_handle *handle_ = nullptr;
  uint32_t err_ = 0;
  std::vector<Announcement> announced_;
  bool refuse_memory_ = false;
  int live_blocks_ = 0;
  int expected_live_blocks_ = 0;

 private:
  static void *alloc(void *pool, uint32_t space_id, size_t size) {
    EXPECT_EQ(space_id, kSpace);
    if (current_->refuse_memory_) return nullptr;
    void *block = current_->alloc_(pool, space_id, size);
    std::memset(block, 0xA5, size);
    ++current_->live_blocks_;
    return block;
  }

  static void release(void *pool, uint32_t space_id, void *block) {
    EXPECT_EQ(space_id, kSpace);
    EXPECT_NE(block, nullptr);
    --current_->live_blocks_;
    current_->free_(pool, space_id, block);
  }

  static void notify(void *pool, const void *address, size_t length, uint32_t space_id) {
    EXPECT_EQ(pool, current_->handle_->obj_pool);
    EXPECT_EQ(space_id, kSpace);
    current_->announced_.push_back({address, length, bytes_at(address, length)});
    current_->notify_(pool, address, length, space_id);
  }

  static inline PrimitiveTest *current_ = nullptr;
  decltype(kelp_handle::obj_alloc) alloc_ = nullptr;
  decltype(kelp_handle::obj_free) free_ = nullptr;
  decltype(kelp_handle::write_notify) notify_ = nullptr;
};

// A parsed document that frees itself; parsing must succeed.
class Document {
 public:
  explicit Document(std::string_view text) {
    char message[256] = "";
    document_ = kelp_xml_parse(text.data(), text.size(), message, sizeof message);
    EXPECT_NE(document_, nullptr) << message;
  }
  ~Document() { kelp_xml_free(document_); }
  Document(const Document &) = delete;
  Document &operator=(const Document &) = delete;

  operator kelp_xml_document *() const { return document_; }

 private:
  kelp_xml_document *document_;
};

}  // namespace kelp_test
