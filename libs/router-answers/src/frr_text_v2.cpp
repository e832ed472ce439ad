// The list has a row for each LSA: link-state ID, router, age, sequence number, checksum. The
// detailed forms have a line for each field, "LS age: 34" being the first of an LSA; what an opaque
// LSA carries they tell in words alone, so that of these there is the header. Headings say type and
// area of what follows.
#include "frr_text_v2.hpp"

#include <algorithm>
#include <optional>

#include "frr_words.hpp"
#include "ospf_decode/lsa_v2.hpp"
#include "ospf_tables/row_keys.hpp"
#include "text_answer.hpp"

namespace router_answers {

namespace {

using namespace ospf_decode;

struct Heading {
  const char *text;
  std::uint16_t type;
};

constexpr Heading headings[] = {
    {"Router Link States", lsa2_router},           {"Net Link States", lsa2_network},
    {"Summary Link States", lsa2_summary},         {"ASBR-Summary Link States", lsa2_asbr_summary},
    {"AS External Link States", lsa2_as_external}, {"NSSA-external Link States", lsa2_nssa},
    {"Link-Local Opaque-LSA", lsa2_opaque_link},   {"Area-Local Opaque-LSA", lsa2_opaque_area},
    {"AS-external Opaque-LSA", lsa2_opaque_as},
};

constexpr std::size_t checksum_digits = 6;  // with 0x

// What the lines of an LSA have told so far.
struct Lsa {
  LsaHeader header;
  LsaBody body;
  std::uint32_t link_id = 0;
  std::uint32_t link_data = 0;
  std::uint8_t link_type = 0;
  std::uint32_t flags = 0;
  bool type_2 = false;
  std::uint32_t metric = 0;
  std::uint32_t forward = 0;
};

class Reader {
 public:
  Reader(const std::string &path, Database &database) : text_(path), database_(database) {}

  void read() {
    for (const TextLine &line : text_.lines()) {
      if (heading(line)) continue;
      const std::size_t colon = line.text.find(':');
      const std::string key = trimmed(line.text.substr(0, colon));
      if (key == "LS age") {
        finish();
        lsa_.emplace();
      }
      if (lsa_) {
        if (colon != std::string::npos) field(line, key, trimmed(line.text.substr(colon + 1)));
      } else if (type_ != 0) {
        row(line);
      }
    }
    finish();
  }

 private:
  static std::string trimmed(const std::string &text) {
    const std::size_t begin = text.find_first_not_of(' ');
    if (begin == std::string::npos) return {};
    return text.substr(begin, text.find_last_not_of(' ') - begin + 1);
  }

  bool heading(const TextLine &line) {
    const std::string text = trimmed(line.text);
    for (const Heading &each : headings) {
      if (!text.starts_with(each.text)) continue;
      finish();
      type_ = each.type;
      place_ = {};
      place_.scope = *scope_of(2, type_);
      const std::size_t at = text.find("(Area ");
      if (place_.scope != Scope::as) {
        if (at == std::string::npos) text_.fail(line, "the area of the LSAs");
        const std::string area = text.substr(at + 6, text.find_first_of(" )", at + 6) - at - 6);
        place_.area = text_.dotted(line, area, "an area ID");
      }
      return true;
    }
    return false;
  }

  // "10.0.0.1   10.0.0.1   34 0x80000002 0x0116 3", of an LSA that has no details.
  void row(const TextLine &line) {
    const auto &words = line.words;
    if (words.size() < 5 || !ospf_tables::parse_dotted(words[0])) return;  // the columns' names
    LsaHeader header;
    header.type = type_;
    header.link_state_id = text_.dotted(line, words[0], "a link-state ID");
    header.advertising_router = text_.dotted(line, words[1], "a router ID");
    header.age = age(line, words[2]);
    header.sequence = hexadecimal(line, words[3], 10, "a sequence number");
    header.checksum =
        static_cast<std::uint16_t>(hexadecimal(line, words[4], checksum_digits, "a checksum"));
    database_.add(place_, header_alone(2, header));
  }

  std::uint16_t age(const TextLine &line, const std::string &text) const {
    return static_cast<std::uint16_t>(std::min<std::uint32_t>(
        text_.decimal(line, text, UINT16_MAX, "an age in seconds"), max_age));
  }

  std::uint32_t hexadecimal(const TextLine &line, const std::string &text, std::size_t longest,
                            const char *expected) const {
    if (text.size() > longest) text_.fail(line, expected);
    return text_.hexadecimal(line, text.starts_with("0x") ? text.substr(2) : text, UINT32_MAX,
                             expected);
  }

