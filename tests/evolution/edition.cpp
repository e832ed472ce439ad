#include "evolution/edition.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace evolution {

namespace {

template <typename Row>
const Row &found(const std::vector<Row> &rows, const std::string &name) {
  for (const Row &row : rows) {
    if (row.name == name) return row;
  }
  ADD_FAILURE() << "no type " << name;
  std::abort();
}

Edition described(const std::string &name) {
  Edition edition{name, std::string(HARBOR_PEERS) + "/peer_" + name, {}, {}, {}};
  for (const std::string &line : run(edition, "describe", {})) {
    std::istringstream in(line);
    std::string row;
    in >> row;
    if (row == "structure") {
      Structure type{};
      in >> type.name >> type.variants >> type.is_choice;
      edition.structures.push_back(type);
    } else if (row == "field") {
      Field field{};
      in >> field.name >> field.kind >> field.since >> field.part >> field.selector;
      edition.structures.back().fields.push_back(field);
    } else if (row == "enumeration" || row == "flags") {
      Light type{};
      type.is_flags = row == "flags";
      in >> type.name >> type.variants >> type.counts_from_one;
      edition.lights.push_back(type);
    } else if (row == "member") {
      Member member{};
      in >> member.name >> member.value;
      edition.lights.back().members.push_back(member);
    } else if (row == "table") {
      Table table;
      std::string record, key;
      in >> table.name >> table.luid >> record >> key;
      if (key != "-") table.objects.push_back(key);
      table.objects.push_back(record);
      edition.tables.push_back(table);
    }
    EXPECT_FALSE(in.fail()) << line;
  }
  return edition;
}

}  // namespace

const Structure &Edition::structure(const std::string &name) const {
  return found(structures, name);
}
const Light &Edition::light(const std::string &name) const { return found(lights, name); }

const Edition &edition(const std::string &name) {
  static std::map<std::string, Edition> editions;
  const auto known = editions.find(name);
  return known != editions.end() ? known->second
                                 : editions.emplace(name, described(name)).first->second;
}

std::string temporary(const std::string &name) {
  struct Folder {
    std::string path = testing::TempDir() + "evolution." + std::to_string(getpid());
    Folder() { std::filesystem::create_directories(path); }
    ~Folder() { std::filesystem::remove_all(path); }
  };
  static const Folder folder;
  return folder.path + "/" + name;
}

void write_lines(const std::string &file, const std::vector<std::string> &lines) {
  std::ofstream out(file);
  for (const std::string &line : lines) out << line << "\n";
}

std::vector<std::string> run(const Edition &edition, const std::string &arguments,
                             const std::vector<std::string> &input) {
  const std::string script = temporary("script");
  const std::string report = temporary("report");
  write_lines(script, input);
  const std::string command =
      "'" + edition.peer + "' " + arguments + " < '" + script + "' > '" + report + "'";
  EXPECT_EQ(std::system(command.c_str()), 0) << command;
  std::vector<std::string> lines;
  std::ifstream in(report);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

}  // namespace evolution
