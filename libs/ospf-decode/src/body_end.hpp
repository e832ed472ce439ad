// Whether an LSA's body was read to its end and no further; what it is otherwise is reported.
// Shared by the LSA decoders of both versions.
#pragma once

#include "ospf_decode/cursor.hpp"
#include "ospf_decode/errors.hpp"

namespace ospf_decode {

inline bool ends_here(const Cursor &cursor, const Report &report) {
  if (!cursor.ok()) {
    report(ErrorKind::lsa_body_short);
    return false;
  }
  if (!cursor.at_end()) {
    report(ErrorKind::lsa_body_long);
    return false;
  }
  return true;
}

}  // namespace ospf_decode
