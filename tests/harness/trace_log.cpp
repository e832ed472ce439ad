// The messages of the module, with their texts looked up in the catalogue.
#include <algorithm>
#include <array>
#include <cstring>

#include "harness/harness.hpp"
#include "ospf_harbor_oper.h"

namespace harness {

namespace {

using Identity = std::array<std::uint8_t, 16>;

int remember_identity(void *context, const kelp_trace_event *event) {
  std::memcpy(static_cast<Identity *>(context)->data(), event->identity, 16);
  return 0;
}

// The identity of the type side, learnt from a message that is certainly of that side.
const Identity &type_side() {
  static const Identity identity = [] {
    Identity found{};
    kelp_trace_set_level(nullptr, 7);
    kelp_trace_set_sink(remember_identity, &found);
    ospf_area_set_instance_embedded(nullptr, 0, nullptr);
    kelp_trace_set_sink(nullptr, nullptr);
    return found;
  }();
  return identity;
}

harbor::messages::Message message_of(const std::uint8_t *identity, std::uint32_t index) {
  return std::memcmp(identity, type_side().data(), 16) == 0
             ? harbor::messages::type_message(index)
             : harbor::messages::table_message(index);
}

std::string argument_text(const kelp_trace_argument &argument, char conversion) {
  switch (argument.kind) {
    case 1:
      return argument.text == nullptr ? "(null)" : std::string(argument.text, argument.text_length);
    case 4:
      return conversion == 'd' ? std::to_string(static_cast<std::int32_t>(argument.number))
                               : std::to_string(argument.number);
    default:
      return "pointer";
  }
}

std::string filled(const std::string &form, const kelp_trace_event &event) {
  std::string text;
  std::size_t next = 0;
  for (std::size_t at = 0; at < form.size(); ++at) {
    if (form[at] != '%' || at + 1 == form.size()) {
      text += form[at];
      continue;
    }
    ++at;
    text += next < event.argument_count ? argument_text(event.arguments[next], form[at])
                                        : "(no argument)";
    ++next;
  }
  if (next != event.argument_count) text += " (arguments do not match the text)";
  return text;
}

int collect(void *context, const kelp_trace_event *event) {
  const char *module = kelp_trace_module_name(event->module);
  if (event->module != 0 &&
      (module == nullptr || std::strcmp(module, "kelp_ospf_harbor_oper") != 0)) {
    return 0;
  }
  const bool is_type_side = std::memcmp(event->identity, type_side().data(), 16) == 0;
  const auto message = message_of(event->identity, event->index);
  const std::uint32_t stated = static_cast<std::uint32_t>(message.level) >> 24;
  EXPECT_EQ(event->level, stated) << "level of " << message.text;
  static_cast<std::vector<Traced> *>(context)->push_back(
      {event->level, message.text, filled(message.text, *event), !is_type_side, event->index});
  return 0;
}

const char *text_source(void *, const std::uint8_t identity[16], std::uint32_t index) {
  static std::string text;
  text = message_of(identity, index).text;
  return text.c_str();
}

}  // namespace

TraceLog::TraceLog() {
  type_side();
  kelp_trace_set_level(nullptr, 7);
  kelp_trace_set_sink(collect, &messages_);
}

TraceLog::~TraceLog() { kelp_trace_set_sink(nullptr, nullptr); }

std::vector<std::string> TraceLog::texts() const {
  std::vector<std::string> result;
  for (const Traced &message : messages_) result.push_back(message.text);
  return result;
}

bool TraceLog::has(std::uint32_t level, const std::string &text) const {
  return std::any_of(messages_.begin(), messages_.end(), [&](const Traced &message) {
    return message.level == level && message.text == text;
  });
}

FatalText::FatalText() {
  type_side();
  kelp_trace_set_text_source(text_source, nullptr);
}

FatalText::~FatalText() { kelp_trace_set_text_source(nullptr, nullptr); }

}  // namespace harness
