// Three records built, read, and as images, text and XML beside serialisation libraries, on the
// same data, in one run. Names are OPERATION/RECORD/WHO. Objects cycle through 64 of their kind, so
// that none is always in the nearest cache. build makes an object, sets every field and ends it;
// read reads every field. Images: marshal, unmarshal into a new and into a kept object, length.
// FlatBuffers and Cap'n Proto build messages rather than objects: their marshal starts from the
// native object and from nothing, and Cap'n Proto's unmarshal reads every field. XML: libyang and
// pugixml read the very document that the library writes.
#include <benchmark/benchmark.h>
#include <capnp/message.h>
#include <capnp/serialize.h>
#include <google/protobuf/text_format.h>
#include <kelp/primitives.h>
#include <kelp/xml.h>
#include <libyang/libyang.h>
#include <ospf_harbor_oper.h>

#include <pugixml.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "../store.hpp"
#include "peers.capnp.h"
#include "peers.pb.h"
#include "peers_generated.h"
// The statements that fill a record of each.
#include "fill_peers.inc"

namespace {

constexpr std::uint32_t slack = 64;
constexpr std::size_t text_room = 64 * 1024;

#define RECORD(record_name, capnp_name)                                                   \
  struct record_name##_record {                                                           \
    using Object = record_name;                                                           \
    using Proto = peer_proto::record_name;                                                \
    using Flat = peer_flat::record_name;                                                  \
    using FlatNative = peer_flat::record_name##T;                                         \
    using Capnp = peer_capnp::capnp_name;                                                 \
    static constexpr const char *name = #record_name;                                     \
    static constexpr auto create = &record_name##_create;                                 \
    static constexpr auto destroy = &record_name##_destroy;                               \
    static constexpr auto marshal = &record_name##_marshal;                               \
    static constexpr auto unmarshal = &record_name##_unmarshal;                           \
    static constexpr auto len = &record_name##_len;                                       \
    static constexpr auto print = &record_name##_print;                                   \
    static constexpr auto to_xml = &record_name##_to_xml;                                 \
    static constexpr auto from_xml = &record_name##_from_xml;                             \
    static auto pack(flatbuffers::FlatBufferBuilder &builder, const FlatNative &native) { \
      return peer_flat::record_name::Pack(builder, &native);                              \
    }                                                                                     \
  }
RECORD(ospf_neighbor, OspfNeighbor);
RECORD(ospf_interface, OspfInterface);
RECORD(link_scope_lsa, LinkScopeLsa);
#undef RECORD

// A filled object of the library, and its forms.
template <typename Record>
class Filled {
 public:
  Filled() : object(Record::create(store, 0)) { fill(store, object); }
  ~Filled() { Record::destroy(store, 0, object); }
  Filled(const Filled &) = delete;
  Filled &operator=(const Filled &) = delete;

  std::vector<std::uint8_t> image() {
    const std::uint32_t length = Record::len(store, 0, object);
    std::vector<std::uint8_t> bytes(length + slack);
    std::uint32_t err = 0;
    bytes.resize(
        Record::marshal(store, 0, bytes.data(), object, static_cast<std::int32_t>(length), &err));
    bench::require(err);
    return bytes;
  }
  std::string xml() {
    std::string text(text_room, ' ');
    std::uint32_t err = 0;
    text.resize(Record::to_xml(store, 0, Record::name, text.data(), object, text_room, 0, &err));
    bench::require(err);
    return text;
  }

  bench::Store store;
  typename Record::Object *object;
};

template <typename Record>
typename Record::Proto proto(bool images) {
  typename Record::Proto message;
  fill(message, images);
  return message;
}

// Takes the items of a set in turn.
template <typename Item>
class Cycle {
 public:
  static constexpr std::size_t count = 64;
  template <typename Make>
  explicit Cycle(Make make) {
    for (std::size_t at = 0; at < count; ++at) items_.push_back(make());
  }
  Item &next() { return items_[at_++ % count]; }

 private:
  std::vector<Item> items_;
  std::size_t at_ = 0;
};

// Filled objects of one store.
template <typename Record>
class Objects : public bench::Store {
 public:
  Objects()
      : objects_([this] {
          auto *object = Record::create(*this, 0);
          fill(*this, object);
          return object;
        }) {}
  ~Objects() {
    for (std::size_t at = 0; at < decltype(objects_)::count; ++at) {
      Record::destroy(*this, 0, objects_.next());
    }
  }
  typename Record::Object *next() { return objects_.next(); }

 private:
  Cycle<typename Record::Object *> objects_;
};

template <typename Record>
auto protos(bool images) {
  return Cycle<typename Record::Proto>([=] { return proto<Record>(images); });
}

// --- objects ------------------------------------------------------------------------------------

