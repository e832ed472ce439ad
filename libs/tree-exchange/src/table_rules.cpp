#include "tree_exchange/table_rules.hpp"

#include <ospf_harbor_check.h>

#include <algorithm>
#include <array>
#include <tuple>

#include "ospf_tables/row_keys.hpp"
#include "ospf_tables/rows.hpp"

namespace tree_exchange {

using namespace ospf_tables;

namespace {

// Whether nothing of a table's rows lies in arrays, arms of choices or tables of their own.
template <typename Ops>
inline constexpr bool is_flat = false;
#define FLAT(table_name) \
  template <>            \
  inline constexpr bool is_flat<table_name##_ops> = true;
#include "flat_tables.inc"
#undef FLAT

template <typename Ops>
struct RuleOf {
  static const TableRule value;
};

template <typename Ops>
typename Ops::Record *record_of(void *record) {
  return static_cast<typename Ops::Record *>(record);
}

// References in an image name tables of the writer, which mean nothing where it arrives.
void empty_references(const char *table, Bytes &image) {
  std::vector<std::pair<std::size_t, std::size_t>> spans;
  ospf_harbor_check_walk(
      OSPF_HARBOR_CHECK_RECORD, table, image.data(), image.size(),
      [](const ospf_harbor_image_span *span, void *context) {
        if (span->piece < OSPF_HARBOR_SPAN_OID_HANDLE_WORD ||
            span->piece > OSPF_HARBOR_SPAN_OID_SOURCE) {
          return;
        }
        static_cast<decltype(spans) *>(context)->emplace_back(span->offset, span->length);
      },
      &spans, nullptr);
  for (const auto &[offset, length] : spans) {
    std::fill_n(image.begin() + static_cast<std::ptrdiff_t>(offset), length, std::uint8_t{0});
  }
}

template <typename Ops>
inline constexpr bool has_references =
    std::tuple_size_v<std::remove_cvref_t<decltype(references<Ops>)>> != 0;

// Room for an image whose length is told. That leaves out the nine bytes of ra-data that an object
// of at least six may carry and, under a tracking handle, the state byte of each array element of
// an object without state.
std::uint32_t room_for(std::uint32_t length) { return 64 + 3 * length; }

template <typename Ops>
void put_image(Session &session, void *record, Bytes &image) {
  const std::uint32_t room = room_for(Ops::length(session.handle(), space, record_of<Ops>(record)));
  image.resize(room + 4);
  const std::uint32_t written =
      Ops::marshal(session.handle(), space, image.data(), record_of<Ops>(record),
                   static_cast<std::int32_t>(room), session.err());
  session.check(Ops::name);
  image.resize(written);
}

// Puts the key's image behind what the bytes have.
template <typename Ops>
void add_key(Session &session, void *record, Bytes &bytes) {
  const std::size_t at = bytes.size();
  const std::uint32_t room =
      room_for(Ops::key_length(session.handle(), space, record_of<Ops>(record)));
  bytes.resize(at + room);
  const std::uint32_t written =
      Ops::marshal_key(session.handle(), space, bytes.data() + at, record_of<Ops>(record),
                       static_cast<std::int32_t>(room), session.err());
  session.check(Ops::name);
  bytes.resize(at + written);
}

template <typename Ops>
Bytes image_of(Session &session, void *record) {
  Bytes image;
  put_image<Ops>(session, record, image);
  if (has_references<Ops>) empty_references(Ops::name, image);
  return image;
}

template <typename Ops>
std::optional<std::string> telling_key_of(Session &session, void *record, Bytes &image) {
  bool is_told = true;
  std::string text = row_key<Ops>(session, record_of<Ops>(record), &is_told);
  if (is_told) return text;
  image.clear();
  add_key<Ops>(session, record, image);
  return std::nullopt;
}

template <typename Ops>
std::string xml_of(Session &session, void *record) {
  for (std::uint32_t size = 1 << 13;; size *= 4) {
    std::string text(size, '\0');
    const std::uint32_t written =
        Ops::to_xml(session.handle(), space, text.data(), record_of<Ops>(record),
                    static_cast<std::int32_t>(size), session.err());
    if (*session.err() == KELP_ERR_NO_ROOM && size < 1u << 29) {
      *session.err() = 0;
      continue;
    }
    session.check(Ops::name);
    text.resize(written);
    return text;
  }
}

// A record that was made of a form is of the default source, whoever made it.
void *of_site(Session &session, void *record) {
  static_cast<kelp_record *>(record)->src = session.site().source;
  return record;
}

template <typename Ops>
void *record_from_image(Session &session, ByteView image) {
  Bytes copy(image.begin(), image.end());
  if (has_references<Ops>) empty_references(Ops::name, copy);
  typename Ops::Record *record = nullptr;
  Ops::unmarshal(session.handle(), space, &record, copy.data(),
                 static_cast<std::int32_t>(copy.size()), 0, session.err());
  if (*session.err() != 0 && record != nullptr) {
    std::uint32_t err = 0;
    Ops::destroy_record(session.handle(), space, record, &err);
  }
  return of_site(session, session.checked(record, Ops::name));
}

template <typename Ops>
Refilled refill(Session &session, void *record, ByteView image, Bytes &stored) {
  stored.clear();
  add_key<Ops>(session, record, stored);
  const std::size_t key_length = stored.size();
  typename Ops::Record *filled = record_of<Ops>(record);
  Ops::unmarshal(session.handle(), space, &filled, image.data(),
                 static_cast<std::int32_t>(image.size()), 1, session.err());
  session.check(Ops::name);
  add_key<Ops>(session, record, stored);
  const ByteView keys(stored);
  if (!std::ranges::equal(keys.first(key_length), keys.subspan(key_length))) {
    return Refilled::has_another_key;
  }
  put_image<Ops>(session, record, stored);
  return std::ranges::equal(stored, image) ? Refilled::is_that : Refilled::differs;
}

template <typename Ops>
void *record_from_xml(Session &session, kelp_xml_document *document) {
  char message[256] = "";
  auto *record = Ops::from_xml(session.handle(), space, document, session.err(), message,
                               static_cast<std::int32_t>(sizeof message));
  return of_site(session, session.checked(record, *message != '\0' ? message : Ops::name));
}

template <typename Ops>
Added add(Session &session, void *table_, void *last, void *record_) {
  auto *table = static_cast<typename Ops::Table *>(table_);
  auto *record = record_of<Ops>(record_);
  Ops::insert(session.handle(), space, table, record, session.err());
  if (*session.err() == KELP_ERR_EXISTS) {
    *session.err() = 0;
    return Added::twice;
  }
  session.check(Ops::name);
  if (last == nullptr) return Added::behind_the_last;
  auto *behind = next_record<Ops>(session, table, record_of<Ops>(last), session.err());
  session.check(Ops::name);
  return behind == record ? Added::behind_the_last : Added::out_of_order;
}

// Builds the rule of one reference; its place in the list is bound by the index.
template <typename Ops, std::size_t index>
struct ReferenceOf {
  static constexpr const auto &row = std::get<index>(references<Ops>);
  using Child = typename std::remove_cvref_t<decltype(row)>::Child;

