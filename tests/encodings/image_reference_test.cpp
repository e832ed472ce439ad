// A second writer of images, made from the tables of docs/wire-format.md and the rows of the
// schema, walked at run time. Thousands of random objects of every structure type are written by
// both and compared byte for byte, then read back by handles that track state and that do not.
#include "model/lists.hpp"
#include "support/objects.hpp"

namespace {

using namespace encodings;
using harness::Store;
using harness::StoreOptions;

// What the second writer makes, and what it counts for the length that the type tells.
struct Reference {
  Bytes bytes;
  std::uint32_t ra_blocks = 0;
  std::uint32_t unwritten_array_bytes = 0;
  std::uint32_t unowned_element_bytes = 0;
};

enum class StateSource { none, zero, object };

class ReferenceWriter {
 public:
  // states: none under a handle that does not track; zero where the states of the objects are to be
  // left out of account.
  explicit ReferenceWriter(StateSource states) : states_(states) {}

  Reference image(const void *object, const Structure &type) {
    const auto *area = static_cast<const std::uint8_t *>(object) + harbor::model::object_size(type);
    structure(object, type, is_tracked(object) ? area : nullptr);
    return std::move(made_);
  }

 private:
  static bool is_tracked(const void *object) {
    return (static_cast<const kelp_object_header *>(object)->obj_flags & OBJ_STATE_TRACKED) != 0;
  }

  void byte(std::uint64_t value) { made_.bytes.push_back(static_cast<std::uint8_t>(value)); }
  void number(std::uint64_t value, int width) {
    for (int shift = 8 * (width - 1); shift >= 0; shift -= 8) byte(value >> shift);
  }
  void state(const std::uint8_t *area, std::uint32_t place) {
    if (states_ == StateSource::none) return;
    byte(states_ == StateSource::zero || area == nullptr ? 0 : area[place]);
  }

  template <typename Value>
  static const Value &at(const void *place) {
    return *static_cast<const Value *>(place);
  }

  void structure(const void *object, const Structure &type, const std::uint8_t *area) {
    const auto &head = at<kelp_object_header>(object);
    byte(static_cast<std::uint8_t>(head.variant));
    byte((states_ == StateSource::none ? 0 : 8) | (head.obj_flags & 32));
    if ((head.obj_flags & 32) != 0) {
      number(0, 8);
      byte(0);
      ++made_.ra_blocks;
    }
    const std::size_t jump_at = made_.bytes.size();
    number(0, 4);
    for (int floor = 0; floor <= head.variant; ++floor) {
      const std::uint8_t *before = nullptr;
      for (const Field *field : type.fields) {
        const auto *place =
            static_cast<const std::uint8_t *>(object) + harbor::model::offset(type, *field);
        if (field->since == floor) value(object, place, before, type, *field, area);
        before = place;
      }
    }
    const std::size_t jump = made_.bytes.size() - jump_at;
    for (int i = 0; i < 4; ++i) {
      made_.bytes[jump_at + i] = static_cast<std::uint8_t>(jump >> (24 - 8 * i));
    }
  }

  void value(const void *object, const std::uint8_t *place, const std::uint8_t *before,
             const Structure &type, const Field &field, const std::uint8_t *area) {
    switch (field.kind) {
      case Kind::array:
        array(at<const std::uint8_t *>(place), at<std::uint32_t>(before), type, field, area);
        return;
      case Kind::structure:
        structure(place, *field.structure,
                  area == nullptr ? nullptr : area + harbor::model::state_block_place(type, field));
        break;
      case Kind::enumeration: {
        const std::uint32_t held = at<std::uint32_t>(place + 12);
        byte(at<std::uint8_t>(place + 8));
        number(field.enumeration->has_internal_range ? held - 1 : held, 4);
        break;
      }
      case Kind::flags:
        byte(at<std::uint8_t>(place + 8));
        number(5, 4);
        byte(place[11]);
        break;
      case Kind::reference: {
        const auto &oid = at<kelp_reference>(place).oid;
        number(oid.handle_word, 8);
        for (std::uint8_t b : oid.id) byte(b);
        for (std::uint8_t b : oid.source) byte(b);
        break;
      }
      case Kind::arm:
        if (selector(object, type) == field.selector) {
          const void *held = at<const void *>(place);
          if (field.held == Kind::structure) {
            arm_structure(held, *field.structure);
          } else {
            plain(static_cast<const std::uint8_t *>(held), field.held);
          }
        }
        break;
      default:
        plain(place, field.kind);
    }
    if (field.kind != Kind::counter) state(area, harbor::model::state_place(type, field));
  }

