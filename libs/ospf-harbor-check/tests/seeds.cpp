// Writes the seeds of the fuzz targets: random objects of every type as images and documents, into
// one folder for each target below the folder that is given.
#include <filesystem>
#include <fstream>

#include "../fuzz/fuzz_input.hpp"
#include "samples.hpp"

int main(int argc, char **argv) {
  using namespace ospf_harbor_check_tests;
  if (argc != 2) return 2;
  for (const FuzzTarget target : fuzz_targets) {
    const std::filesystem::path folder = std::filesystem::path(argv[1]) / name_of(target);
    std::filesystem::create_directories(folder);
    for (std::uint32_t choice = 0; choice < 256; ++choice) {
      const Input of = chosen(target, static_cast<std::uint8_t>(choice));
      // From where the choices begin again.
      if (choice != 0 && of.name == chosen(target, 0).name) break;
      for (const std::uint32_t tracking : {KELP_TRACKING_ABSENT, KELP_TRACKING_ON}) {
        const bool is_tracked = tracking == KELP_TRACKING_ON;
        const Sample sample(of, tracking, choice + 1);
        const std::string text = target == FuzzTarget::document ? sample.document() : "";
        const Bytes bytes =
            target == FuzzTarget::document ? Bytes(text.begin(), text.end()) : sample.image();
        std::ofstream file(folder / (of.name + (is_tracked ? "-tracked" : "")), std::ios::binary);
        file.put(static_cast<char>(choice)).put(static_cast<char>(is_tracked ? 1 : 0));
        file.write(reinterpret_cast<const char *>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
      }
    }
  }
  return 0;
}
