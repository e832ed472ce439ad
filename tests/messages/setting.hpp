// What the code that runs in a child is set up with: handles and objects that nobody gives back,
// faults that come at a chosen moment, and the schema's types by name.
#pragma once

#include <kelp/core.h>
#include <kelp/object.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "harness/harness.hpp"
#include "messages/driven_form.hpp"
#include "types/replaced_call.hpp"
#include "whole_schema/erased.hpp"

namespace messages {

using harbor::model::Field;
using harbor::model::Kind;
using harbor::model::Structure;
using harness::Failing;
using harness::ReplacedCall;
using whole_schema::call;
using whole_schema::create;
using whole_schema::destroy;

inline constexpr std::uint32_t space = 0;
inline constexpr std::uint32_t failure = 5;
std::string failure_text();
std::string text_of_code(std::uint32_t code);

// A handle whose store lives until the child ends.
kelp_handle *fresh(harness::StoreOptions options = {});
inline kelp_handle *tracking() { return fresh({.tracking = KELP_TRACKING_ON}); }

void corrupt(kelp_handle *handle);

inline kelp_object_header &header(void *object) {
  return *static_cast<kelp_object_header *>(object);
}
inline void untrack(void *object) { header(object).obj_flags &= ~OBJ_STATE_TRACKED; }

template <typename Value>
Value &field_at(void *object, const Structure &type, const Field &field) {
  return *reinterpret_cast<Value *>(static_cast<std::uint8_t *>(object) +
                                    harbor::model::offset(type, field));
}

kelp_type_record &record_of(const std::string &type);

// The data types: structures, then enumerations, then flag sets.
struct DataType {
  std::string name;
  const Structure *structure = nullptr;
};
const std::vector<DataType> &data_types();
std::vector<std::string> light_types();

// Code that runs with one of the writes that the handle announces, just after the announcement.
class AtWrite {
 public:
  AtWrite(kelp_handle *handle, std::uint32_t number, std::function<void()> code);
  ~AtWrite();
  AtWrite(const AtWrite &) = delete;
  AtWrite &operator=(const AtWrite &) = delete;
  static std::uint32_t seen();

 private:
  kelp_handle *handle_;
};

// Each field of each structure that a condition holds for.
void for_each_field(const std::function<bool(const Field &)> &holds,
                    const std::function<void(const Structure &, const Field &)> &code);

}  // namespace messages
