// What all types of objects share: a reference to an object that lies somewhere, and an object that
// owns itself. Both are made of the type's rules, which name its C functions.
//
// A reference is as good as what it refers to: it is not to be used when the object, its record or
// the transaction that made it has gone. It is as cheap to copy as two pointers.
#pragma once

#include <kelp/oid.h>
#include <kelp/text.h>
#include <kelp/xml.h>

#include <array>
#include <concepts>
#include <cstddef>
#include <memory>
#include <optional>
#include <ospf_harbor/session.hpp>
#include <ospf_harbor/values.hpp>
#include <span>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace ospf_harbor {

namespace detail {

// A text whose writer tells by its result, or by code 90, that it wants more room. fill begins with
// what gaps keep.
template <typename Write>
std::string written(session &at, char fill, Write write) {
  for (std::size_t room = 1024;; room *= 4) {
    std::string text(room, fill);
    std::uint32_t err = 0;
    const std::size_t length = write(text.data(), static_cast<std::uint32_t>(room), &err);
    if (room < std::size_t{1} << 30 && (err == KELP_ERR_NO_ROOM || (err == 0 && length >= room))) {
      continue;
    }
    if (err != 0) {
      at.fail(err, {});
      return {};
    }
    text.resize(length);
    return text;
  }
}

// The bytes that a writer of images gives, which may want more than it tells: the state byte of
// each element and the nine bytes of attached data, and four behind the end.
template <typename Write>
std::vector<std::byte> image_of(session &at, std::size_t told, Write write) {
  const std::size_t room = 64 + 3 * told;
  std::vector<std::byte> image(room + 4);
  std::uint32_t err = 0;
  image.resize(write(image.data(), static_cast<std::int32_t>(room), &err));
  if (err != 0) {
    at.fail(err, {});
    image.clear();
  }
  return image;
}

using xml_document = std::unique_ptr<kelp_xml_document, decltype(&kelp_xml_free)>;

// Null when the text is no document; at has failed then.
inline xml_document parse_xml(session &at, std::string_view text) {
  char message[256] = "";
  xml_document document(kelp_xml_parse(text.data(), text.size(), message, sizeof message),
                        &kelp_xml_free);
  if (document == nullptr) at.fail(KELP_ERR_INVALID, message);
  return document;
}

}  // namespace detail

// What fields are read and written with. object_ may be null: calls fail then, with code 22.
template <typename Rules>
class object_ref {
 public:
  using rules = Rules;
  using c_type = typename Rules::c_type;

  object_ref() = default;
  object_ref(session &at, c_type *object) : session_(&at), object_(object) {}

  explicit operator bool() const { return object_ != nullptr; }
  c_type *get() const { return object_; }
  session &at() const { return *session_; }

  // Raises it to the variant that the session's domain gives to its type.
  void adjust_variant() const { session_->template call<Rules::adjust_variant>(object_); }

  std::string to_text() const {
    return detail::written(*session_, ' ', [&](char *text, std::uint32_t room, std::uint32_t *err) {
      return Rules::print(session_->handle(), 0, text, 0, Rules::name, object_, room, err);
    });
  }
  std::string to_xml() const {
    return detail::written(
        *session_, '\0', [&](char *text, std::uint32_t room, std::uint32_t *err) {
          return Rules::to_xml(session_->handle(), 0, Rules::name, text, object_, room, 0, err);
        });
  }
  std::vector<std::byte> to_image() const {
    const std::size_t told = Rules::length(session_->handle(), 0, object_);
    return detail::image_of(
        *session_, told, [&](void *image, std::int32_t room, std::uint32_t *err) {
          return Rules::marshal(session_->handle(), 0, image, object_, room, err);
        });
  }
  // Reads an image of this library's own, which is trusted; receive() takes those from outside.
  void read_image(std::span<const std::byte> image) const {
    session_->template call<Rules::unmarshal>(image.data(), object_,
                                              static_cast<std::int32_t>(image.size()), 1u);
  }
  // Fields that the document does not have keep what they held.
  void read_xml(std::string_view text) const {
    const detail::xml_document document = detail::parse_xml(*session_, text);
    if (document == nullptr) return;
    char message[256] = "";
    std::uint32_t err = 0;
    Rules::from_xml(session_->handle(), 0, (std::string("//") + Rules::name).c_str(),
                    document.get(), object_, &err, message, sizeof message);
    if (err != 0) session_->fail(err, message);
  }
  std::uint32_t hash(std::uint32_t seed = 0) const { return Rules::hash(object_, seed); }

