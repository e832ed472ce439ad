// libFuzzer target: frames into databases. A finding is a sanitizer's or a trap in fuzz_input.hpp.
#include <cstddef>
#include <cstdint>

#include "fuzz_input.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  ospf_decode::decode_fuzz_input({data, size});
  return 0;
}
