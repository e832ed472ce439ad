#include "types/structure_template.hpp"

#include <kelp/oid.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include "types/structure_facts.hpp"
#include "types/structure_life.hpp"

namespace harbor::structure_template {

// A type whose record decides what an object looks like, and how many objects of it are counted
// with one.
struct Type {
  const kelp_type_record *record;
  std::int8_t variants;
  std::uint32_t count;

  kelp_variant_entry &entry() const { return record->varinfo->entries[variants - 1]; }
  bool is_as_it_was() const {
    return record->magic == KELP_TYPE_MAGIC && record->varinfo != nullptr &&
           record->varinfo->n_variants == variants;
  }
};

// A structure inside an object, or the object itself.
struct Part {
  std::uint32_t offset;
  std::int8_t variant;
  const kelp_type_record *record;
};

// A field that may own memory, and the place of its structure.
struct Owner {
  const FieldFacts *field;
  std::uint32_t offset;

  std::uint32_t place() const { return offset + field->offset; }
};

// Items of one kind, all made before any is put in.
template <typename Item>
class List {
 public:
  // False without memory.
  bool make_room(std::size_t most) {
    items_.reset(new (std::nothrow) Item[most]);
    return items_ != nullptr;
  }
  void put(const Item &item) { items_[size_++] = item; }
  Item *begin() const { return items_.get(); }
  Item *end() const { return items_.get() + size_; }

