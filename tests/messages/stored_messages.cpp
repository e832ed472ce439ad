#include "messages/stored_messages.hpp"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <fstream>
#include <vector>

#include "library_sections/messages.hpp"

namespace messages {

namespace {

using library_sections::MessageStore;
using library_sections::MessageTable;

MessageStore read_store() {
  Dl_info info{};
  void *symbol = dlsym(RTLD_DEFAULT, "ospf_harbor_oper_typeinfo_initialize");
  EXPECT_NE(dladdr(symbol, &info), 0);
  std::ifstream file(info.dli_fname, std::ios::binary | std::ios::ate);
  std::string bytes(static_cast<std::size_t>(file.tellg()), '\0');
  file.seekg(0).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return library_sections::read_messages(library_sections::ElfFile(
      {reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size()}));
}

const MessageStore &store() {
  static const MessageStore read = read_store();
  return read;
}

// Source 0 is the type side, source 1 the table side.
const MessageTable &table_of(Side side) {
  return store().tables.at(static_cast<std::size_t>(side));
}

}  // namespace

std::optional<Side> side_of(const std::uint8_t identity[16]) {
  const MessageTable *table = store().table(identity);
  if (table == nullptr) return std::nullopt;
  return static_cast<Side>(table->source);
}

std::uint32_t stored_count(Side side) {
  return static_cast<std::uint32_t>(table_of(side).messages.size());
}

const std::string &stored_text(Side side, std::uint32_t index) {
  return table_of(side).messages.at(index).text;
}

std::string stored_signature(Side side, std::uint32_t index) {
  const std::uint32_t signature = table_of(side).messages.at(index).signature();
  return std::string(library_sections::signatures.at(signature).digits);
}

}  // namespace messages
