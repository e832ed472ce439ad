// The n-th allocation fails, for n = 0, 1, 2 and so on until the operation gets by without meeting
// it: what each operation reports then, what stays of the object, and that nothing is left behind,
// which the store holds against itself at its end.
#include <kelp/primitives.h>

#include <array>
#include <cstring>

#include "model/lists.hpp"
#include "whole_schema/erased.hpp"

namespace fault {

namespace {

using whole_schema::call;
using whole_schema::Field;
using whole_schema::Kind;
using whole_schema::of;
using whole_schema::Structure;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t space = 0;

// The n-th allocation from the start of its scope fails; ends with the scope.
class Fault {
 public:
  Fault(harness::Store &store, std::int64_t n) : store_(store), before_(failed()) {
    store.fail_allocation(n);
  }
  ~Fault() { store_.fail_allocation(-1); }
  // True when an allocation was refused.
  bool was_met() const { return failed() != before_; }

 private:
  std::uint64_t failed() const {
    kelp_memory_statistics statistics{};
    kelp_database_memory(store_.database(), &statistics);
    return statistics.failed_allocations;
  }
  harness::Store &store_;
  std::uint64_t before_;
};

// Runs attempt(n) until it says that no allocation was refused, and gives that n: the number of
// allocations that the operation makes.
template <typename Attempt>
std::int64_t allocations_of(Attempt attempt) {
  for (std::int64_t n = 0; n < 64; ++n) {
    SCOPED_TRACE("allocation " + std::to_string(n) + " fails");
    if (!attempt(n)) return n;
    if (testing::Test::HasFailure()) return -1;
  }
  ADD_FAILURE() << "there is no end of allocations";
  return -1;
}

std::string name_of(std::uint32_t tracking) {
  return tracking == KELP_TRACKING_ABSENT ? "absent" : tracking == KELP_TRACKING_ON ? "on" : "off";
}

constexpr std::uint32_t all_tracking[] = {KELP_TRACKING_ABSENT, KELP_TRACKING_ON,
                                          KELP_TRACKING_OFF};

template <typename Act>
void for_each_structure(Act act) {
  for (const Structure *type : harbor::model::structures) {
    for (const std::uint32_t tracking : all_tracking) {
      SCOPED_TRACE(std::string(type->name) + ", tracking " + name_of(tracking));
      act(*type, tracking);
    }
  }
}

template <typename Act>
void for_each_array(Act act) {
  std::size_t arrays = 0;
  for_each_structure([&](const Structure &type, std::uint32_t tracking) {
    for (const Field *field : type.fields) {
      if (field->kind != Kind::array) continue;
      SCOPED_TRACE(field->name);
      ++arrays;
      act(type, *field, tracking);
    }
  });
  EXPECT_EQ(arrays, 8 * std::size(all_tracking));
}

// An object with an array, looked at past all rules.
class ArrayObject {
 public:
  ArrayObject(harness::Store &store, const Structure &type, const Field &field,
              std::uint32_t tracking)
      : type(type),
        field(field),
        tracked(tracking == KELP_TRACKING_ON),
        width(harbor::model::width(field.held)),
        store_(store),
        object_(store, type) {}

  template <typename Value>
  Value at(std::size_t offset) const {
    Value value;
    std::memcpy(&value, object_.bytes() + offset, sizeof value);
    return value;
  }
  std::uint32_t count() const {
    return at<std::uint32_t>(harbor::model::offset(type, harbor::model::counter_of(type, field)));
  }
  const std::uint8_t *block() const {
    return at<const std::uint8_t *>(harbor::model::offset(type, field));
  }
  std::uint8_t whole_state() const {
    return object_
        .bytes()[harbor::model::object_size(type) + harbor::model::state_place(type, field)];
  }
  const std::uint8_t *states() const {
    return at<const std::uint8_t *>(harbor::model::object_size(type) +
                                    harbor::model::state_block_place(type, field));
  }
  Bytes content(std::uint32_t elements) const { return Bytes(block(), block() + width * elements); }
  Bytes image() const {
    return Bytes(object_.bytes(), object_.bytes() + (tracked ? harbor::model::tracked_size(type)
                                                             : harbor::model::object_size(type)));
  }

