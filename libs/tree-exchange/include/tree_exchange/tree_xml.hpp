// A whole tree as one XML document (docs/wire-format.md): each row is the library's own XML of its
// record, with the tables that it refers to behind it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "ospf_tables/session.hpp"

namespace tree_exchange {

using TextSink = std::function<void(std::string_view)>;

// Gives the number of rows. Throws LibraryFailure, and what the sink throws.
std::uint64_t write_tree_xml(ospf_tables::Session &session, const TextSink &sink);

// Reads a document and gives its tree to the session's; the number of rows. Throws InputError, with
// the session's tree as it was, for one that is not sound. source: the file, for messages.
std::uint64_t read_tree_xml(ospf_tables::Session &session, const std::string &source,
                            std::string_view text);

}  // namespace tree_exchange
