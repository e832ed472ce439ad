#include "commands/picture_options.hpp"

#include <unistd.h>

#include <cstdint>
#include <cstdio>

#include "tree_exchange/files.hpp"
#include "views/dot_text.hpp"
#include "views/graphviz.hpp"

namespace tool {

namespace {

struct Form {
  const char *name;
  const char *help;
};

constexpr Form forms[] = {
    {"dot", "In the language of Graphviz"},
    {"svg", "As a picture, laid out by Graphviz"},
    {"png", "The same in pixels"},
    {"pdf", "The same for paper"},
    {"html", "As a page for browsers, which needs nothing besides: zoom, search, LSAs by a click"},
};

std::string content_of(const std::string &form, const std::vector<PagePicture> &pictures) {
  if (form == "html") return page_of(pictures);
  const std::string text = dot_text(pictures.front().picture);
  return form == "dot" ? text : draw(text, form);
}

}  // namespace

CLI::Option_group *PictureOptions::add_to(CLI::App &app) {
  CLI::Option_group *group = app.add_option_group("form");
  for (const Form &form : forms) {
    group->add_flag_callback(
        "--" + std::string(form.name), [this, &form] { form_ = form.name; }, form.help);
  }
  app.add_flag("--addresses", addresses_, "In a picture the addresses of interfaces as well");
  app.add_option("-o,--output", file_, "A file instead of standard output, which - is too");
  return group;
}

void PictureOptions::put(const std::vector<PagePicture> &pictures) const {
  // A large picture takes seconds, which a terminal is told.
  const std::size_t routers = pictures.front().picture.routers;
  const bool tell = form_ != "dot" && routers > 100 && isatty(STDERR_FILENO) == 1;
  if (tell) std::fprintf(stderr, "laying out %zu routers ...", routers);
  const std::string content = content_of(form_, pictures);
  if (tell) std::fprintf(stderr, "\r\033[K");
  if (file_.empty() || file_ == "-") {
    std::fwrite(content.data(), 1, content.size(), stdout);
    return;
  }
  tree_exchange::write_file(file_, [&](const auto &put) {
    put({reinterpret_cast<const std::uint8_t *>(content.data()), content.size()});
  });
}

}  // namespace tool
