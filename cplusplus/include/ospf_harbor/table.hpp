// Tables as ranges of rows, rows as the objects that they hold, and trees of tables that end with
// their owner. Rows stand in the order of tenant, key and source; a walk shows those of the calling
// thread's tenant.
//
// Rows and tables are references, as objects are. Taking a row out of its table while an iterator
// stands on it leaves that iterator without a place: step first.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <ospf_harbor/object.hpp>
#include <string>
#include <vector>

namespace ospf_harbor {

// A record of a table. Table is the table's rules.
template <typename Table>
class row {
 public:
  using rules = Table;
  using record_type = typename Table::record_type;
  using object_type = typename Table::object_type;

  row() = default;
  row(session &at, record_type *record) : session_(&at), record_(record) {}

  explicit operator bool() const { return record_ != nullptr; }
  record_type *get() const { return record_; }
  session &at() const { return *session_; }

  // What the row holds; a null reference of a null row.
  object_type object() const {
    return {*session_, record_ == nullptr ? nullptr : Table::get(session_->handle(), 0, record_)};
  }
  typename Table::key_type key() const { return Table::key_of(*this); }
  struct arrow {
    object_type object;
    const object_type *operator->() const { return &object; }
  };
  arrow operator->() const { return {object()}; }

  std::string to_text() const {
    return detail::written(*session_, ' ', [&](char *text, std::uint32_t room, std::uint32_t *err) {
      return Table::print(session_->handle(), 0, text, record_, static_cast<std::int32_t>(room),
                          err);
    });
  }
  std::string to_xml() const {
    return detail::written(*session_, '\0',
                           [&](char *text, std::uint32_t room, std::uint32_t *err) {
                             return Table::to_xml(session_->handle(), 0, text, record_,
                                                  static_cast<std::int32_t>(room), err);
                           });
  }
  std::vector<std::byte> to_image() const {
    const std::size_t told = Table::length(session_->handle(), 0, record_);
    return detail::image_of(
        *session_, told, [&](void *image, std::int32_t room, std::uint32_t *err) {
          return Table::marshal(session_->handle(), 0, image, record_, room, err);
        });
  }
  friend bool operator==(const row &a, const row &b) { return a.record_ == b.record_; }

 private:
  session *session_ = nullptr;
  record_type *record_ = nullptr;
};

namespace detail {

// A record that is ended unless a table takes it.
template <typename Table>
class new_row {
 public:
  new_row(session &at, std::uint32_t source) : new_row(at, record_of(at, source)) {
    if (record_ == nullptr) return;
    if (auto *object = at.make<Table::object_type::rules::create>()) {
      Table::put(at.handle(), 0, record_, object);
    }
    if constexpr (Table::has_key_object) {
      if (auto *key = at.make<Table::key_ref::rules::create>()) {
        Table::put_key(at.handle(), 0, record_, key);
      }
    }
  }
  new_row(session &at, typename Table::record_type *record) : at_(at), record_(record) {}
  new_row(const new_row &) = delete;
  new_row &operator=(const new_row &) = delete;
  ~new_row() {
    std::uint32_t err = 0;
    if (record_ != nullptr) Table::destroy_record(at_.handle(), 0, record_, &err);
  }
  row<Table> get() const { return {at_, record_}; }
  row<Table> release() { return {at_, std::exchange(record_, nullptr)}; }

 private:
  // create_record would forget a failure that was kept.
  static typename Table::record_type *record_of(session &at, std::uint32_t source) {
    if (!at.ok()) return nullptr;
    auto *record = at.call<Table::create_record>(source);
    if (record == nullptr && at.ok()) at.fail_made_nothing();
    return record;
  }

