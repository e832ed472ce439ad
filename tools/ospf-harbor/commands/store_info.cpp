// What a store holds: its size, what its objects take, and its rows by kind.
#include <cstdio>
#include <filesystem>
#include <map>

#include "commands/store_file.hpp"
#include "ospf_tables/tree.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

class RowCounter : public TreeVisitor {
 public:
  bool enter(const RowView &row) override {
    ++rows_[std::string(row.kind)];
    return true;
  }
  void leave() override {}
  const std::map<std::string, std::uint64_t> &rows() const { return rows_; }

 private:
  std::map<std::string, std::uint64_t> rows_;
};

int print_info(const std::string &file) {
  Session session(file, Session::Missing::is_refused);
  RowCounter counter;
  std::uint64_t tables = 0;
  kelp_memory_statistics memory{};
  session.reading([&] {
    walk_tree(session, counter);
    kelp_table *table = nullptr;
    while ((table = kelp_database_next_table(session.database(), table)) != nullptr) ++tables;
    kelp_database_memory(session.database(), &memory);
  });
  std::uint64_t rows = 0;
  for (const auto &[kind, count] : counter.rows()) rows += count;
  const auto print = [](const char *what, std::uint64_t number) {
    std::printf("%-24s %12llu\n", what, static_cast<unsigned long long>(number));
  };
  std::printf("%s\n", file.c_str());
  print("bytes of the file", std::filesystem::file_size(file));
  print("blocks in use", memory.live_allocations);
  print("bytes in use", memory.used_bytes);
  print("tables", tables);
  print("rows", rows);
  for (const auto &[kind, count] : counter.rows()) print(("  " + kind).c_str(), count);
  return 0;
}

Run set_up_store_info(CLI::App &app) { return run_on_store_file(app, print_info); }

}  // namespace

extern const Command store_info_command;
const Command store_info_command{"store info", "Tell the size of a store and count its rows",
                                 Needs::nothing, set_up_store_info};

}  // namespace tool
