// Replays the fuzz target's corpus, so that every build has seen it.
#include <gtest/gtest.h>

#include <filesystem>

#include "fuzz_input.hpp"
#include "support/places.hpp"
#include "support/temporary_folder.hpp"

namespace {

TEST(ReplicationCorpus, IsTakenOrRefused) {
  std::size_t files = 0;
  for (const auto &file : std::filesystem::directory_iterator(
           places::project() + "/libs/ospf-replication/fuzz/corpus/messages")) {
    const std::string text = content_of(file.path());
    const auto *data = reinterpret_cast<const std::uint8_t *>(text.data());
    EXPECT_EQ(ospf_replication::run_fuzz_input({data, text.size()}), "") << file.path();
    ++files;
  }
  EXPECT_GT(files, 10u);
}

}  // namespace