  void set(std::uint32_t index, std::uint32_t value, std::uint32_t *err) {
    if (field.held == Kind::address) {
      ip_address source = ip_address_make_ipv4(value);
      call<void>(of(type, field, "set"), store_.handle(), space, get(), index, &source, err);
    } else {
      call<void>(of(type, field, "set"), store_.handle(), space, get(), index, &value, err);
    }
  }
  void *get() const { return object_.get(); }
  void fill(std::uint32_t elements) {
    std::uint32_t err = 0;
    for (std::uint32_t index = 0; index < elements; ++index) set(index, 11 + index, &err);
    ASSERT_EQ(err, 0u);
  }

  const Structure &type;
  const Field &field;
  const bool tracked;
  const std::uint32_t width;

 private:
  harness::Store &store_;
  whole_schema::Object object_;
};

// The ways to write one element, each with the code that it reports.
enum class Writer { set, set_value, set_cr, set_cr_copying };

std::uint32_t write(harness::Store &store, ArrayObject &array, Writer writer, std::uint32_t index,
                    std::uint32_t value) {
  const Structure &type = array.type;
  const Field &field = array.field;
  kelp_handle *handle = store;
  std::uint32_t err = 0;
  switch (writer) {
    case Writer::set:
      array.set(index, value, &err);
      return err;
    case Writer::set_value:
      if (field.held == Kind::u8) {
        call<void>(of(type, field, "set_value"), handle, space, array.get(), index,
                   static_cast<std::uint8_t>(value), &err);
      } else {
        call<void>(of(type, field, "set_value"), handle, space, array.get(), index, value, &err);
      }
      return err;
    default:
      break;
  }
  if (field.held == Kind::address) {
    ip_address source = ip_address_make_ipv4(value);
    err = call<std::uint32_t>(of(type, field, "set_cr"), handle, array.get(), index, &source,
                              writer == Writer::set_cr ? 1u : 0u);
  } else {
    err = call<std::uint32_t>(of(type, field, "set_cr"), handle, array.get(), index, value);
  }
  EXPECT_EQ(handle->cr_err, err);
  handle->cr_err = 0;
  return err;
}

std::vector<Writer> writers_of(const Field &field) {
  if (field.held == Kind::address) return {Writer::set, Writer::set_cr, Writer::set_cr_copying};
  return {Writer::set, Writer::set_value, Writer::set_cr};
}

std::uint32_t read(harness::Store &store, const ArrayObject &array, std::uint32_t index) {
  std::uint32_t err = 0;
  const auto *element = call<const std::uint8_t *>(of(array.type, array.field, "get"),
                                                   store.handle(), space, array.get(), index, &err);
  EXPECT_EQ(err, 0u);
  if (element == nullptr) return 0;
  if (array.field.held == Kind::u8) return *element;
  std::uint32_t value = 0;
  if (array.field.held == Kind::u32) {
    std::memcpy(&value, element, sizeof value);
    return value;
  }
  for (int i = 0; i < 4; ++i) {
    value = value << 8 | reinterpret_cast<const ip_address *>(element)->bytes[i];
  }
  return value;
}

}  // namespace

TEST(AllocationFault, CreateGivesNullAndStoresNoError) {
  for_each_structure([](const Structure &type, std::uint32_t tracking) {
    EXPECT_EQ(allocations_of([&](std::int64_t n) {
                harness::Store store({.tracking = tracking});
                Fault fault(store, n);
                const harness::CallLog log;
                void *object = whole_schema::create(store, std::string(type.name));
                EXPECT_EQ(object == nullptr, fault.was_met());
                EXPECT_EQ(log.count("kelp_store_err"), 0u);
                // What the allocator refused is told all the same.
                EXPECT_EQ(store.last_error(), fault.was_met() ? 12 : 0);
                EXPECT_EQ(store.live_allocations(), object == nullptr ? 0u : 1u);
                whole_schema::destroy(store, std::string(type.name), object);
                return fault.was_met();
              }),
              1);
  });
}

TEST(AllocationFault, CreateInAChainGivesTheNullObjectAndStoresTwelve) {
  for_each_structure([](const Structure &type, std::uint32_t tracking) {
    EXPECT_EQ(allocations_of([&](std::int64_t n) {
                harness::Store store({.tracking = tracking});
                Fault fault(store, n);
                void *object = call<void *>(of(type, "create_cr"), store.handle());
                const bool is_null_object = *static_cast<kelp_type_record **>(object) == nullptr;
                EXPECT_EQ(is_null_object, fault.was_met());
                EXPECT_EQ(store.last_error(), fault.was_met() ? 12 : 0);
                EXPECT_EQ(store.handle()->cr_err, fault.was_met() ? 12u : 0u);
                EXPECT_EQ(store.handle()->cr_create, 0u);
                EXPECT_EQ(store.live_allocations(), is_null_object ? 0u : 1u);
                whole_schema::destroy(store, std::string(type.name), object);
                return fault.was_met();
              }),
              1);
  });
}

TEST(AllocationFault, InitializeAllocatesNothing) {
  for_each_structure([](const Structure &type, std::uint32_t tracking) {
    harness::Store store({.tracking = tracking});
    kelp_handle *handle = store;
    const auto size = call<std::size_t>(of(type, "sizeof"), handle);
    void *object = handle->obj_alloc(handle->obj_pool, space, size);
    std::memset(object, 0, size);
    auto *record = static_cast<kelp_type_record *>(
        harness::exported("_" + std::string(type.name) + "_type_info_internal"));
    EXPECT_EQ(allocations_of([&](std::int64_t n) {
                Fault fault(store, n);
                call<void>(of(type, "initialize"), handle, space, object, record, std::int32_t{1},
                           std::int32_t{0}, std::uint32_t{0}, static_cast<void *>(nullptr),
                           &store.err);
                return fault.was_met();
              }),
              0);
    EXPECT_EQ(store.err, 0u);
    EXPECT_EQ(store.live_allocations(), 1u);
    whole_schema::destroy(store, std::string(type.name), object);
  });
}

TEST(AllocationFault, AGrowthThatFindsNoBlockLeavesTheArrayAndOneWithoutStatesGrowsAllTheSame) {
  constexpr std::uint32_t index = 4;
  for_each_array([&](const Structure &type, const Field &field, std::uint32_t tracking) {
    for (const Writer writer : writers_of(field)) {
      for (const std::uint32_t held : {0u, 2u}) {
        SCOPED_TRACE("writer " + std::to_string(static_cast<int>(writer)) + ", " +
                     std::to_string(held) + " elements before");
        const std::int64_t allocations = allocations_of([&](std::int64_t n) {
          harness::Store store({.tracking = tracking});
          ArrayObject array(store, type, field, tracking);
          array.fill(held);
          const Bytes image = array.image();
          const Bytes content = array.content(held);
          const std::uint64_t live = store.live_allocations();
          std::uint32_t err;
          bool failed;
          {
            Fault fault(store, n);
            err = write(store, array, writer, index, 99);
            failed = fault.was_met();
          }
          EXPECT_EQ(err, failed ? 12u : 0u);
          EXPECT_EQ(store.last_error(), failed ? 12 : 0);
          if (failed && n == 0) {
            EXPECT_EQ(array.image(), image);
            EXPECT_EQ(array.content(held), content);
            EXPECT_EQ(store.live_allocations(), live);
          } else {
            EXPECT_EQ(array.count(), index + 1);
            EXPECT_EQ(array.content(held), content);
            for (std::uint32_t gap = held; gap < index; ++gap) {
              EXPECT_EQ(read(store, array, gap), 0u) << gap;
            }
          }
          if (failed && n == 1) {
            EXPECT_EQ(array.states(), nullptr);
            EXPECT_EQ(array.whole_state(), held == 0 ? 0 : 2) << "only a write marks";
            EXPECT_EQ(read(store, array, index), 0u) << "grown, not written";
            // The old block and its states are gone, the new block stands alone.
            EXPECT_EQ(store.live_allocations(), 2u);
          }
          // The object goes on: what failed is done once more.
          if (failed) {
            EXPECT_EQ(write(store, array, writer, index, 99), 0u);
          }
          EXPECT_EQ(read(store, array, index), 99u);
          EXPECT_EQ(array.count(), index + 1);
          if (array.tracked) {
            EXPECT_EQ(array.whole_state(), 2);
          }
          if (array.tracked && !(failed && n == 1)) {
            EXPECT_EQ(array.states()[index], 2);
          }
          return failed;
        });
        EXPECT_EQ(allocations, tracking == KELP_TRACKING_ON ? 2 : 1);
      }
    }
  });
}

// Three elements replace those that an array field holds, by the plain call or by that of a chain.
struct Replacement {
  const Structure &type;
  const Field &field;
  std::uint32_t tracking;
  const void *source;
  bool carried;
  std::uint32_t held;
  bool goes_on;  // after a failure

