// Trees out of files into the session's tree. What arrives is added; an instance of the
// same key gives way to it. A file that is not sound changes nothing.
#pragma once

#include <cstdint>
#include <string>

#include "ospf_tables/session.hpp"

namespace tool {

enum class TreeForm { image, xml, text };

// name: what people call the file. Throws InputError.
void import_tree(ospf_tables::Session &session, TreeForm form, const std::string &file,
                 const std::string &name);

// What to say of a file with so many bytes that an import would refuse for them; empty when it
// takes them.
std::string too_many_bytes(TreeForm form, const std::string &file, std::uint64_t size);

}  // namespace tool
