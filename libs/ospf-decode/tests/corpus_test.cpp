// The fuzz target's corpus, replayed: each seed and what fuzzing found worth keeping.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "../fuzz/fuzz_input.hpp"
#include "support/places.hpp"

namespace ospf_decode::testing {
namespace {

TEST(Corpus, EveryInputDecodes) {
  std::size_t inputs = 0;
  for (const auto &file : std::filesystem::directory_iterator(
           places::project() + "/libs/ospf-decode/fuzz/corpus/decode")) {
    std::ifstream stream(file.path(), std::ios::binary);
    const std::vector<char> text((std::istreambuf_iterator<char>(stream)),
                                 std::istreambuf_iterator<char>());
    const std::vector<std::uint8_t> input(text.begin(), text.end());
    SCOPED_TRACE(file.path().string());
    decode_fuzz_input(input);
    ++inputs;
  }
  EXPECT_GT(inputs, 20u);
}

}  // namespace
}  // namespace ospf_decode::testing
