// Lines that a person types at a terminal, with history, editing and completion by libedit.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "commands/shell_completion.hpp"

namespace tool {

class LineEditor {
 public:
  using Complete = std::function<std::vector<Completion>(const std::vector<std::string> &words,
                                                         const std::string &begun)>;

  explicit LineEditor(Complete complete);
  ~LineEditor();
  LineEditor(const LineEditor &) = delete;
  LineEditor &operator=(const LineEditor &) = delete;

  // Whether a person types and reads here.
  static bool is_at_terminal();

  // Without its end; false at the end of all lines.
  bool next(std::string &line);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace tool