template <typename Record>
void build_harbor(benchmark::State &state) {
  bench::Store store;
  for (auto _ : state) {
    auto *object = Record::create(store, 0);
    fill(store, object);
    benchmark::DoNotOptimize(object);
    Record::destroy(store, 0, object);
  }
}

template <typename Record>
void build_protobuf(benchmark::State &state) {
  for (auto _ : state) {
    auto message = std::make_unique<typename Record::Proto>();
    fill(*message, false);
    benchmark::DoNotOptimize(message.get());
  }
}

template <typename Record>
void read_harbor(benchmark::State &state) {
  Objects<Record> objects;
  for (auto _ : state) benchmark::DoNotOptimize(sum(objects, objects.next()));
}

template <typename Record>
void read_protobuf(benchmark::State &state) {
  auto messages = protos<Record>(false);
  for (auto _ : state) benchmark::DoNotOptimize(sum(messages.next()));
}

// --- images -------------------------------------------------------------------------------------

template <typename Record>
void marshal_harbor(benchmark::State &state) {
  Objects<Record> objects;
  std::vector<std::uint8_t> buffer(Record::len(objects, 0, objects.next()) + slack);
  const auto room = static_cast<std::int32_t>(buffer.size() - slack);
  std::uint32_t err = 0;
  std::uint32_t size = 0;
  for (auto _ : state) {
    size = Record::marshal(objects, 0, buffer.data(), objects.next(), room, &err);
    benchmark::ClobberMemory();
  }
  bench::require(err);
  state.counters["bytes"] = size;
}

template <typename Record>
void marshal_protobuf(benchmark::State &state) {
  auto messages = protos<Record>(true);
  std::vector<std::uint8_t> buffer(messages.next().ByteSizeLong());
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        messages.next().SerializeToArray(buffer.data(), static_cast<int>(buffer.size())));
    benchmark::ClobberMemory();
  }
  state.counters["bytes"] = static_cast<double>(buffer.size());
}

template <typename Record>
void marshal_flatbuffers(benchmark::State &state) {
  typename Record::FlatNative native;
  fill(native);
  flatbuffers::FlatBufferBuilder builder(16 * 1024);
  for (auto _ : state) {
    builder.Clear();
    builder.Finish(Record::pack(builder, native));
    benchmark::DoNotOptimize(builder.GetBufferPointer());
  }
  state.counters["bytes"] = builder.GetSize();
}

template <typename Record>
void marshal_capnp(benchmark::State &state) {
  std::size_t words = 0;
  for (auto _ : state) {
    capnp::MallocMessageBuilder builder;
    fill(builder.initRoot<typename Record::Capnp>());
    const auto flat = capnp::messageToFlatArray(builder);
    benchmark::DoNotOptimize(flat.begin());
    words = flat.size();
  }
  state.counters["bytes"] = static_cast<double>(words * sizeof(capnp::word));
}

template <typename Record>
void unmarshal_new_harbor(benchmark::State &state) {
  Filled<Record> filled;
  std::vector<std::uint8_t> image = filled.image();
  const auto size = static_cast<std::int32_t>(image.size());
  std::uint32_t err = 0;
  for (auto _ : state) {
    auto *object = Record::create(filled.store, 0);
    benchmark::DoNotOptimize(
        Record::unmarshal(filled.store, 0, image.data(), object, size, 0, &err));
    Record::destroy(filled.store, 0, object);
  }
  bench::require(err);
}

template <typename Record>
void unmarshal_new_protobuf(benchmark::State &state) {
  const std::string image = proto<Record>(true).SerializeAsString();
  for (auto _ : state) {
    auto message = std::make_unique<typename Record::Proto>();
    benchmark::DoNotOptimize(message->ParseFromString(image));
  }
}

template <typename Record>
void unmarshal_new_flatbuffers(benchmark::State &state) {
  typename Record::FlatNative native;
  fill(native);
  flatbuffers::FlatBufferBuilder builder;
  builder.Finish(Record::pack(builder, native));
  for (auto _ : state) {
    flatbuffers::Verifier verifier(builder.GetBufferPointer(), builder.GetSize());
    benchmark::DoNotOptimize(verifier.VerifyBuffer<typename Record::Flat>(nullptr));
    const auto *root = flatbuffers::GetRoot<typename Record::Flat>(builder.GetBufferPointer());
    auto object = std::unique_ptr<typename Record::FlatNative>(root->UnPack());
    benchmark::DoNotOptimize(object.get());
  }
}

template <typename Record>
void unmarshal_new_capnp(benchmark::State &state) {
  capnp::MallocMessageBuilder builder;
  fill(builder.initRoot<typename Record::Capnp>());
  const auto flat = capnp::messageToFlatArray(builder);
  for (auto _ : state) {
    capnp::FlatArrayMessageReader reader(flat);
    benchmark::DoNotOptimize(sum(reader.getRoot<typename Record::Capnp>()));
  }
}

