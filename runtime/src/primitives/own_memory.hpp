// Primitives that stand alone: arms of choices, elements being read, and values that users make.
#pragma once

#include <cstring>

#include "base/announce.hpp"

namespace kelp {

// A zeroed T of its own; null without memory.
template <class T>
T *create_zeroed(Writer writer) {
  void *memory = writer.allocate(sizeof(T));
  if (memory != nullptr) std::memset(memory, 0, sizeof(T));
  return static_cast<T *>(memory);
}

inline void destroy(Writer writer, void *address) {
  if (address != nullptr) writer.free(address);
}

}  // namespace kelp
