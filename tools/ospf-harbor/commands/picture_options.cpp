#include "commands/picture_options.hpp"

#include <unistd.h>

#include <cstdint>
#include <cstdio>

#include "tree_exchange/files.hpp"
#include "views/graphviz.hpp"

namespace tool {

namespace {

// A large picture takes seconds, which a terminal is told.
std::string drawn(const std::string &dot, std::size_t routers) {
  const bool tell = routers > 100 && isatty(STDERR_FILENO) == 1;
  if (tell) std::fprintf(stderr, "laying out %zu routers ...", routers);
  const std::string picture = draw(dot, "svg");
  if (tell) std::fprintf(stderr, "\r\033[K");
  return picture;
}

}  // namespace

CLI::Option_group *PictureOptions::add_to(CLI::App &app) {
  CLI::Option_group *form = app.add_option_group("form");
  form->add_flag("--dot", dot, "In the language of Graphviz");
  form->add_flag("--svg", svg, "As a picture, laid out by Graphviz");
  app.add_option("-o,--output", file, "A file instead of standard output, which - is too");
  return form;
}

void PictureOptions::put(const std::string &dot_text, std::size_t routers) const {
  const std::string content = svg ? drawn(dot_text, routers) : dot_text;
  if (file.empty() || file == "-") {
    std::fwrite(content.data(), 1, content.size(), stdout);
    return;
  }
  tree_exchange::write_file(file, [&](const auto &put) {
    put({reinterpret_cast<const std::uint8_t *>(content.data()), content.size()});
  });
}

}  // namespace tool
