// The three external forms of a flag object: its 6-byte image, one line of text with the names of
// the set flags, and an element that holds one empty element for each set flag. Called by the
// forwarders of the four flag sets and by the encodings of structures for flag fields. Promises, in
// order: an earlier failure stands; a writer touches nothing but the caller's buffer; a reader of
// images takes the byte as it is sent; a reader of XML only adds flags.
//
// The jump word of an image lets a later variant append bytes that this one passes over.
#pragma once

#include <array>

#include "encodings/light_image.hpp"
#include "encodings/light_text.hpp"
#include "module/operation.hpp"
#include "types/flag_set.hpp"

namespace harbor::flag_set_encodings {

inline constexpr std::array operations{
    Operation{
        .suffix = "len",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, const $T *object",
        .rule = "flag_set_encodings::len",
        .brief = "Gives the bytes of an image: 6. The object may be null.",
    },
    Operation{
        .suffix = "len_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, const $T *object",
        .rule = "flag_set_encodings::len_cr",
        .brief = "Gives the bytes of an image, or 0 when cr_err is set.",
    },
    Operation{
        .suffix = "marshal",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, void *buffer, const $T *object, "
                     "int32_t length, uint32_t *err",
        .rule = "light_encodings::marshal",
        .brief = "Writes the object's image into buffer, which has length bytes, and gives the "
                 "bytes written. The jump word is written again whatever went before: buffer must "
                 "really have 5 bytes, also where length is less.",
        .errors =
            "KELP_ERR_NO_MEMORY for a length below 1; KELP_ERR_EPOCH when the object's variant is "
            "above the domain's, with the jump word written and the flags left out; "
            "KELP_ERR_NO_ROOM when there is no room for the flags; those of the runtime's writers",
        .ownership = "buffer and object stay the caller's",
    },
    Operation{
        .suffix = "unmarshal",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, const void *buffer, $T *object, "
                     "int32_t length, uint32_t reuse, uint32_t *err",
        .rule = "light_encodings::unmarshal",
        .brief = "Reads an image into object and gives the bytes read, those of a later variant "
                 "included. The byte of flags is read without a test of length, right behind the "
                 "jump word, or where that failed in its place: buffer must really have it. reuse "
                 "is not looked at.",
        .errors = "KELP_ERR_NO_MEMORY for a length below 1; those of the runtime's readers",
        .ownership = "buffer and object stay the caller's",
    },
    Operation{
        .suffix = "print",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, char *buffer, uint32_t indent, "
                     "const char *label, const $T *object, int32_t size, uint32_t *err",
        .rule = "light_encodings::print",
        .brief = "Writes \"<label>@$type:\", the name of each set flag with a blank behind it, and "
                 "a newline, behind indent blanks into buffer, at most size bytes, and gives the "
                 "bytes written. A null object gives \"ERR \" for each flag.",
        .errors = "none of its own; a null object leaves KELP_ERR_EPOCH as the last error",
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
        .brief = "Writes the element tag with one empty element for each set flag in it into "
                 "buffer, at most size bytes, and gives the bytes written. A null object gives "
                 "<error>ERR</error> for each flag. state_byte is not looked at.",
        .errors = "those of start_tag, xml_enum_print and end_tag; a null object leaves "
                  "KELP_ERR_EPOCH as the last error",
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
        .brief = "Sets each flag whose empty element stands in the element at path; flags that "
                 "are not there stay as they were. A null object is passed over.",
        .errors = "those of xml_get_element_value but KELP_ERR_NOT_FOUND, with the flags found "
                  "before set; message (message_size bytes, or null) then says the path",
    },
};
inline constexpr Family family{"flag_set_encodings", operations};

// --- the rules --------------------------------------------------------------------------------

inline constexpr std::uint32_t image_length = 6;

struct FlagSetFacts {
  using Object = FlagObject;
  const model::FlagSet *type;
  kelp_type_record *record;
  std::span<const light_text::Element> members;
  std::uint32_t offset_jump;
};

template <const model::FlagSet &S>
inline constexpr FlagSetFacts facts{
    &S,
    type_record<S>,
    light_text::member_elements<S>,
    messages::of_offset_jump(S),
};

// What stands for a bit in the text form.
// Required: the rule for a bit beyond the named ones stays, though no caller's bit gets there.
constexpr std::string_view word_of(const model::FlagSet &type, std::uint32_t bit) {
  return bit < type.members.size() ? type.members[bit].name : "UNKNOWN";
}

// What stands for a bit in the XML form; the same holds.
inline constexpr light_text::Element unknown_element =
    light_text::element("<error>", "UNKNOWN", "</error>");
constexpr const light_text::Element &element_of(std::span<const light_text::Element> members,
                                                std::uint32_t bit) {
  return bit < members.size() ? members[bit] : unknown_element;
}

std::uint32_t write_image(const FlagSetFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                          std::uint8_t *buffer, const FlagObject *object, std::int32_t length,
                          std::uint32_t *err);
std::uint32_t read_image(const FlagSetFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                         const std::uint8_t *buffer, FlagObject *object, std::int32_t length,
                         std::uint32_t reuse, std::uint32_t *err);
std::uint32_t write_line(const FlagSetFacts &facts, kelp_handle *handle, light_text::Writer writer,
                         std::uint32_t indent, std::string_view label, const FlagObject *object,
                         std::uint32_t *err);
std::uint32_t write_element(const FlagSetFacts &facts, kelp_handle *handle,
                            light_text::Writer writer, std::string_view tag,
                            const FlagObject *object, std::uint32_t *err);
void read_element(const FlagSetFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                  light_text::Members &members, FlagObject *object, std::uint32_t *err);

// The object's variant is asked for and not used: the length is the same for all.
template <const model::FlagSet &S>
std::uint32_t len(kelp_handle *, std::uint32_t, const void *object) {
  kelp_get_instance_variant(object, 0, 1);
  return image_length;
}

template <const model::FlagSet &S>
std::uint32_t len_cr(kelp_handle *handle, const void *object) {
  return handle->cr_err != 0 ? 0 : len<S>(handle, handle->cr_space_id, object);
}

}  // namespace harbor::flag_set_encodings
