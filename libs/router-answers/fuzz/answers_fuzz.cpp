// Any octets as a daemon's answer: read whole or refused with a message, and what was read merges.
// The first octet says which answer the rest is taken for.

#include <array>
#include <filesystem>
#include <string>

#include "ospf_tables/input_error.hpp"
#include "router_answers/one_network.hpp"
#include "router_answers/router.hpp"
#include "support/temporary_folder.hpp"

namespace {

constexpr std::array names = {"ip-ospf-database.json",        "ip-ospf-database-router.json",
                              "ip-ospf-database-router.txt",  "ipv6-ospf6-database-detail.json",
                              "ipv6-ospf6-database-dump.txt", "main-lsadb.txt",
                              "main-state-all.txt",           "main-interface.txt",
                              "main-neighbors.txt",           "ip-ospf-interface.json",
                              "ipv6-ospf6-database.json.gz"};

// Beside a BIRD answer that is tried the others are sound.
constexpr char lsadb[] =
    "Global\n 0005  192.0.2.0 10.0.0.9 80000001 32 0001\nArea 0.0.0.0\n"
    " 0001  10.0.0.2 10.0.0.2 80000002 22 0001\n 0002  10.9.0.1 10.0.0.1 80000003 23 0001\n"
    " 0003  10.8.0.0 10.0.0.2 80000003 23 0001\n 2001  0.0.0.0 10.0.0.2 80000003 23 0001\n"
    " 2002  0.0.0.2 10.0.0.1 80000003 23 0001\n 2009  0.0.0.0 10.0.0.2 80000003 23 0001\n"
    " 2003  0.0.0.1 10.0.0.2 80000003 23 0001\n 4005  0.0.0.1 10.0.0.9 80000003 23 0001\n";

const TemporaryFolder folder("/dev/shm");

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  if (size == 0) return 0;
  for (const auto &entry : std::filesystem::directory_iterator(folder.path())) {
    std::filesystem::remove(entry.path());
  }
  const std::string name = names[data[0] % names.size()];
  folder.put(name, std::string(reinterpret_cast<const char *>(data + 1), size - 1));
  if (name.starts_with("main-")) {
    folder.put("bird.conf", "router id 10.0.0.2;\n");
    if (name != "main-lsadb.txt") folder.put("main-lsadb.txt", lsadb);
  } else if (name == "ip-ospf-interface.json") {
    folder.put("ip-ospf.json", R"({"routerId":"10.0.0.1","areas":{"0.0.0.0":{}}})");
  }
  try {
    router_answers::PassedOver passed_over;
    const auto router = router_answers::read_router(folder.path().string(), passed_over);
    const auto network = router_answers::one_network({router, router});
    if (!network.differences.empty()) std::abort();
  } catch (const ospf_tables::InputError &) {
  }
  return 0;
}
