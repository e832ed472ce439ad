// Filling in what a check says. The C struct is the only form that a finding has.
#pragma once

#include "fixed_text.hpp"
#include "ospf_harbor_check.h"

namespace ospf_harbor_check {

// No fault yet, for something of that name.
void begin_result(ospf_harbor_check_result &result, std::string_view name);

// What was found where something else was expected.
struct Finding {
  std::uint32_t fault;
  std::string_view path;
  std::string_view piece;
  std::string_view found;
  std::string_view expected;
};

// A finding at an offset of an image.
void say(ospf_harbor_check_result &result, std::size_t offset, const Finding &finding);

// A finding in a document, at result.line and result.column where those are not 0.
void say_in_document(ospf_harbor_check_result &result, const Finding &finding);

// Neither a type nor a table.
void say_unknown(ospf_harbor_check_result &result, std::uint32_t kind);

// The result to fill in: the caller's, or one in its stead.
class ResultPlace {
 public:
  ResultPlace(ospf_harbor_check_result *callers, const char *name)
      : result_(callers == nullptr ? own_ : *callers) {
    begin_result(result_, name == nullptr ? std::string_view() : name);
  }
  ospf_harbor_check_result &operator*() { return result_; }
  ospf_harbor_check_result *operator->() { return &result_; }

 private:
  ospf_harbor_check_result own_;
  ospf_harbor_check_result &result_;
};

}  // namespace ospf_harbor_check
