// A JSON document as a reader sees it: every access names file and place when it fails, and keys
// that nobody asked for are counted.
#pragma once

#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "ospf_tables/input_error.hpp"

namespace router_answers {

// How many keys a load passed over.
struct PassedOver {
  std::uint64_t values = 0;
  std::set<std::string> keys;
};

class JsonView {
 public:
  JsonView(std::shared_ptr<const nlohmann::ordered_json> document, std::string file,
           PassedOver &passed_over)
      : document_(document),
        value_(document_.get()),
        file_(std::move(file)),
        passed_over_(&passed_over) {}

  // Members of an object and elements of an array, in document order.
  JsonView member(const std::string &key, const char *expected) const;
  bool has(const std::string &key) const;
  std::vector<std::pair<std::string, JsonView>> members(const char *expected) const;
  std::vector<JsonView> elements(const char *expected) const;

  std::string text(const char *expected) const;
  bool boolean(const char *expected) const;
  std::uint64_t number(std::uint64_t highest, const char *expected) const;

  // Fails at this place.
  [[noreturn]] void fail(const std::string &expected) const;
  std::string found() const;  // the value, short
  const std::string &file() const { return file_; }
  const std::string &place() const { return place_; }

  // Counts the members of this object that are not among those named.
  void pass_over_all_but(const std::vector<std::string> &known) const;

 private:
  JsonView(const JsonView &parent, const nlohmann::ordered_json &value, std::string place)
      : document_(parent.document_),
        value_(&value),
        file_(parent.file_),
        place_(std::move(place)),
        passed_over_(parent.passed_over_) {}

  std::shared_ptr<const nlohmann::ordered_json> document_;
  const nlohmann::ordered_json *value_;
  std::string file_;
  std::string place_;
  PassedOver *passed_over_;
};

// Reads and parses a file, packed with gzip or not.
JsonView read_json(const std::string &path, PassedOver &passed_over);

}  // namespace router_answers
