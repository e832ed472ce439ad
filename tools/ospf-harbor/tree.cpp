#include "tree.hpp"

#include <kelp/primitives.h>
#include <ospf_harbor_oper.h>

#include <cstring>

namespace tool {

namespace {

constexpr std::uint32_t space = 0;
constexpr char root_name[] = "ospf";

// The operations of one table by one set of names, so that each step below is written once.
#define TOOL_TABLE(table_name, object_name, key_name)                                             \
  struct table_name##_ops {                                                                       \
    using Table = tbl_##table_name##_table;                                                       \
    using Record = tbl_##table_name##_record;                                                     \
    using Object = object_name;                                                                   \
    [[maybe_unused]] static constexpr const char *name = "tbl_" #table_name;                      \
    [[maybe_unused]] static constexpr auto open = &tbl_##table_name##_table_open;                 \
    [[maybe_unused]] static constexpr auto open_auto_id = &tbl_##table_name##_table_open_auto_id; \
    [[maybe_unused]] static constexpr auto free = &tbl_##table_name##_table_free;                 \
    [[maybe_unused]] static constexpr auto create_record = &tbl_##table_name##_create_record;     \
    [[maybe_unused]] static constexpr auto destroy_record = &tbl_##table_name##_destroy_record;   \
    [[maybe_unused]] static constexpr auto insert = &tbl_##table_name##_insert;                   \
    [[maybe_unused]] static constexpr auto first = &tbl_##table_name##_##key_name##_get_first;    \
    [[maybe_unused]] static constexpr auto next = &tbl_##table_name##_##key_name##_get_next;      \
    [[maybe_unused]] static constexpr auto create = &object_name##_create;                        \
    [[maybe_unused]] static constexpr auto destroy = &object_name##_destroy;                      \
    [[maybe_unused]] static constexpr auto get = &tbl_##table_name##_##object_name##_get_field;   \
    [[maybe_unused]] static constexpr auto put = &tbl_##table_name##_##object_name##_set_field;   \
    [[maybe_unused]] static constexpr auto print = &tbl_##table_name##_table_record_print;        \
  }

TOOL_TABLE(ospf_rev1, ospf_rev1, ospf_rev1_singleton_id);
TOOL_TABLE(ospf_instance_rev1, ospf_instance_rev1, ospf_instance_rev1_key_);
TOOL_TABLE(ospf_area, ospf_area, ospf_area_area_id);
TOOL_TABLE(ospf_interface, ospf_interface, ospf_interface_name);
TOOL_TABLE(ospf_neighbor, ospf_neighbor, ospf_neighbor_neighbor_id);
#undef TOOL_TABLE

// A new object that is destroyed unless it is given away.
template <typename Ops>
class NewObject {
 public:
  explicit NewObject(Session &session)
      : session_(session),
        object_(session.checked(Ops::create(session.handle(), space), Ops::name)) {}
  ~NewObject() {
    if (object_ != nullptr) Ops::destroy(session_.handle(), space, object_);
  }
  NewObject(const NewObject &) = delete;
  NewObject &operator=(const NewObject &) = delete;
  operator typename Ops::Object *() const { return object_; }
  typename Ops::Object *give_away() {
    auto *object = object_;
    object_ = nullptr;
    return object;
  }

 private:
  Session &session_;
  typename Ops::Object *object_;
};

// A new record, destroyed with its objects unless it is given away.
template <typename Ops>
class NewRecord {
 public:
  explicit NewRecord(Session &session)
      : session_(session),
        record_(session.checked(Ops::create_record(session.handle(), space, session.err()),
                                Ops::name)) {}
  ~NewRecord() {
    if (record_ == nullptr) return;
    std::uint32_t err = 0;
    Ops::destroy_record(session_.handle(), space, record_, &err);
  }
  NewRecord(const NewRecord &) = delete;
  NewRecord &operator=(const NewRecord &) = delete;
  typename Ops::Record *get() const { return record_; }
  void put(NewObject<Ops> &object) {
    Ops::put(session_.handle(), space, record_, object.give_away());
  }
  void insert_into(typename Ops::Table *table) {
    Ops::insert(session_.handle(), space, table, record_, session_.err());
    session_.check(Ops::name);
    record_ = nullptr;
  }

