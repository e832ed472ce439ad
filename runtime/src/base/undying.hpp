// The one thing of its kind in the process: made when it is first asked for, without memory of its
// own, and never ended, since libraries call in while the process ends.
#pragma once

#include <cstddef>
#include <new>

namespace kelp {

template <typename T>
T &undying() {
  alignas(T) static std::byte memory[sizeof(T)];
  static T *const made = new (memory) T;
  return *made;
}

}  // namespace kelp
