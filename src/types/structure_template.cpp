#include "types/structure_template.hpp"

#include <kelp/oid.h>

#include <algorithm>
#include <memory>
#include <new>
#include <span>

#include "types/structure_facts.hpp"

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
  std::uint32_t type;  // in Template::types
};

// A field that may own something, and the place of its structure.
struct Owner {
  const FieldFacts *field;
  std::uint32_t offset;
};

struct Template {
  std::uint64_t writes = 0;
  std::uint64_t counters = 0;
  std::unique_ptr<std::uint8_t[]> bytes;
  std::unique_ptr<Type[]> all_types;
  std::unique_ptr<Part[]> all_parts;
  std::unique_ptr<Owner[]> all_owners;
  std::size_t type_count = 0;
  std::size_t part_count = 0;
  std::size_t owner_count = 0;

  std::span<const Type> types() const { return {all_types.get(), type_count}; }
  std::span<const Part> parts() const { return {all_parts.get(), part_count}; }
  std::span<const Owner> owners() const { return {all_owners.get(), owner_count}; }
};

namespace {

using Made = std::unique_ptr<Template>;

// What there may be at most, all types different.
struct Most {
  std::size_t types = 0;
  std::size_t parts = 0;
  std::size_t owners = 0;
};

bool may_own(const FieldFacts &field) {
  return field.kind == Kind::array || field.kind == Kind::arm || field.kind == Kind::text ||
         field.kind == Kind::reference;
}

void count(const StructureFacts &facts, Most &most) {
  ++most.parts;
  ++most.types;
  for (const FieldFacts &field : facts.fields) {
    if (field.kind == Kind::structure) count(*field.structure, most);
    if (field.light != nullptr) ++most.types;
    if (may_own(field)) ++most.owners;
  }
}

std::uint32_t enter_type(Template &made, const kelp_type_record *record, std::uint8_t variants,
                         std::uint32_t count) {
  Type *const end = made.all_types.get() + made.type_count;
  Type *const known = std::find_if(made.all_types.get(), end,
                                   [&](const Type &type) { return type.record == record; });
  if (known == end) {
    *known = {record, static_cast<std::int8_t>(variants), 0};
    ++made.type_count;
  }
  known->count += count;
  return static_cast<std::uint32_t>(known - made.all_types.get());
}

void enter(Template &made, const StructureFacts &facts, std::uint32_t offset) {
  const std::uint32_t type = enter_type(made, facts.record, facts.variants, 1);
  made.all_parts[made.part_count++] = {offset, type};
  for (const FieldFacts &field : facts.fields) {
    if (field.kind == Kind::structure) {
      enter(made, *field.structure, offset + field.offset);
    } else if (field.light != nullptr) {
      enter_type(made, field.light->record, field.light->variants, 0);
    } else if (may_own(field)) {
      made.all_owners[made.owner_count++] = {&field, offset};
    }
  }
}

// Null without memory.
Made make(const StructureFacts &facts) {
  Most most;
  count(facts, most);
  Made made(new (std::nothrow) Template);
  if (made == nullptr) return nullptr;
  made->bytes.reset(new (std::nothrow) std::uint8_t[facts.object_size]);
  made->all_types.reset(new (std::nothrow) Type[most.types]);
  made->all_parts.reset(new (std::nothrow) Part[most.parts]);
  made->all_owners.reset(new (std::nothrow) Owner[most.owners]);
  if (made->bytes == nullptr || made->all_types == nullptr || made->all_parts == nullptr ||
      made->all_owners == nullptr) {
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
  return std::all_of(known.types().begin(), known.types().end(),
                     [](const Type &type) { return type.is_as_it_was(); });
}

// The type's template when the handle and the records allow its use.
const Template *usable(const StructureFacts &facts, const kelp_handle *handle) {
  const Template *known = facts.kept->load(std::memory_order_acquire);
  return known != nullptr && is_ordinary(handle) && are_as_they_were(*known) ? known : nullptr;
}

template <typename Value>
Value *at(void *object, const Owner &owner) {
  return reinterpret_cast<Value *>(bytes(object) + owner.offset + owner.field->offset);
}

// Nothing of the parts has another life than that of the object.
bool is_ordinary(const Template &known, void *object) {
  constexpr std::uint8_t special =
      OBJ_OID_MAPPED | OBJ_STATE_TRACKED | OBJ_RA_DATA | OBJ_STTR_RELOCATED | OBJ_TINFO_BLOCK;
  for (const Part &part : known.parts()) {
    const kelp_object_header *header = header_of(bytes(object) + part.offset);
    const Type &type = known.all_types[part.type];
    if (header->tinfo != type.record || header->variant != type.variants - 1 ||
        (header->obj_flags & special) != 0) {
      return false;
    }
  }
  return std::all_of(known.owners().begin(), known.owners().end(), [&](const Owner &owner) {
    if (owner.field->kind == Kind::arm) return *at<void *>(object, owner) == nullptr;
    return owner.field->kind != Kind::reference ||
           kelp_oid_id_is_zero(at<kelp_reference>(object, owner)->oid.id) != 0;
  });
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
  handle->quick->write_counts[kelp::quick::kCounterWrite] += known->counters;
  for (const Type &type : known->types()) {
    if (type.count == 0) continue;
    kelp::quick::add_to_counter(type.record, &type.entry().create_count, type.count);
  }
  return true;
}

bool destroy(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
             void *object) {
  const Template *known = usable(facts, handle);
  if (known == nullptr || !is_ordinary(*known, object)) return false;
  for (const Owner &owner : known->owners()) {
    if (owner.field->kind == Kind::array) {
      array_field::remove(*owner.field->array, handle, space_id, bytes(object) + owner.offset);
    } else if (owner.field->kind == Kind::text &&
               at<kelp_vstring>(object, owner)->text != nullptr) {
      kelp_vstring_destroy_internal(handle, space_id, at<kelp_vstring>(object, owner), 0);
    }
  }
  handle->quick->write_counts[kelp::quick::kCounterWrite] += known->counters;
  for (const Type &type : known->types()) {
    if (type.count == 0) continue;
    kelp::quick::add_to_counter(type.record, &type.entry().destroy_count, type.count);
  }
  store<kelp_type_record *>(handle, space_id, &header_of(object)->tinfo, nullptr);
  handle->obj_free(handle->obj_pool, space_id, object);
  return true;
}

}  // namespace harbor::structure_template
