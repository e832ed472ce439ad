// The stores that are made without being announced first. They are a fixed part of how the system
// behaves, so they stand in one list, and each test holds an operation against it byte for byte:
// what the list has must stay unannounced, and whatever else changes in an object must have been
// announced before.
#include <kelp/xml.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <set>

#include "whole_schema/distinct.hpp"
#include "whole_schema/memory_watch.hpp"

namespace whole_schema {

namespace {

enum class Operation {
  light_destroy,
  enumeration_unmarshal,
  flag_set_unmarshal,
  structure_unmarshal,  // embedded enumerations and flag sets by their own rows
  from_xml,
  set_all_state_tracking_flag,
  state_flag_set_arr,
  structure_destroy,
  none,
};

enum class Place {
  tinfo,
  variant,
  obj_flags,
  enumeration_value,
  flag_bits,
  state_area,              // from its first byte to its last
  head_of_state_area,      // as many bytes as the array has elements
  element_state_pointers,  // of all arrays, those of embedded structures included
};

struct Store {
  Operation operation;
  Place place;
};

// The value of an enumeration is no such store in unmarshal: the primitive's reader and the
// enumeration both announce it.
constexpr Store unannounced[] = {
    {Operation::light_destroy, Place::tinfo},
    {Operation::enumeration_unmarshal, Place::tinfo},
    {Operation::enumeration_unmarshal, Place::variant},
    {Operation::flag_set_unmarshal, Place::tinfo},
    {Operation::flag_set_unmarshal, Place::variant},
    {Operation::flag_set_unmarshal, Place::flag_bits},
    {Operation::structure_unmarshal, Place::tinfo},
    {Operation::structure_unmarshal, Place::variant},
    {Operation::structure_unmarshal, Place::obj_flags},
    {Operation::from_xml, Place::enumeration_value},
    {Operation::set_all_state_tracking_flag, Place::state_area},
    {Operation::state_flag_set_arr, Place::head_of_state_area},
    {Operation::structure_destroy, Place::element_state_pointers},
};

bool is_listed(Operation operation, Place place) {
  for (const Store &store : unannounced) {
    if (store.operation == operation && store.place == place) return true;
  }
  return false;
}

// Of what an enumeration or flag set inside a structure is a row of.
Operation light_part(Operation operation, const Field &field) {
  if (operation != Operation::structure_unmarshal) return operation;
  return field.kind == Kind::enumeration ? Operation::enumeration_unmarshal
                                         : Operation::flag_set_unmarshal;
}

using Offsets = std::set<std::size_t>;
using Row = std::pair<Operation, Place>;

// Where the list lets an operation store, as offsets from the start of an object.
class Listed {
 public:
  explicit Listed(Operation operation) : operation_(operation) {}

  void add(Operation operation, Place place, std::size_t offset, std::size_t length) {
    if (!is_listed(operation, place)) return;
    for (std::size_t byte = offset; byte < offset + length; ++byte) {
      rows_[byte] = {operation, place};
    }
  }
  void add_header(Operation operation, std::size_t object) {
    add(operation, Place::tinfo, object, 8);
    add(operation, Place::variant, object + 8, 1);
    add(operation, Place::obj_flags, object + 10, 1);
  }
  void add_structure(const Structure &type, std::size_t object, std::size_t area) {
    add_header(operation_, object);
    for (const Field *field : type.fields) {
      const std::size_t place = object + harbor::model::offset(type, *field);
      const std::size_t block = area + harbor::model::state_block_place(type, *field);
      switch (field->kind) {
        case Kind::enumeration:
          add_header(light_part(operation_, *field), place);
          add(light_part(operation_, *field), Place::enumeration_value, place + 12, 4);
          break;
        case Kind::flags:
          add_header(light_part(operation_, *field), place);
          add(light_part(operation_, *field), Place::flag_bits, place + 11, 1);
          break;
        case Kind::structure:
          add_structure(*field->structure, place, block);
          break;
        case Kind::array:
          add(operation_, Place::element_state_pointers, block, 8);
          break;
        default:
          break;
      }
    }
  }
  static Listed of(Operation operation, const Structure &type) {
    Listed listed(operation);
    listed.add_structure(type, 0, harbor::model::object_size(type));
    listed.add(operation, Place::state_area, harbor::model::object_size(type),
               harbor::model::state_size(type));
    return listed;
  }
  // The row of the list for each byte.
  const std::map<std::size_t, Row> &rows() const { return rows_; }

