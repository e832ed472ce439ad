// Files that trees are read from and written to. A file is read in pieces up to a limit, and a new
// one takes the place of the old one only when all of it is written.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "tree_exchange/table_rules.hpp"

namespace tree_exchange {

// Gives the bytes of a file piece by piece. Throws InputError when it cannot be read, or has more
// bytes than the limit.
void read_pieces(const std::string &path, std::uint64_t limit,
                 const std::function<void(ByteView)> &take);

// All of a file.
Bytes read_file(const std::string &path, std::uint64_t limit);

// At most the first `size` bytes of a file.
Bytes first_bytes(const std::string &path, std::size_t size);

// Writes a file with what `write` gives to its argument. When writing fails or `write` throws, what
// was there before is still there; when it returns, the file is on the disk. A symbolic link stays,
// and what it leads to is written. Throws InputError. What is no regular file, such as a terminal
// or a pipe, is written to directly.
void write_file(const std::string &path,
                const std::function<void(const std::function<void(ByteView)> &)> &write);

}  // namespace tree_exchange
