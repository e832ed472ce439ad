// The three external forms of an enumeration object: its 5-byte image, one line of text, and an
// element that holds one empty element named after the value. Called by the forwarders of the five
// enumerations and by the encodings of structures for enumeration fields. Promises, in order: an
// earlier failure stands; a writer touches nothing but the caller's buffer; a reader takes what it
// is sent, no variant rule applies on the way in.
#pragma once

#include <array>

#include "encodings/light_image.hpp"
#include "encodings/light_text.hpp"
#include "module/operation.hpp"
#include "types/enumeration.hpp"

namespace harbor::enumeration_encodings {

inline constexpr std::array operations{
    Operation{
        .suffix = "len",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id",
        .rule = "enumeration_encodings::len",
        .brief = "Gives the bytes of an image: 5.",
    },
    Operation{
        .suffix = "len_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle",
        .rule = "enumeration_encodings::len_cr",
        .brief = "Gives the bytes of an image, or 0 when cr_err is set.",
    },
    Operation{
        .suffix = "marshal",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, void *buffer, const $T *object, "
                     "int32_t length, uint32_t *err",
        .rule = "light_encodings::marshal",
        .brief = "Writes the object's image into buffer, which has length bytes, and gives the "
                 "bytes written.",
        .errors = "KELP_ERR_NO_MEMORY for a length below 1; KELP_ERR_EPOCH when the object's "
                  "variant is above the domain's, with the image written at the domain's; those of "
                  "the runtime's writers",
        .ownership = "buffer and object stay the caller's",
    },
    Operation{
        .suffix = "unmarshal",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, const void *buffer, $T *object, "
                     "int32_t length, uint32_t reuse, uint32_t *err",
        .rule = "light_encodings::unmarshal",
        .brief = "Reads an image of at most length bytes into object and gives the bytes read. A "
                 "higher variant than $type has becomes its highest. reuse is handed on.",
        .errors = "KELP_ERR_NO_MEMORY for a length below 1; those of the runtime's readers",
        .ownership = "buffer and object stay the caller's",
    },
    Operation{
        .suffix = "print",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, char *buffer, uint32_t indent, "
                     "const char *label, const $T *object, int32_t size, uint32_t *err",
        .rule = "light_encodings::print",
        .brief = "Writes \"<label>@$type:<value's name>\" and a newline behind indent blanks into "
                 "buffer, at most size bytes, and gives the bytes written. A value without a name "
                 "gives \"Enum value out of range\" and no newline. The object may not be null.",
        .errors = "none of its own",
    },
    Operation{
        .suffix = "print_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, const $T *object, char *buffer, int32_t size",
        .rule = "light_encodings::print_cr",
        .brief = "As $type_print with indent 0 and the type's name as label. 0xFFFFFFFF when "
                 "cr_err is set afterwards.",
        .errors = "as $type_print, in cr_err",
    },
    Operation{
        .suffix = "to_xml",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, const char *tag, char *buffer, "
                     "const $T *object, int32_t size, uint32_t state_byte, uint32_t *err",
        .rule = "light_encodings::to_xml",
        .brief = "Writes the element tag with one empty element in it, named after the value, "
                 "into buffer, at most size bytes, and gives the bytes written. A value without a "
                 "name gives <$type value out of range/>. state_byte is not looked at. The object "
                 "may not be null.",
        .errors = "those of start_tag, xml_enum_print and end_tag",
    },
    Operation{
        .suffix = "toxml_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, const $T *object, char *buffer, uint32_t size",
        .rule = "light_encodings::toxml_cr",
        .brief = "As $type_to_xml with the type's name as tag. 0xFFFFFFFF when cr_err is set "
                 "afterwards.",
        .errors = "as $type_to_xml, in cr_err",
    },
    Operation{
        .suffix = "from_xml",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, const char *path, "
                     "kelp_xml_document *document, $T *object, uint32_t *err, char *message, "
                     "int32_t message_size",
        .rule = "light_encodings::from_xml",
        .brief = "Gives the object the first value, in the order of the names, whose empty element "
                 "stands in the element at path. Without one the object is left alone, which is no "
                 "failure. The store is not announced and no variant is looked at.",
        .errors = "those of xml_get_element_value but KELP_ERR_NOT_FOUND; message (message_size "
                  "bytes, or null) then says the path",
    },
};
inline constexpr Family family{"enumeration_encodings", operations};

// --- the rules --------------------------------------------------------------------------------

inline constexpr std::uint32_t image_length = 5;

struct EnumerationFacts {
  using Object = EnumerationObject;
  const model::Enumeration *type;
  kelp_type_record *record;
  std::span<const light_text::Element> members;
  light_text::Element out_of_range;
};

template <const model::Enumeration &E>
inline constexpr EnumerationFacts facts{
    &E,
    type_record<E>,
    light_text::member_elements<E>,
    light_text::element("<", E.name, " value out of range/>"),
};

std::uint32_t write_image(const EnumerationFacts &facts, kelp_handle *handle,
                          std::uint32_t space_id, std::uint8_t *buffer,
                          const EnumerationObject *object, std::int32_t length, std::uint32_t *err);
std::uint32_t read_image(const EnumerationFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                         const std::uint8_t *buffer, EnumerationObject *object, std::int32_t length,
                         std::uint32_t reuse, std::uint32_t *err);
std::uint32_t write_line(const EnumerationFacts &facts, kelp_handle *handle,
                         light_text::Writer writer, std::uint32_t indent, std::string_view label,
                         const EnumerationObject *object, std::uint32_t *err);
std::uint32_t write_element(const EnumerationFacts &facts, kelp_handle *handle,
                            light_text::Writer writer, std::string_view tag,
                            const EnumerationObject *object, std::uint32_t *err);
void read_element(const EnumerationFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                  light_text::Members &members, EnumerationObject *object, std::uint32_t *err);

template <const model::Enumeration &E>
std::uint32_t len(kelp_handle *, std::uint32_t) {
  return image_length;
}

template <const model::Enumeration &E>
std::uint32_t len_cr(kelp_handle *handle) {
  return handle->cr_err != 0 ? 0 : len<E>(handle, handle->cr_space_id);
}

}  // namespace harbor::enumeration_encodings