  // An arm is an object of its own, with its own state bytes behind it.
  void arm_structure(const void *object, const Structure &type) {
    const auto *area = static_cast<const std::uint8_t *>(object) + harbor::model::object_size(type);
    structure(object, type, is_tracked(object) ? area : nullptr);
  }

  static std::uint32_t selector(const void *object, const Structure &type) {
    for (const Field *field : type.fields) {
      if (field->kind != Kind::enumeration) continue;
      return at<std::uint32_t>(static_cast<const std::uint8_t *>(object) +
                               harbor::model::offset(type, *field) + 12);
    }
    return UINT32_MAX;
  }

  void array(const std::uint8_t *elements, std::uint32_t count, const Structure &type,
             const Field &field, const std::uint8_t *area) {
    const std::uint32_t width = harbor::model::width(field.held);
    for (std::uint32_t i = 0; i < count; ++i) plain(elements + width * i, field.held);
    if (states_ == StateSource::none) return;
    if (count == 0) {
      ++made_.unwritten_array_bytes;
      return;
    }
    state(area, harbor::model::state_place(type, field));
    if (area == nullptr) made_.unowned_element_bytes += count;
    const auto *states =
        area == nullptr
            ? nullptr
            : at<const std::uint8_t *>(area + harbor::model::state_block_place(type, field));
    for (std::uint32_t i = 0; i < count; ++i) {
      byte(states == nullptr || states_ == StateSource::zero ? 0 : states[i]);
    }
  }

  void plain(const std::uint8_t *place, Kind kind) {
    switch (kind) {
      case Kind::u8:
        byte(*place);
        break;
      case Kind::u16:
        number(at<std::uint16_t>(place), 2);
        break;
      case Kind::u32:
      case Kind::counter:
        number(at<std::uint32_t>(place), 4);
        break;
      case Kind::boolean:
        byte(at<std::uint32_t>(place));
        break;
      case Kind::real:
        number(at<std::uint64_t>(place), 8);
        break;
      case Kind::address: {
        const auto &address = at<ip_address>(place);
        byte(address.family);
        byte(address.has_prefix != 0 ? address.prefix_length : 255);
        for (std::uint8_t b : address.bytes) byte(b);
        number(address.scope, 4);
        break;
      }
      case Kind::text: {
        const auto &text = at<kelp_vstring>(place);
        number(text.length, 4);
        for (std::uint32_t i = 0; i < text.length; ++i) byte(text.text[i]);
        break;
      }
      default:
        ADD_FAILURE() << "no plain value of kind " << static_cast<int>(kind);
    }
  }

