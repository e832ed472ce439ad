// Writes the seed corpus of the tree stream's fuzz target: exchange_seeds FOLDER.
#include <fstream>
#include <iostream>

#include "stream_maker.hpp"
#include "support/random_tree.hpp"

namespace {

void write(const std::string &folder, const std::string &name, char choice,
           const tree_exchange::Bytes &stream) {
  std::ofstream out(folder + "/" + name, std::ios::binary);
  out.put(choice);
  out.write(reinterpret_cast<const char *>(stream.data()),
            static_cast<std::streamsize>(stream.size()));
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 2) {
    std::cerr << "usage: exchange_seeds FOLDER\n";
    return 2;
  }
  for (std::uint32_t seed = 1; seed <= 24; ++seed) {
    ospf_tables::Session session;
    tree_exchange_tests::make_random_tree(session, {.seed = seed,
                                                    .mixed_variants = seed % 2 == 0,
                                                    .most_rows = 1 + seed % 2,
                                                    .least_rows = seed % 8});
    const tree_exchange::Bytes stream = tree_exchange_tests::stream_of(session);
    if (stream.size() > 16384) continue;
    write(argv[1], "tree-" + std::to_string(seed), seed % 3 == 0 ? 41 : 1, stream);
  }
  ospf_tables::Session empty;
  write(argv[1], "empty", 0, tree_exchange_tests::stream_of(empty));
}
