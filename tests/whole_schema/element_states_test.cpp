// The state bytes of array elements follow the array: whatever changes the count of a tracked
// object without bringing state leaves none of another length behind, and every reader and writer
// of element states bears that there are none.
#include <kelp/primitives.h>

#include <cstring>

#include "model/lists.hpp"
#include "ospf_harbor_oper.h"
#include "whole_schema/erased.hpp"

namespace whole_schema {

namespace {

constexpr std::uint32_t space = 0;
using Bytes = std::vector<std::uint8_t>;

// A handle that tracks and one that does not, on one database.
struct Handles {
  harness::Store store{{.tracking = KELP_TRACKING_ON}};
  kelp_handle *tracking = store;
  kelp_handle *plain = store.another_handle({});
};

// An object of a type with an array field, with its elements set through either handle.
class ArrayObject {
 public:
  ArrayObject(kelp_handle *handle, const Structure &type, const Field &field)
      : type(type), field(field), object_(handle, type) {}

  void *get() const { return object_.get(); }
  bool is_tracked() const {
    return (static_cast<kelp_object_header *>(get())->obj_flags & OBJ_STATE_TRACKED) != 0;
  }
  std::uint32_t count() const {
    return at<std::uint32_t>(harbor::model::offset(type, harbor::model::counter_of(type, field)));
  }
  const std::uint8_t *states() const {
    return at<const std::uint8_t *>(harbor::model::object_size(type) +
                                    harbor::model::state_block_place(type, field));
  }
  void grow_to(kelp_handle *handle, std::uint32_t elements) {
    std::uint32_t err = 0;
    for (std::uint32_t index = count(); index < elements; ++index) set(handle, index, &err);
    EXPECT_EQ(err, 0u);
    EXPECT_EQ(count(), elements);
  }
  void set(kelp_handle *handle, std::uint32_t index, std::uint32_t *err) {
    std::uint32_t value = 7;
    ip_address address = ip_address_make_ipv4(0x0A000001);
    void *source = field.held == Kind::address ? static_cast<void *>(&address) : &value;
    call<void>(of(type, field, "set"), handle, space, get(), index, source, err);
  }
  std::uint8_t state(kelp_handle *handle, std::uint32_t index) const {
    std::uint32_t err = 0;
    const auto state =
        call<std::uint8_t>(of(type, field, "state_flag_get"), handle, space, get(), index, &err);
    EXPECT_EQ(err, 0u);
    return state;
  }
  void set_state(kelp_handle *handle, std::uint32_t index, std::uint32_t value,
                 std::uint32_t *err) const {
    call<void>(of(type, field, "state_flag_set"), handle, space, get(), index, value, err);
  }
  Bytes image(kelp_handle *handle) const {
    Bytes bytes(1 << 16);
    std::uint32_t err = 0;
    bytes.resize(call<std::uint32_t>(of(type, "marshal"), handle, space, bytes.data(), get(),
                                     static_cast<std::int32_t>(bytes.size() - 4), &err));
    EXPECT_EQ(err, 0u);
    return bytes;
  }
  std::uint32_t read(kelp_handle *handle, const Bytes &image, std::uint32_t reuse) {
    std::uint32_t err = 0;
    call<std::uint32_t>(of(type, "unmarshal"), handle, space, image.data(), get(),
                        static_cast<std::int32_t>(image.size()), reuse, &err);
    return err;
  }
  std::string xml(kelp_handle *handle) const {
    std::string text(1 << 18, '\0');
    std::uint32_t err = 0;
    text.resize(call<std::uint32_t>(of(type, "to_xml"), handle, space, "object", text.data(), get(),
                                    static_cast<std::uint32_t>(text.size()), std::uint32_t{0},
                                    &err));
    EXPECT_EQ(err, 0u);
    return text;
  }

  const Structure &type;
  const Field &field;

