#include <ospf_harbor_check.h>

#include <algorithm>
#include <cstdio>
#include <memory>

#include "commands/command.hpp"
#include "ospf_tables/input_error.hpp"
#include "tree_exchange/annotation.hpp"
#include "tree_exchange/files.hpp"
#include "views/notes.hpp"

namespace tool {

using namespace tree_exchange;

namespace {

struct DumpOptions {
  std::string file;
  std::string object;  // the file is an image of an object of that type; may be empty
  std::string key;     // of a key of that table; may be empty
};

// Prints a tree stream or record images, or what it is told to print; 1 when something is wrong
// with the bytes, which is then shown where it is.
int dump_annotated(const DumpOptions &what) {
  const Bytes bytes = read_file(what.file, largest_stream);
  const auto mark = std::find_if(bytes.begin(), bytes.end(),
                                 [](std::uint8_t c) { return c != ' ' && (c < 9 || c > 13); });
  if (what.object.empty() && what.key.empty() && mark != bytes.end() && *mark == '<') {
    throw ospf_tables::InputError(what.file, "", "an XML document",
                                  "a tree stream, or images of records");
  }
  const LineSink print = [](std::string_view line) {
    std::printf("%s\n", ospf_tables::in_one_line(line).c_str());
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

Run set_up_dump(CLI::App &app) {
  const auto options = std::make_shared<DumpOptions>();
  app.add_option("--annotate", options->file, "A tree stream, or images of records")->required();
  CLI::Option *object =
      app.add_option("--object", options->object, "The file is an image of an object of this type");
  app.add_option("--key", options->key, "The file is an image of a key of this table")
      ->excludes(object);
  return [options](ospf_tables::Session *) { return dump_annotated(*options); };
}

}  // namespace

extern const Command dump_command;
const Command dump_command{"dump", "Show what each byte of a file is", Needs::nothing, set_up_dump};

}  // namespace tool
