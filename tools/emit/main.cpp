// The emitter: crosses the schema with the operation lists and writes what follows from them.
//
//   emit --build DIR PROJECT  what only the build needs, into the build directory's folder DIR
//   emit --source PROJECT     what is checked in, into the project's folder
//   emit --check PROJECT      compares what is checked in with what would be written
#include <cstdio>
#include <exception>
#include <filesystem>
#include <set>
#include <string_view>

#include "build_record.hpp"
#include "products.hpp"

namespace emit {

namespace fs = std::filesystem;

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

int build(const fs::path &folder, const fs::path &project) {
  const std::string record =
      build_record({fs::absolute(folder).parent_path(), fs::absolute(project)});
  const std::vector<Unit> units = all_units();
  if (twice_composed(units) != 0) return 1;
  Writer writer(folder, Writer::Mode::write);
  write_forwarders(writer, units);
  write_records(writer);
  write_vfts(writer);
  write_table_functions(writer);
  write_table_rows(writer);
  write_version_script(writer, units);
  write_sections(writer, record);
  return 0;
}

int renew_or_check(const fs::path &project, bool check) {
  const std::vector<Unit> units = all_units();
  if (twice_composed(units) != 0) return 1;
  Writer writer(project, check ? Writer::Mode::check : Writer::Mode::write);
  write_headers(writer, units);
  write_goldens(writer, units);
  write_model_json(writer);
  write_model_picture(writer);
  write_cplusplus(writer);
  write_python_stubs(writer);
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
  const std::vector<std::string_view> arguments(argv + 1, argv + argc);
  const std::string_view mode = arguments.empty() ? "" : arguments[0];
  const bool builds = mode == "--build" && arguments.size() == 3;
  const bool checks = mode == "--check" && arguments.size() == 2;
  const bool renews = mode == "--source" && arguments.size() == 2;
  if (!builds && !checks && !renews) {
    std::fprintf(stderr,
                 "usage: emit --build FOLDER PROJECT | --source PROJECT | --check PROJECT\n");
    return 2;
  }
  try {
    return builds ? emit::build(arguments[1], arguments[2])
                  : emit::renew_or_check(arguments[1], checks);
  } catch (const std::exception &failure) {
    std::fprintf(stderr, "emit: %s\n", failure.what());
    return 1;
  }
}