 private:
  Session &session_;
  typename Ops::Record *record_;
};

template <typename Ops, typename Act>
void for_each_record(Session &session, typename Ops::Table *table, Act act) {
  std::uint32_t err = 0;
  for (auto *record = Ops::first(session.handle(), space, table, &err); record != nullptr;) {
    auto *next = Ops::next(session.handle(), space, table, record, &err);
    act(record);
    record = next;
  }
}

// --- teardown
// -------------------------------------------------------------------------------------

template <typename Ops>
void empty_and_free(Session &session, typename Ops::Table *table);

// Drops what a row refers to, so that the row itself can go.
template <typename Child, typename Object, typename Get, typename Set>
void drop(Session &session, Object *object, Get get, Set set) {
  std::uint32_t err = 0;
  auto *table = get(session.handle(), space, object, &err);
  set(session.handle(), space, object, nullptr, &err);
  if (table != nullptr) empty_and_free<Child>(session, table);
}

void drop_children(Session &session, ospf_neighbor *) { static_cast<void>(session); }
void drop_children(Session &session, ospf_interface *interface) {
  drop<ospf_neighbor_ops>(session, interface, ospf_interface_neighbor_get_by_ref,
                          ospf_interface_neighbor_set_by_ref);
}
void drop_children(Session &session, ospf_area *area) {
  drop<ospf_interface_ops>(session, area, ospf_area_interfaces_get_by_ref,
                           ospf_area_interfaces_set_by_ref);
}
void drop_children(Session &session, ospf_instance_rev1 *instance) {
  drop<ospf_area_ops>(session, instance, ospf_instance_rev1_area_get_by_ref,
                      ospf_instance_rev1_area_set_by_ref);
}
void drop_children(Session &session, ospf_rev1 *root) {
  drop<ospf_instance_rev1_ops>(session, root, ospf_rev1_instance_get_by_ref,
                               ospf_rev1_instance_set_by_ref);
}

template <typename Ops>
void end_record(Session &session, typename Ops::Record *record) {
  std::uint32_t err = 0;
  auto *object = Ops::get(session.handle(), space, record);
  if (object != nullptr) drop_children(session, object);
  Ops::destroy_record(session.handle(), space, record, &err);
}

template <typename Ops>
void empty_and_free(Session &session, typename Ops::Table *table) {
  for_each_record<Ops>(session, table,
                       [&](typename Ops::Record *record) { end_record<Ops>(session, record); });
  std::uint32_t err = 0;
  Ops::free(session.handle(), space, table, &err);
}

// A new table without a name, emptied and freed unless something refers to it in the end.
template <typename Ops>
class NewTable {
 public:
  explicit NewTable(Session &session)
      : session_(session),
        table_(session.checked(Ops::open_auto_id(session.handle(), space, 0, session.err()),
                               Ops::name)) {}
  ~NewTable() {
    if (table_ != nullptr) empty_and_free<Ops>(session_, table_);
  }
  NewTable(const NewTable &) = delete;
  NewTable &operator=(const NewTable &) = delete;
  operator typename Ops::Table *() const { return table_; }
  void is_referred_to() { table_ = nullptr; }

