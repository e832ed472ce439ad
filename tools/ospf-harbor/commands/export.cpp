
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "commands/command.hpp"
#include "sources/tree_file.hpp"
#include "tree_exchange/files.hpp"
#include "tree_exchange/tree_writer.hpp"
#include "tree_exchange/tree_xml.hpp"
#include "views/notes.hpp"
#include "views/progress.hpp"
#include "views/show.hpp"

namespace tool {

using namespace ospf_tables;
using namespace tree_exchange;

namespace {

ByteView bytes_of(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t *>(text.data()), text.size()};
}

std::string text_of_tree(Session &session, std::uint64_t &rows) {
  char *text = nullptr;
  std::size_t size = 0;
  std::FILE *out = open_memstream(&text, &size);
  if (out == nullptr) throw LibraryFailure("export: no memory for the text");
  try {
    rows = show(session, "", out);
  } catch (...) {
    std::fclose(out);
    std::free(text);
    throw;
  }
  const bool whole = std::fclose(out) == 0;
  const std::unique_ptr<char, decltype(&std::free)> owner(text, &std::free);
  if (!whole) throw LibraryFailure("export: no memory for the text");
  return {text, size};
}

void write_tree_file(Session &session, TreeForm form, const std::string &file) {
  std::uint64_t rows = 0;
  std::uint64_t size = 0;
  Progress progress;
  write_file(file, [&](const std::function<void(ByteView)> &write) {
    const auto put = [&](ByteView bytes) {
      size += bytes.size();
      write(bytes);
      if (progress.is_due()) progress.show(file + ": " + size_text(size) + " written");
    };
    switch (form) {
      case TreeForm::image:
        rows = write_tree(session, put);
        return;
      case TreeForm::xml:
        rows = write_tree_xml(session, [&](std::string_view text) { put(bytes_of(text)); });
        return;
      case TreeForm::text:
        put(bytes_of(text_of_tree(session, rows)));
        return;
    }
  });
  progress.clear();
  note("exported " + rows_text(rows) + " to " + file);
  const std::string warning = too_many_bytes(form, file, size);
  if (!warning.empty()) note("ospf-harbor: export: " + warning);
}

Run set_up_export(CLI::App &app) {
  struct Options {
    std::string image, xml, text;
  };
  const auto options = std::make_shared<Options>();
  CLI::Option_group *forms = app.add_option_group("forms");
  forms->add_option("--image", options->image, "As a tree stream of images");
  forms->add_option("--xml", options->xml, "As an XML document");
  forms->add_option("--text", options->text, "As show prints it");
  forms->require_option(1, 0);
  return [options](Session *session) {
    if (nothing_is_loaded(*session, "export")) return 1;
    const std::pair<TreeForm, const std::string &> files[] = {{TreeForm::image, options->image},
                                                              {TreeForm::xml, options->xml},
                                                              {TreeForm::text, options->text}};
    for (const auto &[form, file] : files) {
      if (!file.empty()) write_tree_file(*session, form, file);
    }
    return 0;
  };
}

}  // namespace

extern const Command export_command;
const Command export_command{"export", "Write the tree to files", Needs::tree, set_up_export};

}  // namespace tool
