// Looks through a store and says what is wrong in it. It reads any bytes without harm: every number
// is held against what there is before it is used, and every chain has an end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace kelp::store {

// The bytes of a database file, wherever they lie; addresses in them are those of its header.
struct View {
  const std::byte *bytes = nullptr;
  std::uint64_t size = 0;
};

using Finding = std::function<void(const std::string &text)>;

// How many things are wrong; each is said.
std::uint64_t check(const View &view, const Finding &finding);

// The same of the type records and what they are found by alone.
std::uint64_t check_types(const View &view, const Finding &finding);

}  // namespace kelp::store
