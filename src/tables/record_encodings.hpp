// The external forms of a record: text, XML and the marshalled image, and the image of its key
// alone. The record adds a frame; its objects, the key object first in a composite-key table, do
// the rest. Called by the forwarders and by the runtime through the vft.
//
// The image of a record:
//
//   offset size   content
//        0   27   message header, filled in last because its length is known last
//       27   16   the table's LUID
//       43    -   the image of each object, back to back
#pragma once

#include <array>

#include "module/operation.hpp"
#include "tables/object_encodings.hpp"

namespace harbor::record_encodings {

inline constexpr std::string_view print_errors =
    "KELP_ERR_NO_ROOM when less room is left than the object's image takes. A text is longer than "
    "that, and is cut without a failure: a result equal to length says that some may be missing, "
    "and the call is repeated with more room";

inline constexpr std::array operations{
    Operation{
        .suffix = "table_record_print",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, char *buffer, const $table_record "
                     "*record, int32_t length, uint32_t *err",
        .rule = "record_encodings::print($bindings, $encodings, handle, space_id, buffer, record, "
                "length, err)",
        .brief = "Writes the record's text form into buffer, at most length bytes and none for a "
                 "negative length, and gives the bytes written. The closing brace stands behind a "
                 "gap that keeps what the buffer "
                 "held: fill it with blanks first.",
        .errors = print_errors,
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_RECORD_PRINT,
    },
    Operation{
        .suffix = "record_print_cr",
        .result = "uint32_t",
        .arguments =
            "kelp_handle *handle, const $table_record *record, char *buffer, int32_t length",
        .rule = "record_encodings::print_cr($bindings, $encodings, handle, record, buffer, length)",
        .brief = "As $table_table_record_print with the handle's cr_space_id and cr_err; "
                 "0xFFFFFFFF when cr_err is set before or afterwards.",
        .errors = print_errors,
    },
    Operation{
        .suffix = "table_record_to_xml",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, char *buffer, const $table_record "
                     "*record, int32_t length, uint32_t *err",
        .rule = "record_encodings::to_xml($bindings, $encodings, handle, space_id, buffer, record, "
                "length, err)",
        .brief = "Writes the record as an element named $table into buffer, at most length bytes "
                 "and none for a negative length, and gives the bytes written.",
        .errors = "those of the runtime's writers",
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_RECORD_TO_XML,
    },
    Operation{
        .suffix = "record_toxml_cr",
        .result = "uint32_t",
        .arguments =
            "kelp_handle *handle, const $table_record *record, char *buffer, int32_t length",
        .rule =
            "record_encodings::to_xml_cr($bindings, $encodings, handle, record, buffer, length)",
        .brief = "As $table_table_record_to_xml with the handle's cr_space_id and cr_err; "
                 "0xFFFFFFFF when cr_err is set afterwards.",
        .errors = "those of the runtime's writers, in cr_err",
    },
    Operation{
        .suffix = "table_record_from_xml",
        .result = "$table_record *",
        .arguments = "kelp_handle *handle, uint32_t space_id, kelp_xml_document *document, "
                     "uint32_t *err, char *message, int32_t message_size",
        .rule =
            "record_encodings::from_xml($bindings, $encodings, handle, space_id, document, err, "
            "message, message_size)",
        .brief = "Makes a record from the elements of a document that are named after its "
                 "objects. It is not inserted. A missing element leaves its object empty. The "
                 "error word is not looked at.",
        .errors = "KELP_ERR_NO_MEMORY without memory; what reading an element gives, with message "
                  "told what was found and expected; null then, and what was made is left behind",
        .ownership = "the record is the caller's",
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_RECORD_FROM_XML,
    },
    Operation{
        .suffix = "table_record_marshal",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, void *buffer, const $table_record "
                     "*record, int32_t length, uint32_t *err",
        .rule =
            "record_encodings::marshal($bindings, $encodings, handle, space_id, buffer, record, "
            "length, err)",
        .brief = "Writes the record's image into buffer, which has length bytes, and gives the "
                 "bytes written. $table_table_record_len gives a length that suffices, but for "
                 "what is said there.",
        .errors = "KELP_ERR_NO_ROOM when buffer is too small; KELP_ERR_NOT_FOUND when the record "
                  "lacks an object; those of the objects' images",
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_RECORD_MARSHAL,
    },
    Operation{
        .suffix = "record_marshal_cr",
        .result = "uint32_t",
        .arguments =
            "kelp_handle *handle, const $table_record *record, void *buffer, int32_t length",
        .rule =
            "record_encodings::marshal_cr($bindings, $encodings, handle, record, buffer, length)",
        .brief = "As $table_table_record_marshal with the handle's cr_space_id and cr_err; "
                 "0xFFFFFFFF when cr_err is set afterwards.",
        .errors = "as $table_table_record_marshal, in cr_err",
    },
    Operation{
        .suffix = "table_record_unmarshal",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, $table_record **record, const void "
                     "*buffer, int32_t length, uint32_t reuse, uint32_t *err",
        .rule = "record_encodings::unmarshal($bindings, $encodings, handle, space_id, "
                "reinterpret_cast<void **>(record), buffer, length, reuse, err)",
        .brief = "Reads an image of at most length bytes into *record, or with reuse 0 into a new "
                 "record that *record then holds, also after a failure. Gives the bytes read. "
                 "Neither the LUID nor the header is checked: check what comes from outside first.",
        .errors = "KELP_ERR_NOT_FOUND without a record or an object to fill, KELP_ERR_NO_MEMORY "
                  "without memory; those of the objects' images",
        .ownership = "a new record is the caller's",
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_RECORD_UNMARSHAL,
    },
    Operation{
        .suffix = "table_record_len",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, const $table_record *record",
        .rule = "record_encodings::len($bindings, $encodings, handle, space_id, record)",
        .brief = "Gives a length that the record's image does not exceed, unless the handle tracks "
                 "state and an object does not, which takes a byte more for each array element, or "
                 "an object carries attached data, which takes 9 bytes more.",
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_RECORD_LEN,
    },
    Operation{
        .suffix = "record_len_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, const $table_record *record",
        .rule = "record_encodings::len_cr($bindings, $encodings, handle, record)",
        .brief = "As $table_table_record_len with the handle's cr_space_id; 0 when cr_err is set.",
    },
    Operation{
        .suffix = "table_pkey_marshal",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, void *buffer, const $table_record "
                     "*record, int32_t length, uint32_t *err",
        .rule = "record_encodings::pkey_marshal($bindings, $encodings, handle, space_id, buffer, "
                "record, length, err)",
        .brief = "Writes the image of the record's key alone, without header and LUID, and gives "
                 "the bytes written. The record must hold the object with the key.",
        .errors =
            "KELP_ERR_NO_ROOM when the key does not fit in length bytes; those of the key's image",
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_PKEY_MARSHAL,
    },
    Operation{
        .suffix = "table_pkey_unmarshal",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, $K **pkey, const void *buffer, "
                     "int32_t length, uint32_t *err",
        .rule = "record_encodings::pkey_unmarshal($bindings, $encodings, handle, space_id, "
                "reinterpret_cast<void **>(pkey), buffer, length, err)",
        .brief = "Reads a key's image of at most length bytes into a new pkey object, which *pkey "
                 "then holds, and gives the bytes read.",
        .errors = "KELP_ERR_BAD_ADDRESS for a null pkey, KELP_ERR_NO_MEMORY without memory; those "
                  "of the key's image",
        .ownership = "the pkey object is the caller's, who gives it back with $table_pkey_destroy",
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_PKEY_UNMARSHAL,
    },
    Operation{
        .suffix = "table_pkey_len",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, const $table_record *record",
        .rule = "record_encodings::pkey_len($bindings, $encodings, handle, space_id, record)",
        .brief = "Gives the length of the key's image. The record must hold the object with the "
                 "key.",
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_PKEY_LEN,
    },
};

inline constexpr TableFamily family{"record_encodings", TableScope::table, operations};

// --- the rules --------------------------------------------------------------------------------

std::uint32_t print(const TableFacts &facts, const RecordEncodings &encodings, kelp_handle *handle,
                    std::uint32_t space_id, char *buffer, const void *record, std::int32_t length,
                    std::uint32_t *err);
std::uint32_t print_cr(const TableFacts &facts, const RecordEncodings &encodings,
                       kelp_handle *handle, const void *record, char *buffer, std::int32_t length);
std::uint32_t to_xml(const TableFacts &facts, const RecordEncodings &encodings, kelp_handle *handle,
                     std::uint32_t space_id, char *buffer, const void *record, std::int32_t length,
                     std::uint32_t *err);
std::uint32_t to_xml_cr(const TableFacts &facts, const RecordEncodings &encodings,
                        kelp_handle *handle, const void *record, char *buffer, std::int32_t length);
void *from_xml(const TableFacts &facts, const RecordEncodings &encodings, kelp_handle *handle,
               std::uint32_t space_id, kelp_xml_document *document, std::uint32_t *err,
               char *message, std::int32_t message_size);
std::uint32_t marshal(const TableFacts &facts, const RecordEncodings &encodings,
                      kelp_handle *handle, std::uint32_t space_id, void *buffer, const void *record,
                      std::int32_t length, std::uint32_t *err);
std::uint32_t marshal_cr(const TableFacts &facts, const RecordEncodings &encodings,
                         kelp_handle *handle, const void *record, void *buffer,
                         std::int32_t length);
std::uint32_t unmarshal(const TableFacts &facts, const RecordEncodings &encodings,
                        kelp_handle *handle, std::uint32_t space_id, void **record,
                        const void *buffer, std::int32_t length, std::uint32_t reuse,
                        std::uint32_t *err);
std::uint32_t len(const TableFacts &facts, const RecordEncodings &encodings, kelp_handle *handle,
                  std::uint32_t space_id, const void *record);
std::uint32_t len_cr(const TableFacts &facts, const RecordEncodings &encodings, kelp_handle *handle,
                     const void *record);
std::uint32_t pkey_marshal(const TableFacts &facts, const RecordEncodings &encodings,
                           kelp_handle *handle, std::uint32_t space_id, void *buffer,
                           const void *record, std::int32_t length, std::uint32_t *err);
std::uint32_t pkey_unmarshal(const TableFacts &facts, const RecordEncodings &encodings,
                             kelp_handle *handle, std::uint32_t space_id, void **pkey,
                             const void *buffer, std::int32_t length, std::uint32_t *err);
std::uint32_t pkey_len(const TableFacts &facts, const RecordEncodings &encodings,
                       kelp_handle *handle, std::uint32_t space_id, const void *record);

}  // namespace harbor::record_encodings
