// How a kelp_vstring holds its text and gets another one. Every store into text and length, which
// lie side by side and change together, goes through here.
#pragma once

#include <string_view>

#include "base/announce.hpp"
#include "kelp/primitives.h"

namespace kelp {

// The bytes of the text; none for null.
inline std::string_view text_of(const kelp_vstring *vstring) {
  return quick::TextRule::bytes_of(vstring);
}

// Announces and stores both members; owns and frees nothing.
void store_text(Writer writer, kelp_vstring *vstring, char *text, uint32_t length);

// Gives vstring a copy of text and gives back its old one, last, so that text may lie in it. Fails
// with 7 or 12, vstring unchanged.
void replace_text(Writer writer, kelp_vstring *vstring, std::string_view text, uint32_t *err);

}  // namespace kelp
