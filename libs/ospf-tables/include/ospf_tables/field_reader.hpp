// Reads fields of objects through the getters of the library, with the session's handle. Calls are
// not checked one by one: a failure stays in the error word, later reads give 0 or null, and the
// caller checks the session when it has read all that it wants.
#pragma once

#include <kelp/primitives.h>

#include <string>
#include <vector>

#include "ospf_tables/session.hpp"
#include "ospf_tables/table_ops.hpp"

namespace ospf_tables {

struct FieldReader {
  Session &session;

  // A field's value, its place inside the object, or the table that it refers to.
  template <typename Object, typename Get>
  auto value(Object *object, Get get) const {
    return get(session.handle(), space, object, session.err());
  }

  // A field that the object's variant may lack: 0 or null then.
  template <typename Object, typename Get>
  auto value_if_held(Object *object, Get get) const {
    std::uint32_t err = *session.err();
    return get(session.handle(), space, object, &err);
  }

  template <typename Object, typename Get>
  bool flag(Object *object, Get get) const {
    return value(object, get) != 0;
  }

  template <typename Object, typename Get>
  std::string text(Object *object, Get get) const {
    return kelp_vstring_text(value(object, get));
  }

  // The elements of an array of numbers, `count` and `get_elements` being its getters.
  template <typename Element, typename Object, typename Count, typename GetElements>
  std::vector<Element> elements(Object *object, Count count, GetElements get_elements) const {
    std::vector<Element> result(value(object, count));
    if (!result.empty()) {
      get_elements(session.handle(), space, object, result.data(),
                   static_cast<std::uint32_t>(result.size()), session.err());
    }
    return result;
  }
};

}  // namespace ospf_tables
