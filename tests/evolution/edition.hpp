// An edition of the schema as its peer describes it, and the peer as a process. The test knows
// types and fields from here alone: it is built without the schema, so that it can hold three at
// once.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace evolution {

struct Field {
  std::string name;
  std::string kind;
  int since;
  std::string part;  // the embedded type, the elements' kind, or what an arm holds
  std::uint32_t selector;
};

struct Structure {
  std::string name;
  int variants;
  bool is_choice;
  std::vector<Field> fields;
};

struct Member {
  std::string name;
  std::uint32_t value;
};

// An enumeration or a flag set.
struct Light {
  std::string name;
  bool is_flags;
  int variants;
  bool counts_from_one;  // the wire counts from 0 all the same
  std::vector<Member> members;
};

struct Table {
  std::string name;
  std::string luid;
  std::vector<std::string> objects;
};

struct Edition {
  std::string name;
  std::string peer;  // the program
  std::vector<Structure> structures;
  std::vector<Light> lights;
  std::vector<Table> tables;

  const Structure &structure(const std::string &name) const;
  const Light &light(const std::string &name) const;
};

// The older, current or newer edition, asked for once.
const Edition &edition(const std::string &name);

// Runs the edition's peer with these arguments and lines of input, and gives its lines of output;
// fails the test when the peer does not end well.
std::vector<std::string> run(const Edition &edition, const std::string &arguments,
                             const std::vector<std::string> &input);

// A file in the folder for this process's temporary files.
std::string temporary(const std::string &name);
void write_lines(const std::string &file, const std::vector<std::string> &lines);

}  // namespace evolution
