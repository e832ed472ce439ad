// The pieces of images: their bytes, their bounds, and what a set error word does to them.
#include "kelp/wire.h"

#include <cstring>
#include <functional>
#include <string>

#include "primitives/fixture.hpp"

namespace {

using kelp_test::bytes_at;
using kelp_test::kSpace;

constexpr uint32_t kEarlier = 43;

class WireTest : public kelp_test::PrimitiveTest {
 protected:
  using Operation = std::function<uint32_t(uint8_t *buffer, int32_t length)>;

  // Every length short of size fails with 90, uses nothing and leaves the buffer alone.
  void expect_bounded(uint32_t size, const Operation &operation) {
    for (int32_t length = -1; length < static_cast<int32_t>(size); ++length) {
      uint8_t buffer[64];
      std::memset(buffer, 0xEE, sizeof buffer);
      const std::string before = bytes_at(buffer, sizeof buffer);
      EXPECT_EQ(operation(buffer, length), 0u) << "length " << length;
      EXPECT_EQ(bytes_at(buffer, sizeof buffer), before) << "length " << length;
      expect_failure(KELP_ERR_NO_ROOM);
    }
  }

  // Under a set error word nothing is used, read or written, and the word stays.
  void expect_stopped(const Operation &operation) {
    uint8_t buffer[64];
    std::memset(buffer, 0xEE, sizeof buffer);
    const std::string before = bytes_at(buffer, sizeof buffer);
    err_ = kEarlier;
    EXPECT_EQ(operation(buffer, 64), 0u);
    EXPECT_EQ(bytes_at(buffer, sizeof buffer), before);
    EXPECT_EQ(err_, kEarlier);
    EXPECT_EQ(last_error(), 0u);
    err_ = 0;
  }

  // Under a set error word the piece is written when there is room, and the word stays either way.
  void expect_written_in_spite_of_failure(uint32_t size, const Operation &operation) {
    uint8_t buffer[64] = {};
    err_ = kEarlier;
    EXPECT_EQ(operation(buffer, static_cast<int32_t>(size)), size);
    EXPECT_EQ(operation(buffer, static_cast<int32_t>(size) - 1), 0u);
    EXPECT_EQ(err_, kEarlier);
    EXPECT_EQ(last_error(), 0u);
    err_ = 0;
  }

