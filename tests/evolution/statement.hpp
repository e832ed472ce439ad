// What must be so when editions exchange images, stated from their rows and the tables of
// docs/wire-format.md, without the library: which value each field is given, the bytes of the image
// that a writer makes of them, and what a reader of another edition then has, tells and passes
// over.
#pragma once

#include "evolution/edition.hpp"

namespace evolution {

using Bytes = std::vector<std::uint8_t>;

// The values that one edition gives to all fields of all its types: by path, so that both ends of
// an exchange can be stated apart. In round 0 each enumeration takes its last value and each flag
// set all its bits; from round to round values, selected arms and lengths of arrays change.
class Contents {
 public:
  Contents(const Edition &edition, std::uint32_t salt, std::uint32_t round,
           std::uint32_t array_length)
      : edition_(edition), salt_(salt), round_(round), array_length_(array_length) {}

  // As a step to a peer takes it: numbers, addresses, lists.
  std::string value(const std::string &path, const Field &field) const;
  std::uint32_t light_value(const std::string &path, const Light &type) const;
  std::uint8_t state(const std::string &path) const;
  std::vector<std::uint8_t> element_states(const std::string &path) const;
  // The value of a choice's selector: that choice's arms of this value are there.
  std::uint32_t selected(const Structure &choice) const;
  std::uint32_t array_length() const { return array_length_; }

  // The steps that fill an object of that type or a record of that table.
  std::vector<std::string> steps(const std::string &name, bool tracked) const;

  const Edition &edition() const { return edition_; }

 private:
  std::uint32_t number(const std::string &path) const;
  std::string element(const std::string &path, const std::string &kind) const;
  void add_steps(const Structure &type, const std::string &prefix, bool tracked,
                 std::vector<std::string> &lines) const;

  const Edition &edition_;
  std::uint32_t salt_;
  std::uint32_t round_;
  std::uint32_t array_length_;
};

// How a writer writes.
struct Writing {
  const Contents &contents;
  bool tracked;
  bool ra_data;  // with an ra-data block in the image of the object itself
};

// The image of an object of that type. The prefix is the path of the fields.
Bytes image(const Writing &writing, const Structure &type, const std::string &prefix,
            bool is_whole);
Bytes image(const Writing &writing, const Light &type, const std::string &path);

// How a reader reads. held: what the destination had before, null for a new object.
struct Reading {
  const Edition &edition;
  bool tracked;
  const Contents *held;
};

// The lines that the reader tells about an image of the type or table of that name: messages, bytes
// consumed, each field.
std::vector<std::string> report(const Writing &writing, const Reading &reading,
                                const std::string &name);

}  // namespace evolution