  session &at_;
  typename Table::record_type *record_;
};

}  // namespace detail

// Which rows a walk shows: those of the default source, of one source, or of all, the shadow
// records among them. The last goes forward alone.
struct default_source {
  template <typename Table>
  auto first(session &at, typename Table::c_type *table) const {
    return at.call<Table::first>(table);
  }
  template <typename Table>
  auto last(session &at, typename Table::c_type *table) const {
    return at.call<Table::last>(table);
  }
  template <typename Table, typename Record>
  auto next(session &at, typename Table::c_type *table, Record *record) const {
    return at.call<Table::next>(table, record);
  }
  template <typename Table, typename Record>
  auto previous(session &at, typename Table::c_type *table, Record *record) const {
    return at.call<Table::previous>(table, record);
  }
};

struct one_source {
  std::uint32_t source;

  template <typename Table>
  auto first(session &at, typename Table::c_type *table) const {
    return at.call<Table::first_of>(table, source);
  }
  template <typename Table>
  auto last(session &at, typename Table::c_type *table) const {
    return at.call<Table::last_of>(table, source);
  }
  template <typename Table, typename Record>
  auto next(session &at, typename Table::c_type *table, Record *record) const {
    return at.call<Table::next_of>(table, record, source);
  }
  template <typename Table, typename Record>
  auto previous(session &at, typename Table::c_type *table, Record *record) const {
    return at.call<Table::previous_of>(table, record, source);
  }
};

struct every_source {
  template <typename Table>
  auto first(session &at, typename Table::c_type *table) const {
    return at.call<Table::first_of_all>(table);
  }
  template <typename Table, typename Record>
  auto next(session &at, typename Table::c_type *table, Record *record) const {
    return at.call<Table::next_of_all>(table, record);
  }
};

// A place in a walk: of the row record, or behind the last one for null.
template <typename Table, typename Sources>
class row_iterator {
 public:
  using iterator_category =
      std::conditional_t<std::is_same_v<Sources, every_source>, std::forward_iterator_tag,
                         std::bidirectional_iterator_tag>;
  using iterator_concept = iterator_category;
  using value_type = row<Table>;
  using difference_type = std::ptrdiff_t;
  using reference = row<Table>;
  using pointer = typename row<Table>::arrow;

  row_iterator() = default;
  row_iterator(session &at, typename Table::c_type *table, Sources sources,
               typename Table::record_type *record)
      : session_(&at), table_(table), sources_(sources), record_(record) {}

  row<Table> operator*() const { return {*session_, record_}; }
  pointer operator->() const { return (**this).operator->(); }
  row_iterator &operator++() {
    record_ = sources_.template next<Table>(*session_, table_, record_);
    return *this;
  }
  row_iterator &operator--() requires(!std::is_same_v<Sources, every_source>) {
    record_ = record_ == nullptr ? sources_.template last<Table>(*session_, table_)
                                 : sources_.template previous<Table>(*session_, table_, record_);
    return *this;
  }
  row_iterator operator++(int) {
    row_iterator before = *this;
    ++*this;
    return before;
  }
  row_iterator operator--(int) requires(!std::is_same_v<Sources, every_source>) {
    row_iterator before = *this;
    --*this;
    return before;
  }
  friend bool operator==(const row_iterator &a, const row_iterator &b) {
    return a.record_ == b.record_;
  }

 private:
  session *session_ = nullptr;
  typename Table::c_type *table_ = nullptr;
  Sources sources_{};
  typename Table::record_type *record_ = nullptr;
};

// Some rows of a table in their order.
template <typename Table, typename Sources>
class row_range {
 public:
  using iterator = row_iterator<Table, Sources>;

  row_range(session &at, typename Table::c_type *table, Sources sources,
            typename Table::record_type *from)
      : begin_(at, table, sources, from), end_(at, table, sources, nullptr) {}
  iterator begin() const { return begin_; }
  iterator end() const { return end_; }
  auto rbegin() const { return std::reverse_iterator(end_); }
  auto rend() const { return std::reverse_iterator(begin_); }

