// The encodings of the objects in a table's records, and of its key, as functions without a type.
// The record encodings take them beside the table's facts.
#pragma once

#include "encodings/image.hpp"
#include "encodings/light_encodings.hpp"
#include "encodings/text.hpp"
#include "encodings/xml.hpp"
#include "tables/facts.hpp"
#include "types/primitive.hpp"

namespace harbor {

struct ObjectEncodings {
  void *(*create_internal)(kelp_handle *, std::uint32_t);
  std::uint32_t (*len)(kelp_handle *, std::uint32_t, const void *);
  std::uint32_t (*marshal)(kelp_handle *, std::uint32_t, void *, const void *, std::int32_t,
                           std::uint32_t *);
  std::uint32_t (*unmarshal)(kelp_handle *, std::uint32_t, const void *, void *, std::int32_t,
                             std::uint32_t, std::uint32_t *);
  std::uint32_t (*print)(kelp_handle *, std::uint32_t, char *, std::uint32_t, const char *,
                         const void *, std::uint32_t, std::uint32_t *);
  std::uint32_t (*to_xml)(kelp_handle *, std::uint32_t, const char *, char *, const void *,
                          std::uint32_t, std::uint32_t, std::uint32_t *);
  void (*from_xml)(kelp_handle *, std::uint32_t, const char *, kelp_xml_document *, void *,
                   std::uint32_t *, char *, std::int32_t);
  const char *path;  // where from_xml finds the object: two slashes and its name
};

// The key alone, inside the object that holds it.
struct KeyEncodings {
  std::uint32_t (*len)(kelp_handle *, std::uint32_t, const void *object);
  std::uint32_t (*marshal)(kelp_handle *, std::uint32_t, void *, const void *object, std::int32_t,
                           std::uint32_t *);
  std::uint32_t (*unmarshal)(kelp_handle *, std::uint32_t, const void *, void *object, std::int32_t,
                             std::uint32_t *);
};

struct RecordEncodings {
  ObjectEncodings objects[2];
  KeyEncodings key;
};

namespace object_encodings {

template <const Structure &S>
std::uint32_t marshal(kelp_handle *handle, std::uint32_t space_id, void *buffer, const void *object,
                      std::int32_t length, std::uint32_t *err) {
  return image::write<S>(handle, space_id, buffer, object, length, 1, err);
}

inline constexpr std::string_view path_prefix = "//";
template <const Structure &S>
inline constexpr auto path_of = [] {
  std::array<char, path_prefix.size() + S.name.size() + 1> path{};
  std::size_t at = 0;
  for (char c : path_prefix) path[at++] = c;
  for (char c : S.name) path[at++] = c;
  return path;
}();

template <const Structure &S>
inline constexpr ObjectEncodings encodings{
    .create_internal = &structure_life::create_internal<S>,
    .len = &image::len<S>,
    .marshal = &marshal<S>,
    .unmarshal = &image::unmarshal<S>,
    .print = &text::print<S>,
    .to_xml = &xml::to_xml<S>,
    .from_xml = &xml::from_xml<S>,
    .path = path_of<S>.data(),
};

template <const Structure &S, const Field &F>
std::uint32_t key_len(kelp_handle *handle, std::uint32_t space_id, const void *object) {
  if constexpr (F.kind == Kind::enumeration) {
    return enumeration_encodings::len<*F.enumeration>(handle, space_id);
  } else {
    return Primitive<F.kind>::len(handle, space_id, place_of<S, F>(object));
  }
}

template <const Structure &S, const Field &F>
std::uint32_t key_marshal(kelp_handle *handle, std::uint32_t space_id, void *buffer,
                          const void *object, std::int32_t length, std::uint32_t *err) {
  if constexpr (F.kind == Kind::enumeration) {
    return light_encodings::marshal<*F.enumeration>(handle, space_id, buffer,
                                                    place_of<S, F>(object), length, err);
  } else {
    return Primitive<F.kind>::marshal(handle, space_id, buffer, place_of<S, F>(object), length,
                                      err);
  }
}

template <const Structure &S, const Field &F>
std::uint32_t key_unmarshal(kelp_handle *handle, std::uint32_t space_id, const void *buffer,
                            void *object, std::int32_t length, std::uint32_t *err) {
  if constexpr (F.kind == Kind::enumeration) {
    return light_encodings::unmarshal<*F.enumeration>(handle, space_id, buffer,
                                                      place_of<S, F>(object), length, 0, err);
  } else {
    return Primitive<F.kind>::unmarshal(handle, space_id, buffer, place_of<S, F>(object), length, 0,
                                        err);
  }
}

// A composite key is the whole image of the key object.
template <const Structure &S>
std::uint32_t key_object_unmarshal(kelp_handle *handle, std::uint32_t space_id, const void *buffer,
                                   void *object, std::int32_t length, std::uint32_t *err) {
  return image::unmarshal<S>(handle, space_id, buffer, object, length, 0, err);
}

template <const model::Table &T>
constexpr RecordEncodings make_encodings() {
  if constexpr (T.shape() == model::Shape::composite_key) {
    constexpr const Structure &key = *T.key_structure;
    return {{encodings<key>, encodings<*T.record>},
            {&image::len<key>, &marshal<key>, &key_object_unmarshal<key>}};
  } else {
    return {{encodings<*T.record>, {}},
            {&key_len<*T.record, *T.key>, &key_marshal<*T.record, *T.key>,
             &key_unmarshal<*T.record, *T.key>}};
  }
}

}  // namespace object_encodings

template <const model::Table &T>
inline constexpr RecordEncodings encodings_of = object_encodings::make_encodings<T>();

}  // namespace harbor
