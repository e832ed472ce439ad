#include "walk.hpp"

#include <kelp/object.h>
#include <kelp/primitive_layout.h>
#include <kelp/wire.h>

#include <algorithm>
#include <climits>

namespace ospf_harbor_check {

using model::Field;
using model::Kind;
using model::Structure;

namespace {

// In the order of ospf_harbor_span_piece.
constexpr std::string_view piece_names[] = {
    "marker",    "reserved bytes", "tracking mark", "handle word",    "length",
    "fill",      "luid",           "variant",       "flags",          "ra-data",
    "jump word", "value",          "count",         "text length",    "text",
    "family",    "prefix length",  "address",       "zone",           "OID handle word",
    "OID id",    "OID source",     "state",         "element states", "skipped",
};
static_assert(std::size(piece_names) == OSPF_HARBOR_SPAN_SKIPPED + 1);

constexpr std::uint8_t wire_flags = OBJ_STATE_TRACKED | OBJ_RA_DATA;
constexpr std::size_t reserved_size = 6;
constexpr std::size_t fill_size = 11;
constexpr std::size_t flags_at = 1;  // in an object's image
constexpr std::size_t handle_word_size = 8;
constexpr std::size_t oid_part_size = 16;
static_assert(handle_word_size + 2 * oid_part_size == KELP_WIRE_OID_SIZE);
constexpr std::uint8_t no_prefix = 255;

using Text = FixedText<128>;

// Bytes of a value of a primitive whose size does not depend on it; the least for a text.
constexpr std::size_t least_size(Kind kind) {
  switch (kind) {
    case Kind::u8:
    case Kind::boolean:
      return 1;
    case Kind::u16:
      return 2;
    case Kind::real:
      return 8;
    case Kind::address:
      return 22;
    default:
      return 4;
  }
}

constexpr auto number_of = [](Bytes bytes) {
  return [bytes](TextBuffer &text) { text.number(number_in(bytes)); };
};
constexpr auto nothing_of = [](Bytes) { return [](TextBuffer &) {}; };
constexpr auto octets_of = [](Bytes bytes) {
  return [bytes](TextBuffer &text) { text.number(bytes.size()).put(" octets"); };
};
constexpr auto digits_of = [](Bytes bytes) {
  return [bytes](TextBuffer &text) { put_digits(text, bytes); };
};
// Of an OID, where zeroes stand for nothing.
constexpr auto digits_or_none_of = [](Bytes bytes) {
  return [bytes](TextBuffer &text) {
    if (std::ranges::all_of(bytes, [](std::uint8_t byte) { return byte == 0; })) {
      text.put("none");
    } else {
      put_digits(text, bytes);
    }
  };
};

constexpr std::size_t nesting(const Structure &type) {
  std::size_t deepest = 0;
  for (const Field *field : type.fields) {
    if (field->structure != nullptr) deepest = std::max(deepest, nesting(*field->structure));
  }
  return deepest + 1;
}
static_assert(std::ranges::all_of(model::structures, [](const Structure *type) {
  return nesting(*type) < Path::most_parts;
}));

std::uint8_t bits_of(std::uint8_t family) {
  return family == KELP_AF_IPV4 ? 32 : family == KELP_AF_IPV6 ? 128 : 0;
}

}  // namespace

void Path::put_to(TextBuffer &text) const {
  text.put(parts_[0]);
  for (std::size_t at = 1; at <= last_; ++at) text.put(".").put(parts_[at]);
  if (element_ != no_element) text.put("[").number(element_).put("]");
}

// --- pieces -------------------------------------------------------------------------------------

bool Walk::fail(Fault fault, Piece piece, std::size_t offset, std::string_view found,
                std::string_view expected) {
  FixedText<Path::longest> path;
  path_.put_to(path);
  say(result_, offset, {fault, path.view(), piece_names[piece], found, expected});
  return false;
}

bool Walk::is_cut(Piece piece, std::size_t size) {
  Text found;
  found.number(rest()).put(end_ == image_.size() ? " bytes to the end of the image"
                                                 : " bytes to the end of its object");
  return fail(OSPF_HARBOR_FAULT_CUT, piece, at_, found.view(), Text().number(size).view());
}

template <typename Put>
void Walk::pass(Piece piece, std::size_t size, Put put) {
  if (visit_ != nullptr && size != 0) {
    FixedText<1024> value;
    put(value);
    FixedText<Path::longest> path;
    path_.put_to(path);
    const ospf_harbor_image_span span{
        at_, size, piece, depth_, path.c_str(), piece_names[piece].data(), value.c_str()};
    visit_(&span, context_);
  }
  at_ += size;
}

template <typename Put>
bool Walk::take(Piece piece, std::size_t size, Put put) {
  Bytes bytes;
  if (!peek(piece, size, bytes)) return false;
  pass(piece, size, put(bytes));
  return true;
}

// --- what is around the fields ------------------------------------------------------------------

// A negative variant is refused: a writer gives one only together with error 43. The reader would
// take it, leave every field as it was and keep the variant, and the object's accessors would
// refuse all of its fields from then on.
bool Walk::variant(std::int8_t &variant) {
  Bytes byte;
  if (!peek(OSPF_HARBOR_SPAN_VARIANT, KELP_WIRE_VARIANT_SIZE, byte)) return false;
  variant = static_cast<std::int8_t>(byte[0]);
  if (variant < 0) {
    Text found;
    found.put("-").number(static_cast<std::uint64_t>(-variant));
    return fail(OSPF_HARBOR_FAULT_VARIANT, OSPF_HARBOR_SPAN_VARIANT, at_, found.view(), "0 to 127");
  }
  pass(OSPF_HARBOR_SPAN_VARIANT, byte.size(), number_of(byte));
  return true;
}

// Whether there are state bytes is the handle's matter, so that all objects of an image agree; with
// others the readers' rules for the room of the last state byte would not hold.
bool Walk::flags() {
  Bytes byte;
  if (!peek(OSPF_HARBOR_SPAN_FLAGS, KELP_WIRE_OBJ_FLAG_SIZE, byte)) return false;
  const std::uint8_t flags = byte[0];
  const bool is_tracked = (flags & OBJ_STATE_TRACKED) != 0;
  if ((flags & ~wire_flags) != 0) {
    return fail(OSPF_HARBOR_FAULT_FLAGS, OSPF_HARBOR_SPAN_FLAGS, at_,
                Text().put("0x").hexadecimal(flags).view(), "no bits but 0x08 and 0x20");
  }
  if (!is_first_object_ && is_tracked != is_tracked_) {
    return fail(OSPF_HARBOR_FAULT_MIXED_TRACKING, OSPF_HARBOR_SPAN_FLAGS, at_,
                is_tracked ? "an object with state bytes" : "an object without state bytes",
                is_tracked_ ? "state bytes as in the objects before" : "none, as before");
  }
  is_first_object_ = false;
  is_tracked_ = is_tracked;
  pass(OSPF_HARBOR_SPAN_FLAGS, byte.size(), [flags](TextBuffer &text) {
    if (flags == 0) text.put("none");
    if ((flags & OBJ_STATE_TRACKED) != 0) text.put("state bytes");
    if (flags == wire_flags) text.put(", ");
    if ((flags & OBJ_RA_DATA) != 0) text.put("ra-data");
  });
  return (flags & OBJ_RA_DATA) == 0 ||
         take(OSPF_HARBOR_SPAN_RA_DATA, KELP_WIRE_RA_DATA_SIZE, nothing_of);
}

bool Walk::jump(std::size_t &end) {
  Bytes word;
  if (!peek(OSPF_HARBOR_SPAN_JUMP, KELP_WIRE_JUMP_SIZE, word)) return false;
  const auto jump = static_cast<std::int32_t>(number_in(word));
  if (jump < KELP_WIRE_JUMP_SIZE || static_cast<std::size_t>(jump) > rest()) {
    Text found;
    if (jump < 0) found.put("-");
    found.number(static_cast<std::uint64_t>(jump < 0 ? -std::int64_t{jump} : jump));
    Text expected;
    expected.put("4 to ").number(rest()).put(" (what remains)");
    return fail(OSPF_HARBOR_FAULT_JUMP, OSPF_HARBOR_SPAN_JUMP, at_, found.view(), expected.view());
  }
  end = at_ + static_cast<std::size_t>(jump);
  pass(OSPF_HARBOR_SPAN_JUMP, word.size(), [jump, end](TextBuffer &text) {
    text.number(static_cast<std::uint64_t>(jump)).put(", to 0x").number(end, 16);
  });
  return true;
}

bool Walk::skip() {
  result_.skipped += rest();
  pass(OSPF_HARBOR_SPAN_SKIPPED, rest(), octets_of(image_.subspan(at_, rest())));
  return true;
}

bool Walk::at_end() {
  if (rest() == 0) return true;
  Text found;
  found.number(rest()).put(" bytes behind the end");
  return fail(OSPF_HARBOR_FAULT_TRAILING, OSPF_HARBOR_SPAN_SKIPPED, at_, found.view(), "none");
}

// --- objects ------------------------------------------------------------------------------------

// A variant above the highest one known here is read as that one.
bool Walk::structure(const Structure &type) {
  std::int8_t variant_of_image;
  std::size_t end;
  if (!variant(variant_of_image) || !flags() || !jump(end)) return false;
  std::swap(end_, end);
  const std::uint32_t selector = selector_;
  bool is_whole = true;
  for (int floor = 0; is_whole && floor <= variant_of_image && floor < type.variants; ++floor) {
    is_whole = fields(type, static_cast<std::uint8_t>(floor));
  }
  is_whole = is_whole && skip();
  selector_ = selector;
  end_ = end;
  return is_whole;
}

bool Walk::fields(const Structure &type, std::uint8_t floor) {
  for (std::size_t at = 0; at < type.fields.size(); ++at) {
    if (type.fields[at]->since == floor && !field(type, at)) return false;
  }
  return true;
}

// A counter goes by the name of its array.
bool Walk::field(const Structure &type, std::size_t at) {
  const Field &field = *type.fields[at];
  const bool is_counter = field.kind == Kind::counter;
  const Field &named = is_counter ? *type.fields[at + 1] : field;
  path_.push(named.name);
  bool is_whole;
  if (is_counter) {
    is_whole = counter(named);
  } else if (field.kind == Kind::array) {
    is_whole = array(field);
  } else {
    is_whole = value(field) && state();
  }
  path_.pop();
  return is_whole;
}

bool Walk::value(const Field &field) {
  switch (field.kind) {
    case Kind::reference:
      return reference();
    case Kind::arm:
      return arm(field);
    case Kind::structure:
    case Kind::enumeration:
    case Kind::flags: {
      ++depth_;
      const bool is_whole = field.kind == Kind::structure     ? structure(*field.structure)
                            : field.kind == Kind::enumeration ? enumeration(*field.enumeration)
                                                              : flag_set(*field.flag_set);
      --depth_;
      return is_whole;
    }
    default:
      return primitive(field.kind);
  }
}

bool Walk::state() { return !is_tracked_ || take(OSPF_HARBOR_SPAN_STATE, 1, number_of); }

bool Walk::arm(const Field &field) {
  if (field.selector != selector_) return true;
  if (field.held != Kind::structure) return primitive(field.held);
  ++depth_;
  const bool is_whole = structure(*field.structure);
  --depth_;
  return is_whole;
}

bool Walk::enumeration(const model::Enumeration &type) {
  std::int8_t ignored;
  if (!variant(ignored)) return false;
  return take(OSPF_HARBOR_SPAN_VALUE, 4, [this, &type](Bytes bytes) {
    const auto wire = static_cast<std::uint32_t>(number_in(bytes));
    selector_ = held_value(type, wire);
    return [&type, wire](TextBuffer &text) { put_member(text, type, wire); };
  });
}

bool Walk::flag_set(const model::FlagSet &type) {
  std::int8_t ignored;
  std::size_t end;
  if (!variant(ignored) || !jump(end)) return false;
  std::swap(end_, end);
  const bool is_whole = take(OSPF_HARBOR_SPAN_VALUE, 1, [&type](Bytes byte) {
    return [&type, byte](TextBuffer &text) { put_members(text, type, byte[0]); };
  });
  if (is_whole) skip();
  end_ = end;
  return is_whole;
}

// --- arrays -------------------------------------------------------------------------------------

// The reader allocates for the count before it reads an element.
bool Walk::counter(const Field &array) {
  Bytes bytes;
  if (!peek(OSPF_HARBOR_SPAN_COUNT, 4, bytes)) return false;
  count_ = static_cast<std::uint32_t>(number_in(bytes));
  const std::size_t for_elements = rest() - bytes.size() - (is_tracked_ && rest() > 4 ? 1 : 0);
  const std::size_t most = for_elements / (least_size(array.held) + (is_tracked_ ? 1 : 0));
  if (count_ > most) {
    Text expected;
    expected.put("at most ").number(most).put(" (what remains)");
    return fail(OSPF_HARBOR_FAULT_COUNT, OSPF_HARBOR_SPAN_COUNT, at_, Text().number(count_).view(),
                expected.view());
  }
  pass(OSPF_HARBOR_SPAN_COUNT, bytes.size(), number_of(bytes));
  return true;
}

// Nothing stands for an array without elements, its state byte neither.
bool Walk::array(const Field &array) {
  if (count_ == 0) return true;
  if (array.held == Kind::u8) {
    if (!take(OSPF_HARBOR_SPAN_VALUE, count_, octets_of)) return false;
  } else {
    for (std::uint32_t at = 0; at < count_; ++at) {
      path_.element(at);
      if (!primitive(array.held)) return false;
    }
    path_.element(Path::no_element);
  }
  return state() && (!is_tracked_ || take(OSPF_HARBOR_SPAN_ELEMENT_STATES, count_, nothing_of));
}

// --- primitives ---------------------------------------------------------------------------------

bool Walk::reference() {
  return take(OSPF_HARBOR_SPAN_OID_HANDLE_WORD, handle_word_size, digits_or_none_of) &&
         take(OSPF_HARBOR_SPAN_OID_ID, oid_part_size, digits_or_none_of) &&
         take(OSPF_HARBOR_SPAN_OID_SOURCE, oid_part_size, digits_or_none_of);
}

bool Walk::primitive(Kind kind) {
  switch (kind) {
    case Kind::boolean:
      return boolean();
    case Kind::text:
      return text();
    case Kind::address:
      return address();
    case Kind::real:
      return take(OSPF_HARBOR_SPAN_VALUE, least_size(kind),
                  [](Bytes bytes) { return [bytes](TextBuffer &text) { put_real(text, bytes); }; });
    default:
      return take(OSPF_HARBOR_SPAN_VALUE, least_size(kind), number_of);
  }
}

bool Walk::boolean() {
  Bytes byte;
  if (!peek(OSPF_HARBOR_SPAN_VALUE, 1, byte)) return false;
  const std::uint8_t value = byte[0];
  if (value > 1) {
    return fail(OSPF_HARBOR_FAULT_BOOLEAN, OSPF_HARBOR_SPAN_VALUE, at_, Text().number(value).view(),
                "0 or 1");
  }
  pass(OSPF_HARBOR_SPAN_VALUE, 1,
       [value](TextBuffer &text) { text.put(value == 0 ? "false" : "true"); });
  return true;
}

bool Walk::text() {
  Bytes bytes;
  if (!peek(OSPF_HARBOR_SPAN_TEXT_LENGTH, 4, bytes)) return false;
  const auto length = static_cast<std::uint32_t>(number_in(bytes));
  const std::size_t most = rest() - bytes.size();
  if (length > most) {
    Text expected;
    expected.put("at most ").number(most).put(" (what remains)");
    return fail(OSPF_HARBOR_FAULT_TEXT_LENGTH, OSPF_HARBOR_SPAN_TEXT_LENGTH, at_,
                Text().number(length).view(), expected.view());
  }
  pass(OSPF_HARBOR_SPAN_TEXT_LENGTH, bytes.size(), number_of(bytes));
  return take(OSPF_HARBOR_SPAN_TEXT, length,
              [](Bytes text) { return [text](TextBuffer &shown) { put_quoted(shown, text); }; });
}

bool Walk::address() {
  Bytes bytes;
  if (!peek(OSPF_HARBOR_SPAN_ADDRESS, least_size(Kind::address), bytes)) return false;
  const std::uint8_t family = bytes[0];
  const std::uint8_t prefix = bytes[1];
  if (family != KELP_AF_UNSET && family != KELP_AF_IPV4 && family != KELP_AF_IPV6) {
    return fail(OSPF_HARBOR_FAULT_ADDRESS, OSPF_HARBOR_SPAN_ADDRESS_FAMILY, at_,
                Text().number(family).view(), "0, 4 or 6");
  }
  const std::uint8_t bits = bits_of(family);
  pass(OSPF_HARBOR_SPAN_ADDRESS_FAMILY, 1, [family](TextBuffer &text) {
    text.put(family == KELP_AF_UNSET ? "unset" : family == KELP_AF_IPV4 ? "IPv4" : "IPv6");
  });
  if (prefix != no_prefix && (family == KELP_AF_UNSET || prefix > bits)) {
    Text expected;
    if (family != KELP_AF_UNSET) expected.put("at most ").number(bits).put(", or ");
    expected.put("255 for none");
    return fail(OSPF_HARBOR_FAULT_ADDRESS, OSPF_HARBOR_SPAN_ADDRESS_PREFIX, at_,
                Text().number(prefix).view(), expected.view());
  }
  pass(OSPF_HARBOR_SPAN_ADDRESS_PREFIX, 1, [prefix](TextBuffer &text) {
    if (prefix == no_prefix) {
      text.put("none");
    } else {
      text.number(prefix);
    }
  });
  return take(OSPF_HARBOR_SPAN_ADDRESS, 16,
              [family](Bytes address) {
                return [family, address](TextBuffer &text) { put_address(text, family, address); };
              }) &&
         take(OSPF_HARBOR_SPAN_ADDRESS_ZONE, 4, number_of);
}

// --- whole images -------------------------------------------------------------------------------

bool Walk::object(const Subject &subject) {
  const bool is_whole = [&] {
    if (subject.structure != nullptr) {
      path_.root(subject.structure->name);
      return structure(*subject.structure);
    }
    if (subject.enumeration != nullptr) {
      path_.root(subject.enumeration->name);
      return enumeration(*subject.enumeration);
    }
    path_.root(subject.flag_set->name);
    return flag_set(*subject.flag_set);
  }();
  return is_whole && at_end();
}

bool Walk::key(const Subject &subject) {
  const model::Table &table = *subject.table;
  if (table.key_structure != nullptr) {
    path_.root(table.key_structure->name);
    return structure(*table.key_structure) && at_end();
  }
  path_.root(table.record->name);
  path_.push(table.key->name);
  return value(*table.key) && at_end();
}

bool Walk::marker() {
  Bytes bytes;
  if (!peek(OSPF_HARBOR_SPAN_MARKER, 1, bytes)) return false;
  if (bytes[0] != KELP_MESSAGE_MARKER) {
    return fail(OSPF_HARBOR_FAULT_MARKER, OSPF_HARBOR_SPAN_MARKER, at_,
                Text().number(bytes[0]).view(), "188");
  }
  pass(OSPF_HARBOR_SPAN_MARKER, 1, number_of(bytes));
  return true;
}

bool Walk::reserved() {
  Bytes bytes;
  if (!peek(OSPF_HARBOR_SPAN_RESERVED, reserved_size, bytes)) return false;
  for (std::size_t at = 0; at < reserved_size; ++at) {
    if (bytes[at] == 255) continue;
    return fail(OSPF_HARBOR_FAULT_RESERVED, OSPF_HARBOR_SPAN_RESERVED, at_ + at,
                Text().number(bytes[at]).view(), "255");
  }
  pass(OSPF_HARBOR_SPAN_RESERVED, reserved_size, nothing_of(bytes));
  return true;
}

// What the flags behind the frame say; where these are not there, they are found missing later.
bool Walk::tracking_mark() {
  Bytes bytes;
  if (!peek(OSPF_HARBOR_SPAN_TRACKING_MARK, 1, bytes)) return false;
  const bool has_flags = image_.size() > frame_size + flags_at;
  const bool is_tracked = has_flags && (image_[frame_size + flags_at] & OBJ_STATE_TRACKED) != 0;
  if (bytes[0] > 1 || (has_flags && bytes[0] != (is_tracked ? 1 : 0))) {
    return fail(OSPF_HARBOR_FAULT_TRACKING_MARK, OSPF_HARBOR_SPAN_TRACKING_MARK, at_,
                Text().number(bytes[0]).view(),
                !has_flags   ? "0 or 1"
                : is_tracked ? "1, as the first object has state bytes"
                             : "0, as the first object has no state bytes");
  }
  pass(OSPF_HARBOR_SPAN_TRACKING_MARK, 1, number_of(bytes));
  return true;
}

bool Walk::frame_length() {
  Bytes bytes;
  if (!peek(OSPF_HARBOR_SPAN_FRAME_LENGTH, 4, bytes)) return false;
  if (number_in(bytes) != image_.size()) {
    return fail(OSPF_HARBOR_FAULT_FRAME_LENGTH, OSPF_HARBOR_SPAN_FRAME_LENGTH, at_,
                Text().number(number_in(bytes)).view(),
                Text().number(image_.size()).put(", the bytes of the image").view());
  }
  pass(OSPF_HARBOR_SPAN_FRAME_LENGTH, 4, number_of(bytes));
  return true;
}

bool Walk::luid(const model::Table *&table) {
  Bytes bytes;
  if (!peek(OSPF_HARBOR_SPAN_LUID, luid_size, bytes)) return false;
  const bool is_asked = table != nullptr && has_luid(*table, bytes.data());
  const model::Table *found = is_asked ? table : table_with(bytes.data());
  if (found == nullptr || (table != nullptr && table != found)) {
    Text shown;
    put_digits(shown, bytes);
    if (found != nullptr) shown.put(", ").put(table_name(*found));
    Text expected;
    if (table == nullptr) {
      expected.put("the identity of a table");
    } else {
      expected.put(table->luid).put(", ").put(table_name(*table));
    }
    return fail(OSPF_HARBOR_FAULT_LUID, OSPF_HARBOR_SPAN_LUID, at_, shown.view(), expected.view());
  }
  table = found;
  pass(OSPF_HARBOR_SPAN_LUID, luid_size,
       [found](TextBuffer &text) { text.put(table_name(*found)); });
  return true;
}

bool Walk::frame(const model::Table *&table) {
  path_.root(table == nullptr ? "record" : table_name(*table));
  return marker() && reserved() && tracking_mark() &&
         take(OSPF_HARBOR_SPAN_HANDLE_WORD, 4, digits_of) && frame_length() &&
         take(OSPF_HARBOR_SPAN_FILL, fill_size, nothing_of) && luid(table);
}

bool Walk::record(const Subject &subject) {
  const model::Table *table = subject.table;
  if (!frame(table)) return false;
  TextBuffer(result_.name).put(table_name(*table));
  if (table->key_structure != nullptr) {
    path_.root(table->key_structure->name);
    if (!structure(*table->key_structure)) return false;
  }
  path_.root(table->record->name);
  return structure(*table->record) && at_end();
}

}  // namespace ospf_harbor_check

