// Looks through a store: each thing that is wrong is a line.
#include <cstdio>

#include "commands/store_file.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

int check_store(const std::string &file) {
  Session session(file, Session::Missing::is_refused);
  const auto print = [](void *, const char *text) { std::printf("%s\n", text); };
  kelp_error error{};
  session.reading([&] { kelp_database_check(session.database(), print, nullptr, &error); });
  if (error.code != 0) throw LibraryFailure(error.text);
  std::printf("%s is sound\n", file.c_str());
  return 0;
}

Run set_up_store_check(CLI::App &app) { return run_on_store_file(app, check_store); }

}  // namespace

extern const Command store_check_command;
const Command store_check_command{
    "store check", "Look through the structure of a store; 1 when something is wrong",
    Needs::nothing, set_up_store_check};

}  // namespace tool