 private:
  iterator begin_;
  iterator end_;
};

// A table, or none: a reference that is empty gives one that is false.
template <typename Table>
class table_ref {
 public:
  using rules = Table;
  using c_type = typename Table::c_type;
  using key_type = typename Table::key_type;
  using iterator = row_iterator<Table, default_source>;

  table_ref() = default;
  table_ref(session &at, c_type *table) : session_(&at), table_(table) {}
  // The table of that name, which is made when there is none: in a store, under the write lock.
  static table_ref open(session &at, const char *name) {
    return {at, at.call<Table::open>(name, 0u)};
  }
  // The table of that name, or none.
  static table_ref existing(session &at, const char *name) {
    return {at, at.call<Table::open>(name, 1u)};
  }
  // A new one without a name, for a row to refer to.
  static table_ref make(session &at) { return {at, at.call<Table::make>(0u)}; }

  explicit operator bool() const { return table_ != nullptr; }
  c_type *get() const { return table_; }
  session &at() const { return *session_; }
  // Rows of the calling thread's tenant, or all of them when it has none.
  std::uint32_t size() const {
    return table_ == nullptr ? 0 : Table::count(session_->handle(), 0, table_);
  }
  bool empty() const { return begin() == end(); }

  iterator begin() const { return range(default_source{}).begin(); }
  iterator end() const { return iterator(*session_, table_, {}, nullptr); }
  auto rbegin() const { return std::reverse_iterator(end()); }
  auto rend() const { return std::reverse_iterator(begin()); }
  row_range<Table, one_source> of_source(std::uint8_t source) const {
    return range(one_source{source});
  }
  row_range<Table, every_source> of_every_source() const { return range(every_source{}); }
  // The rows from the first one on whose key is not below that.
  row_range<Table, default_source> from(const key_type &key) const {
    return {*session_, table_, {}, first_not_below(key)};
  }
  // The row with that key; null when there is none. O(log n): a row that is made for it stands as
  // the place to look at. In a store it needs a lock.
  row<Table> find(const key_type &key) const {
    const row<Table> at_or_above(*session_, first_not_below(key));
    if (!at_or_above || !(at_or_above.key() == key)) return {*session_, nullptr};
    return at_or_above;
  }

  // Makes a row with that key, and with all that makes it whole but for the values, and enters it.
  // Code 17 when there is one; nothing has changed then. In a session that keeps failures the row
  // is null when it failed.
  row<Table> add(const key_type &key, std::uint8_t source = 1) const {
    detail::new_row<Table> fresh(*session_, source);
    if (!session_->ok()) return {*session_, nullptr};
    Table::set_key(fresh.get(), key);
    Table::complete(fresh.get());
    return enter(fresh);
  }
  // Enters a row from an image of this library's own, which is trusted.
  row<Table> add_image(std::span<const std::byte> image) const {
    typename Table::record_type *record = nullptr;
    std::uint32_t err = 0;
    if (!session_->ok()) return {*session_, nullptr};
    Table::unmarshal(session_->handle(), 0, &record, image.data(),
                     static_cast<std::int32_t>(image.size()), 0, &err);
    detail::new_row<Table> fresh(*session_, record);
    if (err != 0) session_->fail(err, {});
    return enter(fresh);
  }
  // Enters a row from its XML.
  row<Table> add_xml(std::string_view text) const {
    const detail::xml_document document = detail::parse_xml(*session_, text);
    if (document == nullptr || !session_->ok()) return {*session_, nullptr};
    char message[256] = "";
    std::uint32_t err = 0;
    detail::new_row<Table> fresh(*session_, Table::from_xml(session_->handle(), 0, document.get(),
                                                            &err, message, sizeof message));
    if (err != 0) session_->fail(err, message);
    return enter(fresh);
  }

  // Ends a row, with the tables that it refers to and all below them, but for a table that
  // something else refers to, which stays without rows.
  void erase(const row<Table> &which) const { end_row(*session_, which.get()); }
  // Ends all rows so.
  void clear() const { end_rows(*session_, table_); }
  // Ends all rows and the table. Code 11 while something refers to it: its rows are gone then.
  void end_tree() const {
    clear();
    session_->call<Table::free>(table_);
  }

