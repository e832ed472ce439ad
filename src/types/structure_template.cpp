#include "types/structure_template.hpp"

#include <kelp/oid.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <kelp/quick_kept.hpp>
#include <memory>
#include <new>
#include <span>
#include <utility>

#include "types/structure_facts.hpp"
#include "types/structure_life.hpp"

namespace harbor::structure_template {

// A type whose record decides what an object looks like, what that said when the template was made,
// how many objects of it are counted with one, and where the first of them lies.
struct Type {
  const kelp_type_record *record;
  const kelp_variant_info *varinfo;
  const kelp_variant_entry *entries;
  std::int8_t variants;
  std::uint32_t count;
  std::uint32_t offset;

  bool is_as_it_was() const {
    return record->magic == KELP_TYPE_MAGIC && record->varinfo == varinfo &&
           varinfo->n_variants == variants && varinfo->entries == entries;
  }
};

// The bytes of a header behind the type record, up to the first of the value: one word.
using Marks = std::uint32_t;
constexpr std::size_t marks_at = offsetof(kelp_object_header, variant);
Marks marks_of(std::int8_t variant, std::uint8_t flags) {
  std::uint8_t header[marks_at + sizeof(Marks)] = {};
  header[offsetof(kelp_object_header, variant)] = static_cast<std::uint8_t>(variant);
  header[offsetof(kelp_object_header, obj_flags)] = flags;
  Marks marks;
  std::memcpy(&marks, header + marks_at, sizeof marks);
  return marks;
}

// A structure inside an object, or the object itself.
struct Part {
  std::uint32_t offset;
  Marks variant;
  std::uint32_t type;  // which one of the template's
};

// A reference, and the record of the table that it names.
struct Target {
  std::uint32_t offset;
  const kelp_type_record *record;

  std::uint32_t id() const {
    return offset + offsetof(kelp_reference, oid) + offsetof(kelp_oid, id);
  }
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

// How many objects of a type are counted with one, and where.
struct Counted {
  kelp_variant_entry *entry;
  std::uint64_t count;
};

// A new object as it is in private memory, or in one store: its bytes, which hold the addresses of
// type records, and what was announced when it was made. It lies in one block with its lists.
struct Pattern {
  std::uint64_t writes;
  std::uint64_t counters;
  kelp_type_record **records;  // of the template's types, in their order
  std::uint64_t **announced;   // in a store: a counter in each page in which one of these counts
  std::size_t pages;
  Counted *counted;
  std::size_t counted_types;
  bool plainly;  // are they counted, whoever else counts
  std::uint8_t *bytes;

