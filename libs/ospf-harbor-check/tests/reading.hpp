// What the library's readers make of what the checker passed. Called by the tests and by the fuzz
// targets, so it asserts nothing itself: each call gives a text that is empty when all was as it
// must be. It never reads what was refused.
#pragma once

#include <kelp/embed.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "model/lists.hpp"
#include "ospf_harbor_check.h"

namespace ospf_harbor_check_tests {

using Bytes = std::vector<std::uint8_t>;
using harbor::model::Structure;
using harbor::model::Table;

// An image or document and what it is of.
struct Input {
  std::uint32_t kind;
  std::string name;
};

// All names that there are of a kind, in the schema's order.
std::vector<std::string> names_of(std::uint32_t kind);

// A private database with a handle.
class Place {
 public:
  explicit Place(std::uint32_t tracking);
  ~Place();
  Place(const Place &) = delete;
  Place &operator=(const Place &) = delete;

  operator kelp_handle *() const { return handle_; }
  std::uint64_t live_allocations() const;

 private:
  kelp_database *database_;
  kelp_handle *handle_;
};

// Something that a reader filled or can fill: an object, a record or a key.
class Read {
 public:
  Read(kelp_handle *handle, const Input &input);
  ~Read();
  Read(const Read &) = delete;
  Read &operator=(const Read &) = delete;

  // Makes what a reader would have made, with new objects; gives them with their structures, null
  // for an enumeration or flag set.
  struct Held {
    void *object;
    const Structure *structure;
  };
  std::vector<Held> make();

  // Gives what was wrong: an error word, a result other than size. length is what the reader is
  // told.
  std::string take(const std::uint8_t *image, std::size_t size, std::size_t length, bool reuse);
  std::string take(kelp_xml_document *document);
  // Its image or document; empty when it cannot be written.
  Bytes image() const;
  std::string document() const;

 private:
  std::vector<const Structure *> structures() const;

  kelp_handle *handle_;
  const Input &input_;
  const Table *table_ = nullptr;
  const Structure *structure_ = nullptr;  // of an object
  void *object_ = nullptr;                // an object or a key
  void *record_ = nullptr;
};

// Reads an image that passed into a new object, in a buffer of exactly its size.
std::string read_once(kelp_handle *handle, const Input &input, std::span<const std::uint8_t> image);

// Reads an image that passed: in a buffer of exactly its size, in one with a spare byte, into an
// object that holds it already; writes it, and reads what was written, which must come out as it
// went in.
std::string read_image(kelp_handle *handle, const Input &input,
                       std::span<const std::uint8_t> image);

// The same for a document, which must come out as it went in from its second writing on.
std::string read_document(kelp_handle *handle, const Input &input, const std::string &text);

}  // namespace ospf_harbor_check_tests