  std::uint32_t replace(kelp_handle *handle, void *object) const {
    std::uint32_t err = 0;
    if (carried) {
      err = call<std::uint32_t>(of(type, field, "set_mem_cr"), handle, object, source,
                                std::uint32_t{3});
      handle->cr_err = 0;
    } else {
      call<void>(of(type, field, "set_mem"), handle, space, object, source, std::uint32_t{3}, &err);
    }
    return err;
  }

  void expect_elements(const ArrayObject &array) const {
    EXPECT_EQ(array.count(), 3u);
    EXPECT_EQ(std::memcmp(array.block(), source, array.width * 3), 0);
  }

  // True when the n-th allocation was asked for, and refused.
  bool run(std::int64_t n) const {
    harness::Store store({.tracking = tracking});
    ArrayObject array(store, type, field, tracking);
    array.fill(held);
    const std::uint8_t whole_state = array.tracked ? array.whole_state() : 0;
    const std::uint8_t *states = array.tracked ? array.states() : nullptr;
    std::uint32_t err;
    bool failed;
    {
      Fault fault(store, n);
      err = replace(store, array.get());
      failed = fault.was_met();
    }
    EXPECT_EQ(err, failed ? 12u : 0u);
    EXPECT_EQ(store.last_error(), failed ? 12 : 0);
    if (failed && n == 0) {
      EXPECT_EQ(array.block(), nullptr);
      EXPECT_EQ(array.count(), held);
      if (array.tracked) {
        EXPECT_EQ(array.whole_state(), whole_state);
        EXPECT_EQ(array.states(), states);
      }
    }
    if (failed && n == 1) {
      expect_elements(array);
      EXPECT_EQ(array.whole_state(), 2);
      EXPECT_EQ(array.states(), nullptr);
      EXPECT_EQ(store.live_allocations(), 2u);
    }
    if (failed && !goes_on) return failed;
    if (failed) {
      EXPECT_EQ(replace(store, array.get()), 0u);
    }
    expect_elements(array);
    if (array.tracked) {
      EXPECT_EQ(array.whole_state(), 2);
      EXPECT_EQ(Bytes(array.states(), array.states() + 3), Bytes(3, 0));
    }
    EXPECT_EQ(store.live_allocations(), array.tracked ? 3u : 2u);
    return failed;
  }
};

TEST(AllocationFault, SetMemWithoutABlockKeepsTheCountAndWithoutStatesTheNewElements) {
  const std::array<std::uint32_t, 3> words{7, 8, 9};
  const std::array<std::uint8_t, 3> octets{7, 8, 9};
  for_each_array([&](const Structure &type, const Field &field, std::uint32_t tracking) {
    if (field.held == Kind::address) return;
    const void *source = field.held == Kind::u8 ? static_cast<const void *>(octets.data())
                                                : static_cast<const void *>(words.data());
    for (const bool carried : {false, true}) {
      for (const std::uint32_t held : {0u, 2u}) {
        for (const bool goes_on : {false, true}) {
          SCOPED_TRACE(std::string(carried ? "set_mem_cr, " : "set_mem, ") + std::to_string(held) +
                       " elements before");
          const Replacement replacement{type, field, tracking, source, carried, held, goes_on};
          const std::int64_t allocations =
              allocations_of([&](std::int64_t n) { return replacement.run(n); });
          EXPECT_EQ(allocations, tracking == KELP_TRACKING_ON ? 2 : 1);
        }
      }
    }
  });
}

}  // namespace fault