  static typename Ops::Object *object(Session &session, void *record) {
    return session.checked(Ops::get(session.handle(), space, record_of<Ops>(record)), Ops::name);
  }
  static void *below(Session &session, void *record) {
    return table_below(session, row, object(session, record));
  }
  static bool held(Session &session, void *record) {
    return has_reference(session, row, object(session, record));
  }
  static void tie(Session &session, void *record, void *table) {
    row.set(session.handle(), space, object(session, record),
            static_cast<typename Child::Table *>(table), session.err());
    session.check(row.name);
  }
  static constexpr ReferenceRule rule() {
    return {row.name, &RuleOf<Child>::value, below, held, tie};
  }
};

template <typename Ops, std::size_t... index>
constexpr std::array<ReferenceRule, sizeof...(index)> references_of(std::index_sequence<index...>) {
  return {ReferenceOf<Ops, index>::rule()...};
}

template <typename Ops>
constexpr auto reference_rules = references_of<Ops>(
    std::make_index_sequence<std::tuple_size_v<std::remove_cvref_t<decltype(references<Ops>)>>>());

template <typename Ops>
const TableRule RuleOf<Ops>::value = {
    .name = Ops::name,
    .kind = Ops::kind,
    .luid = {Ops::luid(), 16},
    .references = reference_rules<Ops>,
    .open = [](Session &session) -> void * {
      return session.checked(Ops::open_auto_id(session.handle(), space, 0, session.err()),
                             Ops::name);
    },
    .free =
        [](Session &session, void *table) {
          empty_and_free<Ops>(session, static_cast<typename Ops::Table *>(table));
        },
    .end_record = [](Session &session,
                     void *record) { end_record<Ops>(session, record_of<Ops>(record)); },
    .for_each =
        [](Session &session, void *table, const std::function<void(void *)> &act) {
          for_each_record<Ops>(session, static_cast<typename Ops::Table *>(table), act);
        },
    .key = [](Session &session,
              void *record) { return row_key<Ops>(session, record_of<Ops>(record)); },
    .telling_key = telling_key_of<Ops>,
    .add = add<Ops>,
    .image = image_of<Ops>,
    .stored_image = put_image<Ops>,
    .xml = xml_of<Ops>,
    .from_image = record_from_image<Ops>,
    .from_xml = record_from_xml<Ops>,
    .refill = is_flat<Ops> ? refill<Ops> : nullptr,
};

template <typename... Ops>
std::array<const TableRule *, sizeof...(Ops)> rules_of(std::tuple<Ops...> *) {
  return {&RuleOf<Ops>::value...};
}

const auto all_rules = rules_of(static_cast<AllTables *>(nullptr));

}  // namespace

const TableRule &root_rule() { return RuleOf<ospf_rev1_ops>::value; }

const TableRule *rule_named(std::string_view name) {
  for (const TableRule *rule : all_rules) {
    if (name == rule->name) return rule;
  }
  return nullptr;
}

const TableRule *rule_with_luid(ByteView luid) {
  for (const TableRule *rule : all_rules) {
    if (std::ranges::equal(luid, rule->luid)) return rule;
  }
  return nullptr;
}

const ReferenceRule *reference_named(const TableRule &rule, std::string_view name) {
  for (const ReferenceRule &reference : rule.references) {
    if (name == reference.name) return &reference;
  }
  return nullptr;
}

std::string list_of_references(const TableRule &rule) {
  std::string list;
  for (const ReferenceRule &reference : rule.references) {
    if (!list.empty()) list += &reference == &rule.references.back() ? " or " : ", ";
    list += reference.name;
  }
  return list.empty() ? "no reference" : list;
}

}  // namespace tree_exchange
