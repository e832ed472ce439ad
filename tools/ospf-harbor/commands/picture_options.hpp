// The options of commands that draw: which form, how much detail, and where to.
#pragma once

#include <string>
#include <vector>

#include "commands/command.hpp"
#include "views/picture_page.hpp"

namespace tool {

class PictureOptions {
 public:
  // Gives the group of the forms, of which one is asked for at most.
  CLI::Option_group *add_to(CLI::App &app);
  bool is_asked() const { return !form_.empty(); }
  // Of several pictures only a page has room for more than the first.
  bool takes_all() const { return form_ == "html"; }
  bool shows_addresses() const { return addresses_; }
  // Throws InputError when it cannot be written.
  void put(const std::vector<PagePicture> &pictures) const;

 private:
  std::string form_;
  bool addresses_ = false;
  std::string file_;  // empty for standard output
};

}  // namespace tool
