// Files with a daemon's answers: found by the name of the answer, plain or with .gz behind it, read
// as a whole. Whoever reads answers reads files through this.
#pragma once

#include <optional>
#include <string>

namespace router_answers {

// The answer NAME of a folder, such as "ip-ospf.json": the path of the plain file or, where there
// is none, of the packed one; empty when there is neither.
std::optional<std::string> find_answer(const std::string &folder, const std::string &name);

// The text, unpacked. Throws InputError for a file that cannot be read, that ends inside its
// packing or that is longer than 1 GiB. expected: what the file should be, for the message.
std::string read_answer(const std::string &path, const char *expected = "a daemon's answer");

}  // namespace router_answers
