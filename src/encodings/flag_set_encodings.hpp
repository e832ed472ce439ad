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
        .rule = "flag_set_encodings::marshal",
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
        .rule = "flag_set_encodings::unmarshal",
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
        .rule = "flag_set_encodings::print",
        .brief = "Writes \"<label>@$type:\", the name of each set flag with a blank behind it, and "
                 "a newline, behind indent blanks into buffer, at most size bytes, and gives the "
                 "bytes written. A null object gives \"ERR \" for each flag.",
        .errors = "none of its own; a null object leaves KELP_ERR_EPOCH as the last error",
    },
    Operation{
        .suffix = "print_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, const $T *object, char *buffer, int32_t size",
        .rule = "flag_set_encodings::print_cr",
        .brief = "As $type_print with indent 0 and the type's name as label. 0xFFFFFFFF when "
                 "cr_err is set afterwards.",
        .errors = "as $type_print, in cr_err",
    },
    Operation{
        .suffix = "to_xml",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, const char *tag, char *buffer, "
                     "const $T *object, int32_t size, uint32_t state_byte, uint32_t *err",
        .rule = "flag_set_encodings::to_xml",
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
        .rule = "flag_set_encodings::toxml_cr",
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
        .rule = "flag_set_encodings::from_xml",
        .brief = "Sets each flag whose empty element stands in the element at path; flags that "
                 "are not there stay as they were. A null object is passed over.",
        .errors = "those of xml_get_element_value but KELP_ERR_NOT_FOUND, with the flags found "
                  "before set; message (message_size bytes, or null) then says the path",
    },
};
inline constexpr Family family{"flag_set_encodings", operations};

// --- the rules --------------------------------------------------------------------------------

inline constexpr std::uint32_t image_length = 6;

struct Facts {
  const model::FlagSet *type;
  kelp_type_record *record;
  std::span<const light_text::Element> members;
  std::uint32_t offset_jump;
};

template <const model::FlagSet &S>
inline constexpr Facts facts{
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

std::uint32_t write_image(kelp_handle *handle, std::uint32_t space_id, std::uint8_t *buffer,
                          const FlagObject *object, std::int32_t length, std::uint32_t *err,
                          const Facts &facts);
std::uint32_t read_image(kelp_handle *handle, std::uint32_t space_id, const std::uint8_t *buffer,
                         FlagObject *object, std::int32_t length, std::uint32_t *err,
                         const Facts &facts);
std::uint32_t write_line(kelp_handle *handle, light_text::Writer writer, std::uint32_t indent,
                         const char *label, const FlagObject *object, std::uint32_t *err,
                         const Facts &facts);
std::uint32_t write_element(kelp_handle *handle, light_text::Writer writer, const char *tag,
                            const FlagObject *object, std::uint32_t *err, const Facts &facts);
void read_element(kelp_handle *handle, std::uint32_t space_id, const char *path,
                  kelp_xml_document *document, FlagObject *object, std::uint32_t *err,
                  char *message, std::int32_t message_size, const Facts &facts);

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

template <const model::FlagSet &S>
std::uint32_t marshal(kelp_handle *handle, std::uint32_t space_id, void *buffer, const void *object,
                      std::int32_t length, std::uint32_t *err) {
  return write_image(handle, space_id, bytes(buffer), static_cast<const FlagObject *>(object),
                     length, err, facts<S>);
}

template <const model::FlagSet &S>
std::uint32_t unmarshal(kelp_handle *handle, std::uint32_t space_id, const void *buffer,
                        void *object, std::int32_t length, std::uint32_t, std::uint32_t *err) {
  return read_image(handle, space_id, bytes(buffer), static_cast<FlagObject *>(object), length, err,
                    facts<S>);
}

template <const model::FlagSet &S>
std::uint32_t print(kelp_handle *handle, std::uint32_t space_id, char *buffer, std::uint32_t indent,
                    const char *label, const void *object, std::int32_t size, std::uint32_t *err) {
  return write_line(handle, {handle, space_id, buffer, size, err}, indent, label,
                    static_cast<const FlagObject *>(object), err, facts<S>);
}

template <const model::FlagSet &S>
std::uint32_t print_cr(kelp_handle *handle, const void *object, char *buffer, std::int32_t size) {
  const std::uint32_t length = print<S>(handle, handle->cr_space_id, buffer, 0, S.name.data(),
                                        object, size, &handle->cr_err);
  return light_text::carried_result(handle, length);
}

// The body behind the exported name, for fields of structures.
template <const model::FlagSet &S>
std::uint32_t to_xml(kelp_handle *handle, std::uint32_t space_id, const char *tag, char *buffer,
                     const void *object, std::int32_t size, std::uint32_t *err) {
  return write_element(handle, {handle, space_id, buffer, size, err}, tag,
                       static_cast<const FlagObject *>(object), err, facts<S>);
}

// Required: the state byte is dropped.
template <const model::FlagSet &S>
std::uint32_t to_xml(kelp_handle *handle, std::uint32_t space_id, const char *tag, char *buffer,
                     const void *object, std::int32_t size, std::uint32_t, std::uint32_t *err) {
  return to_xml<S>(handle, space_id, tag, buffer, object, size, err);
}

template <const model::FlagSet &S>
std::uint32_t toxml_cr(kelp_handle *handle, const void *object, char *buffer, std::uint32_t size) {
  const std::uint32_t length = to_xml<S>(handle, handle->cr_space_id, S.name.data(), buffer, object,
                                         static_cast<std::int32_t>(size), &handle->cr_err);
  return light_text::carried_result(handle, length);
}

template <const model::FlagSet &S>
void from_xml(kelp_handle *handle, std::uint32_t space_id, const char *path,
              kelp_xml_document *document, void *object, std::uint32_t *err, char *message,
              std::int32_t message_size) {
  read_element(handle, space_id, path, document, static_cast<FlagObject *>(object), err, message,
               message_size, facts<S>);
}

}  // namespace harbor::flag_set_encodings