 private:
  Operation operation_;
  std::map<std::size_t, Row> rows_;
};

// Watches a block during an operation; at the end, the bytes that changed unannounced must be those
// that the list has, as far as they changed at all.
class Watched {
 public:
  Watched(kelp_handle *handle, void *block, std::size_t size)
      : block_(static_cast<std::uint8_t *>(block)),
        before_(block_, block_ + size),
        watch_(handle, block, size) {}

  // Gives the number of bytes seen, and adds the rows of the list that were met.
  std::size_t expect(const Listed &listed, std::set<Row> *met = nullptr) {
    watch_.finish();
    Offsets changed;
    for (std::size_t byte = 0; byte < before_.size(); ++byte) {
      if (block_[byte] != before_[byte]) changed.insert(byte);
    }
    Offsets expected;
    for (const auto &[byte, row] : listed.rows()) {
      if (!changed.contains(byte)) continue;
      expected.insert(byte);
      if (met != nullptr) met->insert(row);
    }
    const Offsets seen(watch_.unannounced().begin(), watch_.unannounced().end());
    EXPECT_EQ(seen, expected);
    return seen.size();
  }

 private:
  std::uint8_t *block_;
  std::vector<std::uint8_t> before_;
  MemoryWatch watch_;
};

// While this lives, blocks that are given back stay as they are, so that they can be looked at.
class KeptBlocks {
 public:
  explicit KeptBlocks(kelp_handle *handle) : handle_(handle), real_(handle->obj_free) {
    current_ = this;
    handle->obj_free = [](void *, std::uint32_t, void *block) {
      current_->blocks_.push_back(block);
    };
  }
  ~KeptBlocks() {
    handle_->obj_free = real_;
    for (void *block : blocks_) handle_->obj_free(handle_->obj_pool, 0, block);
  }
  KeptBlocks(const KeptBlocks &) = delete;
  KeptBlocks &operator=(const KeptBlocks &) = delete;

