// Rows and tables for code that fills them: new ones are owned here until they are given away, so
// that a failure half way leaves nothing behind, and whole trees of them can be emptied.
#pragma once

#include <kelp/primitives.h>

#include <string_view>

#include "ospf_tables/session.hpp"
#include "ospf_tables/table_ops.hpp"

namespace ospf_tables {

// A new object that is destroyed unless it is given away.
template <typename Object, auto create, auto destroy>
class OwnedObject {
 public:
  OwnedObject(Session &session, const char *what)
      : session_(session), object_(session.checked(create(session.handle(), space), what)) {}
  ~OwnedObject() {
    if (object_ != nullptr) destroy(session_.handle(), space, object_);
  }
  OwnedObject(const OwnedObject &) = delete;
  OwnedObject &operator=(const OwnedObject &) = delete;
  operator Object *() const { return object_; }
  Object *give_away() {
    Object *object = object_;
    object_ = nullptr;
    return object;
  }

 private:
  Session &session_;
  Object *object_;
};

template <typename Ops>
struct NewObject : OwnedObject<typename Ops::Object, Ops::create, Ops::destroy> {
  explicit NewObject(Session &session)
      : OwnedObject<typename Ops::Object, Ops::create, Ops::destroy>(session, Ops::name) {}
};

template <typename Ops>
struct NewKey : OwnedObject<typename Ops::Key, Ops::create_key, Ops::destroy_key> {
  explicit NewKey(Session &session)
      : OwnedObject<typename Ops::Key, Ops::create_key, Ops::destroy_key>(session, Ops::name) {}
};

// The first record of the session's site, and the one behind another; null at the end.
template <typename Ops>
typename Ops::Record *first_record(Session &session, typename Ops::Table *table,
                                   std::uint32_t *err) {
  return Ops::first_of(session.handle(), space, table, session.site().source, err);
}
template <typename Ops>
typename Ops::Record *next_record(Session &session, typename Ops::Table *table,
                                  typename Ops::Record *record, std::uint32_t *err) {
  return Ops::next_of(session.handle(), space, table, record, session.site().source, err);
}

// Destroys a record with its objects and all that these refer to.
template <typename Ops>
void end_record(Session &session, typename Ops::Record *record);

// A new record, ended unless a table takes it.
template <typename Ops>
class NewRecord {
 public:
  using Record = typename Ops::Record;

  explicit NewRecord(Session &session)
      : session_(session),
        record_(session.checked(
            Ops::create_record_of(session.handle(), space, session.site().source, session.err()),
            Ops::name)) {}
  ~NewRecord() {
    if (record_ != nullptr) end_record<Ops>(session_, record_);
  }
  NewRecord(const NewRecord &) = delete;
  NewRecord &operator=(const NewRecord &) = delete;
  Record *get() const { return record_; }
  typename Ops::Object *put(NewObject<Ops> &object) {
    typename Ops::Object *placed = object.give_away();
    Ops::put(session_.handle(), space, record_, placed);
    return placed;
  }
  void put_key(NewKey<Ops> &key) {
    Ops::put_key(session_.handle(), space, record_, key.give_away());
  }
  Record *insert_into(typename Ops::Table *table) {
    Ops::insert(session_.handle(), space, table, record_, session_.err());
    session_.check(Ops::name);
    Record *record = record_;
    is_in_a_table();
    return record;
  }
  // False, with the table as it was, when another record has that key.
  bool insert_unless_taken(typename Ops::Table *table) {
    Ops::insert(session_.handle(), space, table, record_, session_.err());
    if (*session_.err() == KELP_ERR_EXISTS) {
      *session_.err() = 0;
      return false;
    }
    session_.check(Ops::name);
    is_in_a_table();
    return true;
  }
  void is_in_a_table() { record_ = nullptr; }

