// The corpora of the fuzz targets, replayed: each seed and what fuzzing found worth keeping.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "../fuzz/fuzz_input.hpp"
#include "support/places.hpp"

namespace {

using namespace ospf_harbor_check_tests;

class Corpus : public testing::TestWithParam<FuzzTarget> {};

TEST_P(Corpus, EveryInputIsRefusedOrRead) {
  const std::filesystem::path folder = places::project() + "/libs/ospf-harbor-check/fuzz/corpus";
  std::size_t inputs = 0;
  for (const auto &file : std::filesystem::directory_iterator(folder / name_of(GetParam()))) {
    std::ifstream stream(file.path(), std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(stream)),
                           std::istreambuf_iterator<char>());
    const auto *data = reinterpret_cast<const std::uint8_t *>(text.data());
    EXPECT_EQ(run_fuzz_input(GetParam(), {data, text.size()}), "") << file.path();
    ++inputs;
  }
  EXPECT_GT(inputs, 40u);
}

INSTANTIATE_TEST_SUITE_P(AllTargets, Corpus, testing::ValuesIn(fuzz_targets),
                         [](const auto &info) { return std::string(name_of(info.param)); });

}  // namespace