 private:
  Session &session_;
  typename Ops::Table *table_;
};

// --- filling
// --------------------------------------------------------------------------------------

// Texts and addresses enter an object through a value of the caller's, whose content moves.
template <typename Object, typename Set>
void set_text(Session &session, Object *object, Set set, const std::string &text) {
  kelp_vstring value{};
  kelp_vstring_assign(session.handle(), space, &value, text.data(), text.size(), session.err());
  set(session.handle(), space, object, &value, session.err());
  kelp_vstring_destroy_internal(session.handle(), space, &value, 0);
}

template <typename Object, typename Set>
void set_address(Session &session, Object *object, Set set, const std::string &text) {
  if (text.empty()) return;
  ip_address value{};
  ip_address_parse(text.c_str(), &value);
  set(session.handle(), space, object, &value, session.err());
}

void fill_authentication(Session &session, ospf_interface *object, Authentication kind) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  ospf_authentication *field = ospf_interface_authentication_val_get(handle, space, object, err);
  session.check("the authentication of an interface");
  if (kind == Authentication::none) {
    std::uint32_t *arm = session.checked(u_int32_create(handle, space), "no_auth");
    ospf_authentication_no_auth_set(handle, space, field, arm, err);
    return;
  }
  // The daemon does not disclose the key: the arm is there and empty.
  kelp_vstring *key = session.checked(kelp_vstring_create(handle, space), "key_string");
  ospf_authentication_key_string_set(handle, space, field, key, err);
  ospf_crypto_algorithm *algorithm =
      session.checked(ospf_crypto_algorithm_create(handle, space), "crypto_algorithm_val");
  if (kind == Authentication::message_digest) {
    ospf_crypto_algorithm_md5_set_value(handle, space, algorithm, 1, err);
  }
  ospf_authentication_crypto_algorithm_val_set(handle, space, field, algorithm, err);
}

void add_neighbor(Session &session, tbl_ospf_neighbor_table *table, const Neighbor &neighbor) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  NewRecord<ospf_neighbor_ops> record(session);
  NewObject<ospf_neighbor_ops> object(session);
  set_address<ospf_neighbor>(session, object, ospf_neighbor_neighbor_id_set, neighbor.router_id);
  set_address<ospf_neighbor>(session, object, ospf_neighbor_address_set, neighbor.address);
  set_address<ospf_neighbor>(session, object, ospf_neighbor_dr_set, neighbor.dr);
  set_address<ospf_neighbor>(session, object, ospf_neighbor_bdr_set, neighbor.bdr);
  ospf_neighbor_state_set_value(handle, space, object, neighbor.state, err);
  ospf_nbr_stat *stats = ospf_neighbor_stats_get(handle, space, object, err);
  session.check("the counters of a neighbour");
  ospf_nbr_stat_nbr_event_count_set_value(handle, space, stats, neighbor.events, err);
  ospf_nbr_stat_nbr_retrans_qlen_set_value(handle, space, stats, neighbor.retransmission_queue,
                                           err);
  session.check("a neighbour");
  record.put(object);
  record.insert_into(table);
}

void add_interface(Session &session, tbl_ospf_interface_table *table, const Interface &interface) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  NewTable<ospf_neighbor_ops> neighbors(session);
  for (const Neighbor &neighbor : interface.neighbors) add_neighbor(session, neighbors, neighbor);
  NewRecord<ospf_interface_ops> record(session);
  NewObject<ospf_interface_ops> object(session);
  set_text<ospf_interface>(session, object, ospf_interface_name_set, interface.name);
  ospf_interface_network_type_set_value(handle, space, object, interface.network_type, err);
  ospf_interface_passive_set_value(handle, space, object, interface.passive ? 1 : 0, err);
  ospf_interface_cost_set_value(handle, space, object, interface.cost, err);
  ospf_interface_hello_interval_set_value(handle, space, object, interface.hello_interval, err);
  ospf_interface_dead_interval_set_value(handle, space, object, interface.dead_interval, err);
  ospf_interface_retransmit_interval_set_value(handle, space, object, interface.retransmit_interval,
                                               err);
  ospf_interface_transmit_delay_set_value(handle, space, object, interface.transmit_delay, err);
  ospf_interface_mtu_ignore_set_value(handle, space, object, interface.mtu_ignored ? 1 : 0, err);
  ospf_interface_enable_set_value(handle, space, object, interface.enabled ? 1 : 0, err);
  fill_authentication(session, object, interface.authentication);
  set_text<ospf_interface>(session, object, ospf_interface_state_set, interface.state);
  ospf_interface_hello_timer_set_value(handle, space, object, interface.hello_timer, err);
  ospf_interface_wait_timer_set_value(handle, space, object, interface.wait_timer, err);
  set_address<ospf_interface>(session, object, ospf_interface_dr_set, interface.dr);
  set_address<ospf_interface>(session, object, ospf_interface_bdr_set, interface.bdr);
  ospf_interface_priority_set_value(handle, space, object, interface.priority, err);
  session.check("an interface");
  record.put(object);
  auto *row = ospf_interface_ops::get(handle, space, record.get());
  ospf_interface_neighbor_set_by_ref(handle, space, row, neighbors, err);
  session.check("the neighbours of an interface");
  record.insert_into(table);
  neighbors.is_referred_to();
}

