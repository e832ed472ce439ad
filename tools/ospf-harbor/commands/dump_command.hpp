// `dump --annotate`: what each byte of a tree stream or of an image is.
#pragma once

#include <string>

namespace tool {

struct DumpWhat {
  std::string file;
  std::string object;  // the file is an image of an object of that type; may be empty
  std::string key;     // of a key of that table; may be empty
};

// Prints a tree stream or record images, or what it is told to print. The status: 1 when something
// is wrong with the bytes, which is then shown where it is. Throws InputError for a file that
// cannot be read.
int dump_annotated(const DumpWhat &what);

}  // namespace tool
