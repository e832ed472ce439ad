#include "import_command.hpp"

#include <sys/stat.h>

#include "commands.hpp"
#include "files.hpp"
#include "input_error.hpp"
#include "notes.hpp"
#include "tree_reader.hpp"
#include "tree_xml.hpp"

namespace tool {

namespace {

std::uint64_t read_stream(Session &session, const std::string &file) {
  TreeReader reader(session, file);
  read_pieces(file, largest_stream, [&](ByteView piece) { reader.feed(piece); });
  return reader.finish();
}

std::uint64_t read_xml(Session &session, const std::string &file) {
  const Bytes bytes = read_file(file, largest_stream);
  return read_tree_xml(session, file, {reinterpret_cast<const char *>(bytes.data()), bytes.size()});
}

bool is_folder(const std::string &path) {
  struct stat there;
  return stat(path.c_str(), &there) == 0 && S_ISDIR(there.st_mode);
}

void load_source(Session &session, const std::string &source) {
  if (is_folder(source)) {
    load_frr(session, {source});
    return;
  }
  const Bytes start = first_bytes(source, 64);
  if (is_stream(start)) {
    import_tree(session, TreeForm::image, source);
  } else if (const std::string_view text(reinterpret_cast<const char *>(start.data()),
                                         start.size());
             text.find_first_not_of(" \t\r\n") == text.find('<') && text.find('<') != text.npos) {
    import_tree(session, TreeForm::xml, source);
  } else {
    throw InputError(source, "", "a file that is neither",
                     "a folder of a router's answers, a tree stream or a tree's XML");
  }
}

}  // namespace

void import_tree(Session &session, TreeForm form, const std::string &file) {
  const std::uint64_t rows =
      form == TreeForm::image ? read_stream(session, file) : read_xml(session, file);
  note("imported " + rows_text(rows) + " from " + file);
}

void load_sources(Session &session, const std::vector<std::string> &sources) {
  for (const std::string &source : sources) load_source(session, source);
}

}  // namespace tool