  Operation write_variant(int8_t variant) {
    return [=, this](uint8_t *buffer, int32_t length) {
      return _kelp_instance_variant_marshal(handle_, kSpace, buffer, &variant, length, &err_);
    };
  }
  Operation write_flags(uint8_t flags) {
    return [=, this](uint8_t *buffer, int32_t length) {
      return _kelp_instance_obj_flag_marshal(handle_, kSpace, buffer, &flags, length, &err_);
    };
  }
  Operation write_ra_data(uint64_t word, uint8_t byte) {
    return [=, this](uint8_t *buffer, int32_t length) {
      return _kelp_instance_ra_data_marshal(handle_, kSpace, buffer, &word, &byte, length, &err_);
    };
  }
  Operation write_jump(int32_t jump) {
    return [=, this](uint8_t *buffer, int32_t length) {
      return _kelp_variant_jump_marshal(handle_, kSpace, buffer, &jump, length, &err_);
    };
  }
};

TEST_F(WireTest, VariantIsOneSignedByte) {
  uint8_t buffer[2] = {0xEE, 0xEE};
  EXPECT_EQ(write_variant(-2)(buffer, 1), 1u);
  EXPECT_EQ(buffer[0], 0xFE);
  EXPECT_EQ(buffer[1], 0xEE);
  int8_t variant = 0;
  EXPECT_EQ(_kelp_instance_variant_unmarshal(handle_, kSpace, buffer, &variant, 1, &err_), 1u);
  EXPECT_EQ(variant, -2);
  expect_success();
}

TEST_F(WireTest, VariantIsBounded) {
  expect_bounded(1, write_variant(1));
  int8_t variant = 9;
  expect_bounded(1, [&](uint8_t *buffer, int32_t length) {
    return _kelp_instance_variant_unmarshal(handle_, kSpace, buffer, &variant, length, &err_);
  });
  EXPECT_EQ(variant, 9);
}

TEST_F(WireTest, FlagIsOneByte) {
  uint8_t buffer[1] = {0};
  EXPECT_EQ(write_flags(0x28)(buffer, 1), 1u);
  EXPECT_EQ(buffer[0], 0x28);
  uint8_t flags = 0;
  EXPECT_EQ(_kelp_instance_obj_flag_unmarshal(handle_, kSpace, buffer, &flags, 1, &err_), 1u);
  EXPECT_EQ(flags, 0x28);
}

TEST_F(WireTest, FlagIsBounded) {
  expect_bounded(1, write_flags(8));
  uint8_t flags = 9;
  expect_bounded(1, [&](uint8_t *buffer, int32_t length) {
    return _kelp_instance_obj_flag_unmarshal(handle_, kSpace, buffer, &flags, length, &err_);
  });
  EXPECT_EQ(flags, 9);
}

TEST_F(WireTest, RaDataIsAWordInNetworkOrderAndAByte) {
  uint8_t buffer[9] = {};
  EXPECT_EQ(write_ra_data(0x0102030405060708u, 0x99)(buffer, 9), 9u);
  EXPECT_EQ(bytes_at(buffer, 9), "\x01\x02\x03\x04\x05\x06\x07\x08\x99");
  uint64_t word = 0;
  uint8_t byte = 0;
  EXPECT_EQ(_kelp_instance_ra_data_unmarshal(handle_, kSpace, buffer, &word, &byte, 9, &err_), 9u);
  EXPECT_EQ(word, 0x0102030405060708u);
  EXPECT_EQ(byte, 0x99);
}

TEST_F(WireTest, RaDataIsBounded) {
  expect_bounded(9, write_ra_data(1, 2));
  uint64_t word = 5;
  uint8_t byte = 6;
  expect_bounded(9, [&](uint8_t *buffer, int32_t length) {
    return _kelp_instance_ra_data_unmarshal(handle_, kSpace, buffer, &word, &byte, length, &err_);
  });
  EXPECT_EQ(word, 5u);
  EXPECT_EQ(byte, 6);
}

TEST_F(WireTest, JumpIsAWordInNetworkOrder) {
  uint8_t buffer[16] = {};
  EXPECT_EQ(write_jump(5)(buffer, 4), 4u);
  EXPECT_EQ(bytes_at(buffer, 5), std::string("\0\0\0\5\0", 5));
  int32_t jump = 0;
  EXPECT_EQ(_kelp_variant_jump_unmarshal(handle_, kSpace, buffer, &jump, 16, &err_), 4u);
  EXPECT_EQ(jump, 5);
}

TEST_F(WireTest, JumpIsBounded) {
  expect_bounded(4, write_jump(4));
  int32_t jump = 7;
  expect_bounded(4, [&](uint8_t *buffer, int32_t length) {
    return _kelp_variant_jump_unmarshal(handle_, kSpace, buffer, &jump, length, &err_);
  });
  EXPECT_EQ(jump, 0);
}

TEST_F(WireTest, JumpMayReachTheEndOfTheBufferButNotBeyond) {
  const uint8_t buffer[10] = {0, 0, 0, 10};
  int32_t jump = 0;
  EXPECT_EQ(_kelp_variant_jump_unmarshal(handle_, kSpace, buffer, &jump, 10, &err_), 4u);
  EXPECT_EQ(jump, 10);
  EXPECT_EQ(_kelp_variant_jump_unmarshal(handle_, kSpace, buffer, &jump, 9, &err_), 0u);
  EXPECT_EQ(jump, 0);
  expect_failure(KELP_ERR_NO_ROOM);
}

TEST_F(WireTest, NegativeJumpIsRefused) {
  const uint8_t buffer[8] = {0xFF, 0xFF, 0xFF, 0xFF};
  int32_t jump = 3;
  EXPECT_EQ(_kelp_variant_jump_unmarshal(handle_, kSpace, buffer, &jump, 8, &err_), 0u);
  EXPECT_EQ(jump, 0);
  expect_failure(KELP_ERR_NO_ROOM);
}

TEST_F(WireTest, FrameIsWrittenInSpiteOfAnEarlierFailure) {
  expect_written_in_spite_of_failure(1, write_variant(1));
  expect_written_in_spite_of_failure(1, write_flags(8));
  expect_written_in_spite_of_failure(9, write_ra_data(0, 0));
  expect_written_in_spite_of_failure(4, write_jump(4));
}

TEST_F(WireTest, FrameIsNotReadUnderASetErrorWord) {
  int8_t variant = 9;
  uint8_t flags = 9;
  uint64_t word = 9;
  uint8_t byte = 9;
  int32_t jump = 9;
  expect_stopped([&](uint8_t *buffer, int32_t length) {
    return _kelp_instance_variant_unmarshal(handle_, kSpace, buffer, &variant, length, &err_) +
           _kelp_instance_obj_flag_unmarshal(handle_, kSpace, buffer, &flags, length, &err_) +
           _kelp_instance_ra_data_unmarshal(handle_, kSpace, buffer, &word, &byte, length, &err_) +
           _kelp_variant_jump_unmarshal(handle_, kSpace, buffer, &jump, length, &err_);
  });
  EXPECT_EQ(variant, 9);
  EXPECT_EQ(flags, 9);
  EXPECT_EQ(word, 9u);
  EXPECT_EQ(byte, 9);
  EXPECT_EQ(jump, 0);
}

TEST_F(WireTest, NullArgumentsAreInvalid) {
  uint8_t buffer[16] = {};
  int8_t variant = 0;
  EXPECT_EQ(_kelp_instance_variant_marshal(handle_, kSpace, nullptr, &variant, 16, &err_), 0u);
  expect_failure(KELP_ERR_INVALID);
  EXPECT_EQ(_kelp_instance_variant_unmarshal(handle_, kSpace, buffer, nullptr, 16, &err_), 0u);
  expect_failure(KELP_ERR_INVALID);
  uint64_t word = 0;
  EXPECT_EQ(_kelp_instance_ra_data_marshal(handle_, kSpace, buffer, &word, nullptr, 16, &err_), 0u);
  expect_failure(KELP_ERR_INVALID);
  EXPECT_EQ(_kelp_variant_jump_unmarshal(handle_, kSpace, buffer, nullptr, 16, &err_), 0u);
  expect_failure(KELP_ERR_INVALID);
}

TEST_F(WireTest, MessageHeaderLaysOutItsRecordAndFillsWithZero) {
  kelp_message_header_record record = {
      KELP_MESSAGE_MARKER, {255, 255, 255, 255, 255, 255}, 8, 0x11223344, 300};
  uint8_t buffer[28];
  std::memset(buffer, 0xEE, sizeof buffer);
  EXPECT_EQ(_kelp_message_header_marshal(handle_, kSpace, buffer, &record, 27, &err_), 27u);
  EXPECT_EQ(bytes_at(buffer, 28),
            std::string("\xBC\xFF\xFF\xFF\xFF\xFF\xFF\x08\x11\x22\x33\x44\x00\x00\x01\x2C", 16) +
                std::string(11, '\0') + "\xEE");
  kelp_message_header_record back = {};
  EXPECT_EQ(_kelp_message_header_unmarshal(handle_, kSpace, buffer, &back, 27, &err_), 27u);
  EXPECT_EQ(bytes_at(&back, sizeof back), bytes_at(&record, sizeof record));
  expect_success();
}

TEST_F(WireTest, MessageHeaderIsBoundedAndStopped) {
  kelp_message_header_record record = {};
  record.marker = 3;
  const WireTest::Operation write = [&](uint8_t *buffer, int32_t length) {
    return _kelp_message_header_marshal(handle_, kSpace, buffer, &record, length, &err_);
  };
  const WireTest::Operation read = [&](uint8_t *buffer, int32_t length) {
    return _kelp_message_header_unmarshal(handle_, kSpace, buffer, &record, length, &err_);
  };
  expect_bounded(27, write);
  expect_bounded(27, read);
  expect_stopped(write);
  expect_stopped(read);
  EXPECT_EQ(record.marker, 3);
}

TEST_F(WireTest, OidIsItsWordInNetworkOrderThenIdAndSourceAsTheyAre) {
  kelp_oid oid = {};
  oid.handle_word = 0x0102030405060708u;
  for (int i = 0; i < 16; ++i) {
    oid.id[i] = static_cast<uint8_t>(0x10 + i);
    oid.source[i] = static_cast<uint8_t>(0x20 + i);
  }
  uint8_t buffer[41];
  std::memset(buffer, 0xEE, sizeof buffer);
  EXPECT_EQ(kelplib_oid_len(handle_, kSpace, nullptr), 40u);
  EXPECT_EQ(kelplib_oid_marshal(handle_, kSpace, buffer, &oid, 40, &err_), 40u);
  EXPECT_EQ(bytes_at(buffer, 8), "\x01\x02\x03\x04\x05\x06\x07\x08");
  EXPECT_EQ(bytes_at(buffer + 8, 16), bytes_at(oid.id, 16));
  EXPECT_EQ(bytes_at(buffer + 24, 16), bytes_at(oid.source, 16));
  EXPECT_EQ(buffer[40], 0xEE);

  kelp_oid back = {};
  EXPECT_EQ(kelplib_oid_unmarshal(handle_, kSpace, buffer, &back, 40, 0, &err_), 40u);
  EXPECT_EQ(bytes_at(&back, sizeof back), bytes_at(&oid, sizeof oid));
  expect_announced(&back, 40);
  expect_success();
}

TEST_F(WireTest, OidIsBoundedAndStopped) {
  kelp_oid oid = {};
  oid.handle_word = 999;
  const WireTest::Operation write = [&](uint8_t *buffer, int32_t length) {
    return kelplib_oid_marshal(handle_, kSpace, buffer, &oid, length, &err_);
  };
  const WireTest::Operation read = [&](uint8_t *buffer, int32_t length) {
    return kelplib_oid_unmarshal(handle_, kSpace, buffer, &oid, length, 1, &err_);
  };
  expect_bounded(40, write);
  expect_bounded(40, read);
  expect_stopped(write);
  expect_stopped(read);
  EXPECT_EQ(oid.handle_word, 999u);
  expect_nothing_announced();
}

}  // namespace
