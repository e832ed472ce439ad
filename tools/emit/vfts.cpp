// The constant data of the tables: identities, vfts and the source list of vfts in lookup order, as
// C, where a function's address in a generic type is a constant.
#include <kelp/vft.h>

#include <algorithm>
#include <array>

#include "families.hpp"
#include "products.hpp"

namespace emit {

namespace {

using namespace harbor::model;

using Slots = std::array<const Operation *, KELP_VFT_WORDS - 2>;

// The operation of each slot behind the two of the identity, as the rows of the table families say.
// Not a constant where two rows have one slot, or a row has no twin that could stand there.
constexpr Slots slots = [] {
  Slots filled{};
  for (const harbor::TableFamily &family : harbor::table_families) {
    for (const Operation &operation : family.operations) {
      if (operation.vft_slot == 0) continue;
      const Operation *&slot = filled[operation.vft_slot - 2];
      if (slot != nullptr || !operation.unsafe_twin || family.scope != harbor::TableScope::table) {
        __builtin_abort();
      }
      slot = &operation;
    }
  }
  return filled;
}();
static_assert(std::count(slots.begin(), slots.end(), nullptr) == 1 &&
              slots[KELP_VFT_UNUSED - 2] == nullptr);

std::string vft_words(const std::string &name) {
  std::string text = "{table_" + name + "_luid, table_" + name + "_name, {";
  for (const Operation *operation : slots) {
    text += operation == nullptr
                ? "0, "
                : "(kelp_vft_word)" + name + "_" + std::string(operation->suffix) + "_unsafe, ";
  }
  return text + "}}";
}

}  // namespace

void write_vfts(Writer &writer) {
  std::string text = "#include <ospf_harbor_oper.h>\n\n";
  std::vector<const Table *> by_luid(all_tables.begin(), all_tables.end());
  std::sort(by_luid.begin(), by_luid.end(),
            [](const Table *a, const Table *b) { return a->luid < b->luid; });
  for (const Table *table : by_luid) {
    const std::string name = "tbl_" + std::string(table->name);
    text += "const uint8_t table_" + name + "_luid[16] = {" + bytes_of(table->luid) + "};\n";
    text += "const char table_" + name + "_luid_text[33] = \"" + std::string(table->luid) + "\";\n";
    text += "const char table_" + name + "_name[64] = \"table " + name + "\";\n";
    text += "const kelp_table_vft " + name + "_table_vft = " + vft_words(name) + ";\n\n";
  }
  const std::string list = "ospf_harbor_oper_table_vfts[" + std::to_string(all_tables.size()) + "]";
  text += "extern const kelp_table_vft " + list + ";\nconst kelp_table_vft " + list + " = {\n";
  for (const Table *table : by_luid) {
    text += "    " + vft_words("tbl_" + std::string(table->name)) + ",\n";
  }
  writer.file("vfts.c", text + "};\n");
}

}  // namespace emit
