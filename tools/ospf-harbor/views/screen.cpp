#include "views/screen.hpp"

#include <sys/ioctl.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <cstring>

namespace tool {

void add_colour_option(CLI::App &command, std::string &when) {
  command
      .add_option(
          "--color", when,
          "Colours: auto (the default: on a terminal, unless NO_COLOR is set), always, never")
      ->check(CLI::IsMember({"auto", "always", "never"}));
}

Screen screen_of_output(const std::string &when) {
  Screen screen;
  const bool is_terminal = isatty(STDOUT_FILENO) == 1;
  winsize size{};
  if (is_terminal && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0) screen.width = size.ws_col;
  const char *columns = std::getenv("COLUMNS");
  if (screen.width == 0 && columns != nullptr) {
    std::from_chars(columns, columns + std::strlen(columns), screen.width);
  }
  const char *no_colour = std::getenv("NO_COLOR");
  const bool unwanted = no_colour != nullptr && *no_colour != '\0';
  screen.colour = when == "always" || (when != "never" && is_terminal && !unwanted);
  return screen;
}

}  // namespace tool