 private:
  std::unique_ptr<Item[]> items_;
  std::size_t size_ = 0;
};

struct Template {
  std::uint64_t writes = 0;
  std::uint64_t counters = 0;
  std::unique_ptr<std::uint8_t[]> bytes;
  List<Type> types;
  List<Part> parts;
  List<Owner> owners;           // arrays, texts and arms
  List<std::uint32_t> targets;  // places of the ids that references hold
  List<std::uint32_t> flags;    // places of the flags of all that is embedded with the object
};

namespace {

using Made = std::unique_ptr<Template>;

// What there may be at most, all types different.
struct Most {
  std::size_t types = 0;
  std::size_t parts = 0;
  std::size_t fields = 0;
};

void count(const StructureFacts &facts, Most &most) {
  ++most.parts;
  ++most.types;
  for (const FieldFacts &field : facts.fields) {
    if (field.kind == Kind::structure) count(*field.structure, most);
    if (field.light != nullptr) ++most.types;
    ++most.fields;
  }
}

void enter_type(Template &made, const kelp_type_record *record, std::uint8_t variants,
                std::uint32_t count) {
  Type *const known = std::find_if(made.types.begin(), made.types.end(),
                                   [&](const Type &type) { return type.record == record; });
  if (known == made.types.end()) made.types.put({record, static_cast<std::int8_t>(variants), 0});
  known->count += count;
}

void enter(Template &made, const StructureFacts &facts, std::uint32_t offset);

void enter_field(Template &made, const FieldFacts &field, std::uint32_t offset) {
  const std::uint32_t place = offset + field.offset;
  constexpr std::uint32_t header_flags = offsetof(kelp_object_header, obj_flags);
  switch (field.kind) {
    case Kind::structure:
      return enter(made, *field.structure, place);
    case Kind::enumeration:
    case Kind::flags:
      made.flags.put(place + header_flags);
      return enter_type(made, field.light->record, field.light->variants, 0);
    case Kind::address:
      return made.flags.put(place + header_flags);
    case Kind::text:
      made.flags.put(place + offsetof(kelp_vstring, obj_flags));
      return made.owners.put({&field, offset});
    case Kind::array:
    case Kind::arm:
      return made.owners.put({&field, offset});
    case Kind::reference:
      return made.targets.put(place + offsetof(kelp_reference, oid) + offsetof(kelp_oid, id));
    default:
      return;
  }
}

void enter(Template &made, const StructureFacts &facts, std::uint32_t offset) {
  enter_type(made, facts.record, facts.variants, 1);
  made.parts.put({offset, static_cast<std::int8_t>(facts.variants - 1), facts.record});
  made.flags.put(offset + offsetof(kelp_object_header, obj_flags));
  for (const FieldFacts &field : facts.fields) enter_field(made, field, offset);
}

// Null without memory.
Made make(const StructureFacts &facts) {
  Most most;
  count(facts, most);
  Made made(new (std::nothrow) Template);
  if (made == nullptr) return nullptr;
  made->bytes.reset(new (std::nothrow) std::uint8_t[facts.object_size]);
  if (made->bytes == nullptr || !made->types.make_room(most.types) ||
      !made->parts.make_room(most.parts) || !made->owners.make_room(most.fields) ||
      !made->targets.make_room(most.fields) || !made->flags.make_room(most.parts + most.fields)) {
    return nullptr;
  }
  enter(*made, facts, 0);
  return made;
}

bool is_ordinary(const kelp_handle *handle) {
  return kelp::quick::is_unheard(handle) && kelp::quick::fixes_nothing(handle) &&
         handle->shared_tinfo == 0 &&
         (handle->sttr == nullptr || handle->sttr->sttr_mode == STTR_MODE_OFF);
}

bool are_as_they_were(const Template &known) {
  return std::all_of(known.types.begin(), known.types.end(),
                     [](const Type &type) { return type.is_as_it_was(); });
}

// The type's template when the handle and the records allow its use.
const Template *usable(const StructureFacts &facts, const kelp_handle *handle) {
  const Template *known = facts.kept->load(std::memory_order_acquire);
  return known != nullptr && is_ordinary(handle) && are_as_they_were(*known) ? known : nullptr;
}

// Nothing of the parts has another life than that of the object, and no reference holds anything.
// Nearly all objects are so, and all of it is looked at without a branch.
bool is_ordinary(const Template &known, void *object) {
  constexpr std::uint8_t special =
      OBJ_OID_MAPPED | OBJ_STATE_TRACKED | OBJ_RA_DATA | OBJ_STTR_RELOCATED | OBJ_TINFO_BLOCK;
  const auto word_at = [object](std::uint32_t place) {
    std::uint64_t word;
    std::memcpy(&word, bytes(object) + place, sizeof word);
    return word;
  };
  bool differs = false;
  for (const Part &part : known.parts) {
    const kelp_object_header *header = header_of(bytes(object) + part.offset);
    differs |= header->tinfo != part.record;
    differs |= header->variant != part.variant;
    differs |= (header->obj_flags & special) != 0;
  }
  std::uint64_t held = 0;
  for (const std::uint32_t place : known.targets) {
    held |= word_at(place) | word_at(place + sizeof held);
  }
  return !differs && held == 0;
}

// Counts the object and all structures in it.
void count(const Template &known, kelp_handle *handle, std::uint64_t kelp_variant_entry::*counter) {
  handle->quick->write_counts[kelp::quick::kCounterWrite] += known.counters;
  for (const Type &type : known.types) {
    if (type.count == 0) continue;
    kelp::quick::add_to_counter(type.record, &(type.entry().*counter), type.count);
  }
}

}  // namespace

Announced Announced::through(const kelp_handle *handle) {
  const kelp_quick *quick = kelp::quick::of(handle);
  if (quick == nullptr) return {};
  return {quick->write_counts[kelp::quick::kModuleWrite],
          quick->write_counts[kelp::quick::kCounterWrite]};
}

void keep(const StructureFacts &facts, const kelp_handle *handle, const void *object,
          const Announced &before) {
  if (!is_ordinary(handle) || facts.kept->load(std::memory_order_relaxed) != nullptr) return;
  Made made = make(facts);
  if (made == nullptr || !are_as_they_were(*made)) return;
  const Announced now = Announced::through(handle);
  made->writes = now.writes - before.writes;
  made->counters = now.counters - before.counters;
  std::memcpy(made->bytes.get(), object, facts.object_size);
  const Template *none = nullptr;
  if (facts.kept->compare_exchange_strong(none, made.get())) made.release();
}

bool create(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
            void **object) {
  const Template *known = usable(facts, handle);
  if (known == nullptr) return false;
  *object = handle->obj_alloc(handle->obj_pool, space_id, facts.object_size);
  if (*object == nullptr) return true;
  std::memcpy(*object, known->bytes.get(), facts.object_size);
  kelp::quick::clear_last_error(handle);
  handle->quick->write_counts[kelp::quick::kModuleWrite] += known->writes;
  count(*known, handle, &kelp_variant_entry::create_count);
  return true;
}

bool destroy(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
             void *object) {
  const Template *known = usable(facts, handle);
  if (known == nullptr || !is_ordinary(*known, object)) return false;
  for (const Owner &owner : known->owners) {
    if (*reinterpret_cast<void **>(bytes(object) + owner.place()) == nullptr) continue;
    if (owner.field->kind == Kind::array) {
      array_field::remove(*owner.field->array, handle, space_id, bytes(object) + owner.offset);
    } else if (owner.field->kind == Kind::arm) {
      structure_life::end_arm(*owner.field, handle, space_id, bytes(object) + owner.offset);
    } else {
      auto *text = reinterpret_cast<kelp_vstring *>(bytes(object) + owner.place());
      kelp_vstring_destroy_internal(handle, space_id, text, 0);
    }
  }
  count(*known, handle, &kelp_variant_entry::destroy_count);
  store<kelp_type_record *>(handle, space_id, &header_of(object)->tinfo, nullptr);
  handle->obj_free(handle->obj_pool, space_id, object);
  return true;
}

bool mark_embedded(const StructureFacts &facts, const kelp_handle *handle, void *object) {
  const Template *known = facts.kept->load(std::memory_order_acquire);
  if (known == nullptr || kelp::quick::of(handle) == nullptr) return false;
  std::uint64_t *writes = kelp::quick::unheard_writes(handle);
  if (writes == nullptr) return false;
  for (const std::uint32_t place : known->flags) bytes(object)[place] |= OBJ_EMBEDDED;
  *writes += static_cast<std::uint64_t>(known->flags.end() - known->flags.begin());
  return true;
}

}  // namespace harbor::structure_template
