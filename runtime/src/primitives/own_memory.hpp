/* Primitives that stand alone: arms of choices, elements being read, and values that users make. */
#ifndef KELP_PRIMITIVES_OWN_MEMORY_HPP
#define KELP_PRIMITIVES_OWN_MEMORY_HPP

#include <cstring>

#include "announce.hpp"

namespace kelp {

/* A zeroed T of its own; null without memory. */
template <class T>
T *CreateZeroed(Writer writer) {
  void *memory = writer.Allocate(sizeof(T));
  if (memory != nullptr) std::memset(memory, 0, sizeof(T));
  return static_cast<T *>(memory);
}

inline void Destroy(Writer writer, void *address) {
  if (address != nullptr) writer.Free(address);
}

}  // namespace kelp

#endif
