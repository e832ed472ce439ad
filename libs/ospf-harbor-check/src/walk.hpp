// The one walk over an image, by the rows of the schema. It stops at the first byte that is not as
// it must be, and shows each span to a visitor when there is one. It never calls the readers that
// it stands in front of, and holds their rules in the other direction: what they do not look at
// before they use it is looked at here.
#pragma once

#include "result.hpp"
#include "subject.hpp"
#include "values.hpp"

namespace ospf_harbor_check {

// Where the walk is: the name of the outermost object or table and of the fields within. Kept as
// parts, since a path is only needed as a text when something is shown or wrong.
class Path {
 public:
  explicit Path(std::string_view root) : parts_{root} {}

  void root(std::string_view name) { parts_[0] = name; }
  void push(std::string_view name) { parts_[++last_] = name; }
  void pop() { --last_; }
  // The element of the last part, until it is pushed or set to no_element.
  void element(std::size_t index) { element_ = index; }

  void put_to(TextBuffer &text) const;

  static constexpr std::size_t no_element = SIZE_MAX;
  static constexpr std::size_t longest = 256;
  static constexpr std::size_t most_parts = 8;

 private:
  std::string_view parts_[most_parts];
  std::size_t last_ = 0;
  std::size_t element_ = no_element;
};

class Walk {
 public:
  Walk(Bytes image, ospf_harbor_image_visitor *visit, void *context,
       ospf_harbor_check_result &result)
      : image_(image), end_(image.size()), visit_(visit), context_(context), result_(result) {}

  // True when nothing is wrong. The subject may be empty for a record: the frame says which then.
  bool record(const Subject &subject);
  bool key(const Subject &subject);
  bool object(const Subject &subject);

 private:
  using Piece = ospf_harbor_span_piece;
  using Fault = ospf_harbor_check_fault;

  // The frame, and its parts in order. An empty table takes any, and becomes the one that is said.
  bool frame(const model::Table *&table);
  bool marker();
  bool reserved();
  bool tracking_mark();
  bool frame_length();
  bool luid(const model::Table *&table);
  bool structure(const model::Structure &type);
  bool fields(const model::Structure &type, std::uint8_t floor);
  bool field(const model::Structure &type, std::size_t at);
  bool value(const model::Field &field);
  bool state();
  bool counter(const model::Field &array);
  bool array(const model::Field &array);
  bool arm(const model::Field &field);
  bool enumeration(const model::Enumeration &type);
  bool flag_set(const model::FlagSet &type);
  bool reference();
  bool primitive(model::Kind kind);
  bool number(std::size_t width);
  bool boolean();
  bool text();
  bool address();
  bool key_value(const model::Field &field);

  bool variant(std::int8_t &variant);
  bool flags();
  // Gives the end of what the jump word covers.
  bool jump(std::size_t &end);
  // To the end of the object: what a newer writer added.
  bool skip();
  bool at_end();

  std::size_t rest() const { return end_ - at_; }
  // The bytes of the piece that stands here, which must be there.
  bool peek(Piece piece, std::size_t size, Bytes &bytes) {
    if (rest() < size) return is_cut(piece, size);
    bytes = image_.subspan(at_, size);
    return true;
  }
  bool is_cut(Piece piece, std::size_t size);
  // Steps over the piece and shows it.
  template <typename Put>
  void pass(Piece piece, std::size_t size, Put put);
  // Both.
  template <typename Put>
  bool take(Piece piece, std::size_t size, Put put);
  bool fail(Fault fault, Piece piece, std::size_t offset, std::string_view found,
            std::string_view expected);

  Bytes image_;
  std::size_t at_ = 0;
  std::size_t end_;  // of the innermost object
  std::uint32_t depth_ = 0;
  std::uint32_t count_ = 0;     // of the array that comes next
  std::uint32_t selector_ = 0;  // of the choice that is walked
  bool is_first_object_ = true;
  bool is_tracked_ = false;
  Path path_{""};
  ospf_harbor_image_visitor *visit_;
  void *context_;
  ospf_harbor_check_result &result_;
};

}  // namespace ospf_harbor_check