  // By the fields in declared order; null is the least.
  friend bool operator==(const object_ref &a, const object_ref &b) {
    return Rules::compare(a.object_, b.object_) == 0;
  }
  friend std::weak_ordering operator<=>(const object_ref &a, const object_ref &b) {
    return Rules::compare(a.object_, b.object_) <=> 0;
  }

 protected:
  // The accessors of a field, by its name and its C functions, which do not all look whether there
  // is an object. What is read of none is what a fresh value holds.
  template <auto get>
  auto read_(const char *field) const {
    using Result = decltype(session_->call<get>(object_));
    if (is_missing_(field)) return Result{};
    return session_->call<get>(object_);
  }
  template <auto set, typename Value>
  void write_(const char *field, Value value) const {
    if (!is_missing_(field)) session_->call<set>(object_, value);
  }
  template <typename Part, auto get>
  Part part_(const char *field) const {
    return Part(*session_, read_<get>(field));
  }
  template <auto get>
  address address_(const char *field) const {
    const ip_address *place = read_<get>(field);
    return place == nullptr ? address() : address(*place);
  }
  // The field keeps the header that it has.
  template <auto get, auto set>
  void write_address_(const char *field, const address &value) const {
    ip_address *place = read_<get>(field);
    if (place == nullptr) return;
    ip_address source = value.get();
    source.header = place->header;
    session_->call<set>(object_, &source);
  }
  template <auto get>
  std::string_view text_(const char *field) const {
    return view_(read_<get>(field));
  }
  template <auto set>
  void write_text_(const char *field, std::string_view text) const {
    if (is_missing_(field)) return;
    kelp_vstring source{};
    const text_end_ ending{*session_, &source};
    session_->call<&kelp_vstring_assign>(&source, text.data(), text.size());
    session_->call<set>(object_, &source);
  }
  template <typename Bit, std::size_t bits, auto get, auto test>
  flags<Bit> flags_(const char *field) const {
    flags<Bit> result;
    const auto *place = read_<get>(field);
    for (std::uint32_t bit = 0; place != nullptr && bit < bits; ++bit) {
      result.set(static_cast<Bit>(bit), session_->call<test>(place, bit) != 0);
    }
    return result;
  }
  template <typename Bit, std::size_t bits, auto get, auto set>
  void write_flags_(const char *field, flags<Bit> value) const {
    auto *place = read_<get>(field);
    for (std::uint32_t bit = 0; place != nullptr && bit < bits; ++bit) {
      session_->call<set>(place, bit, value.test(static_cast<Bit>(bit)) ? 1u : 0u);
    }
  }
  template <auto count, auto get>
  auto elements_(const char *field) const {
    using Element = std::remove_pointer_t<decltype(session_->call<get>(object_, 0u))>;
    const std::uint32_t held = read_<count>(field);
    if (held == 0) return std::span<const Element>();
    return std::span<const Element>(session_->call<get>(object_, 0u), held);
  }
  template <auto set, typename Element>
  void write_elements_(const char *field, std::span<const Element> elements) const {
    if (is_missing_(field)) return;
    session_->call<set>(object_, elements.data(), static_cast<std::uint32_t>(elements.size()));
  }
  template <auto count, auto get>
  std::vector<address> addresses_(const char *field) const {
    const std::uint32_t held = read_<count>(field);
    std::vector<address> result;
    for (std::uint32_t index = 0; index < held; ++index) {
      const ip_address *place = session_->call<get>(object_, index);
      result.push_back(place == nullptr ? address() : address(*place));
    }
    return result;
  }
  template <auto remove, auto set>
  void write_addresses_(const char *field, std::span<const address> elements) const {
    if (is_missing_(field) || !session_->ok()) return;
    remove(session_->handle(), 0, object_);
    for (std::uint32_t index = 0; index < elements.size(); ++index) {
      ip_address source = elements[index].get();
      session_->call<set>(object_, index, &source);
    }
  }
  // An arm of a choice: the object that it points at, made where there is none, filled and
  // selected.
  template <auto get, auto set, auto make, auto end, typename Fill>
  void select_(const char *field, Fill fill) const {
    auto *arm = read_<get>(field);
    const bool fresh = arm == nullptr;
    if (fresh && session_->ok()) arm = session_->make<make>();
    if (arm == nullptr) return;
    try {
      fill(arm);
      session_->call<set>(object_, arm);
    } catch (...) {
      if (fresh) end(session_->handle(), 0, arm);
      throw;
    }
    if (fresh && !session_->ok()) end(session_->handle(), 0, arm);
  }
  template <auto get>
  std::optional<std::string_view> text_arm_(const char *field) const {
    const kelp_vstring *arm = read_<get>(field);
    if (arm == nullptr) return std::nullopt;
    return view_(arm);
  }
  template <auto get, auto set>
  void select_text_(const char *field, std::string_view text) const {
    select_<get, set, &kelp_vstring_create, &end_text_>(field, [&](kelp_vstring *arm) {
      session_->call<&kelp_vstring_assign>(arm, text.data(), text.size());
    });
  }
  template <auto get>
  std::optional<std::uint32_t> number_arm_(const char *field) const {
    const std::uint32_t *arm = read_<get>(field);
    if (arm == nullptr) return std::nullopt;
    return *arm;
  }
  template <auto get, auto set>
  void select_number_(const char *field, std::uint32_t value) const {
    select_<get, set, &u_int32_create, &u_int32_destroy>(
        field, [&](std::uint32_t *arm) { session_->call<&u_int32_set_value>(arm, value); });
  }