  StateSource states_;
  Reference made_;
};

using Marshal = std::uint32_t(kelp_handle *, std::uint32_t, void *, const void *, std::int32_t,
                              std::uint32_t *);
using Unmarshal = std::uint32_t(kelp_handle *, std::uint32_t, const void *, void *, std::int32_t,
                                std::uint32_t, std::uint32_t *);
using Len = std::uint32_t(kelp_handle *, std::uint32_t, const void *);

// A state byte by rule B needs one byte of room more than itself.
constexpr std::size_t spare = 1;
constexpr std::uint8_t untouched = 0xA5;

Bytes written(kelp_handle *handle, const Object<> &object, const char *suffix, std::size_t size) {
  Bytes buffer(size + spare + 8, untouched);
  std::uint32_t err = 0;
  const std::uint32_t used = object.call<Marshal>(suffix)(
      handle, 0, buffer.data(), object, static_cast<std::int32_t>(size + spare), &err);
  EXPECT_EQ(err, 0u);
  EXPECT_LE(used, size + spare);
  for (std::size_t at = used; at < buffer.size(); ++at) EXPECT_EQ(buffer[at], untouched) << at;
  buffer.resize(used);
  return buffer;
}

// What a handle writes is what the second writer makes.
Bytes expect_image(kelp_handle *handle, const Object<> &object, const Structure &type,
                   StateSource states) {
  const Reference reference = ReferenceWriter(states).image(object, type);
  EXPECT_EQ(written(handle, object, "marshal", reference.bytes.size()), reference.bytes)
      << type.name;
  EXPECT_EQ(written(handle, object, "marshal_for_clone", reference.bytes.size()), reference.bytes)
      << type.name;
  EXPECT_EQ(object.call<Len>("len")(handle, 0, object),
            reference.bytes.size() - 9 * reference.ra_blocks + reference.unwritten_array_bytes -
                reference.unowned_element_bytes)
      << type.name;
  return reference.bytes;
}

// Reads the image into a new object of another handle and gives that object's own image.
Bytes reread(kelp_handle *handle, const Structure &type, const Bytes &image) {
  const Object<> object(handle, type);
  Bytes buffer = image;
  buffer.resize(image.size() + spare, untouched);
  std::uint32_t err = 0;
  const std::uint32_t used = object.call<Unmarshal>("unmarshal")(
      handle, 0, buffer.data(), object, static_cast<std::int32_t>(buffer.size()), 0, &err);
  EXPECT_EQ(err, 0u) << type.name;
  EXPECT_EQ(used, image.size()) << type.name;
  EXPECT_EQ(static_cast<std::int8_t>(image[0]), header(object).variant) << type.name;
  const StateSource states = handle->sttr != nullptr && handle->sttr->sttr_mode == STTR_MODE_ON
                                 ? StateSource::object
                                 : StateSource::none;
  return expect_image(handle, object, type, states);
}

// All fields go into the image only at the highest variant.
void raise_variants(void *object, const Structure &type) {
  header(object).variant = static_cast<std::int8_t>(type.variants - 1);
  for (const Field *field : type.fields) {
    if (field->kind != Kind::structure) continue;
    raise_variants(static_cast<std::uint8_t *>(object) + harbor::model::offset(type, *field),
                   *field->structure);
  }
}

constexpr std::uint32_t objects_per_type = 15;

class ImageReference : public testing::TestWithParam<const Structure *> {};

TEST_P(ImageReference, AnUntrackedObjectIsWrittenByTheTablesAndReadBack) {
  const Structure &type = *GetParam();
  for (const std::uint32_t tracking : {KELP_TRACKING_ABSENT, KELP_TRACKING_OFF}) {
    Store store({.tracking = tracking});
    Store tracked({.tracking = KELP_TRACKING_ON});
    for (std::uint32_t seed = 1; seed <= objects_per_type; ++seed) {
      const Object<> object(store, type);
      Filler(store, seed).fill(object, type);
      const Bytes image = expect_image(store, object, type, StateSource::none);
      EXPECT_EQ(reread(store, type, image), image) << type.name;
      // A tracking reader's object has only zeroes for state bytes.
      EXPECT_EQ(reread(tracked, type, image),
                ReferenceWriter(StateSource::zero).image(object, type).bytes)
          << type.name;
    }
  }
}

TEST_P(ImageReference, ATrackedObjectIsWrittenByTheTablesAndReadBack) {
  const Structure &type = *GetParam();
  Store store({.tracking = KELP_TRACKING_ON});
  Store untracked;
  for (std::uint32_t seed = 1; seed <= objects_per_type; ++seed) {
    const Object<> object(store, type);
    Filler(store, seed).fill(object, type);
    const Bytes image = expect_image(store, object, type, StateSource::object);
    EXPECT_EQ(reread(store, type, image), image) << type.name;
    EXPECT_EQ(reread(untracked, type, image),
              ReferenceWriter(StateSource::none).image(object, type).bytes)
        << type.name;
  }
}

TEST_P(ImageReference, AnUntrackedObjectUnderATrackingHandleGetsZeroesForItsState) {
  const Structure &type = *GetParam();
  Store store({.tracking = KELP_TRACKING_ON});
  kelp_handle *untracked = store.another_handle({});
  for (std::uint32_t seed = 1; seed <= objects_per_type; ++seed) {
    const Object<> object(untracked, type);
    Filler(untracked, seed).fill(object, type);
    const Bytes image = expect_image(store, object, type, StateSource::object);
    EXPECT_EQ(image, ReferenceWriter(StateSource::zero).image(object, type).bytes);
    EXPECT_EQ(reread(store, type, image), image) << type.name;
  }
}

TEST_P(ImageReference, AnObjectReadBackComparesEqual) {
  const Structure &type = *GetParam();
  Store store;
  for (std::uint32_t seed = 1; seed <= objects_per_type; ++seed) {
    const Object<> object(store, type);
    const Object<> copy(store, type);
    Filler(store, seed).fill(object, type);
    raise_variants(object, type);
    const Bytes image = ReferenceWriter(StateSource::none).image(object, type).bytes;
    object.call<Unmarshal>("unmarshal")(store, 0, image.data(), copy,
                                        static_cast<std::int32_t>(image.size()), 0, &store.err);
    EXPECT_EQ(store.err, 0u) << type.name;
    EXPECT_EQ((object.call<std::int32_t(const void *, const void *)>("compare")(object, copy)), 0)
        << type.name;
  }
}

INSTANTIATE_TEST_SUITE_P(AllStructures, ImageReference,
                         testing::ValuesIn(harbor::model::structures),
                         [](const auto &info) { return std::string(info.param->name); });

}  // namespace
