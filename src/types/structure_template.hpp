// Objects as copies of the first one of their type, and their end without a walk over all facts.
// structure_life makes and ends an object this way where nobody could tell: no function of the
// runtime is replaced, nobody hears of writes or counters but a store, which needs to hear of a new
// block alone and of each page of counters, and the handle gives every type its highest variant and
// tracks no state. Whatever is out of the ordinary is left to the rules there.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "module/object.hpp"

namespace harbor {

struct StructureFacts;

namespace structure_template {

struct Template;

// Where a type's template is kept once there is one. It is never freed.
using Kept = std::atomic<const Template *>;

// A new object; false when it has to be made by the rules. *object is null without memory.
bool create(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
            void **object);

// Keeps an object that the rules have just made as the template of its type, when it can be. writes
// and counts: what had been announced through the handle before it was made.
struct Announced {
  std::uint64_t writes = 0;
  std::uint64_t counters = 0;

  static Announced through(const kelp_handle *handle);
};
void keep(const StructureFacts &facts, kelp_handle *handle, const void *object,
          const Announced &before);

// Ends an object; false, with nothing done, when it has to be ended by the rules.
bool destroy(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
             void *object);

// Marks an object and all that is embedded with it as embedded; false, with nothing done, when the
// rules have to.
bool mark_embedded(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                   void *object);

}  // namespace structure_template

}  // namespace harbor
