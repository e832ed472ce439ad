// Gives the disk back what a store does not use.
#include <cinttypes>
#include <cstdio>

#include "commands/store_file.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

int compact_store(const std::string &file) {
  Session session(file, Session::Missing::is_refused);
  kelp_compaction bytes{};
  kelp_error error{};
  if (kelp_database_compact(session.handle(), &bytes, &error) != 0) {
    throw LibraryFailure(error.text);
  }
  std::printf("%s: %" PRIu64 " bytes on the disk before, %" PRIu64 " now\n", file.c_str(),
              bytes.before, bytes.after);
  return 0;
}

Run set_up_store_compact(CLI::App &app) { return run_on_store_file(app, compact_store); }

}  // namespace

extern const Command store_compact_command;
const Command store_compact_command{
    "store compact",
    "Give the disk back what a store does not use",
    Needs::nothing,
    set_up_store_compact,
    Stands::everywhere,
    false,
    "Other programs may have the store open, and wait as for any writer. Rows stay where they are: "
    "pieces of 64 KiB without any row are given back, those at the end by cutting the file, the "
    "others by holes in it. Whatever ends the command leaves the store whole."};

}  // namespace tool