  std::span<Counted> counts() const { return {counted, counted_types}; }
};

struct Template {
  List<Type> types;
  List<Part> parts;
  List<Owner> owners;  // arrays, texts and arms
  List<Target> targets;
  List<std::uint32_t> flags;  // places of the flags of all that is embedded with the object
  mutable std::atomic<const Pattern *> own{nullptr};  // in private memory
};

namespace {

using Made = std::unique_ptr<Template>;
using MadePattern = std::unique_ptr<Pattern, decltype(&std::free)>;

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

// Gives its number.
std::uint32_t enter_type(Template &made, const kelp_type_record *record, std::uint8_t variants,
                         std::uint32_t offset, std::uint32_t count) {
  Type *const known = std::find_if(made.types.begin(), made.types.end(),
                                   [&](const Type &type) { return type.record == record; });
  if (known == made.types.end()) {
    const kelp_variant_info *varinfo = record->varinfo;
    made.types.put({record, varinfo, varinfo == nullptr ? nullptr : varinfo->entries,
                    static_cast<std::int8_t>(variants), 0, offset});
  }
  known->count += count;
  return static_cast<std::uint32_t>(known - made.types.begin());
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
      enter_type(made, field.light->record, field.light->variants, place, 0);
      return;
    case Kind::address:
      return made.flags.put(place + header_flags);
    case Kind::text:
      made.flags.put(place + offsetof(kelp_vstring, obj_flags));
      return made.owners.put({&field, offset});
    case Kind::array:
    case Kind::arm:
      return made.owners.put({&field, offset});
    case Kind::reference:
      return made.targets.put({place, field.target});
    default:
      return;
  }
}

void enter(Template &made, const StructureFacts &facts, std::uint32_t offset) {
  const std::uint32_t type = enter_type(made, facts.record, facts.variants, offset, 1);
  made.parts.put({offset, marks_of(static_cast<std::int8_t>(facts.variants - 1), 0), type});
  made.flags.put(offset + offsetof(kelp_object_header, obj_flags));
  for (const FieldFacts &field : facts.fields) enter_field(made, field, offset);
}

// Null without memory, and where a record lacks what a template needs.
Made make(const StructureFacts &facts) {
  Most most;
  count(facts, most);
  Made made(new (std::nothrow) Template);
  if (made == nullptr) return nullptr;
  if (!made->types.make_room(most.types) || !made->parts.make_room(most.parts) ||
      !made->owners.make_room(most.fields) || !made->targets.make_room(most.fields) ||
      !made->flags.make_room(most.parts + most.fields)) {
    return nullptr;
  }
  enter(*made, facts, 0);
  const bool complete = std::all_of(made->types.begin(), made->types.end(),
                                    [](const Type &type) { return type.varinfo != nullptr; });
  return complete ? std::move(made) : nullptr;
}

bool are_as_they_were(const Template &known) {
  return std::all_of(known.types.begin(), known.types.end(),
                     [](const Type &type) { return type.is_as_it_was(); });
}

bool is_ordinary(const kelp_handle *handle) {
  return kelp::quick::fixes_nothing(handle) &&
         (handle->sttr == nullptr || handle->sttr->sttr_mode == STTR_MODE_OFF);
}

// Where the template's pattern under a handle of a store is kept; null for other handles.
void **place_in_store(const Template &known, kelp_handle *handle) {
  return handle->shared_tinfo == 0 ? nullptr : kelp_quick_kept(handle, &known);
}

// The template of a type and its pattern when the handle and the records allow their use.
struct Usable {
  const Template *known = nullptr;
  const Pattern *pattern = nullptr;
};

Usable usable(const StructureFacts &facts, kelp_handle *handle) {
  const Template *known = facts.kept->load(std::memory_order_acquire);
  if (known == nullptr || !is_ordinary(handle)) return {};
  const Pattern *pattern = nullptr;
  if (handle->shared_tinfo != 0) {
    void **place = place_in_store(*known, handle);
    if (place != nullptr) pattern = static_cast<const Pattern *>(*place);
  } else if (kelp::quick::is_unheard(handle)) {
    pattern = known->own.load(std::memory_order_acquire);
  }
  if (pattern == nullptr || !are_as_they_were(*known)) return {};
  return {known, pattern};
}

// Nothing of the parts has another life than that of the object, and no reference holds anything.
// Nearly all objects are so, and all of it is looked at without a branch.
bool is_ordinary(const Template &known, const Pattern &pattern, void *object) {
  const Marks looked_at = marks_of(
      -1, OBJ_OID_MAPPED | OBJ_STATE_TRACKED | OBJ_RA_DATA | OBJ_STTR_RELOCATED | OBJ_TINFO_BLOCK);
  const auto get = [object]<typename Word>(std::size_t place, Word word) {
    std::memcpy(&word, bytes(object) + place, sizeof word);
    return word;
  };
  std::uint64_t differs = 0;
  for (const Part &part : known.parts) {
    differs |= get(part.offset, std::uintptr_t{}) ^
               reinterpret_cast<std::uintptr_t>(pattern.records[part.type]);
    differs |= (get(part.offset + marks_at, Marks{}) & looked_at) ^ part.variant;
  }
  for (const Target &target : known.targets) {
    differs |= get(target.id(), std::uint64_t{});
    differs |= get(target.id() + sizeof(std::uint64_t), std::uint64_t{});
  }
  return differs == 0;
}

// Counts the object and all structures in it. A store needs to hear of each page alone.
void count(const Pattern &pattern, kelp_handle *handle, std::uint32_t space_id,
           std::uint64_t kelp_variant_entry::*counter) {
  for (std::size_t page = 0; page < pattern.pages; ++page) {
    handle->counter_notify(handle->obj_pool, pattern.announced[page], 1, space_id);
  }
  kelp::quick::behind(handle).write_counts[kelp::quick::kCounterWrite] +=
      pattern.counters - pattern.pages;
  if (pattern.plainly || __libc_single_threaded != 0) {
    for (const Counted &each : pattern.counts()) each.entry->*counter += each.count;
  } else {
    for (const Counted &each : pattern.counts()) {
      __atomic_fetch_add(&(each.entry->*counter), each.count, __ATOMIC_RELAXED);
    }
  }
}

// Has a store hear of the page in which a counter lies, unless it does for another one.
void announce_page_of(Pattern &pattern, std::uint64_t *counter) {
  constexpr std::uintptr_t page_bytes = 4096;
  const auto page = [](const std::uint64_t *address) {
    return reinterpret_cast<std::uintptr_t>(address) / page_bytes;
  };
  std::uint64_t **const end = pattern.announced + pattern.pages;
  const bool is_heard = std::any_of(pattern.announced, end, [&](const std::uint64_t *known) {
    return page(known) == page(counter);
  });
  if (is_heard) return;
  *end = counter;
  ++pattern.pages;
}

// Whether an object in a store points at the store's records alone.
bool is_the_stores(const Template &known, const Pattern &pattern) {
  kelp_type_record *const *record = pattern.records;
  const bool own_records =
      std::all_of(known.types.begin(), known.types.end(), [&](const Type &type) {
        const kelp_type_record *copy = *record++;
        return copy != nullptr && copy != type.record && copy->varinfo != nullptr &&
               copy->varinfo->n_variants >= type.variants;
      });
  return own_records &&
         std::all_of(known.targets.begin(), known.targets.end(), [&](const Target &target) {
           const kelp_type_record *copy = nullptr;
           std::memcpy(&copy, pattern.bytes + target.offset + offsetof(kelp_reference, target_type),
                       sizeof copy);
           return copy != nullptr && copy != target.record;
         });
}

// The pattern of an object that the rules have just made; null without memory.
MadePattern make_pattern(const Template &known, const StructureFacts &facts, const void *object,
                         const Announced &announced) {
  const auto types = static_cast<std::size_t>(known.types.end() - known.types.begin());
  // Of each type its record, two counters that may be announced, and what is counted.
  constexpr std::size_t list_bytes =
      sizeof(kelp_type_record *) + 2 * sizeof(std::uint64_t *) + sizeof(Counted);
  MadePattern made(
      static_cast<Pattern *>(std::malloc(sizeof(Pattern) + types * list_bytes + facts.object_size)),
      &std::free);
  if (made == nullptr) return made;
  auto **records = reinterpret_cast<kelp_type_record **>(made.get() + 1);
  auto **counters = reinterpret_cast<std::uint64_t **>(records + types);
  auto *counted = reinterpret_cast<Counted *>(counters + 2 * types);
  auto *copy = reinterpret_cast<std::uint8_t *>(counted + types);
  *made = {announced.writes, announced.counters, records, counters, 0, counted, 0, false, copy};
  std::memcpy(copy, object, facts.object_size);
  for (const Type &type : known.types) {
    kelp_type_record *const record =
        header_of(bytes(const_cast<void *>(object)) + type.offset)->tinfo;
    *records++ = record;
    if (type.count == 0 || record == nullptr || record->varinfo == nullptr) continue;
    counted[made->counted_types++] = {record->varinfo->entries + type.variants - 1, type.count};
  }
  return made;
}

void keep_in_store(const Template &known, const StructureFacts &facts, kelp_handle *handle,
                   const void *object, const Announced &announced) {
  void **place = place_in_store(known, handle);
  if (place == nullptr || *place != nullptr) return;
  MadePattern made = make_pattern(known, facts, object, announced);
  if (made == nullptr || !is_the_stores(known, *made)) return;
  for (const Counted &each : made->counts()) {
    announce_page_of(*made, &each.entry->create_count);
    announce_page_of(*made, &each.entry->destroy_count);
  }
  made->plainly = true;
  *place = made.release();
}

void keep_in_private_memory(const Template &known, const StructureFacts &facts,
                            const kelp_handle *handle, const void *object,
                            const Announced &announced) {
  if (!kelp::quick::is_unheard(handle) || known.own.load(std::memory_order_relaxed) != nullptr) {
    return;
  }
  MadePattern made = make_pattern(known, facts, object, announced);
  const Pattern *none = nullptr;
  if (made != nullptr && known.own.compare_exchange_strong(none, made.get())) made.release();
}

// The type's template, made when there is none; null without memory.
const Template *template_of(const StructureFacts &facts) {
  const Template *known = facts.kept->load(std::memory_order_acquire);
  if (known != nullptr) return known;
  Made made = make(facts);
  if (made != nullptr && facts.kept->compare_exchange_strong(known, made.get())) {
    return made.release();
  }
  return known;
}

// Whether a store is all that hears of what the handle writes.
bool is_heard_by_store(const kelp_handle *handle) {
  const kelp_quick *quick = kelp::quick::of(handle);
  return quick != nullptr && quick->store_pool != nullptr &&
         handle->write_notify == quick->store_write && handle->obj_pool == quick->store_pool;
}

}  // namespace

Announced Announced::through(const kelp_handle *handle) {
  const kelp_quick *quick = kelp::quick::of(handle);
  if (quick == nullptr) return {};
  return {quick->write_counts[kelp::quick::kModuleWrite],
          quick->write_counts[kelp::quick::kCounterWrite]};
}

void keep(const StructureFacts &facts, kelp_handle *handle, const void *object,
          const Announced &before) {
  if (kelp::quick::of(handle) == nullptr || !is_ordinary(handle)) return;
  const Template *known = template_of(facts);
  if (known == nullptr || !are_as_they_were(*known)) return;
  const Announced now = Announced::through(handle);
  const Announced announced{now.writes - before.writes, now.counters - before.counters};
  if (handle->shared_tinfo != 0) {
    keep_in_store(*known, facts, handle, object, announced);
  } else {
    keep_in_private_memory(*known, facts, handle, object, announced);
  }
}

bool create(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
            void **object) {
  const Usable used = usable(facts, handle);
  if (used.known == nullptr) return false;
  *object = handle->obj_alloc(handle->obj_pool, space_id, facts.object_size);
  if (*object == nullptr) return true;
  std::memcpy(*object, used.pattern->bytes, facts.object_size);
  kelp::quick::clear_last_error(handle);
  kelp::quick::behind(handle).write_counts[kelp::quick::kModuleWrite] += used.pattern->writes;
  count(*used.pattern, handle, space_id, &kelp_variant_entry::create_count);
  return true;
}

bool destroy(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
             void *object) {
  const Usable used = usable(facts, handle);
  if (used.known == nullptr || !is_ordinary(*used.known, *used.pattern, object)) return false;
  for (const Owner &owner : used.known->owners) {
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
  count(*used.pattern, handle, space_id, &kelp_variant_entry::destroy_count);
  store<kelp_type_record *>(handle, space_id, &header_of(object)->tinfo, nullptr);
  handle->obj_free(handle->obj_pool, space_id, object);
  return true;
}

bool mark_embedded(const StructureFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                   void *object) {
  const Template *known = facts.kept->load(std::memory_order_acquire);
  if (known == nullptr || kelp::quick::of(handle) == nullptr) return false;
  const bool unheard = kelp::quick::unheard_writes(handle) != nullptr;
  if (!unheard && !is_heard_by_store(handle)) return false;
  const std::uint32_t *place = known->flags.begin();
  const auto mark_one = [&] {
    std::uint8_t *flags = bytes(object) + *place++;
    store(handle, space_id, flags, static_cast<std::uint8_t>(*flags | OBJ_EMBEDDED));
  };
  // A store puts by all of the object at the first write to it.
  mark_one();
  const bool counts =
      unheard || (kelp::quick::is_put_by(handle, object) &&
                  kelp::quick::is_put_by(handle, bytes(object) + facts.object_size - 1));
  if (!counts) {
    while (place != known->flags.end()) mark_one();
    return true;
  }
  kelp::quick::behind(handle).write_counts[kelp::quick::kModuleWrite] +=
      static_cast<std::uint64_t>(known->flags.end() - place);
  for (; place != known->flags.end(); ++place) bytes(object)[*place] |= OBJ_EMBEDDED;
  return true;
}

}  // namespace harbor::structure_template