  session *session_ = nullptr;
  c_type *object_ = nullptr;

 private:
  bool is_missing_(const char *field) const {
    if (object_ != nullptr) [[likely]]
      return false;
    session_->fail(KELP_ERR_INVALID,
                   std::string(Rules::name) + "." + field + ": found a null object, expected one");
    return true;
  }
  static std::string_view view_(const kelp_vstring *text) {
    if (text == nullptr) return {};
    return {kelp_vstring_text(text), text->length};
  }
  static void end_text_(kelp_handle *handle, std::uint32_t space, kelp_vstring *text) {
    kelp_vstring_destroy_internal(handle, space, text, 1);
  }
  // Gives back a text of the caller's.
  struct text_end_ {
    session &at;
    kelp_vstring *text;
    ~text_end_() { kelp_vstring_destroy_internal(at.handle(), 0, text, 0); }
  };
};

// What for_each_field tells: the field's name, the variant in which it came, and pointers to its
// accessors; set is null for a part, which is written through what get gives.
template <typename Get, typename Set>
struct field {
  const char *name;
  int since;
  Get get;
  Set set;
};
template <typename Get, typename Set>
field(const char *, int, Get, Set) -> field<Get, Set>;

// A member of an enumeration or a flag set with its name; members_of has them all.
template <typename Word>
struct named {
  Word value;
  const char *name;
};
template <typename Word>
named(Word, const char *) -> named<Word>;
template <typename Word>
inline constexpr std::array<named<Word>, 0> members_of{};

// The name of a value, empty when it has none.
template <typename Word>
constexpr std::string_view name_of(Word value) {
  for (const auto &member : members_of<Word>) {
    if (member.value == value) return member.name;
  }
  return {};
}

// An object of its own, ended with this. Ref is the reference to its type.
template <typename Ref>
class owned : public Ref {
 public:
  using rules = typename Ref::rules;
  using c_type = typename Ref::c_type;

  // A new one. In a session that keeps failures it is null without memory.
  explicit owned(session &at) : Ref(at, at.make<rules::create>()) {}
  // Takes over what create() or release() gave.
  owned(session &at, c_type *object) : Ref(at, object) {}
  owned(owned &&other) noexcept : Ref(static_cast<Ref &>(other)) { other.object_ = nullptr; }
  owned &operator=(owned &&other) noexcept {
    std::swap(this->session_, other.session_);
    std::swap(this->object_, other.object_);
    return *this;
  }
  ~owned() {
    if (this->object_ != nullptr) rules::destroy(this->session_->handle(), 0, this->object_);
  }

  // A copy, which counts the references to tables that it has.
  static owned copy_of(const Ref &source) {
    owned result(source.at());
    if (!result) return result;
    result.read_image(source.to_image());
    Ref::for_each_reference([&]<typename Field>(const Field &) {
      std::uint32_t err = 0;
      kelp_handle *handle = source.at().handle();
      const void *table = Field::get(handle, 0, result.object_, &err);
      if (table != nullptr) kelplib_lookup_and_update_oid_ref_count(handle, 0, table, 1, &err);
    });
    return result;
  }
  // Gives the object away.
  c_type *release() { return std::exchange(this->object_, nullptr); }
};

}  // namespace ospf_harbor
