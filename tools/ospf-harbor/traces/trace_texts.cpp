// The runtime carries out the conversions; this finds the text and checks that it fits.
#include "traces/trace_texts.hpp"

#include <array>
#include <ctime>
#include <library_sections/error.hpp>
#include <library_sections/halyard.hpp>

#include "usage_error.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

using library_sections::hex;

struct LevelName {
  std::uint8_t level;
  const char *name;
};
constexpr std::array<LevelName, 4> level_names{{{KELP_TRACE_FATAL, "fatal"},
                                                {KELP_TRACE_ERROR, "error"},
                                                {KELP_TRACE_INFORMATION, "information"},
                                                {KELP_TRACE_DEBUG, "debug"}}};

std::string module_of(const library_sections::ElfFile &file) {
  try {
    return library_sections::escaped(library_sections::read_halyard(file).manifest.module);
  } catch (const library_sections::Error &) {
    return {};  // `inspect` says what is wrong with it; the texts do not depend on it
  }
}

std::string time_of(std::uint64_t nanoseconds) {
  constexpr std::uint64_t second = 1'000'000'000;
  const auto seconds = static_cast<std::time_t>(nanoseconds / second);
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  char text[64];
  const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
  std::snprintf(text + length, sizeof text - length, ".%09uZ",
                static_cast<unsigned>(nanoseconds % second));
  return text;
}

std::string with_arguments(const kelp_trace_event &event, const std::string &text) {
  std::string line(kelp_trace_format(&event, text.c_str(), nullptr, 0) + 1, '\0');
  kelp_trace_format(&event, text.c_str(), line.data(), line.size());
  line.pop_back();
  return library_sections::escaped(line);
}

// What can be said of a message without its text.
std::string bare(const kelp_trace_event &event) {
  std::string forms;
  for (std::size_t i = 0; i < event.argument_count; ++i) {
    forms += i == 0 ? " with " : ", ";
    forms += event.arguments[i].kind == 1 ? "\"%s\"" : event.arguments[i].kind == 4 ? "%u" : "%p";
  }
  return "(message " + std::to_string(event.index) + " of source " + hex(event.identity) +
         with_arguments(event, forms) + ")";
}

}  // namespace

std::string level_name(std::uint8_t level) {
  for (const LevelName &one : level_names) {
    if (one.level == level) return one.name;
  }
  return "level " + std::to_string(level);
}

std::uint8_t level_by_name(const std::string &option, const std::string &name) {
  std::string known;
  for (const LevelName &one : level_names) {
    if (one.name == name) return one.level;
    known += (known.empty() ? "" : " or ") + std::string(one.name);
  }
  throw UsageError(option, "", "\"" + library_sections::escaped(name) + "\"", known);
}

TraceTexts::TraceTexts(std::string library, library_sections::Bytes bytes)
    : library_(std::move(library)) {
  const library_sections::ElfFile file(bytes);
  messages_ = library_sections::read_messages(file);
  module_ = module_of(file);
}

const std::string *TraceTexts::text(const kelp_trace_event &event, std::string *complaint) const {
  const library_sections::MessageTable *table = messages_.table(event.identity);
  if (table == nullptr) {
    std::string known;
    for (const auto &one : messages_.tables) {
      known += (known.empty() ? "" : " or ") + hex(one.identity);
    }
    *complaint = "source of a message: found " + hex(event.identity) + ", expected " + known +
                 " of " + library_;
    return nullptr;
  }
  if (event.index >= table->messages.size()) {
    *complaint = "index of a message: found " + std::to_string(event.index) +
                 ", expected less than the " + std::to_string(table->messages.size()) +
                 " messages of " + library_;
    return nullptr;
  }
  const library_sections::Message &message = table->messages[event.index];
  const std::string_view digits = library_sections::signatures[message.signature()].digits;
  if (digits != event.signature) {
    *complaint = "arguments of message " + std::to_string(event.index) + ": found signature " +
                 event.signature + ", expected " + std::string(digits) + " for \"" +
                 library_sections::escaped(message.text) + "\" of " + library_;
    return nullptr;
  }
  return &message.text;
}

std::string TraceTexts::line(const kelp_trace_event &event, std::string *complaint) const {
  const std::string *known = text(event, complaint);
  const std::string module =
      known == nullptr || module_.empty() ? "module-" + std::to_string(event.module) : module_;
  char level[16];
  std::snprintf(level, sizeof level, "%-11s", level_name(event.level).c_str());
  return time_of(event.time_ns) + " " + level + " " + module + " " +
         (known == nullptr ? bare(event) : with_arguments(event, *known));
}

}  // namespace tool
