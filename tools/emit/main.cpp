// The emitter: crosses the schema with the operation lists and writes what follows from them.
//
//   emit --build DIR    what only the build needs, into DIR
//   emit --source DIR   what is checked in, into the source tree DIR
//   emit --check DIR    compares what is checked in with what would be written
#include <cstdio>
#include <cstring>
#include <exception>
#include <set>

#include "products.hpp"

namespace emit {

std::vector<Unit> all_units() {
  std::vector<Unit> units{module_unit()};
  for (const auto *type : harbor::model::structures) units.push_back(unit_of(*type));
  for (const auto *type : harbor::model::all_enumerations) units.push_back(unit_of(*type));
  for (const auto *type : harbor::model::all_flag_sets) units.push_back(unit_of(*type));
  for (const auto *table : harbor::model::all_tables) units.push_back(unit_of(*table));
  return units;
}

namespace {

int twice_composed(const std::vector<Unit> &units) {
  std::set<std::string> names;
  int count = 0;
  for (const Unit &unit : units) {
    for (const Function &function : unit.functions) {
      if (names.insert(function.name).second) continue;
      std::fprintf(stderr, "emit: %s is composed twice\n", function.name.c_str());
      ++count;
    }
  }
  return count;
}

int run(const char *mode, const char *folder) {
  const std::vector<Unit> units = all_units();
  if (twice_composed(units) != 0) return 1;
  if (std::strcmp(mode, "--build") == 0) {
    Writer writer(folder, Writer::Mode::write);
    write_forwarders(writer, units);
    write_records(writer);
    write_vfts(writer);
    write_version_script(writer, units);
    return 0;
  }
  const bool check = std::strcmp(mode, "--check") == 0;
  Writer writer(folder, check ? Writer::Mode::check : Writer::Mode::write);
  write_headers(writer, units);
  write_goldens(writer, units);
  for (const std::string &difference : writer.differences()) {
    std::fprintf(stderr, "emit: %s\n", difference.c_str());
  }
  if (writer.differences().empty()) return 0;
  std::fprintf(stderr,
               "emit: what is checked in is not what the schema gives; `make emit` renews it\n");
  return 1;
}

}  // namespace
}  // namespace emit

int main(int argc, char **argv) {
  if (argc != 3 || (std::strcmp(argv[1], "--build") != 0 && std::strcmp(argv[1], "--source") != 0 &&
                    std::strcmp(argv[1], "--check") != 0)) {
    std::fprintf(stderr, "usage: emit --build|--source|--check FOLDER\n");
    return 2;
  }
  try {
    return emit::run(argv[1], argv[2]);
  } catch (const std::exception &failure) {
    std::fprintf(stderr, "emit: %s\n", failure.what());
    return 1;
  }
}
