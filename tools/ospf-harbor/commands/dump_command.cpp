#include "commands/dump_command.hpp"

#include <ospf_harbor_check.h>

#include <cstdio>

#include "tree_exchange/annotation.hpp"
#include "tree_exchange/files.hpp"
#include "views/notes.hpp"

namespace tool {

using namespace tree_exchange;

int dump_annotated(const DumpWhat &what) {
  const Bytes bytes = read_file(what.file, largest_stream);
  const LineSink print = [](std::string_view line) {
    std::printf("%.*s\n", static_cast<int>(line.size()), line.data());
  };
  std::string wrong;
  if (!what.object.empty()) {
    wrong = annotate_image(OSPF_HARBOR_CHECK_OBJECT, what.object, bytes, print);
  } else if (!what.key.empty()) {
    wrong = annotate_image(OSPF_HARBOR_CHECK_KEY, what.key, bytes, print);
  } else if (!bytes.empty() && bytes[0] == stream_magic[0]) {
    wrong = annotate_stream(bytes, print);
  } else {
    wrong = annotate_image(OSPF_HARBOR_CHECK_RECORD, "", bytes, print);
  }
  if (wrong.empty()) return 0;
  note("ospf-harbor: " + what.file + ": " + wrong);
  return 1;
}

}  // namespace tool