template <typename Record>
void unmarshal_kept_harbor(benchmark::State &state) {
  Filled<Record> filled;
  std::vector<std::uint8_t> image = filled.image();
  const auto size = static_cast<std::int32_t>(image.size());
  Objects<Record> objects;
  std::uint32_t err = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        Record::unmarshal(objects, 0, image.data(), objects.next(), size, 1, &err));
  }
  bench::require(err);
}

template <typename Record>
void unmarshal_kept_protobuf(benchmark::State &state) {
  const std::string image = proto<Record>(true).SerializeAsString();
  auto messages = protos<Record>(true);
  for (auto _ : state) benchmark::DoNotOptimize(messages.next().ParseFromString(image));
}

template <typename Record>
void unmarshal_kept_flatbuffers(benchmark::State &state) {
  typename Record::FlatNative native;
  fill(native);
  flatbuffers::FlatBufferBuilder builder;
  builder.Finish(Record::pack(builder, native));
  typename Record::FlatNative object;
  for (auto _ : state) {
    flatbuffers::Verifier verifier(builder.GetBufferPointer(), builder.GetSize());
    benchmark::DoNotOptimize(verifier.VerifyBuffer<typename Record::Flat>(nullptr));
    flatbuffers::GetRoot<typename Record::Flat>(builder.GetBufferPointer())->UnPackTo(&object);
    benchmark::ClobberMemory();
  }
}

template <typename Record>
void len_harbor(benchmark::State &state) {
  Objects<Record> objects;
  for (auto _ : state) benchmark::DoNotOptimize(Record::len(objects, 0, objects.next()));
}

template <typename Record>
void len_protobuf(benchmark::State &state) {
  auto messages = protos<Record>(true);
  for (auto _ : state) benchmark::DoNotOptimize(messages.next().ByteSizeLong());
}

// --- text ---------------------------------------------------------------------------------------

template <typename Record>
void print_harbor(benchmark::State &state) {
  Objects<Record> objects;
  std::string text(text_room, ' ');
  std::uint32_t err = 0;
  std::uint32_t size = 0;
  for (auto _ : state) {
    size = Record::print(objects, 0, text.data(), 0, Record::name, objects.next(), text_room, &err);
    benchmark::ClobberMemory();
  }
  bench::require(err);
  state.counters["bytes"] = size;
}

template <typename Record>
void print_protobuf(benchmark::State &state) {
  auto messages = protos<Record>(false);
  std::string text;
  for (auto _ : state) {
    text.clear();
    benchmark::DoNotOptimize(google::protobuf::TextFormat::PrintToString(messages.next(), &text));
  }
  state.counters["bytes"] = static_cast<double>(text.size());
}

// --- XML ----------------------------------------------------------------------------------------

template <typename Record>
void to_xml_harbor(benchmark::State &state) {
  Objects<Record> objects;
  std::string text(text_room, ' ');
  std::uint32_t err = 0;
  std::uint32_t size = 0;
  for (auto _ : state) {
    size =
        Record::to_xml(objects, 0, Record::name, text.data(), objects.next(), text_room, 0, &err);
    benchmark::ClobberMemory();
  }
  bench::require(err);
  state.counters["bytes"] = size;
}

// Writes a document that stands already.
template <typename Record>
void to_xml_pugixml(benchmark::State &state) {
  Filled<Record> filled;
  Cycle<std::unique_ptr<pugi::xml_document>> documents([&] {
    auto document = std::make_unique<pugi::xml_document>();
    document->load_string(filled.xml().c_str());
    return document;
  });
  struct Writer : pugi::xml_writer {
    std::string text;
    void write(const void *data, std::size_t size) override {
      text.append(static_cast<const char *>(data), size);
    }
  } writer;
  for (auto _ : state) {
    writer.text.clear();
    documents.next()->save(writer, "", pugi::format_raw | pugi::format_no_declaration);
    benchmark::DoNotOptimize(writer.text.data());
  }
  state.counters["bytes"] = static_cast<double>(writer.text.size());
}

class Yang {
 public:
  Yang() {
    if (ly_ctx_new(PEER_SCHEMAS, 0, &context_) != LY_SUCCESS ||
        ly_ctx_load_module(context_, "peers", nullptr, nullptr) == nullptr) {
      bench::require(1);
    }
  }
  ~Yang() { ly_ctx_destroy(context_); }
  Yang(const Yang &) = delete;
  Yang &operator=(const Yang &) = delete;
  lyd_node *parse(const std::string &xml) {
    lyd_node *tree = nullptr;
    if (lyd_parse_data_mem(context_, xml.c_str(), LYD_XML, LYD_PARSE_ONLY | LYD_PARSE_STRICT, 0,
                           &tree) != LY_SUCCESS) {
      bench::require(1);
    }
    return tree;
  }