void add_area(Session &session, tbl_ospf_area_table *table, const Area &area) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  NewTable<ospf_interface_ops> interfaces(session);
  for (const Interface &interface : area.interfaces) add_interface(session, interfaces, interface);
  NewRecord<ospf_area_ops> record(session);
  NewObject<ospf_area_ops> object(session);
  ospf_area_area_id_set_value(handle, space, object, area.id, err);
  ospf_area_interfaces_set_by_ref(handle, space, object, interfaces, err);
  session.check("an area");
  record.put(object);
  record.insert_into(table);
  interfaces.is_referred_to();
}

// The table of instances below the root row, both made when they are missing.
tbl_ospf_instance_rev1_table *instances_of_root(Session &session) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  tbl_ospf_rev1_table *roots =
      session.checked(ospf_rev1_ops::open(handle, space, root_name, 0, err), ospf_rev1_ops::name);
  if (auto *record = ospf_rev1_ops::first(handle, space, roots, err); record != nullptr) {
    return session.checked(ospf_rev1_instance_get_by_ref(
                               handle, space, ospf_rev1_ops::get(handle, space, record), err),
                           "the instances of the root");
  }
  NewTable<ospf_instance_rev1_ops> instances(session);
  NewRecord<ospf_rev1_ops> record(session);
  NewObject<ospf_rev1_ops> object(session);
  ospf_rev1_instance_set_by_ref(handle, space, object, instances, err);
  session.check("the root");
  record.put(object);
  record.insert_into(roots);
  tbl_ospf_instance_rev1_table *result = instances;
  instances.is_referred_to();
  return result;
}

ospf_instance_rev1_key *key_of(Session &session, tbl_ospf_instance_rev1_record *record) {
  return tbl_ospf_instance_rev1_ospf_instance_rev1_key_get_field(session.handle(), space, record);
}

}  // namespace

void add_instance(Session &session, const Instance &instance) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  const std::uint32_t family =
      instance.family == Family::ipv4 ? ADDR_FAMILY_IPV4 : ADDR_FAMILY_IPV6;
  tbl_ospf_instance_rev1_table *instances = instances_of_root(session);
  NewTable<ospf_area_ops> areas(session);
  for (const Area &area : instance.areas) add_area(session, areas, area);
  NewRecord<ospf_instance_rev1_ops> record(session);
  NewObject<ospf_instance_rev1_ops> object(session);
  ospf_instance_rev1_key *key =
      session.checked(ospf_instance_rev1_key_create(handle, space), "an instance's key");
  tbl_ospf_instance_rev1_ospf_instance_rev1_key_set_field(handle, space, record.get(), key);
  ospf_instance_rev1_key_af_set_value(handle, space, key, family, err);
  ospf_instance_rev1_key_router_id_set_value(handle, space, key, instance.router_id, err);
  ospf_instance_rev1_area_set_by_ref(handle, space, object, areas, err);
  session.check("an instance");
  record.put(object);
  // Everything that can fail has been done: the instance of the same key gives way now.
  for_each_record<ospf_instance_rev1_ops>(
      session, instances, [&](tbl_ospf_instance_rev1_record *other) {
        if (ospf_instance_rev1_key_compare(key_of(session, other), key) == 0) {
          end_record<ospf_instance_rev1_ops>(session, other);
        }
      });
  record.insert_into(instances);
  areas.is_referred_to();
}

