#include <memory>

#include "commands/show_after.hpp"
#include "sources/tree_file.hpp"

namespace tool {

namespace {

Run set_up_import(CLI::App &app) {
  struct Options {
    std::vector<std::string> images, documents;
    ShowAfter show;
  };
  const auto options = std::make_shared<Options>();
  CLI::Option_group *forms = app.add_option_group("forms");
  forms->add_option("--image", options->images, "Tree streams");
  forms->add_option("--xml", options->documents, "Trees' XML");
  forms->require_option(1, 0);
  options->show.add_to(app);
  return [options](ospf_tables::Session *session) {
    session->changing([&] {
      for (const std::string &file : options->images)
        import_tree(*session, TreeForm::image, file, file);
      for (const std::string &file : options->documents)
        import_tree(*session, TreeForm::xml, file, file);
    });
    return options->show.run(*session);
  };
}

}  // namespace

extern const Command import_command;
const Command import_command{"import",
                             "Add trees from files; instances of the same key give way to them",
                             Needs::session, set_up_import};

}  // namespace tool
