// The composed functions of every type and table, and calls of them by their signatures: for loops
// that hold each export to one promise, whatever its arguments are.
#pragma once

#include <array>
#include <tuple>

#include "composition.hpp"
#include "whole_schema/erased.hpp"

namespace whole_schema {

inline std::vector<emit::Unit> units() {
  std::vector<emit::Unit> all;
  for (const auto *type : harbor::model::structures) all.push_back(emit::unit_of(*type));
  for (const auto *type : harbor::model::all_enumerations) all.push_back(emit::unit_of(*type));
  for (const auto *type : harbor::model::all_flag_sets) all.push_back(emit::unit_of(*type));
  for (const auto *table : harbor::model::all_tables) all.push_back(emit::unit_of(*table));
  return all;
}

// Calls the function with what word(parameter) gives for each of its parameters, but for doubles,
// which take another kind of register. Words behind the last parameter are of no account.
template <typename Word>
std::uint64_t call_composed(const emit::Function &function, Word word) {
  std::array<std::uint64_t, 32> words{};
  std::size_t next = 0;
  const std::string &list = function.arguments;
  int depth = 0;
  for (std::size_t begin = 0, at = 0; at <= list.size(); ++at) {
    if (at < list.size()) {
      depth += (list[at] == '(') - (list[at] == ')');
      if (list[at] != ',' || depth > 0) continue;
    }
    std::string parameter = list.substr(begin, at - begin);
    parameter.erase(0, parameter.find_first_not_of(' '));
    begin = at + 1;
    const bool is_pointer = parameter.find('*') != std::string::npos;
    if (is_pointer || !parameter.starts_with("double ")) words.at(next++) = word(parameter);
  }
  return std::apply([&](auto... each) { return call<std::uint64_t>(function.name, each...); },
                    words);
}

inline std::uint64_t word_of(const void *pointer) {
  return reinterpret_cast<std::uint64_t>(pointer);
}

}  // namespace whole_schema
