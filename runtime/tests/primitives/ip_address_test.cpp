// Addresses: texts, order, images, and what their operations leave alone.
#include <cstring>
#include <string>

#include "primitives/fixture.hpp"

namespace {

using kelp_test::bytes_at;
using kelp_test::Document;
using kelp_test::ExactCopy;
using kelp_test::kSpace;

constexpr size_t kValueSize = sizeof(ip_address) - offsetof(ip_address, family);

ip_address address(const char *text) {
  ip_address parsed;
  std::memset(&parsed, 0xEE, sizeof parsed);
  EXPECT_EQ(ip_address_parse(text, &parsed), 0u) << text;
  return parsed;
}

std::string format(const ip_address &value) {
  char text[IP_ADDRESS_TEXT_SIZE];
  const uint32_t length = ip_address_format(&value, text, sizeof text);
  EXPECT_EQ(length, std::strlen(text));
  return text;
}

std::string value_bytes(const ip_address &value) { return bytes_at(&value.family, kValueSize); }

class PrimitiveIpAddressTest : public kelp_test::PrimitiveTest {
 protected:
  // An address in an object: its header holds something that must survive.
  ip_address with_header(const char *text) {
    ip_address result = address(text);
    result.header.tinfo = &_ip_address_type_info_internal;
    result.header.obj_flags = OBJ_NESTED;
    return result;
  }
};

TEST_F(PrimitiveIpAddressTest, TextsComeBack) {
  for (const char *text :
       {"", "0.0.0.0", "10.0.0.1", "255.255.255.255", "10.0.0.0/8", "10.1.2.3/0", "10.1.2.3/32",
        "::", "::1", "2001:db8::1", "2001:db8::/32", "fe80::1%3", "fe80::1%4294967295/128",
        "::ffff:10.0.0.1", "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff%4294967295/128"}) {
    EXPECT_EQ(format(address(text)), text);
  }
}

TEST_F(PrimitiveIpAddressTest, OtherTextsAreRefusedAndLeaveTheAddressAlone) {
  for (const char *text :
       {"10.0.0",
        "10.0.0.256",
        "10.0.0.1/33",
        "10.0.0.1/",
        "10.0.0.1/-1",
        "10.0.0.1/1/2",
        "10.0.0.1%1",
        "10.0.0.01",
        " 10.0.0.1",
        "fe80::1%",
        "fe80::1%eth0",
        "fe80::1%4294967296",
        "::1/129",
        ":::",
        "1:2:3:4:5:6:7:8:9",
        "/8",
        "%1",
        "x",
        "2001:0db8:0000:0000:0000:0000:0000:00001",
        "10.0.0.1/256",
        "0000000000000000000000000000000000000000000000000000000000000001.2.3.4"}) {
    ip_address value = ip_address_make_ipv4(7);
    const std::string before = bytes_at(&value, sizeof value);
    EXPECT_EQ(ip_address_parse(text, &value), 22u) << text;
    EXPECT_EQ(bytes_at(&value, sizeof value), before);
  }
  EXPECT_EQ(ip_address_parse(nullptr, nullptr), 22u);
  EXPECT_EQ(ip_address_parse("::", nullptr), 22u);
}

TEST_F(PrimitiveIpAddressTest, BuildersZeroTheHeader) {
  const ip_address four = ip_address_make_ipv4(0x0A000001);
  EXPECT_EQ(format(four), "10.0.0.1");
  const uint8_t bytes[16] = {0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
  EXPECT_EQ(format(ip_address_make_ipv6(bytes, 3)), "fe80::1%3");
  EXPECT_EQ(format(ip_address_make_ipv6(bytes, 0)), "fe80::1");
  for (const ip_address &built : {four, address("::1"), ip_address_make_ipv6(bytes, 3)}) {
    EXPECT_EQ(built.header.tinfo, nullptr);
    EXPECT_EQ(built.header.variant, 0);
    EXPECT_EQ(built.header.obj_flags, 0);
  }
}

TEST_F(PrimitiveIpAddressTest, PrefixesAreLimitedByTheFamily) {
  ip_address four = ip_address_make_ipv4(0x0A000000);
  EXPECT_EQ(ip_address_give_prefix(&four, 33), 22u);
  EXPECT_EQ(format(four), "10.0.0.0");
  EXPECT_EQ(ip_address_give_prefix(&four, 32), 0u);
  EXPECT_EQ(format(four), "10.0.0.0/32");
  ip_address six = address("::");
  EXPECT_EQ(ip_address_give_prefix(&six, 129), 22u);
  EXPECT_EQ(ip_address_give_prefix(&six, 128), 0u);
  ip_address unset = address("");
  EXPECT_EQ(ip_address_give_prefix(&unset, 0), 22u);
  EXPECT_EQ(ip_address_give_prefix(nullptr, 0), 22u);
}

TEST_F(PrimitiveIpAddressTest, FormatIsCutToItsBuffer) {
  const ip_address value = address("10.0.0.1");
  char buffer[16];
  for (uint32_t size = 0; size <= 12; ++size) {
    std::memset(buffer, '#', sizeof buffer);
    const uint32_t used = ip_address_format(&value, buffer, size);
    EXPECT_EQ(used, size == 0 ? 0 : std::min<uint32_t>(size - 1, 8));
    if (size > 0) {
      EXPECT_EQ(std::string(buffer), std::string("10.0.0.1").substr(0, used));
    }
    for (size_t i = size; i < sizeof buffer; ++i) EXPECT_EQ(buffer[i], '#');
  }
  EXPECT_EQ(ip_address_format(nullptr, buffer, 16), 0u);
  EXPECT_STREQ(buffer, "");
}

TEST_F(PrimitiveIpAddressTest, SetCopiesHeaderAndValueAndAnnounces48Bytes) {
  ip_address destination = address("1.2.3.4");
  const ip_address source = with_header("10.0.0.1/8");
  const std::string before = bytes_at(&destination, sizeof destination);
  const std::string source_before = bytes_at(&source, sizeof source);
  ip_address_set(handle_, kSpace, &destination, &source, &err_);
  EXPECT_EQ(bytes_at(&destination, 48), source_before);
  EXPECT_EQ(bytes_at(&source, 48), source_before);
  ASSERT_EQ(announced_.size(), 1u);
  EXPECT_EQ(announced_[0].bytes_before, before);
  expect_announced(&destination, 48);
  expect_success();
}

TEST_F(PrimitiveIpAddressTest, SetOntoItselfChangesNothing) {
  ip_address value = with_header("10.0.0.1");
  const std::string before = bytes_at(&value, sizeof value);
  ip_address_set(handle_, kSpace, &value, &value, &err_);
  EXPECT_EQ(bytes_at(&value, sizeof value), before);
}

TEST_F(PrimitiveIpAddressTest, SetOfNullIsInvalid) {
  ip_address value = address("::1");
  ip_address_set(handle_, kSpace, &value, nullptr, &err_);
  expect_failure(KELP_ERR_INVALID);
  ip_address_set(handle_, kSpace, nullptr, &value, &err_);
  expect_failure(KELP_ERR_INVALID);
  expect_nothing_announced();
}

TEST_F(PrimitiveIpAddressTest, GetGivesTheAddressAndNullForNull) {
  const ip_address value = address("::1");
  EXPECT_EQ(ip_address_get(handle_, kSpace, &value, &err_), &value);
  EXPECT_EQ(ip_address_get(handle_, kSpace, nullptr, &err_), nullptr);
  expect_success();
}

TEST_F(PrimitiveIpAddressTest, OrderIsFamilyBytesPrefixZone) {
  const char *ascending[] = {"",          "9.255.0.0", "10.0.0.0",  "10.0.0.0/0", "10.0.0.0/8",
                             "10.0.0.1",  "200.0.0.0", "::",        "::/0",       "::1",
                             "fe80::1%1", "fe80::1%2", "fe80::1/9", "fe80::2"};
  for (size_t i = 0; i < std::size(ascending); ++i) {
    for (size_t j = 0; j < std::size(ascending); ++j) {
      const ip_address a = with_header(ascending[i]);
      const ip_address b = address(ascending[j]);
      EXPECT_EQ(ip_address_compare(&a, &b), i < j ? -1 : i > j)
          << ascending[i] << " and " << ascending[j];
      EXPECT_EQ(ip_address_hash(&a, 5) == ip_address_hash(&b, 5), i == j);
    }
  }
}

TEST_F(PrimitiveIpAddressTest, NullSortsFirstAndHashesToTheSeed) {
  const ip_address unset = address("");
  EXPECT_EQ(ip_address_compare(nullptr, nullptr), 0);
  EXPECT_EQ(ip_address_compare(nullptr, &unset), -1);
  EXPECT_EQ(ip_address_compare(&unset, nullptr), 1);
  EXPECT_EQ(ip_address_hash(nullptr, 5), 5u);
  EXPECT_NE(ip_address_hash(&unset, 5), 5u);
}

TEST_F(PrimitiveIpAddressTest, UnusedBytesDoNotCount) {
  const ip_address clean = address("10.0.0.1");
  ip_address dirty = clean;
  std::memset(dirty.bytes + 4, 0x55, 12);
  dirty.scope = 9;
  dirty.prefix_length = 99;
  dirty.reserved[0] = 1;
  dirty.reserved_word = 1;
  EXPECT_EQ(ip_address_compare(&clean, &dirty), 0);
  EXPECT_EQ(ip_address_hash(&clean, 5), ip_address_hash(&dirty, 5));
  EXPECT_EQ(format(dirty), "10.0.0.1");
  char clean_image[22];
  char dirty_image[22];
  ip_address_marshal(handle_, kSpace, clean_image, &clean, 22, &err_);
  ip_address_marshal(handle_, kSpace, dirty_image, &dirty, 22, &err_);
  EXPECT_EQ(bytes_at(clean_image, 22), bytes_at(dirty_image, 22));
}

TEST_F(PrimitiveIpAddressTest, AnUnknownFamilyCountsAsUnset) {
  ip_address strange = address("10.0.0.1");
  strange.family = 9;
  const ip_address unset = address("");
  EXPECT_EQ(format(strange), "");
  EXPECT_EQ(ip_address_compare(&strange, &unset), 0);
}

TEST_F(PrimitiveIpAddressTest, ImagesHaveTheirBytes) {
  const ip_address four = address("10.0.0.1/8");
  char image[23];
  std::memset(image, '#', sizeof image);
  EXPECT_EQ(ip_address_marshal(handle_, kSpace, image, &four, 22, &err_), 22u);
  EXPECT_EQ(bytes_at(image, 23),
            std::string("\x04\x08\x0A\x00\x00\x01", 6) + std::string(16, '\0') + "#");
  const ip_address six = address("fe80::1%258");
  EXPECT_EQ(ip_address_marshal(handle_, kSpace, image, &six, 22, &err_), 22u);
  EXPECT_EQ(bytes_at(image, 22), std::string("\x06\xFF\xFE\x80", 4) + std::string(13, '\0') +
                                     std::string("\x01\x00\x00\x01\x02", 5));
  EXPECT_EQ(ip_address_len(handle_, kSpace, &six), 22u);
  EXPECT_EQ(ip_address_len(handle_, kSpace, nullptr), 22u);
}

TEST_F(PrimitiveIpAddressTest, ImagesComeBackAndLeaveTheHeaderAlone) {
  for (const char *text :
       {"", "10.0.0.1", "10.0.0.0/0", "10.0.0.0/32", "2001:db8::/128", "fe80::1%7"}) {
    const ip_address value = address(text);
    char image[22];
    ip_address_marshal(handle_, kSpace, image, &value, 22, &err_);
    ip_address back = with_header("9.9.9.9/9");
    EXPECT_EQ(ip_address_unmarshal(handle_, kSpace, image, &back, 22, 0, &err_), 22u);
    EXPECT_EQ(value_bytes(back), value_bytes(value)) << text;
    EXPECT_EQ(back.header.tinfo, &_ip_address_type_info_internal);
    EXPECT_EQ(back.header.obj_flags, OBJ_NESTED);
    expect_announced(&back.family, kValueSize);
  }
  expect_success();
}

TEST_F(PrimitiveIpAddressTest, ImagesOfNoAddressAreRefused) {
  const ip_address good = address("10.0.0.1/8");
  char image[22];
  ip_address_marshal(handle_, kSpace, image, &good, 22, &err_);
  const auto expect_refused = [&](size_t at, uint8_t byte) {
    char bad[22];
    std::memcpy(bad, image, sizeof bad);
    bad[at] = static_cast<char>(byte);
    ip_address value = address("::1");
    const std::string before = bytes_at(&value, sizeof value);
    EXPECT_EQ(ip_address_unmarshal(handle_, kSpace, bad, &value, 22, 0, &err_), 0u);
    expect_failure(KELP_ERR_INVALID);
    EXPECT_EQ(bytes_at(&value, sizeof value), before);
  };
  expect_refused(0, 5);
  expect_refused(0, 255);
  expect_refused(0, 0);  // the unset address has no prefix
  expect_refused(1, 33);
  expect_refused(1, 254);
  expect_nothing_announced();
}

TEST_F(PrimitiveIpAddressTest, ImagesAreBoundedAtEveryLength) {
  const ip_address value = address("10.0.0.1");
  for (int32_t length = -1; length < 22; ++length) {
    char image[22];
    std::memset(image, '#', sizeof image);
    EXPECT_EQ(ip_address_marshal(handle_, kSpace, image, &value, length, &err_), 0u);
    expect_failure(KELP_ERR_NO_ROOM);
    EXPECT_EQ(bytes_at(image, 22), std::string(22, '#'));
    ip_address back = address("::1");
    const ExactCopy exact(image, length);
    EXPECT_EQ(ip_address_unmarshal(handle_, kSpace, exact.get(), &back, length, 0, &err_), 0u);
    expect_failure(KELP_ERR_NO_ROOM);
    EXPECT_EQ(format(back), "::1");
  }
}

TEST_F(PrimitiveIpAddressTest, PrintsOneLineAndNothingForAnUnsetOne) {
  char buffer[128];
  const auto print = [&](uint32_t indent, const ip_address *printed) {
    const uint32_t used =
        ip_address_print(handle_, kSpace, buffer, indent, "id", printed, 128, &err_);
    return std::string(buffer, used);
  };
  const ip_address value = address("fe80::1%3/64");
  const ip_address unset = address("");
  EXPECT_EQ(print(2, &value), "  id@ip_address:fe80::1%3/64\n");
  EXPECT_EQ(print(0, &unset), "id@ip_address:\n");
  EXPECT_EQ(print(0, nullptr), "id@ip_address:\n");
}

TEST_F(PrimitiveIpAddressTest, ElementsComeBackAndLeaveTheHeaderAlone) {
  for (const char *text : {"", "10.0.0.1/8", "fe80::1%3/64"}) {
    const ip_address value = address(text);
    char buffer[128];
    ip_address_to_xml(handle_, kSpace, "id", buffer, &value, 128, 0, &err_);
    EXPECT_EQ(buffer, "<id>" + std::string(text) + "</id>");
    const Document document(buffer);
    ip_address back = with_header("9.9.9.9");
    ip_address_from_xml(handle_, kSpace, "//id", document, &back, &err_, nullptr, 0);
    EXPECT_EQ(value_bytes(back), value_bytes(value));
    EXPECT_EQ(back.header.obj_flags, OBJ_NESTED);
    expect_announced(&back.family, kValueSize);
  }
}

TEST_F(PrimitiveIpAddressTest, ARefusedTextSaysWhatIsWhere) {
  const Document document("<r>\n<id>10.0.0</id></r>");
  ip_address value = address("::1");
  char message[256];
  ip_address_from_xml(handle_, kSpace, "//r/id", document, &value, &err_, message, 256);
  expect_failure(KELP_ERR_INVALID);
  EXPECT_STREQ(message,
               "//r/id: found \"10.0.0\" at line 2, column 1, expected an IPv4 or IPv6 address, "
               "with /prefix and %zone or without");
  EXPECT_EQ(format(value), "::1");
}

TEST_F(PrimitiveIpAddressTest, InitializeAnnouncesEachStoreOfTheHeaderInOrder) {
  ip_address value = address("::1");
  ip_address_initialize(handle_, kSpace, &value, &_ip_address_type_info_internal, 1, 0, OBJ_NESTED,
                        nullptr, &err_);
  ASSERT_EQ(announced_.size(), 4u);
  EXPECT_EQ(announced_[0].address, &value.header.created_variant);
  EXPECT_EQ(announced_[0].length, 1u);
  EXPECT_EQ(announced_[1].address, &value.header.variant);
  EXPECT_EQ(announced_[1].length, 1u);
  EXPECT_EQ(announced_[2].address, &value.header.tinfo);
  EXPECT_EQ(announced_[2].length, 8u);
  EXPECT_EQ(announced_[3].address, &value.header.obj_flags);
  EXPECT_EQ(announced_[3].length, 1u);
  EXPECT_EQ(value.header.tinfo, &_ip_address_type_info_internal);
  EXPECT_EQ(value.header.obj_flags, OBJ_NESTED);
  EXPECT_EQ(format(value), "::1");
}

TEST_F(PrimitiveIpAddressTest, InitializeWithoutNotifyAnnouncesNothing) {
  ip_address value = address("::1");
  ip_address_initialize(handle_, kSpace, &value, &_ip_address_type_info_internal, 0, 1, OBJ_NESTED,
                        nullptr, &err_);
  expect_nothing_announced();
  EXPECT_EQ(value.header.tinfo, &_ip_address_type_info_internal);
  ip_address_initialize(handle_, kSpace, nullptr, &_ip_address_type_info_internal, 0, 1, 0, nullptr,
                        &err_);
  expect_failure(KELP_ERR_INVALID);
}

TEST_F(PrimitiveIpAddressTest, SharedHandlesNeverGetARecordOfThisProcess) {
  static kelp_type_record_copy copy;
  static bool known;
  const auto lookup = handle_->type_table_lookup;
  const uint32_t shared = handle_->shared_tinfo;
  handle_->shared_tinfo = 1;
  handle_->type_table_lookup = [](void *, uint32_t space_id, const char *key) {
    EXPECT_EQ(space_id, kSpace);
    EXPECT_STREQ(key, _ip_address_type_info_internal.md5_text);
    return known ? &copy : nullptr;
  };
  ip_address value = address("::1");
  known = true;
  ip_address_initialize(handle_, kSpace, &value, &_ip_address_type_info_internal, 0, 0, 0, nullptr,
                        &err_);
  EXPECT_EQ(value.header.tinfo, &copy.record);
  known = false;
  ip_address_initialize(handle_, kSpace, &value, &_ip_address_type_info_internal, 0, 0, 0, nullptr,
                        &err_);
  EXPECT_EQ(value.header.tinfo, nullptr);
  handle_->shared_tinfo = shared;
  handle_->type_table_lookup = lookup;
}

TEST_F(PrimitiveIpAddressTest, SetInstanceEmbeddedMarksTheFlags) {
  ip_address value = with_header("::1");
  ip_address_set_instance_embedded(handle_, kSpace, &value);
  EXPECT_EQ(value.header.obj_flags, OBJ_NESTED | OBJ_EMBEDDED);
  expect_announced(&value.header.obj_flags, 1);
  ip_address_set_instance_embedded(handle_, kSpace, nullptr);
  expect_nothing_announced();
}

TEST_F(PrimitiveIpAddressTest, AddressesOfTheirOwnStartUnsetAndAreGivenBack) {
  ip_address *value = ip_address_create(handle_, kSpace);
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(format(*value), "");
  EXPECT_EQ(value->header.tinfo, &_ip_address_type_info_internal);
  ip_address_destroy_internal(handle_, kSpace, value, 0);
  EXPECT_EQ(live_blocks_, 1);
  ip_address_destroy(handle_, kSpace, value);
  EXPECT_EQ(live_blocks_, 0);
  ip_address_destroy(handle_, kSpace, nullptr);
  refuse_memory_ = true;
  EXPECT_EQ(ip_address_create(handle_, kSpace), nullptr);
  EXPECT_EQ(ip_address_sizeof(), 48u);
}

TEST_F(PrimitiveIpAddressTest, CloneIntoAnAddressCopiesTheValueOnly) {
  const ip_address source = address("10.0.0.1/8");
  ip_address element = with_header("");
  ip_address *destination = &element;
  ip_address_clone_internal(handle_, kSpace, &source, &destination, nullptr, 0, &err_);
  EXPECT_EQ(destination, &element);
  EXPECT_EQ(value_bytes(element), value_bytes(source));
  EXPECT_EQ(element.header.obj_flags, OBJ_NESTED);
  expect_announced(&element.family, kValueSize);
  expect_success();
}

TEST_F(PrimitiveIpAddressTest, CloneIntoNullMakesAnAddress) {
  const ip_address source = address("10.0.0.1/8");
  ip_address *destination = nullptr;
  ip_address_clone_internal(handle_, kSpace, &source, &destination, nullptr, 0, &err_);
  ASSERT_NE(destination, nullptr);
  EXPECT_EQ(format(*destination), "10.0.0.1/8");
  ip_address_destroy(handle_, kSpace, destination);
}

TEST_F(PrimitiveIpAddressTest, CloneReportsWhatItLacks) {
  const ip_address source = address("10.0.0.1/8");
  ip_address *destination = nullptr;
  ip_address_clone_internal(handle_, kSpace, &source, nullptr, nullptr, 0, &err_);
  expect_failure(KELP_ERR_NOT_FOUND);
  ip_address_clone_internal(handle_, kSpace, nullptr, &destination, nullptr, 0, &err_);
  expect_failure(KELP_ERR_INVALID);
  refuse_memory_ = true;
  ip_address_clone_internal(handle_, kSpace, &source, &destination, nullptr, 0, &err_);
  expect_failure(KELP_ERR_NO_MEMORY);
  err_ = 43;
  ip_address_clone_internal(handle_, kSpace, &source, &destination, nullptr, 0, &err_);
  EXPECT_EQ(err_, 43u);
  EXPECT_EQ(destination, nullptr);
  err_ = 0;
}

TEST_F(PrimitiveIpAddressTest, HoldsNoReferenceAndNoStateBytes) {
  ip_address value = with_header("::1");
  ip_address source = with_header("::2");
  const std::string before = bytes_at(&value, sizeof value);
  const std::string source_before = bytes_at(&source, sizeof source);
  void *array[1] = {&value};
  EXPECT_EQ(ip_address_get_oid_count(handle_, kSpace, &value, &err_), 0u);
  ip_address_get_object_references(handle_, kSpace, &value, array, 1, &err_);
  EXPECT_EQ(array[0], &value);
  ip_address_post_copyout_cleanup(handle_, kSpace, &value, &source, &err_);
  ip_address_set_all_state_tracking_flag(handle_, kSpace, &value, 2);
  expect_success();
  EXPECT_EQ(bytes_at(&value, sizeof value), before);
  EXPECT_EQ(bytes_at(&source, sizeof source), source_before);
  expect_nothing_announced();
  EXPECT_EQ(ip_address_get_oid_count(handle_, kSpace, nullptr, &err_), 0u);
  expect_failure(KELP_ERR_INVALID);
  ip_address_get_object_references(handle_, kSpace, nullptr, array, 1, &err_);
  expect_failure(KELP_ERR_INVALID);
}

}  // namespace
