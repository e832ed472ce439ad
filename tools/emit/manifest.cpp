// The manifest section: a line for each type record, and the record of the build. docs/sections.md
// draws the columns.
#include <stdexcept>

#include "little_endian.hpp"
#include "records.hpp"
#include "sections.hpp"

namespace emit {

namespace {

enum class RecordType : std::uint32_t { build = 1, manifest = 2 };

std::string framed(RecordType type, const std::string &text) {
  const std::string content = text + '\0';
  std::string bytes;
  append_u32(bytes, static_cast<std::uint32_t>(content.size()));
  append_u32(bytes, static_cast<std::uint32_t>(type));
  return bytes + content;
}

std::string padded(std::size_t number, std::size_t width) {
  const std::string digits = std::to_string(number);
  if (digits.size() > width) {
    throw std::runtime_error(digits + " does not fit a manifest column of width " +
                             std::to_string(width));
  }
  return std::string(width - digits.size(), '0') + digits;
}

std::string kind_column(const std::string &kind) {
  if (kind == "table_record") return "trec";
  return kind.substr(0, 4);
}

std::string line(const Record &record) {
  return record.md5 + ":" + record.manifest_md5 + kind_column(record.kind) +
         padded(record.entries.size() - 1, 3) + ":" + padded(record.manifest_size, 5) + "N\n";
}

}  // namespace

Section manifest_section(const std::string &build_record) {
  std::string manifest = "# ospf_harbor_oper.minime\n";
  for (const Record &record : records()) manifest += line(record);
  return {".halyard", "halyard.bin", false,
          framed(RecordType::manifest, manifest) + framed(RecordType::build, build_record)};
}

}  // namespace emit
