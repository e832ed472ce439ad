// Moving the content of one structure into another, and keeping nested state bytes findable when
// their owner's area moves. Called by the forwarders of <type>_set, _post_copyout_cleanup,
// _offset_update and _offset_remove, and by the setters of embedded structures. The bytes are
// copied, header included; what the source owned is the destination's afterwards, and the source
// stays valid with empty texts, arrays and arms. Nothing is allocated or freed, and no reference
// count moves: afterwards both carry the OIDs and one reference is counted.
//
// The rules stand in transfer.cpp, once for all types; the templates bind a type's facts.
#pragma once

#include "module/operation.hpp"
#include "types/structure_facts.hpp"

namespace harbor::transfer {

inline constexpr std::array operations{
    Operation{
        .suffix = "set",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *destination, $T *source, "
                     "uint32_t *err",
        .rule = "transfer::set",
        .brief = "Moves the content of source to destination, the header with it, but for the two "
                 "flags that say whether destination has state bytes and where: they stay its "
                 "own, and those of its children theirs. State bytes come along when the handle "
                 "tracks state and both objects have them; those of array elements that "
                 "destination held go in any case. A non-zero error word on entry stops nothing.",
        .errors = "KELP_ERR_INVALID when the handle tracks state and source does not, with the "
                  "bytes copied and both objects holding the same texts, arrays and arms",
        .ownership = "source stays the caller's, but gives up what it owned; what destination "
                     "owned before is forgotten and not freed",
    },
    Operation{
        .suffix = "post_copyout_cleanup",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *destination, $T *source, "
                     "uint32_t *err",
        .rule = "transfer::post_copyout_cleanup",
        .brief = "Ends a transfer after the bytes of source were copied to destination: source "
                 "gives up its arrays and arms, and its children are moved each by its own set.",
        .errors = "those of the children's set",
        .ownership = "what both held after the copy is destination's alone",
    },
    Operation{
        .suffix = "offset_update",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, void *sttr_base",
        .rule = "transfer::offset_update",
        .brief = "Tells the runtime where the state bytes of the embedded structures lie, at any "
                 "depth, when the object's own begin at sttr_base. Does nothing for a $type "
                 "without embedded structures.",
    },
    Operation{
        .suffix = "offset_remove",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t *err",
        .rule = "transfer::offset_remove",
        .brief = "Makes the runtime forget where the state bytes of the embedded structures lie, "
                 "at any depth. Does nothing for a $type without embedded structures.",
        .errors = "those of kelp_hd_mapping_destroy",
    },
};
inline constexpr Family family{"transfer", operations};

// --- the rules ----------------------------------------------------------------------------------

void set(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
         void *destination, void *source, std::uint32_t *err);
void post_copyout_cleanup(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                          void *destination, void *source, std::uint32_t *err);
void offset_update(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                   void *object, void *sttr_base);
void offset_remove(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                   void *object, std::uint32_t *err);

// --- bound to a type ----------------------------------------------------------------------------

template <const Structure &T>
void set(kelp_handle *handle, std::uint32_t space_id, void *destination, void *source,
         std::uint32_t *err) {
  set(structure_facts<T>, handle, space_id, destination, source, err);
}

template <const Structure &T>
void post_copyout_cleanup(kelp_handle *handle, std::uint32_t space_id, void *destination,
                          void *source, std::uint32_t *err) {
  post_copyout_cleanup(structure_facts<T>, handle, space_id, destination, source, err);
}

template <const Structure &T>
void offset_update(kelp_handle *handle, std::uint32_t space_id, void *object, void *sttr_base) {
  offset_update(structure_facts<T>, handle, space_id, object, sttr_base);
}

template <const Structure &T>
void offset_remove(kelp_handle *handle, std::uint32_t space_id, void *object, std::uint32_t *err) {
  offset_remove(structure_facts<T>, handle, space_id, object, err);
}

}  // namespace harbor::transfer