 private:
  Session &session_;
  Record *record_;
};

// In the table's order. The record at hand may be taken out or destroyed by act. A step that fails
// ends the loop, since nothing tells what it would have passed over: LibraryFailure is thrown.
template <typename Ops, typename Act>
void for_each_record(Session &session, typename Ops::Table *table, Act act) {
  auto *record = first_record<Ops>(session, table, session.err());
  session.check(Ops::name);
  while (record != nullptr) {
    auto *next = next_record<Ops>(session, table, record, session.err());
    session.check(Ops::name);
    act(record);
    record = next;
  }
}

// False when the object is at a variant without the field.
template <typename Reference>
bool has_reference(Session &session, const Reference &reference,
                   typename Reference::Object *object) {
  std::uint32_t err = 0;
  reference.get(session.handle(), space, object, &err);
  if (err == KELP_ERR_EPOCH) return false;
  *session.err() = err;
  session.check(reference.name);
  return true;
}

// The table that a row refers to; null for none, and at a variant without the field.
template <typename Reference>
typename Reference::Table *table_below(Session &session, const Reference &reference,
                                       typename Reference::Object *object) {
  std::uint32_t err = 0;
  auto *table = reference.get(session.handle(), space, object, &err);
  if (err != 0 && err != KELP_ERR_EPOCH) {
    *session.err() = err;
    session.check(reference.name);
  }
  return table;
}

// Destroys every row with all that it refers to, and then the table, unless it has rows of other
// sites.
template <typename Ops>
void empty_and_free(Session &session, typename Ops::Table *table);

template <typename Ops>
void end_record(Session &session, typename Ops::Record *record) {
  std::uint32_t err = 0;
  if (auto *object = Ops::get(session.handle(), space, record); object != nullptr) {
    for_each_reference<Ops>([&]<typename Reference>(const Reference &reference) {
      auto *table = reference.get(session.handle(), space, object, &err);
      err = 0;  // also at a variant without the field, where there is no table
      if (table == nullptr) return;
      reference.set(session.handle(), space, object, nullptr, &err);
      empty_and_free<typename Reference::Child>(session, table);
    });
  }
  Ops::destroy_record(session.handle(), space, record, &err);
}

template <typename Ops>
void empty_and_free(Session &session, typename Ops::Table *table) {
  // A record that is handed out is ended, whatever the step tells beside it.
  std::uint32_t err = 0;
  while (auto *record = first_record<Ops>(session, table, &err)) {
    end_record<Ops>(session, record);
    err = 0;
  }
  err = 0;
  if (reinterpret_cast<kelp_table *>(table)->record_count != 0) return;
  Ops::free(session.handle(), space, table, &err);
}

// A new table without a name, emptied and freed unless the object of a record refers to it.
template <typename Ops>
class NewTable {
 public:
  explicit NewTable(Session &session)
      : session_(session),
        table_(session.checked(Ops::open_auto_id(session.handle(), space, 0, session.err()),
                               Ops::name)) {}
  // A table that nothing refers to any more.
  NewTable(Session &session, typename Ops::Table *table) : session_(session), table_(table) {}
  ~NewTable() {
    if (table_ != nullptr) empty_and_free<Ops>(session_, table_);
  }
  NewTable(const NewTable &) = delete;
  NewTable &operator=(const NewTable &) = delete;
  operator typename Ops::Table *() const { return table_; }
  // From now on the table ends with what refers to it.
  typename Ops::Table *is_referred_to() {
    typename Ops::Table *table = table_;
    table_ = nullptr;
    return table;
  }

 private:
  Session &session_;
  typename Ops::Table *table_;
};

// Makes the table that an object of a record is to refer to.
template <typename Ops, typename Object>
typename Ops::Table *add_table(Session &session, Object *object,
                               void (*set)(kelp_handle *, std::uint32_t, Object *,
                                           typename Ops::Table *, std::uint32_t *)) {
  NewTable<Ops> table(session);
  set(session.handle(), space, object, table, session.err());
  session.check(Ops::name);
  return table.is_referred_to();
}

// The same with a table that was made before; null leaves the object as it is.
template <typename Ops, typename Object>
void hand_over(Session &session, NewTable<Ops> *table, Object *object,
               void (*set)(kelp_handle *, std::uint32_t, Object *, typename Ops::Table *,
                           std::uint32_t *)) {
  if (table == nullptr) return;
  set(session.handle(), space, object, *table, session.err());
  session.check(Ops::name);
  table->is_referred_to();
}

// Texts enter an object through a value of the caller's, whose content moves.
template <typename Object, typename Set>
void set_text(Session &session, Object *object, Set set, std::string_view text) {
  kelp_vstring value{};
  kelp_vstring_assign(session.handle(), space, &value, text.data(), text.size(), session.err());
  set(session.handle(), space, object, &value, session.err());
  kelp_vstring_destroy_internal(session.handle(), space, &value, 0);
}

// Writes an IPv4 address.
template <typename Object, typename Set>
void set_address(Session &session, Object *object, Set set, std::uint32_t host_order) {
  ip_address value = ip_address_make_ipv4(host_order);
  set(session.handle(), space, object, &value, session.err());
}

// Writes an address in its usual form; an empty text leaves the field as it is.
template <typename Object, typename Set>
void set_address(Session &session, Object *object, Set set, const char *text) {
  if (*text == '\0') return;
  ip_address value{};
  ip_address_parse(text, &value);
  set(session.handle(), space, object, &value, session.err());
}

}  // namespace ospf_tables