  // One line of an LSA. Values may have words behind them: "10.0.0.0 (summary Network Number)".
  void field(const TextLine &line, const std::string &key, const std::string &all) {
    const std::string value = all.substr(0, all.find(' '));
    const auto address = [&] { return text_.dotted(line, value, "an address"); };
    LsaHeader &header = lsa_->header;
    if (key == "LS age") {
      header.type = type_;
      header.age = age(line, value);
    } else if (key == "Options") {
      header.options =
          static_cast<std::uint8_t>(hexadecimal(line, value, 4, "options in hexadecimal"));
    } else if (key == "Flags" && type_ == lsa2_router) {
      lsa_->flags = hexadecimal(line, value, 4, "flags in hexadecimal");
    } else if (key == "Link State ID") {
      header.link_state_id = address();
    } else if (key == "Advertising Router") {
      header.advertising_router = address();
    } else if (key == "LS Seq Number") {
      header.sequence = hexadecimal(line, value, 10, "a sequence number");
    } else if (key == "Checksum") {
      header.checksum =
          static_cast<std::uint16_t>(hexadecimal(line, value, checksum_digits, "a checksum"));
    } else if (key == "Length" && header.length == 0) {
      header.length =
          static_cast<std::uint16_t>(text_.decimal(line, value, UINT16_MAX, "a length"));
    } else if (type_ < lsa2_opaque_link) {
      content(line, key, all);
    }
  }

  void content(const TextLine &line, const std::string &key, const std::string &all) {
    const std::string value = all.substr(0, all.find(' '));
    const auto address = [&] { return text_.dotted(line, value, "an address"); };
    const auto number = [&](std::uint32_t highest) {
      return text_.decimal(line, value, highest, "a number");
    };
    if (key == "Number of Links") {
      lsa_->body.u8(lsa_->flags).u8(0).u16(number(UINT16_MAX));
    } else if (key == "Link connected to") {
      lsa_->link_type = link_type(line, all);
    } else if (key.starts_with("(Link ID)")) {
      lsa_->link_id = address();
    } else if (key.starts_with("(Link Data)")) {
      lsa_->link_data = address();
    } else if (key == "TOS 0 Metric") {
      lsa_->body.u32(lsa_->link_id).u32(lsa_->link_data).u8(lsa_->link_type).u8(0);
      lsa_->body.u16(number(UINT16_MAX));
    } else if (key == "Network Mask") {
      if (value.size() < 2 || value[0] != '/') text_.fail(line, "a mask such as /24");
      lsa_->body.u32(mask_of_length(text_.decimal(line, value.substr(1), 32, "a mask's length")));
    } else if (key == "Attached Router") {
      lsa_->body.u32(address());
    } else if (key == "TOS" && type_ <= lsa2_asbr_summary) {
      // "TOS: 0  Metric: 10"
      const std::size_t colon = all.rfind(": ");
      if (colon == std::string::npos) text_.fail(line, "a metric");
      lsa_->body.u32(text_.decimal(line, all.substr(colon + 2), 0xffffff, "a metric"));
    } else if (key == "Metric Type") {
      lsa_->type_2 = number(2) == 2;
    } else if (key == "Metric") {
      lsa_->metric = number(0xffffff);
    } else if (key == "Forward Address" || key == "NSSA") {
      // "NSSA: Forward Address: 10.0.0.1"
      lsa_->forward = text_.dotted(line, line.words.back(), "an address");
    } else if (key == "External Route Tag") {
      lsa_->body.u8(lsa_->type_2 ? 0x80 : 0).u24(lsa_->metric).u32(lsa_->forward);
      lsa_->body.u32(number(UINT32_MAX));
    }
  }

  std::uint8_t link_type(const TextLine &line, const std::string &value) const {
    if (value == "another Router (point-to-point)") return router_link_point_to_point;
    if (value == "a Transit Network") return router_link_transit;
    if (value == "Stub Network") return router_link_stub;
    if (value == "a Virtual Link") return router_link_virtual;
    text_.fail(line,
               "a type of link (another Router (point-to-point), a Transit Network, Stub "
               "Network, a Virtual Link)");
  }

  void finish() {
    if (!lsa_) return;
    database_.add(place_, type_ < lsa2_opaque_link ? put_together(2, lsa_->header, lsa_->body)
                                                   : header_alone(2, lsa_->header));
    lsa_.reset();
  }

  TextAnswer text_;
  Database &database_;
  Place place_;
  std::uint16_t type_ = 0;
  std::optional<Lsa> lsa_;
};

}  // namespace

void read_frr_text_v2(const std::string &path, Database &database) {
  Reader(path, database).read();
}

}  // namespace router_answers