  friend bool operator==(const table_ref &a, const table_ref &b) { return a.table_ == b.table_; }

 private:
  template <typename Sources>
  row_range<Table, Sources> range(Sources sources) const {
    return {*session_, table_, sources,
            table_ == nullptr ? nullptr : sources.template first<Table>(*session_, table_)};
  }
  typename Table::record_type *first() const {
    return table_ == nullptr ? nullptr : session_->call<Table::first_of_all>(table_);
  }
  typename Table::record_type *first_not_below(const key_type &key) const {
    if (table_ == nullptr) return nullptr;
    // Source 0 stands before every other one of the same key.
    detail::new_row<Table> place(*session_, std::uint32_t{0});
    if (!session_->ok()) return nullptr;
    Table::set_key(place.get(), key);
    return session_->call<Table::next>(table_, place.get().get());
  }
  row<Table> enter(detail::new_row<Table> &fresh) const {
    if (!session_->ok()) return {*session_, nullptr};
    session_->call<Table::insert>(table_, fresh.get().get());
    if (!session_->ok()) return {*session_, nullptr};
    return fresh.release();
  }
  // An end goes on whatever fails on its way.
  static void end_row(session &at, typename Table::record_type *record) {
    std::uint32_t err = 0;
    if (auto *object = Table::get(at.handle(), 0, record)) {
      Table::object_type::for_each_reference([&]<typename Field>(const Field &) {
        auto *below = Field::get(at.handle(), 0, object, &err);
        err =
            0;  // an object of an earlier variant lacks the field, and a foreign OID names nothing
        if (below == nullptr) return;
        Field::set(at.handle(), 0, object, nullptr, &err);
        table_ref<typename Field::table>::end_rows(at, below);
        err = 0;
        Field::table::free(at.handle(), 0, below, &err);
        err = 0;
      });
    }
    Table::destroy_record(at.handle(), 0, record, &err);
  }
  static void end_rows(session &at, c_type *table) {
    std::uint32_t err = 0;
    while (auto *record = Table::first_of_all(at.handle(), 0, table, &err)) {
      end_row(at, record);
      err = 0;
    }
  }
  template <typename>
  friend class table_ref;

  session *session_ = nullptr;
  c_type *table_ = nullptr;
};

// A table without a name that ends with its owner, and with it all rows and the tables below.
template <typename Table>
class tree : public table_ref<Table> {
 public:
  explicit tree(session &at) : table_ref<Table>(table_ref<Table>::make(at)) {}
  tree(const tree &) = delete;
  tree &operator=(const tree &) = delete;
  // From now on it is somebody else's.
  table_ref<Table> release() { return std::exchange(static_cast<table_ref<Table> &>(*this), {}); }
  ~tree() {
    if (!*this) return;
    this->clear();
    std::uint32_t err = 0;  // with something else that refers to it the table stays
    Table::free(this->at().handle(), 0, this->get(), &err);
  }
};

// A field by which a type refers to a table, with its C functions.
template <typename Table, auto get_table, auto set_table>
struct reference_field {
  using table = Table;
  static constexpr auto get = get_table;
  static constexpr auto set = set_table;
  const char *name;
};

namespace detail {

// Adds a row to the table that an object refers to. Where there is none one is made, which the
// object refers to when the row is in it.
template <typename Table, auto get, auto set, typename Object>
row<Table> add_below(session &at, Object *object, const typename Table::key_type &key) {
  if (auto *there = at.call<get>(object)) return table_ref<Table>(at, there).add(key);
  if (!at.ok()) return {at, nullptr};
  tree<Table> made(at);
  const row<Table> added = made.add(key);
  if (added) at.call<set>(object, made.get());
  if (!at.ok()) return {at, nullptr};
  made.release();
  return added;
}

}  // namespace detail

}  // namespace ospf_harbor