 private:
  template <typename Value>
  Value at(std::size_t offset) const {
    Value value;
    std::memcpy(&value, object_.bytes() + offset, sizeof value);
    return value;
  }
  Object object_;
};

template <typename Act>
void for_each_array(Act act) {
  std::size_t arrays = 0;
  for (const Structure *type : harbor::model::structures) {
    for (const Field *field : type->fields) {
      if (field->kind != Kind::array) continue;
      SCOPED_TRACE(of(*type, *field, ""));
      ++arrays;
      act(*type, *field);
    }
  }
  EXPECT_EQ(arrays, 8u);
}

// None, all of them 0; then every form of access to them goes by, and elements get theirs when the
// state of one is set directly or the array grows.
void expect_none_and_borne(Handles &handles, ArrayObject &array) {
  EXPECT_EQ(array.states(), nullptr);
  kelp_handle *handle = handles.tracking;
  const std::uint32_t count = array.count();
  for (std::uint32_t index = 0; index < count; ++index) {
    ASSERT_EQ(array.state(handle, index), 0) << index;
  }
  std::uint32_t err = 0;
  std::uint64_t address = 1;
  call<void>(of(array.type, array.field, "state_flag_get_arr"), handle, space, array.get(),
             &address, &err);
  EXPECT_EQ(address, 0u);
  EXPECT_EQ(err, 0u);
  // A reader of the image finds no state of an element either.
  const Bytes image = array.image(handle);
  {
    ArrayObject copy(handle, array.type, array.field);
    EXPECT_EQ(copy.read(handle, image, 0), 0u);
    ASSERT_EQ(copy.count(), count);
    ASSERT_NE(copy.states(), nullptr);
    EXPECT_EQ(Bytes(copy.states(), copy.states() + count), Bytes(count, 0));
  }
  const std::string tag = "<" + std::string(array.field.name) + " state=";
  EXPECT_EQ(array.xml(handle).find(tag), std::string::npos);

  // A write of an element that is there allocates nothing, and marks the whole alone.
  array.set(handle, count - 1, &err);
  EXPECT_EQ(err, 0u);
  EXPECT_EQ(array.states(), nullptr);
  array.set_state(handle, 0, 9, &err);
  EXPECT_EQ(err, 0u);
  EXPECT_EQ(array.state(handle, count - 1), 0);
  array.set(handle, count - 1, &err);
  EXPECT_EQ(err, 0u);
  EXPECT_EQ(array.state(handle, count - 1), 2);
  EXPECT_EQ(array.state(handle, 0), 9);
  ASSERT_NE(array.states(), nullptr);
  for (std::uint32_t index = 1; index + 1 < count; ++index) {
    ASSERT_EQ(array.states()[index], 0) << index;
  }
  array.grow_to(handle, count + 2);
  EXPECT_EQ(array.state(handle, 0), 9);
  EXPECT_EQ(array.state(handle, count), 2);
}

}  // namespace

TEST(ElementStates, AnUntrackedImageInATrackedObject) {
  for_each_array([](const Structure &type, const Field &field) {
    for (const std::uint32_t reuse : {0u, 1u}) {
      for (const bool through_plain : {false, true}) {
        for (const std::uint32_t held : {0u, 2u, 5u}) {
          if (reuse == 0 && held != 0) continue;  // what was held would be forgotten
          SCOPED_TRACE("reuse " + std::to_string(reuse) + ", plain reader " +
                       std::to_string(through_plain) + ", held " + std::to_string(held));
          Handles handles;
          ArrayObject source(handles.plain, type, field);
          source.grow_to(handles.plain, 3);
          ArrayObject array(handles.tracking, type, field);
          array.grow_to(handles.tracking, held);
          EXPECT_EQ(array.read(through_plain ? handles.plain : handles.tracking,
                               source.image(handles.plain), reuse),
                    0u);
          EXPECT_EQ(array.count(), 3u);
          expect_none_and_borne(handles, array);
        }
      }
    }
  });
}

// A tracked image that a handle without tracking reads brings no state either.
TEST(ElementStates, ATrackedImageReadWithoutTracking) {
  for_each_array([](const Structure &type, const Field &field) {
    Handles handles;
    ArrayObject source(handles.tracking, type, field);
    source.grow_to(handles.tracking, 20);
    ArrayObject array(handles.tracking, type, field);
    array.grow_to(handles.tracking, 2);
    EXPECT_EQ(array.read(handles.plain, source.image(handles.tracking), 1), 0u);
    EXPECT_EQ(array.count(), 20u);
    expect_none_and_borne(handles, array);
  });
}

TEST(ElementStates, AnImageOfTheSameCountKeepsThem) {
  for_each_array([](const Structure &type, const Field &field) {
    Handles handles;
    ArrayObject source(handles.plain, type, field);
    source.grow_to(handles.plain, 3);
    ArrayObject array(handles.tracking, type, field);
    array.grow_to(handles.tracking, 3);
    EXPECT_EQ(array.read(handles.tracking, source.image(handles.plain), 1), 0u);
    EXPECT_EQ(Bytes(array.states(), array.states() + 3), Bytes(3, 2));
  });
}

TEST(ElementStates, AnImageWithoutMemoryForItsElements) {
  for_each_array([](const Structure &type, const Field &field) {
    for (const bool with_state : {false, true}) {
      for (const std::int64_t n : {0, 1}) {
        if (n == 1 && !with_state) continue;  // there is one allocation only
        SCOPED_TRACE("state " + std::to_string(with_state) + ", allocation " + std::to_string(n));
        Handles handles;
        kelp_handle *writer = with_state ? handles.tracking : handles.plain;
        ArrayObject source(writer, type, field);
        source.grow_to(writer, 200);
        const Bytes image = source.image(writer);
        ArrayObject array(handles.tracking, type, field);
        array.grow_to(handles.tracking, 2);
        handles.store.fail_allocation(n);
        EXPECT_EQ(array.read(handles.tracking, image, 1), 12u);
        EXPECT_EQ(array.count(), 200u);
        EXPECT_EQ(array.states(), nullptr);
        EXPECT_EQ(array.state(handles.tracking, 199), 0);
      }
    }
  });
}

TEST(ElementStates, GrowthThroughAHandleWithoutTracking) {
  for_each_array([](const Structure &type, const Field &field) {
    Handles handles;
    ArrayObject array(handles.tracking, type, field);
    array.grow_to(handles.tracking, 2);
    harness::WriteWatch watch(handles.plain);
    array.grow_to(handles.plain, 3);
    array.grow_to(handles.plain, 40);
    // The pointer's change is announced.
    std::size_t announced = 0;
    for (const harness::Range &range : watch.writes()) {
      if (range.offset_in(array.get()) ==
          static_cast<std::ptrdiff_t>(harbor::model::object_size(type) +
                                      harbor::model::state_block_place(type, field))) {
        ++announced;
        EXPECT_EQ(range.length, 8u);
      }
    }
    EXPECT_EQ(announced, 1u);
    expect_none_and_borne(handles, array);
  });
}

TEST(ElementStates, ReplacementThroughAHandleWithoutTracking) {
  const std::vector<std::uint32_t> words(300, 5);
  for_each_array([&](const Structure &type, const Field &field) {
    if (field.held == Kind::address) return;
    for (const std::uint32_t count : {1u, 300u}) {
      Handles handles;
      ArrayObject array(handles.tracking, type, field);
      array.grow_to(handles.tracking, 2);
      std::uint32_t err = 0;
      call<void>(of(type, field, "set_mem"), handles.plain, space, array.get(), words.data(), count,
                 &err);
      EXPECT_EQ(err, 0u);
      EXPECT_EQ(array.count(), count);
      if (count > 1) {
        expect_none_and_borne(handles, array);
      } else {
        EXPECT_EQ(array.states(), nullptr);
      }
    }
  });
}

TEST(ElementStates, WithoutMemoryForThemADirectWriteFails) {
  for_each_array([](const Structure &type, const Field &field) {
    Handles handles;
    ArrayObject array(handles.tracking, type, field);
    array.grow_to(handles.plain, 3);
    ASSERT_EQ(array.states(), nullptr);
    std::uint32_t err = 0;
    array.set(handles.tracking, 1, &err);
    EXPECT_EQ(err, 0u);
    EXPECT_EQ(array.states(), nullptr);
    EXPECT_EQ(call<std::uint8_t>(of(type, field, "state_flag_whole_get"), handles.tracking, space,
                                 array.get(), &err),
              2);
    handles.store.fail_allocation(0);
    array.set_state(handles.tracking, 1, 4, &err);
    EXPECT_EQ(err, KELP_ERR_NO_MEMORY);
    EXPECT_EQ(handles.store.last_error(), KELP_ERR_NO_MEMORY);
    EXPECT_EQ(array.states(), nullptr);
    handles.store.fail_allocation(-1);
  });
}

// Removing leaves the state bytes where they are; elements that then come without state do not find
// them.
TEST(ElementStates, AfterARemoval) {
  for_each_array([](const Structure &type, const Field &field) {
    Handles handles;
    ArrayObject array(handles.tracking, type, field);
    array.grow_to(handles.tracking, 2);
    const std::uint8_t *states = array.states();
    call<void>(of(type, field, "remove_elements"), handles.plain, space, array.get());
    EXPECT_EQ(array.states(), states);
    array.grow_to(handles.plain, 30);
    expect_none_and_borne(handles, array);
  });
}

// --- the sequences in which it was seen ---------------------------------------------------------

TEST(ElementStates, ASubTlvReadFromAnUntrackedImage) {
  Handles handles;
  ArrayObject source(handles.plain, harbor::model::types::ospfv2_unknown_sub_tlv,
                     harbor::model::fields::ospfv2_unknown_sub_tlv::value);
  source.grow_to(handles.plain, 3);
  ArrayObject array(handles.tracking, source.type, source.field);
  EXPECT_EQ(array.read(handles.tracking, source.image(handles.plain), 0), 0u);
  EXPECT_NE(array.xml(handles.tracking).find("<value>7</value>"), std::string::npos);
  EXPECT_EQ(array.state(handles.tracking, 2), 0);
  std::uint32_t err = 0;
  array.set_state(handles.tracking, 2, 5, &err);
  EXPECT_EQ(err, 0u);
  EXPECT_EQ(array.state(handles.tracking, 2), 5);
}

TEST(ElementStates, NoNeighboursBytesStandInTheImage) {
  Handles handles;
  ArrayObject source(handles.plain, harbor::model::types::ospfv2_unknown_sub_tlv,
                     harbor::model::fields::ospfv2_unknown_sub_tlv::value);
  source.grow_to(handles.plain, 200);
  ArrayObject array(handles.tracking, source.type, source.field);
  array.grow_to(handles.tracking, 2);
  // What lies behind the two state bytes in the store.
  std::vector<void *> blocks;
  for (int i = 0; i < 64; ++i) {
    blocks.push_back(handles.tracking->obj_alloc(handles.tracking->obj_pool, space, 16));
    std::memset(blocks.back(), 0xAB, 16);
  }
  EXPECT_EQ(array.read(handles.tracking, source.image(handles.plain), 1), 0u);
  const Bytes image = array.image(handles.tracking);
  // Head, type, its state, length, its state, count, the elements, the byte of the whole: behind
  // them 200 bytes of state.
  ASSERT_GT(image.size(), 400u);
  EXPECT_EQ(Bytes(image.end() - 200, image.end()), Bytes(200, 0));
  for (void *block : blocks) handles.tracking->obj_free(handles.tracking->obj_pool, space, block);
}

TEST(ElementStates, NoNeighboursBytesAreOverwritten) {
  Handles handles;
  kelp_handle *handle = handles.tracking;
  OWNED(handle, ospfv2_unknown_sub_tlv, object);
  std::uint32_t err = 0;
  ospfv2_unknown_sub_tlv_value_set_value(handle, space, object, 1, 1, &err);
  std::vector<std::uint8_t *> blocks;
  for (int i = 0; i < 64; ++i) {
    auto *block = static_cast<std::uint8_t *>(handle->obj_alloc(handle->obj_pool, space, 16));
    std::memset(block, 0xAB, 16);
    blocks.push_back(block);
  }
  const Bytes bytes(300, 6);
  ospfv2_unknown_sub_tlv_value_set_mem(handles.plain, space, object, bytes.data(), 300, &err);
  for (std::uint32_t index = 0; index < 300; ++index) {
    ospfv2_unknown_sub_tlv_value_set_value(handle, space, object, index, 8, &err);
  }
  EXPECT_EQ(err, 0u);
  for (std::uint8_t *block : blocks) {
    EXPECT_EQ(Bytes(block, block + 16), Bytes(16, 0xAB));
    handle->obj_free(handle->obj_pool, space, block);
  }
  for (std::uint32_t index = 0; index < 300; ++index) {
    ASSERT_EQ(ospfv2_unknown_sub_tlv_value_state_flag_get(handle, space, object, index, &err), 0);
    ASSERT_EQ(ospfv2_unknown_sub_tlv_value_get_value(handle, space, object, index, &err), 8);
  }
}

// --- the direct write of state bytes ------------------------------------------------------------

// Bytes for more elements than the object has state bytes end where these end, and the pointer to
// the elements' own among them stays.
TEST(ElementStates, ADirectWriteOfAllIsBoundByTheObjectsStateBytes) {
  for_each_array([](const Structure &type, const Field &field) {
    Handles handles;
    ArrayObject array(handles.tracking, type, field);
    array.grow_to(handles.tracking, 400);
    const std::uint8_t *states = array.states();
    const auto *area =
        static_cast<const std::uint8_t *>(array.get()) + harbor::model::object_size(type);
    const Bytes source(400, 3);
    std::uint32_t err = 0;
    call<void>(of(type, field, "state_flag_set_arr"), handles.tracking, space, array.get(),
               source.data(), std::uint32_t{400}, &err);
    EXPECT_EQ(err, 0u);
    EXPECT_EQ(array.states(), states);
    EXPECT_EQ(array.state(handles.tracking, 399), 2);
    EXPECT_EQ(area[0], 3);
  });
}

// The block of an embedded object ends where its owner's own bytes go on.
TEST(ElementStates, ADirectWriteOfAllOfAnEmbeddedObjectStaysInItsBlock) {
  namespace types = harbor::model::types;
  namespace fields = harbor::model::fields;
  Handles handles;
  kelp_handle *handle = handles.tracking;
  Object owner(handle, types::ospfv2_unknown_tlv);
  const Field &tlv_field = fields::ospfv2_unknown_tlv::tlv;
  auto *tlv = reinterpret_cast<ospfv2_link_tlv *>(
      owner.bytes() + harbor::model::offset(types::ospfv2_unknown_tlv, tlv_field));
  std::uint32_t err = 0;
  ip_address address = ip_address_make_ipv4(1);
  ospfv2_link_tlv_local_if_ipv4_addr_set(handle, space, tlv, 59, &address, &err);
  const auto *area = owner.bytes() + harbor::model::object_size(types::ospfv2_unknown_tlv);
  const std::size_t size = harbor::model::state_size(types::ospfv2_unknown_tlv);
  const std::size_t end = harbor::model::state_block_place(types::ospfv2_unknown_tlv, tlv_field) +
                          harbor::model::state_size(types::ospfv2_link_tlv);
  ASSERT_LT(end, size);
  const Bytes behind(area + end, area + size);
  const Bytes source(60, 3);
  ospfv2_link_tlv_local_if_ipv4_addr_state_flag_set_arr(handle, space, tlv, source.data(), 60,
                                                        &err);
  EXPECT_EQ(err, 0u);
  EXPECT_EQ(Bytes(area + end, area + size), behind);
}

}  // namespace whole_schema