void clear_tree(Session &session) {
  std::uint32_t err = 0;
  auto *roots = ospf_rev1_ops::open(session.handle(), space, root_name, 1, &err);
  if (roots != nullptr) empty_and_free<ospf_rev1_ops>(session, roots);
}

// --- reading
// --------------------------------------------------------------------------------------

namespace {

std::string address_text(const ip_address *address) {
  char text[80] = "";
  ip_address_format(address, text, sizeof text);
  return text;
}

// A record's text form. The buffer starts out blank, since the closing line is placed over a gap
// that keeps what the buffer held; it grows until the text leaves room.
template <typename Ops>
std::string text_of(Session &session, typename Ops::Record *record) {
  for (std::uint32_t size = 1 << 14;; size *= 4) {
    std::string text(size, ' ');
    const std::uint32_t length = Ops::print(session.handle(), space, text.data(), record,
                                            static_cast<std::int32_t>(size), session.err());
    session.check(Ops::name);
    if (length + 256 < size) return text.substr(0, length);
  }
}

template <typename Ops, typename Key, typename Children>
std::vector<Row> rows_of(Session &session, typename Ops::Table *table, const char *kind, Key key,
                         Children children) {
  std::vector<Row> rows;
  if (table == nullptr) return rows;
  for_each_record<Ops>(session, table, [&](typename Ops::Record *record) {
    auto *object = Ops::get(session.handle(), space, record);
    rows.push_back({kind, key(record, object), text_of<Ops>(session, record), children(object)});
  });
  return rows;
}

std::vector<Row> neighbors_of(Session &session, ospf_interface *interface) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  return rows_of<ospf_neighbor_ops>(
      session, ospf_interface_neighbor_get_by_ref(handle, space, interface, err), "neighbor",
      [&](auto *, ospf_neighbor *object) {
        return address_text(ospf_neighbor_neighbor_id_get(handle, space, object, err));
      },
      [](ospf_neighbor *) { return std::vector<Row>(); });
}

std::vector<Row> interfaces_of(Session &session, ospf_area *area) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  return rows_of<ospf_interface_ops>(
      session, ospf_area_interfaces_get_by_ref(handle, space, area, err), "interface",
      [&](auto *, ospf_interface *object) {
        return std::string(kelp_vstring_text(ospf_interface_name_get(handle, space, object, err)));
      },
      [&](ospf_interface *object) { return neighbors_of(session, object); });
}

std::vector<Row> areas_of(Session &session, ospf_instance_rev1 *instance) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  return rows_of<ospf_area_ops>(
      session, ospf_instance_rev1_area_get_by_ref(handle, space, instance, err), "area",
      [&](auto *, ospf_area *object) {
        return dotted(ospf_area_area_id_get_value(handle, space, object, err));
      },
      [&](ospf_area *object) { return interfaces_of(session, object); });
}

std::vector<Row> instances_of(Session &session, ospf_rev1 *root) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  return rows_of<ospf_instance_rev1_ops>(
      session, ospf_rev1_instance_get_by_ref(handle, space, root, err), "instance",
      [&](tbl_ospf_instance_rev1_record *record, ospf_instance_rev1 *) {
        ospf_instance_rev1_key *key = key_of(session, record);
        const bool ipv4 =
            ospf_instance_rev1_key_af_get_value(handle, space, key, err) == ADDR_FAMILY_IPV4;
        return std::string(ipv4 ? "ipv4" : "ipv6") + "," +
               dotted(ospf_instance_rev1_key_router_id_get_value(handle, space, key, err));
      },
      [&](ospf_instance_rev1 *object) { return areas_of(session, object); });
}

}  // namespace

std::vector<Row> read_tree(Session &session) {
  auto *roots = ospf_rev1_ops::open(session.handle(), space, root_name, 1, session.err());
  session.check("the root");
  std::vector<Row> rows = rows_of<ospf_rev1_ops>(
      session, roots, "ospf", [](auto *, ospf_rev1 *) { return std::string("0"); },
      [&](ospf_rev1 *object) { return instances_of(session, object); });
  session.check("reading the tree");
  return rows;
}

}  // namespace tool
