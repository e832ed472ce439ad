#include "sources/tree_file.hpp"

#include "tree_exchange/files.hpp"
#include "tree_exchange/tree_reader.hpp"
#include "tree_exchange/tree_xml.hpp"
#include "views/notes.hpp"
#include "views/progress.hpp"

namespace tool {

using namespace ospf_tables;
using namespace tree_exchange;

namespace {

std::uint64_t read_stream(Session &session, const std::string &file, const std::string &name) {
  TreeReader reader(session, name);
  Progress progress;
  std::uint64_t size = 0;
  read_pieces(file, largest_stream, [&](ByteView piece) {
    reader.feed(piece);
    size += piece.size();
    if (progress.is_due()) progress.show(name + ": " + size_text(size) + " read");
  });
  return reader.finish();
}

std::uint64_t read_xml(Session &session, const std::string &file, const std::string &name) {
  const Bytes bytes = read_file(file, largest_stream);
  Progress progress;
  progress.show(name + ": " + size_text(bytes.size()) + " read, filling the tables");
  return read_tree_xml(session, name, {reinterpret_cast<const char *>(bytes.data()), bytes.size()});
}

}  // namespace

void import_tree(Session &session, TreeForm form, const std::string &file,
                 const std::string &name) {
  const std::uint64_t rows =
      form == TreeForm::image ? read_stream(session, file, name) : read_xml(session, file, name);
  note("imported " + rows_text(rows) + " from " + name);
}

std::string too_many_bytes(TreeForm form, const std::string &file, std::uint64_t size) {
  if (form == TreeForm::text || size <= largest_stream) return "";
  return file + " has " + std::to_string(size) + " bytes, and import takes no more than " +
         std::to_string(largest_stream);
}

}  // namespace tool
