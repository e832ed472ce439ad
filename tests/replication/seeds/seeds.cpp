// Writes the seeds of the fuzz target of messages: replication_seeds FOLDER.
#include <fstream>
#include <iostream>

#include "memory_bucket.hpp"
#include "ospf_replication/sender.hpp"
#include "ospf_tables/tree.hpp"
#include "support/random_tree.hpp"

namespace {

using namespace ospf_replication;

constexpr std::string_view site = "ospf-harbor.s.";

void put(std::string &input, const Letter &letter, bool is_marker) {
  const std::string subject = letter.subject.substr(site.size());
  const std::string body = is_marker ? "+" : std::string(letter.body.begin(), letter.body.end());
  if (subject.size() > 255) return;
  input += static_cast<char>(subject.size());
  input += subject;
  input += static_cast<char>(body.size() >> 8);
  input += static_cast<char>(body.size());
  input += body;
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 2) {
    std::cerr << "usage: replication_seeds FOLDER\n";
    return 2;
  }
  for (std::uint32_t seed = 1; seed <= 16; ++seed) {
    ospf_tables::Session session;
    replication_tests::MemoryBucket bucket;
    Sender sender(session, bucket, "s");
    std::string input;
    for (std::uint32_t step = 0; step < 2; ++step) {
      ospf_tables::clear_tree(session);
      tree_exchange_tests::make_random_tree(session, {.seed = seed + 100 * step,
                                                      .mixed_variants = seed % 2 == 0,
                                                      .most_rows = 1,
                                                      .least_rows = 2 + seed % 6});
      const std::uint64_t before = bucket.last();
      sender.turn();
      for (const auto &[number, letter] : bucket.messages()) {
        if (number > before)
          put(input, letter, letter.subject.ends_with(".commit") && seed % 4 != 0);
      }
    }
    if (input.size() > 16384) continue;
    std::ofstream(std::string(argv[1]) + "/tree-" + std::to_string(seed), std::ios::binary)
        << input;
  }
}
