// The texts of one library's trace messages, and the lines that are made of records with them. A
// record is taken for what it says: source, index and arguments are checked against the library
// before a text is used, and nothing out of either file reaches a printf function or a terminal as
// it stands.
#pragma once

#include <kelp/trace.h>

#include <library_sections/messages.hpp>
#include <string>

namespace tool {

class TraceTexts {
 public:
  // library: its file, for complaints. Throws library_sections::Error when it has no sound
  // messages.
  TraceTexts(std::string library, library_sections::Bytes bytes);

  // "2026-11-21T08:10:42.123456789Z error       ospf_harbor_oper Failed to open TOC. Error 2". When
  // the library has no text for it, the line shows the bare record and *complaint says why.
  std::string line(const kelp_trace_event &event, std::string *complaint) const;

 private:
  // Null with a complaint when the message is unknown or takes other arguments.
  const std::string *text(const kelp_trace_event &event, std::string *complaint) const;

  std::string library_;
  library_sections::MessageStore messages_;
  std::string module_;  // empty when the library does not name it
};

// The names of trace levels on the command line and in lines: fatal, error, information, debug. A
// level without a name is shown as its number.
std::string level_name(std::uint8_t level);
// Throws UsageError, with the option's name, for what is none of them.
std::uint8_t level_by_name(const std::string &option, const std::string &name);

}  // namespace tool