 private:
  ly_ctx *context_ = nullptr;
};

// The library's document with the module's namespace on its root.
template <typename Record>
std::string yang_xml(Filled<Record> &filled) {
  const std::string root = std::string("<") + Record::name;
  std::string xml = filled.xml();
  return xml.insert(xml.find(root) + root.size(), " xmlns=\"urn:peers\"");
}

template <typename Record>
void to_xml_libyang(benchmark::State &state) {
  Filled<Record> filled;
  Yang yang;
  lyd_node *tree = yang.parse(yang_xml(filled));
  std::size_t size = 0;
  for (auto _ : state) {
    char *text = nullptr;
    lyd_print_mem(&text, tree, LYD_XML, LYD_PRINT_SHRINK);
    benchmark::DoNotOptimize(text);
    size = std::char_traits<char>::length(text);
    std::free(text);
  }
  lyd_free_all(tree);
  state.counters["bytes"] = static_cast<double>(size);
}

template <typename Record>
void from_xml_harbor(benchmark::State &state) {
  Filled<Record> filled;
  const std::string xml = filled.xml();
  const std::string path = std::string("//") + Record::name;
  char message[256] = "";
  std::uint32_t err = 0;
  for (auto _ : state) {
    auto *object = Record::create(filled.store, 0);
    kelp_xml_document *document = kelp_xml_parse(xml.data(), xml.size(), message, sizeof message);
    Record::from_xml(filled.store, 0, path.c_str(), document, object, &err, message,
                     sizeof message);
    kelp_xml_free(document);
    Record::destroy(filled.store, 0, object);
  }
  bench::require(err);
}

std::uint64_t sum(pugi::xml_node node) {
  std::uint64_t total = 0;
  for (const pugi::xml_node child : node.children()) {
    total += child.type() == pugi::node_pcdata ? pugi::string_t(child.value()).size() : sum(child);
  }
  return total;
}

// Parses, and touches every text.
template <typename Record>
void from_xml_pugixml(benchmark::State &state) {
  Filled<Record> filled;
  const std::string xml = filled.xml();
  for (auto _ : state) {
    pugi::xml_document document;
    document.load_buffer(xml.data(), xml.size());
    benchmark::DoNotOptimize(sum(document));
  }
}

// Parses into typed nodes, without the validation that it offers.
template <typename Record>
void from_xml_libyang(benchmark::State &state) {
  Filled<Record> filled;
  const std::string xml = yang_xml(filled);
  Yang yang;
  for (auto _ : state) lyd_free_all(yang.parse(xml));
}

template <typename Record>
void add() {
  const auto named = [](const char *operation, const char *who, auto function) {
    const std::string name = std::string(operation) + "/" + Record::name + "/" + who;
    benchmark::RegisterBenchmark(name.c_str(), function);
  };
  named("build", "harbor", build_harbor<Record>);
  named("build", "protobuf", build_protobuf<Record>);
  named("read", "harbor", read_harbor<Record>);
  named("read", "protobuf", read_protobuf<Record>);
  named("marshal", "harbor", marshal_harbor<Record>);
  named("marshal", "protobuf", marshal_protobuf<Record>);
  named("marshal", "flatbuffers", marshal_flatbuffers<Record>);
  named("marshal", "capnp", marshal_capnp<Record>);
  named("unmarshal_new", "harbor", unmarshal_new_harbor<Record>);
  named("unmarshal_new", "protobuf", unmarshal_new_protobuf<Record>);
  named("unmarshal_new", "flatbuffers", unmarshal_new_flatbuffers<Record>);
  named("unmarshal_new", "capnp", unmarshal_new_capnp<Record>);
  named("unmarshal_kept", "harbor", unmarshal_kept_harbor<Record>);
  named("unmarshal_kept", "protobuf", unmarshal_kept_protobuf<Record>);
  named("unmarshal_kept", "flatbuffers", unmarshal_kept_flatbuffers<Record>);
  named("len", "harbor", len_harbor<Record>);
  named("len", "protobuf", len_protobuf<Record>);
  named("print", "harbor", print_harbor<Record>);
  named("print", "protobuf", print_protobuf<Record>);
  named("to_xml", "harbor", to_xml_harbor<Record>);
  named("to_xml", "pugixml", to_xml_pugixml<Record>);
  named("to_xml", "libyang", to_xml_libyang<Record>);
  named("from_xml", "harbor", from_xml_harbor<Record>);
  named("from_xml", "pugixml", from_xml_pugixml<Record>);
  named("from_xml", "libyang", from_xml_libyang<Record>);
}

}  // namespace

int main(int argc, char **argv) {
  add<ospf_neighbor_record>();
  add<ospf_interface_record>();
  add<link_scope_lsa_record>();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