 private:
  static inline KeptBlocks *current_ = nullptr;
  kelp_handle *handle_;
  void (*real_)(void *, std::uint32_t, void *);
  std::vector<void *> blocks_;
};

constexpr std::uint32_t space = 0;

// What operations overwrite is turned over first, so that each of their stores shows.
void turn_over(void *place, std::size_t length) {
  for (std::size_t byte = 0; byte < length; ++byte) {
    static_cast<std::uint8_t *>(place)[byte] =
        static_cast<std::uint8_t>(~static_cast<std::uint8_t *>(place)[byte]);
  }
}
// A type record's place is cleared: what reads it on the way must find a record or none.
void turn_over_header(std::uint8_t *object) {
  std::memset(object, 0, 8);
  object[8] = 0x7F;
}

struct LightType {
  std::string name;
  bool is_enumeration;
  std::size_t size() const { return is_enumeration ? 16 : 24; }
};
std::vector<LightType> light_types() {
  std::vector<LightType> list;
  for (const auto *type : harbor::model::all_enumerations) {
    list.push_back({std::string(type->name), true});
  }
  for (const auto *type : harbor::model::all_flag_sets) {
    list.push_back({std::string(type->name), false});
  }
  return list;
}

template <typename Act>
void for_each_structure(Act act) {
  for (const Structure *type : harbor::model::structures) {
    SCOPED_TRACE(type->name);
    act(*type);
    if (testing::Test::HasFatalFailure()) return;
  }
}

std::size_t size_of(kelp_handle *handle, const Structure &type) {
  return call<std::size_t>(of(type, "sizeof"), handle);
}

class Unannounced : public testing::TestWithParam<std::uint32_t> {
 protected:
  bool tracks() const { return GetParam() == KELP_TRACKING_ON; }
  void fill(void *object, const Structure &type, std::uint32_t round = 0) {
    Distinct(store_, round, tracks()).fill(object, type);
  }
  std::vector<std::uint8_t> image_of(const void *object, const Structure &type) {
    std::vector<std::uint8_t> image(16 * 1024);
    const auto length =
        call<std::uint32_t>(of(type, "marshal"), store_.handle(), space, image.data(), object,
                            static_cast<std::int32_t>(image.size()), &store_.err);
    EXPECT_EQ(store_.err, 0u);
    image.resize(length);
    return image;
  }
  // No row may stand in the list in vain.
  void expect_met(std::initializer_list<Operation> operations) {
    for (const Store &store : unannounced) {
      if (std::find(operations.begin(), operations.end(), store.operation) == operations.end()) {
        continue;
      }
      EXPECT_TRUE(met_.contains({store.operation, store.place}))
          << "operation " << static_cast<int>(store.operation) << ", place "
          << static_cast<int>(store.place);
    }
  }
  harness::Store store_{{.tracking = GetParam()}};
  std::set<Row> met_;
};

void turn_over_headers(std::uint8_t *object, const Structure &type) {
  turn_over_header(object);
  for (const Field *field : type.fields) {
    std::uint8_t *place = object + harbor::model::offset(type, *field);
    if (field->kind == Kind::structure) turn_over_headers(place, *field->structure);
    if (field->kind == Kind::enumeration || field->kind == Kind::flags) turn_over_header(place);
  }
}

// Sets the flag that an image carries, on a structure and all that it embeds.
void give_flag(std::uint8_t *object, const Structure &type) {
  object[10] |= OBJ_RA_DATA;
  for (const Field *field : type.fields) {
    if (field->kind != Kind::structure) continue;
    give_flag(object + harbor::model::offset(type, *field), *field->structure);
  }
}

bool forgets_when_overwritten(const Structure &type) {
  for (const Field *field : type.fields) {
    if (field->kind == Kind::structure || field->kind == Kind::arm) return true;
  }
  return false;
}

}  // namespace

TEST_P(Unannounced, DestroyOfAnEnumerationOrFlagSetClearsTheTypeRecord) {
  for (const LightType &type : light_types()) {
    SCOPED_TRACE(type.name);
    void *object = create(store_, type.name);
    const KeptBlocks kept(store_);
    Watched watched(store_, object, type.size());
    destroy(store_, type.name, object);
    Listed listed(Operation::light_destroy);
    listed.add_header(Operation::light_destroy, 0);
    watched.expect(listed, &met_);
    EXPECT_EQ(met_.size(), 1u);
    met_.clear();
  }
}

TEST_P(Unannounced, UnmarshalOfAnEnumerationOrFlagSetStoresVariantRecordAndBits) {
  for (const LightType &type : light_types()) {
    SCOPED_TRACE(type.name);
    Object object(store_, type.name);
    std::vector<std::uint8_t> image(32);
    const auto length =
        call<std::uint32_t>(type.name + "_marshal", store_.handle(), space, image.data(),
                            object.get(), static_cast<std::int32_t>(image.size()), &store_.err);
    turn_over_header(object.bytes());
    turn_over(object.bytes() + 11, type.size() - 11);
    const Operation operation =
        type.is_enumeration ? Operation::enumeration_unmarshal : Operation::flag_set_unmarshal;
    Listed listed(operation);
    listed.add_header(operation, 0);
    if (!type.is_enumeration) listed.add(operation, Place::flag_bits, 11, 1);
    Watched watched(store_, object.get(), type.size());
    call<std::uint32_t>(type.name + "_unmarshal", store_.handle(), space, image.data(),
                        object.get(), static_cast<std::int32_t>(length), std::uint32_t{0},
                        &store_.err);
    EXPECT_EQ(store_.err, 0u);
    watched.expect(listed, &met_);
    expect_met({operation});
    met_.clear();
  }
}

TEST_P(Unannounced, UnmarshalOfAStructureStoresItsHeadersAndThoseInsideIt) {
  for_each_structure([&](const Structure &type) {
    Object source(store_, type);
    fill(source.get(), type);
    give_flag(source.bytes(), type);
    const std::vector<std::uint8_t> image = image_of(source.get(), type);
    Object object(store_, type);
    turn_over_headers(object.bytes(), type);
    Watched watched(store_, object.get(), size_of(store_, type));
    call<std::uint32_t>(of(type, "unmarshal"), store_.handle(), space, image.data(), object.get(),
                        static_cast<std::int32_t>(image.size()), std::uint32_t{0}, &store_.err);
    EXPECT_EQ(store_.err, 0u);
    watched.expect(Listed::of(Operation::structure_unmarshal, type), &met_);
    expect_met({Operation::structure_unmarshal});
  });
  expect_met({Operation::enumeration_unmarshal, Operation::flag_set_unmarshal});
}

TEST_P(Unannounced, FromXmlStoresTheValuesOfEnumerations) {
  std::size_t seen = 0;
  for_each_structure([&](const Structure &type) {
    for (const std::uint32_t round : {0u, 1u, 2u}) {
      Object source(store_, type);
      fill(source.get(), type, round);
      std::string text(64 * 1024, ' ');
      const auto length = call<std::uint32_t>(
          of(type, "to_xml"), store_.handle(), space, "x", text.data(), source.get(),
          static_cast<std::uint32_t>(text.size()), std::uint32_t{0}, &store_.err);
      ASSERT_EQ(store_.err, 0u);
      char message[256] = "";
      kelp_xml_document *document = kelp_xml_parse(text.data(), length, message, sizeof message);
      ASSERT_NE(document, nullptr) << message;
      Object object(store_, type);
      Watched watched(store_, object.get(), size_of(store_, type));
      call<void>(of(type, "from_xml"), store_.handle(), space, "//x", document, object.get(),
                 &store_.err, message, static_cast<std::int32_t>(sizeof message));
      EXPECT_EQ(store_.err, 0u) << message;
      seen += watched.expect(Listed::of(Operation::from_xml, type));
      kelp_xml_free(document);
    }
  });
  EXPECT_GT(seen, 5u);
}

TEST_P(Unannounced, SetAllStateTrackingFlagFillsTheWholeArea) {
  for_each_structure([&](const Structure &type) {
    Object object(store_, type);
    const std::size_t size = size_of(store_, type);
    const std::vector<std::uint8_t> before(object.bytes(), object.bytes() + size);
    {
      Watched watched(store_, object.get(), size);
      call<void>(of(type, "set_all_state_tracking_flag"), store_.handle(), space, object.get(),
                 std::uint32_t{0x5C});
      EXPECT_EQ(watched.expect(Listed::of(Operation::set_all_state_tracking_flag, type)),
                tracks() ? harbor::model::state_size(type) : 0u);
    }
    // The pointers to element states are full of the pattern now, which destroy must not see.
    std::memcpy(object.bytes(), before.data(), size);
  });
}

TEST_P(Unannounced, StateFlagSetArrCopiesToTheHeadOfTheArea) {
  if (!tracks()) return;
  std::size_t arrays = 0;
  for_each_structure([&](const Structure &type) {
    for (const Field *field : type.fields) {
      if (field->kind != Kind::array) continue;
      Object object(store_, type);
      fill(object.get(), type);
      const std::uint8_t states[array_length] = {0xA1, 0xA2, 0xA3};
      Watched watched(store_, object.get(), size_of(store_, type));
      call<void>(of(type, *field, "state_flag_set_arr"), store_.handle(), space, object.get(),
                 states, array_length, &store_.err);
      EXPECT_EQ(store_.err, 0u);
      Listed listed(Operation::state_flag_set_arr);
      listed.add(Operation::state_flag_set_arr, Place::head_of_state_area,
                 harbor::model::object_size(type), array_length);
      EXPECT_EQ(watched.expect(listed), array_length);
      ++arrays;
    }
  });
  EXPECT_EQ(arrays, 8u);
}

TEST_P(Unannounced, DestroyOfAStructureClearsThePointersToElementStates) {
  std::size_t seen = 0;
  for_each_structure([&](const Structure &type) {
    void *object = create(store_, std::string(type.name));
    fill(object, type);
    const KeptBlocks kept(store_);
    Watched watched(store_, object, size_of(store_, type));
    destroy(store_, std::string(type.name), object);
    seen += watched.expect(Listed::of(Operation::structure_destroy, type));
  });
  EXPECT_EQ(seen > 0, tracks()) << "only objects with state bytes have such pointers";
}

// --- what announces everything -------------------------------------------------------------------

TEST_P(Unannounced, InitializeAnnouncesEverything) {
  for_each_structure([&](const Structure &type) {
    kelp_handle *handle = store_;
    const std::size_t size = size_of(handle, type);
    void *object = handle->obj_alloc(handle->obj_pool, space, size);
    std::memset(object, 0, size);
    static_cast<std::uint8_t *>(object)[8] = 0x7F;
    auto *record = static_cast<kelp_type_record *>(
        harness::exported("_" + std::string(type.name) + "_type_info_internal"));
    {
      Watched watched(handle, object, size);
      call<void>(of(type, "initialize"), handle, space, object, record, std::int32_t{1},
                 std::int32_t{0}, std::uint32_t{0}, static_cast<void *>(nullptr), &store_.err);
      watched.expect(Listed(Operation::none));
    }
    EXPECT_EQ(store_.err, 0u);
    destroy(handle, std::string(type.name), object);
  });
}

// Every setter, array operation and arm, on an object that has to move up a variant first. A second
// round writes over what is there, but for arms and embedded structures: what those held would be
// forgotten.
TEST_P(Unannounced, SettersAnnounceEverything) {
  for_each_structure([&](const Structure &type) {
    set_all_variants(store_, 0);
    Object object(store_, type);
    set_all_variants(store_, 1);
    const auto expect_all_announced = [&](auto act) {
      Watched watched(store_, object.get(), size_of(store_, type));
      act();
      watched.expect(Listed(Operation::none));
    };
    expect_all_announced([&] { fill(object.get(), type, 0); });
    if (!forgets_when_overwritten(type)) {
      expect_all_announced([&] { fill(object.get(), type, 1); });
    }
    for (const Field *field : type.fields) {
      if (field->kind != Kind::array) continue;
      expect_all_announced([&] {
        call<void>(of(type, *field, "remove_elements"), store_.handle(), space, object.get());
      });
    }
  });
}

// Embedded structures and choices moved in as wholes.
TEST_P(Unannounced, SettersOfWholesAnnounceEverything) {
  for_each_structure([&](const Structure &type) {
    Object object(store_, type);
    Watched watched(store_, object.get(), size_of(store_, type));
    fill(object.get(), type, 1);
    watched.expect(Listed(Operation::none));
  });
}

TEST_P(Unannounced, ATransferAnnouncesEverythingOnBothSides) {
  for_each_structure([&](const Structure &type) {
    for (const bool destination_is_watched : {true, false}) {
      Object source(store_, type);
      Object destination(store_, type);
      fill(source.get(), type);
      Watched watched(store_, destination_is_watched ? destination.get() : source.get(),
                      size_of(store_, type));
      call<void>(of(type, "set"), store_.handle(), space, destination.get(), source.get(),
                 &store_.err);
      watched.expect(Listed(Operation::none));
      EXPECT_EQ(store_.err, 0u);
    }
  });
}

INSTANTIATE_TEST_SUITE_P(Handles, Unannounced,
                         testing::Values(KELP_TRACKING_ABSENT, KELP_TRACKING_ON, KELP_TRACKING_OFF),
                         name_of_tracking);

}  // namespace whole_schema
