#include "commands/export_command.hpp"

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "ospf_tables/input_error.hpp"
#include "tree_exchange/files.hpp"
#include "tree_exchange/tree_writer.hpp"
#include "tree_exchange/tree_xml.hpp"
#include "views/notes.hpp"
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

}  // namespace

int export_tree(Session &session, TreeForm form, const std::string &file) {
  if (nothing_is_loaded(session, "export")) return 1;
  std::uint64_t rows = 0;
  write_file(file, [&](const std::function<void(ByteView)> &put) {
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
  note("exported " + rows_text(rows) + " to " + file);
  return 0;
}

}  // namespace tool
