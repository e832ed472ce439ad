// How the rows of each form of the type side are driven: one function for each form, which brings
// about, for every type or field that the form has a row for, the condition under which the message
// goes out.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "messages/driven_form.hpp"

namespace messages {

struct TypeDriver {
  std::string_view form;
  void (*drive)(DrivenForm &form);
};

std::span<const TypeDriver> object_drivers();     // creation, destruction, images, entry tests
std::span<const TypeDriver> reference_drivers();  // by-reference fields
std::span<const TypeDriver> state_drivers();      // whatever reads the handle's tracking mode

// A row that no place emits, and why.
struct UnreachableRow {
  std::string text;
  std::string_view reason;
};
std::vector<UnreachableRow> unreachable_rows(std::string_view form);

}  // namespace messages
