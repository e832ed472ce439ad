#include "messages/driven_form.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace messages {

namespace {

std::string shown(const std::vector<std::string> &arguments) {
  std::string text;
  for (const std::string &argument : arguments) text += " [" + argument + "]";
  return text;
}

std::string shown(const Emission &emission) {
  const std::optional<Side> side = side_of(emission.identity);
  if (!side) return "a message under an unknown identity";
  std::string text = *side == Side::types ? "types " : "tables ";
  text += number(emission.index) + " at level " + number(emission.level) + ": ";
  text +=
      emission.index < stored_count(*side) ? stored_text(*side, emission.index) : "(no such index)";
  return text + shown(emission.arguments);
}

std::string shown(const Outcome &outcome) {
  std::string text = outcome.aborted ? "aborted" : outcome.ended ? "ran to its end" : "failed";
  for (const Emission &emission : outcome.emissions) text += "\n  traced " + shown(emission);
  return text + "\n" + outcome.complaints;
}

}  // namespace

std::string DrivenForm::fault_of(const Outcome &outcome, const std::string &text,
                                 const Emission **found) const {
  std::vector<const Emission *> fitting;
  for (const Emission &emission : outcome.emissions) {
    const std::optional<Side> side = side_of(emission.identity);
    if (!side) return "a message went out under an unknown identity";
    if (emission.index >= stored_count(*side)) return "an index beyond the stored messages";
    if (*side == side_ && stored_text(*side, emission.index) == text) fitting.push_back(&emission);
  }
  if (fitting.size() != 1)
    return "the message went out " + std::to_string(fitting.size()) + " times";
  const Emission &emission = *fitting.front();
  if (emission.level != level_) return "not at level " + number(level_);
  if (emission.signature != signature_of(text)) return "the emitter is " + emission.signature;
  if (emission.signature != stored_signature(side_, emission.index)) {
    return "stored for the emitter " + stored_signature(side_, emission.index);
  }
  if (!emission.arguments.empty() && !outcome.has_stated_arguments) return "arguments are unstated";
  if (emission.arguments != outcome.stated_arguments) {
    return "the arguments are not" + shown(outcome.stated_arguments);
  }
  if (level_ == fatal) {
    if (!outcome.aborted) return "the process went on";
    if (&emission != &outcome.emissions.back()) return "the process went on for a while";
  } else if (!outcome.ended) {
    return "the process did not go on";
  }
  *found = &emission;
  return {};
}

void DrivenForm::fail(const std::string &row, const std::string &text, const std::string &why) {
  ++failures_;
  ADD_FAILURE() << row << ": " << text << "\n" << why;
}

bool DrivenForm::settle(const std::string &row, const std::string &text,
                        const std::function<void()> &code, std::uint32_t &index) {
  const Outcome outcome = in_child(code);
  const Emission *emission = nullptr;
  const std::string fault = fault_of(outcome, text, &emission);
  if (!fault.empty()) {
    fail(row, text, fault + "; " + shown(outcome));
    return false;
  }
  index = emission->index;
  const auto [known, is_new] = rows_.emplace(row, index);
  if (!is_new && known->second != index) {
    fail(row, text, "two indices: " + number(known->second) + " and " + number(index));
    return false;
  }
  if (is_new && !indices_.insert(index).second) {
    fail(row, text, "index " + number(index) + " is another row's");
    return false;
  }
  return true;
}

void DrivenForm::drive(const std::string &row, const std::string &text,
                       const std::function<void()> &code) {
  std::uint32_t index = 0;
  if (!has_failed_often()) settle(row, text, code, index);
}

void DrivenForm::drive_at(std::uint32_t index, const std::string &row, const std::string &text,
                          const std::function<void()> &code) {
  std::uint32_t seen = 0;
  if (has_failed_often() || !settle(row, text, code, seen)) return;
  if (seen != index) fail(row, text, "index " + number(seen) + " in place of " + number(index));
}

}  // namespace messages
