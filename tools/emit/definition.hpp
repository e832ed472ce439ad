// The definition of a type or table in one canonical text. The MD5s that identify a type are taken
// from it where the schema states none, so that they change when the definition does.
#pragma once

#include "composition.hpp"

namespace emit {

// Types that a definition names stand in it with the MD5 of their own; a table that a field refers
// to stands by name, since tables refer to one another in circles.
std::string definition(const Enumeration &type);
std::string definition(const FlagSet &type);
std::string definition(const Structure &type);
std::string definition(const Table &table);

// 32 lower-case hexadecimal digits.
std::string md5(const std::string &text);

// The second MD5 of a manifest line; head is a word that keeps records of one definition apart.
std::string manifest_md5(const std::string &head, const std::string &definition);

}  // namespace emit
