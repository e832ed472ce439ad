// Tree streams for tests: of a session's tree, and made by hand frame by frame, sound or not.
#pragma once

#include <ospf_harbor_oper.h>

#include <string>

#include "ospf_tables/session.hpp"
#include "ospf_tables/table_ops.hpp"
#include "tree_exchange/stream_format.hpp"
#include "tree_exchange/table_rules.hpp"
#include "tree_exchange/tree_writer.hpp"

namespace tree_exchange_tests {

inline tree_exchange::Bytes stream_of(ospf_tables::Session &session) {
  tree_exchange::Bytes stream;
  tree_exchange::write_tree(session, [&](tree_exchange::ByteView bytes) {
    stream.insert(stream.end(), bytes.begin(), bytes.end());
  });
  return stream;
}

// Makes the checksum at the end right again.
inline void repair_checksum(tree_exchange::Bytes &stream) {
  const std::uint32_t sum =
      tree_exchange::checksum(0, tree_exchange::ByteView(stream).first(stream.size() - 4));
  stream.resize(stream.size() - 4);
  tree_exchange::append_number(stream, sum, 4);
}

class StreamMaker {
 public:
  StreamMaker() {
    raw({tree_exchange::stream_magic.begin(), tree_exchange::stream_magic.end()});
    tree_exchange::append_number(bytes_, tree_exchange::stream_version, 2);
    tree_exchange::append_number(bytes_, tree_exchange::stream_module.size(), 1);
    raw({tree_exchange::stream_module.begin(), tree_exchange::stream_module.end()});
  }
  const tree_exchange::Bytes &bytes() const { return bytes_; }

  StreamMaker &raw(const tree_exchange::Bytes &bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    return *this;
  }
  StreamMaker &frame(char kind, const tree_exchange::Bytes &body) {
    bytes_.push_back(static_cast<std::uint8_t>(kind));
    tree_exchange::append_number(bytes_, body.size(), 4);
    return raw(body);
  }
  StreamMaker &table(const std::string &reference, const char *name) {
    tree_exchange::Bytes body{static_cast<std::uint8_t>(reference.size())};
    body.insert(body.end(), reference.begin(), reference.end());
    const auto luid = tree_exchange::rule_named(name)->luid;
    body.insert(body.end(), luid.begin(), luid.end());
    return frame('T', body);
  }
  StreamMaker &row(const tree_exchange::Bytes &image) { return frame('R', image); }
  StreamMaker &close(std::uint32_t rows) {
    tree_exchange::Bytes body;
    tree_exchange::append_number(body, rows, 4);
    return frame('C', body);
  }
  StreamMaker &end(std::uint64_t rows) {
    tree_exchange::Bytes body;
    tree_exchange::append_number(body, rows, 8);
    tree_exchange::append_number(body, 0, 4);
    frame('E', body);
    repair_checksum(bytes_);
    return *this;
  }
  StreamMaker &poke(std::size_t at, std::uint8_t byte) {
    bytes_.at(at) = byte;
    return *this;
  }

 private:
  tree_exchange::Bytes bytes_;
};

template <typename Ops, typename Fill>
tree_exchange::Bytes image_of(Fill fill) {
  ospf_tables::Session session;
  kelp_handle *h = session.handle();
  std::uint32_t err = 0;
  auto *record = Ops::create_record_of(h, 0, session.site().source, &err);
  fill(h, record, &err);
  tree_exchange::Bytes image(2000);
  image.resize(Ops::marshal(h, 0, image.data(), record, 1900, &err));
  Ops::destroy_record(h, 0, record, &err);
  return image;
}

inline tree_exchange::Bytes root_image() {
  return image_of<ospf_tables::ospf_rev1_ops>([](kelp_handle *h, auto *record, std::uint32_t *) {
    tbl_ospf_rev1_ospf_rev1_set_field(h, 0, record, ospf_rev1_create(h, 0));
  });
}

inline tree_exchange::Bytes instance_image(std::uint32_t router_id) {
  return image_of<ospf_tables::ospf_instance_rev1_ops>(
      [&](kelp_handle *h, auto *record, std::uint32_t *err) {
        auto *key = ospf_instance_rev1_key_create(h, 0);
        ospf_instance_rev1_key_router_id_set_value(h, 0, key, router_id, err);
        tbl_ospf_instance_rev1_ospf_instance_rev1_key_set_field(h, 0, record, key);
        tbl_ospf_instance_rev1_ospf_instance_rev1_set_field(h, 0, record,
                                                            ospf_instance_rev1_create(h, 0));
      });
}

inline tree_exchange::Bytes area_image(std::uint32_t area_id, std::int8_t variant = 1) {
  return image_of<ospf_tables::ospf_area_ops>(
      [&](kelp_handle *h, auto *record, std::uint32_t *err) {
        ospf_area *area = ospf_area_create(h, 0);
        ospf_area_area_id_set_value(h, 0, area, area_id, err);
        reinterpret_cast<kelp_object_header *>(area)->variant = variant;
        tbl_ospf_area_ospf_area_set_field(h, 0, record, area);
      });
}

}  // namespace tree_exchange_tests