using ospf_harbor_check::Bytes;
using ospf_harbor_check::FixedText;
using ospf_harbor_check::Subject;

uint32_t ospf_harbor_check_walk(uint32_t kind, const char *name, const void *image, size_t length,
                                ospf_harbor_image_visitor *visit, void *context,
                                ospf_harbor_check_result *result) {
  ospf_harbor_check::ResultPlace place(result, name);
  const bool is_any_record = kind == OSPF_HARBOR_CHECK_RECORD && name == nullptr;
  const Subject subject = name == nullptr ? Subject{} : ospf_harbor_check::find_subject(kind, name);
  if (!subject.is_known() && !is_any_record) {
    ospf_harbor_check::say_unknown(*place, kind);
    return place->fault;
  }
  const Bytes bytes(static_cast<const std::uint8_t *>(image), image == nullptr ? 0 : length);
  if (bytes.size() > INT32_MAX) {
    ospf_harbor_check::say(
        *place, 0,
        {OSPF_HARBOR_FAULT_SIZE, place->name, "image",
         FixedText<64>().number(length).put(" bytes").view(), "at most 2147483647"});
    return place->fault;
  }
  ospf_harbor_check::Walk walk(bytes, visit, context, *place);
  if (kind == OSPF_HARBOR_CHECK_RECORD) {
    walk.record(subject);
  } else if (kind == OSPF_HARBOR_CHECK_KEY) {
    walk.key(subject);
  } else {
    walk.object(subject);
  }
  return place->fault;
}

uint32_t ospf_harbor_check_image(uint32_t kind, const char *name, const void *image, size_t length,
                                 ospf_harbor_check_result *result) {
  return ospf_harbor_check_walk(kind, name, image, length, nullptr, nullptr, result);
}

size_t ospf_harbor_check_frame_length(const void *image, size_t length) {
  constexpr std::size_t length_at = 12;
  constexpr std::size_t length_size = 4;
  const Bytes bytes(static_cast<const std::uint8_t *>(image), length);
  if (length < length_at + length_size || bytes[0] != KELP_MESSAGE_MARKER) return 0;
  return ospf_harbor_check::number_in(bytes.subspan(length_at, length_size));
}

const char *ospf_harbor_check_table_of(const void *image, size_t length) {
  if (length < ospf_harbor_check::frame_size) return nullptr;
  const auto *bytes = static_cast<const std::uint8_t *>(image);
  const auto *table = ospf_harbor_check::table_with(bytes + KELP_WIRE_MESSAGE_HEADER_SIZE);
  return table == nullptr ? nullptr : ospf_harbor_check::table_name(*table);
}
