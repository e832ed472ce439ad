// Both records are texts: each complaint names line and column, and the byte of the section.
#include "library_sections/halyard.hpp"

#include <algorithm>
#include <array>

#include "library_sections/error.hpp"

namespace library_sections {

namespace {

constexpr std::uint32_t manifest_type = 2;
constexpr std::uint32_t build_type = 1;

// A text within the section that is read line by line, and knows where each byte stands.
class Lines {
 public:
  Lines(const char *name, std::string_view text, std::uint64_t offset)
      : name_(name), text_(text), offset_(offset) {}

  bool ended() const { return at_ == text_.size(); }

  // The next line, without its newline. A last line may end with the text when may_end is set.
  std::string_view next(bool may_end) {
    begin_ = at_;
    ++number_;
    const std::size_t end = text_.find('\n', at_);
    if (end == std::string_view::npos) {
      if (!may_end || ended()) {
        fail(text_.size() - at_, "end of the text", ended() ? "a line" : "a newline");
      }
      at_ = text_.size();
      return text_.substr(begin_);
    }
    at_ = end + 1;
    return text_.substr(begin_, end - begin_);
  }

  // Complains about the line that was read last; column from 0.
  [[noreturn]] void fail(std::size_t column, const std::string &found,
                         const std::string &expected) const {
    throw Error("section " + std::string(halyard_section), offset_ + begin_ + column,
                std::string(name_) + " line " + std::to_string(number_) + ", column " +
                    std::to_string(column + 1),
                found, expected);
  }

 private:
  const char *name_;
  std::string_view text_;
  std::uint64_t offset_;
  std::size_t at_ = 0;
  std::size_t begin_ = 0;
  std::size_t number_ = 0;
};

std::string quoted(std::string_view text) { return "\"" + escaped(text) + "\""; }

// Takes the columns of a line one after the other.
class Columns {
 public:
  Columns(const Lines &lines, std::string_view line) : lines_(lines), line_(line) {}

  std::string_view take(std::size_t width, std::string_view allowed, const char *expected) {
    const std::string_view part = line_.substr(at_, width);
    const std::size_t wrong = part.find_first_not_of(allowed);
    if (wrong != std::string_view::npos) {
      lines_.fail(at_ + wrong, quoted(part.substr(wrong, 1)), expected);
    }
    if (part.size() < width) lines_.fail(line_.size(), "the line's end", expected);
    at_ += width;
    return part;
  }

  std::uint32_t number(std::size_t width, const char *expected) {
    std::uint32_t value = 0;
    for (const char digit : take(width, "0123456789", expected)) {
      value = value * 10 + static_cast<std::uint32_t>(digit - '0');
    }
    return value;
  }

  std::string_view kind() {
    static constexpr std::array<std::string_view, 5> kinds{"enum", "type", "flag", "tabl", "trec"};
    const std::string_view part = line_.substr(at_, 4);
    if (std::ranges::find(kinds, part) == kinds.end()) {
      lines_.fail(at_, quoted(part), "enum, type, flag, tabl or trec");
    }
    at_ += part.size();
    return part;
  }

  void end() const {
    if (at_ != line_.size()) lines_.fail(at_, quoted(line_.substr(at_)), "the line's end");
  }

 private:
  const Lines &lines_;
  std::string_view line_;
  std::size_t at_ = 0;
};

ManifestLine read_line(const Lines &lines, std::string_view line) {
  constexpr std::string_view hexadecimal = "0123456789abcdef";
  Columns columns(lines, line);
  ManifestLine result;
  result.text = line;
  result.md5 = columns.take(32, hexadecimal, "a lower-case hexadecimal digit");
  columns.take(1, ":", "\":\"");
  result.second_md5 = columns.take(32, hexadecimal, "a lower-case hexadecimal digit");
  result.kind = columns.kind();
  result.highest_variant = columns.number(3, "a decimal digit");
  columns.take(1, ":", "\":\"");
  result.size = columns.number(5, "a decimal digit");
  columns.take(1, "N", "\"N\"");
  columns.end();
  return result;
}

Manifest read_manifest(std::string_view text, std::uint64_t offset) {
  constexpr std::string_view before = "# ";
  constexpr std::string_view behind = ".minime";
  Lines lines("manifest", text, offset);
  const std::string_view first = lines.next(false);
  if (!first.starts_with(before) || !first.ends_with(behind) ||
      first.size() <= before.size() + behind.size()) {
    lines.fail(0, quoted(first), "\"# \", the module's name and \".minime\"");
  }
  Manifest manifest;
  manifest.module = first.substr(before.size(), first.size() - before.size() - behind.size());
  while (!lines.ended()) manifest.lines.push_back(read_line(lines, lines.next(false)));
  return manifest;
}

BuildRecord read_build(std::string_view text, std::uint64_t offset) {
  Lines lines("build record", text, offset);
  BuildRecord build;
  build.module = lines.next(false);
  if (build.module.empty()) lines.fail(0, "an empty line", "the module's name");
  const auto item = [&](std::string_view prefix, bool last) {
    const std::string_view line = lines.next(last);
    if (!line.starts_with(prefix)) lines.fail(0, quoted(line), quoted(prefix) + " and its value");
    return std::string(line.substr(prefix.size()));
  };
  build.built_by = item("built by: ", false);
  build.on_host = item("on host: ", false);
  build.pid = item("pid: ", false);
  build.at = item("at: ", false);
  build.comment = item("comment: ", true);
  if (!lines.ended()) {
    const std::string_view more = lines.next(true);
    lines.fail(0, quoted(more), "the end of the build record");
  }
  return build;
}

// A record's text without its NUL; the offset becomes that of the text.
std::string_view read_record(Cursor &cursor, std::uint32_t type, const char *name,
                             std::uint64_t *offset) {
  const std::uint64_t head = cursor.at();
  const std::uint32_t length = cursor.u32("length of a record");
  const std::uint32_t found = cursor.u32("type of a record");
  if (found != type) {
    throw Error(cursor.where(), head + 4, "type of a record", std::to_string(found),
                std::to_string(type) + " (" + name + ")");
  }
  *offset = cursor.at();
  if (length > cursor.left()) {
    throw Error(cursor.where(), head, "length of a record", std::to_string(length),
                "at most the " + std::to_string(cursor.left()) + " bytes left");
  }
  const std::string_view text = text_of(cursor.take(length, "bytes of a record"));
  const std::size_t nul = text.find('\0');
  if (nul == std::string_view::npos || nul + 1 != text.size()) {
    const bool none = nul == std::string_view::npos;
    throw Error(cursor.where(), *offset + (none ? text.size() : nul), name,
                none ? "no NUL" : "a NUL before its end", "one NUL, at its end");
  }
  return text.substr(0, nul);
}

}  // namespace

Halyard read_halyard(const ElfFile &file) {
  Cursor cursor("section " + std::string(halyard_section),
                file.bytes(file.require(halyard_section)));
  Halyard halyard;
  std::uint64_t offset = 0;
  const std::string_view manifest = read_record(cursor, manifest_type, "manifest", &offset);
  halyard.manifest = read_manifest(manifest, offset);
  const std::string_view build = read_record(cursor, build_type, "build record", &offset);
  halyard.build = read_build(build, offset);
  if (cursor.left() != 0) {
    throw Error(cursor.where(), cursor.at(), "end of the section",
                std::to_string(cursor.left()) + " more bytes", "none");
  }
  return halyard;
}

}  // namespace library_sections
