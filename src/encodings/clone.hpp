// Clone and copy: one object's content in another, by way of its image. Called by the forwarders of
// <type>_clone_internal, _clone, _clone_cr and _copy_cr of structures. Promises: the result owns
// everything that it holds, OIDs excepted, which are copied as bare values that nobody counted; the
// source keeps its variant, whatever the domain's; after a failure the destination is destroyed and
// the caller's pointer is null.
//
// The cheap way, when the source may be given up, is the transfer of types/transfer.hpp.
#pragma once

#include "encodings/image.hpp"
#include "module/failure.hpp"
#include "module/object.hpp"
#include "module/operation.hpp"
#include "types/structure_life.hpp"

namespace harbor::clone {

inline constexpr std::string_view cloning_errors =
    "KELP_ERR_NOT_FOUND for a null destination or work buffer, with nothing done; "
    "KELP_ERR_NO_MEMORY when no object can be made; what writing or reading the image sets, "
    "KELP_ERR_NO_ROOM for a work buffer that is too small";
inline constexpr std::string_view cr_errors =
    "those of clone_internal, in cr_err; KELP_ERR_NO_MEMORY without memory for the handle's work "
    "space";

inline constexpr std::array operations{
    Operation{
        .suffix = "clone_internal",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, const $T *source, "
                     "$T **destination, void *work, uint32_t work_size, uint32_t *err",
        .rule = "clone::clone_internal",
        .brief = "Copies source into *destination, which is made first when it is null, through "
                 "the work_size bytes at work. Element blocks that *destination held are replaced "
                 "and not released; arms stay, and the selected ones take the content of source's.",
        .errors = cloning_errors,
        .ownership = "*destination is the caller's; when reading the image fails it is destroyed, "
                     "a given one too, and becomes null",
    },
    Operation{
        .suffix = "clone",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, const $T *source, "
                     "$T **destination, void *work, uint32_t work_size, uint32_t *err",
        .rule = "clone::clone",
        .brief = "Makes a new object with the content of source in *destination, whatever that "
                 "pointed at, through the work_size bytes at work.",
        .errors = cloning_errors,
        .ownership = "*destination is the caller's; null after a failure",
    },
    Operation{
        .suffix = "clone_cr",
        .result = "$T *",
        .arguments = "kelp_handle *handle, const $T *source",
        .rule = "clone::clone_cr",
        .brief = "Gives a new object with the content of source, made through the handle's work "
                 "space.",
        .errors = cr_errors,
        .ownership = "the result is the caller's; null after a failure",
    },
    Operation{
        .suffix = "copy_cr",
        .result = "void",
        .arguments = "kelp_handle *handle, const $T *source, $T *destination",
        .rule = "clone::copy_cr",
        .brief = "Overwrites destination with the content of source in place, through the handle's "
                 "work space. Element blocks that destination held are replaced and not released; "
                 "arms stay, and the selected ones take the content of source's.",
        .errors = cr_errors,
        .ownership = "both stay the caller's; when reading the image fails destination is "
                     "destroyed",
    },
};
inline constexpr Family family{"clone", operations};

// --- what the steps know of a type --------------------------------------------------------------

struct CloneFacts {
  const StructureFacts &structure;
  std::uint32_t (*write)(kelp_handle *handle, std::uint32_t space_id, void *buffer,
                         const void *object, std::int32_t length, std::uint32_t strict,
                         std::uint32_t *err);
  std::uint32_t (*read)(kelp_handle *handle, std::uint32_t space_id, const void *buffer,
                        void *object, std::int32_t length, std::uint32_t reuse, std::uint32_t *err);
};

template <const Structure &T>
inline constexpr CloneFacts facts{
    .structure = structure_facts<T>,
    .write = image::write<T>,
    .read = image::unmarshal<T>,
};

// Writes the source's image to the work buffer and reads it into the object that the destination
// points at, or into a new one. A null destination is refused.
void through_image(const CloneFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                   const void *source, void **destination, void *work, std::uint32_t work_size,
                   std::uint32_t *err);

// The same with the handle's work space, its cr_space_id and its cr_err; gives what the destination
// then is.
void *through_work_space(const CloneFacts &facts, kelp_handle *handle, const void *source,
                         void *destination);

// --- the rules ----------------------------------------------------------------------------------

template <const Structure &T, typename Object>
void clone_internal(kelp_handle *handle, std::uint32_t space_id, const void *source,
                    Object **destination, void *work, std::uint32_t work_size, std::uint32_t *err) {
  void *object = destination == nullptr ? nullptr : *destination;
  through_image(facts<T>, handle, space_id, source, destination == nullptr ? nullptr : &object,
                work, work_size, err);
  if (destination != nullptr) *destination = static_cast<Object *>(object);
}

template <const Structure &T, typename Object>
void clone(kelp_handle *handle, std::uint32_t space_id, const void *source, Object **destination,
           void *work, std::uint32_t work_size, std::uint32_t *err) {
  if (destination != nullptr) *destination = nullptr;
  clone_internal<T>(handle, space_id, source, destination, work, work_size, err);
}

template <const Structure &T>
void *clone_cr(kelp_handle *handle, const void *source) {
  return through_work_space(facts<T>, handle, source, nullptr);
}

template <const Structure &T>
void copy_cr(kelp_handle *handle, const void *source, void *destination) {
  through_work_space(facts<T>, handle, source, destination);
}

}  // namespace harbor::clone
