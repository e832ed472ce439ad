#include "commands/line_editor.hpp"

#include <histedit.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <new>

#include "commands/shell_words.hpp"
#include "ospf_tables/input_error.hpp"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#include <sanitizer/lsan_interface.h>
#define KEEPS_WHAT_IT_IS_GIVEN() const __lsan::ScopedDisabler not_a_leak
#endif
#endif
#ifndef KEEPS_WHAT_IT_IS_GIVEN
#define KEEPS_WHAT_IT_IS_GIVEN()
#endif

namespace tool {

struct LineEditor::State {
  Complete complete;
  EditLine *editor = nullptr;
  History *history = nullptr;
  std::string history_file;  // empty for none
};

namespace {

constexpr int lines_remembered = 1000;

std::string file_of_history() {
  const char *home = std::getenv("HOME");
  return home == nullptr || *home == 0 ? "" : std::string(home) + "/.ospf_harbor_history";
}

char *prompt(EditLine *) {
  static char text[] = "ospf-harbor> ";
  return text;
}

std::string common_begin(const std::vector<Completion> &all) {
  std::string common = all.front().word;
  for (const Completion &each : all) {
    const auto [end, other] = std::ranges::mismatch(common, each.word);
    common.erase(end, common.end());
  }
  return common;
}

// In columns as wide as the longest, below the line.
void print_choices(const std::vector<Completion> &all) {
  std::size_t width = 0;
  for (const Completion &each : all) width = std::max(width, each.word.size() + 2);
  winsize window{};
  const bool is_known = ioctl(STDOUT_FILENO, TIOCGWINSZ, &window) == 0 && window.ws_col != 0;
  const std::size_t columns = std::max<std::size_t>(1, (is_known ? window.ws_col : 80) / width);
  std::fputc('\n', stdout);
  for (std::size_t at = 0; at < all.size(); ++at) {
    const bool is_last = at % columns == columns - 1 || at + 1 == all.size();
    const std::string word = ospf_tables::in_one_line(all[at].word);
    std::printf("%-*s%s", is_last ? 0 : static_cast<int>(width), word.c_str(), is_last ? "\n" : "");
  }
  std::fflush(stdout);
}

// The word before the cursor goes on as far as all that it can be have in common; when that is no
// further than it goes already, they are listed.
unsigned char complete_word(EditLine *editor, const LineEditor::Complete &complete) {
  const LineInfo *info = el_line(editor);
  const std::string before(info->buffer, static_cast<std::size_t>(info->cursor - info->buffer));
  ShellWords split = split_words(before);
  std::string begun;
  std::size_t start = before.size();
  if (split.ends_in_word) {
    begun = split.words.back();
    start = split.last_start;
    split.words.pop_back();
  }
  const std::vector<Completion> all = complete(split.words, begun);
  if (all.empty()) return CC_ERROR;
  const std::string common = common_begin(all);
  const bool is_one = all.size() == 1;
  if (!is_one && common.size() <= begun.size()) {
    print_choices(all);
    return CC_REDISPLAY;
  }
  std::string typed = quoted_word(common, split.open_quote);
  if (is_one && all.front().is_whole) {
    if (split.open_quote != 0) typed += split.open_quote;
    typed += ' ';
  }
  el_deletestr(editor, static_cast<int>(before.size() - start));
  return el_insertstr(editor, typed.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
}

// As in other shells ^C leaves the line as it stands and begins a new one.
unsigned char abandon_line(EditLine *editor, int) {
  const LineInfo *info = el_line(editor);
  el_cursor(editor, static_cast<int>(info->lastchar - info->cursor));
  el_deletestr(editor, static_cast<int>(info->lastchar - info->buffer));
  std::fputs("^C\n", stdout);
  std::fflush(stdout);
  return CC_REDISPLAY;
}

}  // namespace

bool LineEditor::is_at_terminal() {
  return isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1;
}

LineEditor::LineEditor(Complete complete) : state_(std::make_unique<State>()) {
  state_->complete = std::move(complete);
  state_->history_file = file_of_history();
  state_->editor = el_init("ospf-harbor", stdin, stdout, stderr);
  state_->history = history_init();
  if (state_->editor == nullptr || state_->history == nullptr) throw std::bad_alloc();
  EditLine *const editor = state_->editor;
  HistEvent event;
  history(state_->history, &event, H_SETSIZE, lines_remembered);
  history(state_->history, &event, H_SETUNIQUE, 1);
  if (!state_->history_file.empty()) {
    history(state_->history, &event, H_LOAD, state_->history_file.c_str());
  }
  el_set(editor, EL_CLIENTDATA, state_.get());
  el_set(editor, EL_PROMPT, prompt);
  el_set(editor, EL_EDITOR, "emacs");
  el_set(editor, EL_SIGNAL, 1);  // a terminal that changes its size, or hangs up
  el_set(editor, EL_HIST, history, state_->history);
  {
    // Copies of these words, which the editor's end does not give back.
    KEEPS_WHAT_IT_IS_GIVEN();
    el_set(
        editor, EL_ADDFN, "complete-word", "Complete the word",
        +[](EditLine *own, int) -> unsigned char {
          State *state = nullptr;
          el_get(own, EL_CLIENTDATA, &state);
          return complete_word(own, state->complete);
        });
    el_set(editor, EL_ADDFN, "abandon-line", "Begin a new line", abandon_line);
  }
  el_set(editor, EL_BIND, "^I", "complete-word", nullptr);
  el_set(editor, EL_BIND, "^R", "em-inc-search-prev", nullptr);
  el_set(editor, EL_BIND, "^C", "abandon-line", nullptr);
  // ^C is a key while a line is typed, and a signal while a command runs.
  el_set(editor, EL_SETTY, "-d", "-isig", nullptr);
}

LineEditor::~LineEditor() {
  HistEvent event;
  if (!state_->history_file.empty()) {
    history(state_->history, &event, H_SAVE, state_->history_file.c_str());
  }
  history_end(state_->history);
  el_end(state_->editor);
}

bool LineEditor::next(std::string &line) {
  int length = 0;
  const char *const text = el_gets(state_->editor, &length);
  if (text == nullptr || length <= 0) {
    std::fputc('\n', stdout);
    return false;
  }
  line.assign(text, static_cast<std::size_t>(length));
  if (line.find_first_not_of(" \t\r\n") != line.npos) {
    HistEvent event;
    history(state_->history, &event, H_ENTER, line.c_str());
  }
  if (line.ends_with('\n')) line.pop_back();
  return true;
}

}  // namespace tool
