// What the LSA decoders of both versions share: the frame of a decoding, and whether a body was
// read to its end and no further; what it is otherwise is reported.
#pragma once

#include "ospf_decode/checksum.hpp"
#include "ospf_decode/cursor.hpp"
#include "ospf_decode/errors.hpp"
#include "ospf_decode/lsa_header.hpp"

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

// Body functions are those of the version. A body whose checksum is wrong is not looked at.
template <typename Lsa>
void decode_lsa(Bytes raw, Lsa &out, const Report &report, LsaHeader (*read_header)(Cursor &),
                bool (*decode_body)(Cursor, Lsa &, const Report &)) {
  Cursor cursor(raw);
  out.header = read_header(cursor);
  out.raw = raw;
  out.complete = false;
  out.checksum_ok = lsa_checksum_ok(raw);
  if (!out.checksum_ok) {
    report(ErrorKind::bad_lsa_checksum);
    return;
  }
  out.complete = decode_body(cursor, out, report);
}

}  // namespace ospf_decode
