// libFuzzer target, built once for each of the readers: FUZZ_TARGET says which. A finding is a
// sanitizer's, or a text about what the library did not do with what the checker passed.
#include <cstdio>

#include "fuzz_input.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const std::string wrong = ospf_harbor_check_tests::run_fuzz_input(
      ospf_harbor_check_tests::FuzzTarget::FUZZ_TARGET, {data, size});
  if (wrong.empty()) return 0;
  std::fprintf(stderr, "%s\n", wrong.c_str());
  __builtin_trap();
}
