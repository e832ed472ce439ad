#include "tables/record_encodings.hpp"

#include <kelp/text.h>
#include <kelp/wire.h>
#include <kelp/xml.h>

#include <cstring>

#include "module/failure.hpp"
#include "tables/record.hpp"

namespace harbor::record_encodings {

namespace {

constexpr std::uint32_t failed = 0xFFFFFFFF;
constexpr std::int32_t header_length = 27;
constexpr std::int32_t luid_bytes = static_cast<std::int32_t>(luid_length);
constexpr std::uint8_t header_marker = 188;
constexpr std::uint32_t object_indent = 2;

std::uint32_t carried(const kelp_handle *handle, std::uint32_t length) {
  return handle->cr_err != 0 ? failed : length;
}

const void *object_in(const void *record, std::uint32_t object) {
  return *object_slot(const_cast<void *>(record), object);
}

// Text and XML that run in a caller's buffer.
struct Output {
  kelp_handle *handle;
  std::uint32_t space_id;
  char *buffer;
  std::int32_t length;
  std::uint32_t *err;
  std::uint32_t written = 0;

  char *here() const { return buffer + written; }
  std::uint32_t space() const {
    return light_text::space_of(static_cast<std::uint32_t>(length)) - written;
  }
};

// Required: the room for an object's text is measured by the length of its image.
bool has_room(const TableFacts &facts, const Output &out, const ObjectEncodings &encodings,
              const void *object) {
  const std::uint32_t wanted = encodings.len(out.handle, out.space_id, object);
  if (static_cast<std::int32_t>(out.space()) >= static_cast<std::int32_t>(wanted)) return true;
  fail(out.handle, KELP_ERR_NO_ROOM, out.err, About(facts.name),
       "found %u bytes of buffer, expected %u", out.space(), wanted);
  return false;
}

}  // namespace

// Required: the blanks of the closing line go to the start of the buffer, and their count to the
// position, as in the text of a structure. The closing line is written after an error too.
std::uint32_t print(const TableFacts &facts, const RecordEncodings &encodings, kelp_handle *handle,
                    std::uint32_t space_id, char *buffer, const void *record, std::int32_t length,
                    std::uint32_t *err) {
  Output out{handle, space_id, buffer, length, err};
  out.written += kelp_print_space(handle, space_id, buffer, 0, out.space(), err);
  out.written +=
      kelp_snprintf(handle, space_id, out.here(), out.space(), err, "record@%s: {\n", facts.name);
  for (std::uint32_t at = 0; at < facts.object_count && *err == 0; ++at) {
    const void *object = object_in(record, at);
    if (!has_room(facts, out, encodings.objects[at], object)) break;
    out.written += encodings.objects[at].print(handle, space_id, out.here(), object_indent,
                                               facts.objects[at].name, object, out.space(), err);
  }
  out.written += kelp_print_space(handle, space_id, buffer, 0, out.space(), err);
  out.written += kelp_snprintf(handle, space_id, out.here(), out.space(), err, "}\n");
  return out.written;
}

std::uint32_t print_cr(const TableFacts &facts, const RecordEncodings &encodings,
                       kelp_handle *handle, const void *record, char *buffer, std::int32_t length) {
  if (handle->cr_err != 0) return failed;
  return carried(handle, print(facts, encodings, handle, handle->cr_space_id, buffer, record,
                               length, &handle->cr_err));
}

std::uint32_t to_xml(const TableFacts &facts, const RecordEncodings &encodings, kelp_handle *handle,
                     std::uint32_t space_id, char *buffer, const void *record, std::int32_t length,
                     std::uint32_t *err) {
  Output out{handle, space_id, buffer, length, err};
  out.written += start_tag(handle, space_id, buffer, facts.name, out.space(), 0, err);
  for (std::uint32_t at = 0; at < facts.object_count && *err == 0; ++at) {
    out.written +=
        encodings.objects[at].to_xml(handle, space_id, facts.objects[at].name, out.here(),
                                     object_in(record, at), out.space(), 0, err);
  }
  out.written += end_tag(handle, space_id, out.here(), facts.name, out.space(), err);
  return out.written;
}

std::uint32_t to_xml_cr(const TableFacts &facts, const RecordEncodings &encodings,
                        kelp_handle *handle, const void *record, char *buffer,
                        std::int32_t length) {
  return carried(handle, to_xml(facts, encodings, handle, handle->cr_space_id, buffer, record,
                                length, &handle->cr_err));
}

// Required: what was made before a failure is left as it is, and a key object that is missing from
// the document keeps the data object from being read, with both forgiven at the end.
void *from_xml(const TableFacts &facts, const RecordEncodings &encodings, kelp_handle *handle,
               std::uint32_t space_id, kelp_xml_document *document, std::uint32_t *err,
               char *message, std::int32_t message_size) {
  void *record = record::create(facts, handle, space_id, KELP_SRC_DEFAULT, err);
  if (record == nullptr) {
    fail(handle, KELP_ERR_NO_MEMORY, err, About(facts.name));
    return nullptr;
  }
  for (std::uint32_t at = 0; at < facts.object_count; ++at) {
    void *object = encodings.objects[at].create_internal(handle, space_id);
    if (object == nullptr) {
      fail(handle, KELP_ERR_NO_MEMORY, err, About(facts.name));
      return nullptr;
    }
    store(handle, space_id, object_slot(record, at), object);
    encodings.objects[at].from_xml(handle, space_id, encodings.objects[at].path, document, object,
                                   err, message, message_size);
    if (*err != 0 && *err != KELP_ERR_NOT_FOUND) return nullptr;
  }
  if (*err == KELP_ERR_NOT_FOUND) *err = 0;
  return record;
}

std::uint32_t marshal(const TableFacts &facts, const RecordEncodings &encodings,
                      kelp_handle *handle, std::uint32_t space_id, void *buffer, const void *record,
                      std::int32_t length, std::uint32_t *err) {
  if (*err != 0) {
    report(facts, TableForm::marshal_error_present, strerror(static_cast<int>(*err)));
    return 0;
  }
  kelp::quick::clear_last_error(handle);
  std::uint8_t *header = nullptr;
  std::int32_t total = 0;
  if (length < header_length) {
    fail(handle, KELP_ERR_NO_ROOM, err, About(facts.name),
         "found %d bytes of buffer, expected %d for the header", length, header_length);
  } else {
    header = bytes(buffer);
    std::memset(header, 0, header_length);
    total = header_length;
  }
  if (*err == 0) {
    if (length - total < luid_bytes) {
      fail(handle, KELP_ERR_NO_ROOM, err, About(facts.name),
           "found %d bytes of buffer, expected %d for header and identity", length,
           total + luid_bytes);
    } else {
      std::memcpy(bytes(buffer) + total, facts.luid, luid_length);
      total += luid_bytes;
    }
  }
  const std::uint8_t *first_image = bytes(buffer) + total;
  for (std::uint32_t at = 0; at < facts.object_count; ++at) {
    const void *object = object_in(record, at);
    if (object == nullptr) {
      report_about(facts, at, TableForm::marshal_field_empty);
      fail(handle, KELP_ERR_NOT_FOUND, err, About(facts.name),
           "found a record without its %s, expected one", facts.objects[at].name);
      return static_cast<std::uint32_t>(total);
    }
    total += static_cast<std::int32_t>(encodings.objects[at].marshal(
        handle, space_id, bytes(buffer) + total, object, length - total, err));
  }
  if (header != nullptr && *err == 0) {
    kelp_message_header_record frame{};
    frame.marker = header_marker;
    std::memset(frame.reserved, 0xFF, sizeof frame.reserved);
    frame.tracking = kelplib_type_header_get_state_tracking_flag(first_image);
    frame.handle_word = handle->peer_stamp;
    frame.length = static_cast<std::uint32_t>(total);
    _kelp_message_header_marshal(handle, space_id, header, &frame, header_length, err);
  }
  return static_cast<std::uint32_t>(total);
}

std::uint32_t marshal_cr(const TableFacts &facts, const RecordEncodings &encodings,
                         kelp_handle *handle, const void *record, void *buffer,
                         std::int32_t length) {
  return carried(handle, marshal(facts, encodings, handle, handle->cr_space_id, buffer, record,
                                 length, &handle->cr_err));
}

// Required: the offset starts at the LUID's length, so that the header's comes on top of it; what
// the LUID and the header say is not looked at.
std::uint32_t unmarshal(const TableFacts &facts, const RecordEncodings &encodings,
                        kelp_handle *handle, std::uint32_t space_id, void **record,
                        const void *buffer, std::int32_t length, std::uint32_t reuse,
                        std::uint32_t *err) {
  if (*err != 0) {
    report(facts, TableForm::unmarshal_error_present, facts.name, strerror(static_cast<int>(*err)));
    return 0;
  }
  kelp::quick::clear_last_error(handle);
  void *filled =
      reuse != 0 ? *record : record::create(facts, handle, space_id, KELP_SRC_DEFAULT, err);
  const std::uint32_t failure = reuse != 0 ? KELP_ERR_NOT_FOUND : KELP_ERR_NO_MEMORY;
  if (filled == nullptr) {
    fail(handle, failure, err, About(facts.name), "found no record to read into");
    return 0;
  }
  std::uint32_t offset = luid_length;
  if (*err == 0) {
    kelp_message_header_record header{};
    offset += _kelp_message_header_unmarshal(handle, space_id, buffer, &header, length, err);
  }
  for (std::uint32_t at = 0; at < facts.object_count; ++at) {
    void **slot = object_slot(filled, at);
    if (reuse == 0) {
      store(handle, space_id, slot, encodings.objects[at].create_internal(handle, space_id));
    }
    if (*slot == nullptr) {
      fail(handle, failure, err, About(facts.name), "found no %s to read into",
           facts.objects[at].name);
    }
    if (*err != 0) continue;
    offset +=
        encodings.objects[at].unmarshal(handle, space_id, bytes(buffer) + offset, *slot,
                                        length - static_cast<std::int32_t>(offset), reuse, err);
  }
  *record = filled;
  return offset;
}

std::uint32_t len(const TableFacts &facts, const RecordEncodings &encodings, kelp_handle *handle,
                  std::uint32_t space_id, const void *record) {
  std::uint32_t total = header_length + luid_length;
  for (std::uint32_t at = 0; at < facts.object_count; ++at) {
    total += encodings.objects[at].len(handle, space_id, object_in(record, at));
  }
  return total;
}

std::uint32_t len_cr(const TableFacts &facts, const RecordEncodings &encodings, kelp_handle *handle,
                     const void *record) {
  return handle->cr_err != 0 ? 0 : len(facts, encodings, handle, handle->cr_space_id, record);
}

std::uint32_t pkey_marshal(const TableFacts &facts, const RecordEncodings &encodings,
                           kelp_handle *handle, std::uint32_t space_id, void *buffer,
                           const void *record, std::int32_t length, std::uint32_t *err) {
  if (*err != 0) {
    report(facts, TableForm::pkey_marshal_error_present, strerror(static_cast<int>(*err)));
    return 0;
  }
  kelp::quick::clear_last_error(handle);
  const void *holder = object_in(record, 0);
  if (static_cast<std::int32_t>(encodings.key.len(handle, space_id, holder)) > length) {
    fail(handle, KELP_ERR_NO_ROOM, err, About(facts.name),
         "found %d bytes of buffer, expected the key's %u", length,
         encodings.key.len(handle, space_id, holder));
    return 0;
  }
  return encodings.key.marshal(handle, space_id, buffer, holder, length, err);
}

std::uint32_t pkey_unmarshal(const TableFacts &facts, const RecordEncodings &encodings,
                             kelp_handle *handle, std::uint32_t space_id, void **pkey,
                             const void *buffer, std::int32_t length, std::uint32_t *err) {
  if (*err != 0) {
    report(facts, TableForm::pkey_unmarshal_error_present, facts.name,
           strerror(static_cast<int>(*err)));
    return 0;
  }
  kelp::quick::clear_last_error(handle);
  if (pkey == nullptr) {
    fail(handle, KELP_ERR_BAD_ADDRESS, err, About(facts.name),
         "found a null place for the key object, expected one");
    return 0;
  }
  void *object = facts.objects[0].create(handle, space_id);
  if (object == nullptr) {
    fail(handle, KELP_ERR_NO_MEMORY, err, About(facts.name));
    return 0;
  }
  const std::uint32_t read = encodings.key.unmarshal(handle, space_id, buffer, object, length, err);
  *pkey = object;
  return read;
}

std::uint32_t pkey_len(const TableFacts &, const RecordEncodings &encodings, kelp_handle *handle,
                       std::uint32_t space_id, const void *record) {
  return encodings.key.len(handle, space_id, object_in(record, 0));
}

}  // namespace harbor::record_encodings
