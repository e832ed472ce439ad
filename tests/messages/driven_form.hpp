// A form while its rows are driven one by one: each place that emits it runs in a child, and what
// came out is held against what is stated. Collects the indices that were seen, so that the rows
// that no place emitted can be told.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "messages/emission.hpp"
#include "messages/stored_messages.hpp"
#include "support/stated_forms.hpp"

namespace messages {

class DrivenForm {
 public:
  DrivenForm(Side side, std::string_view form, Level level)
      : side_(side), form_(form), level_(level) {}

  const std::string &form() const { return form_; }
  Level level() const { return level_; }

  // The code must emit this row's message exactly once, as the last of all before the process ends
  // where the level is fatal. row names the row: two places of one row must give one index, and
  // places of different rows different ones. index: where it is stated.
  void drive(const std::string &row, const std::string &text, const std::function<void()> &code);
  void drive_at(std::uint32_t index, const std::string &row, const std::string &text,
                const std::function<void()> &code);

  const std::set<std::uint32_t> &indices() const { return indices_; }

  // Many rows that fail alike are told once.
  bool has_failed_often() const { return failures_ > 5; }

 private:
  std::string fault_of(const Outcome &outcome, const std::string &text,
                       const Emission **found) const;
  bool settle(const std::string &row, const std::string &text, const std::function<void()> &code,
              std::uint32_t &index);
  void fail(const std::string &row, const std::string &text, const std::string &why);

  Side side_;
  std::string form_;
  Level level_;
  std::map<std::string, std::uint32_t> rows_;
  std::set<std::uint32_t> indices_;
  int failures_ = 0;
};

}  // namespace messages
