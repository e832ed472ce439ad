#include "messages/setting.hpp"

#include <cstring>

namespace messages {

namespace {

struct Watched {
  decltype(kelp_handle::write_notify) real = nullptr;
  std::uint32_t number = 0;
  std::uint32_t seen = 0;
  std::function<void()> code;
};
Watched watched;

void write_notify(void *pool, const void *address, std::size_t length, std::uint32_t space_id) {
  watched.real(pool, address, length, space_id);
  if (watched.seen++ == watched.number) watched.code();
}

}  // namespace

std::string text_of_code(std::uint32_t code) { return std::strerror(static_cast<int>(code)); }
std::string failure_text() { return text_of_code(failure); }

kelp_handle *fresh(harness::StoreOptions options) {
  return (new harness::Store(options))->handle();
}

void corrupt(kelp_handle *handle) { handle->sttr->sttr_mode = 0xEEEF; }

kelp_type_record &record_of(const std::string &type) {
  return *static_cast<kelp_type_record *>(harness::exported("_" + type + "_type_info_internal"));
}

const std::vector<DataType> &data_types() {
  static const std::vector<DataType> types = [] {
    std::vector<DataType> all;
    for (const Structure *type : harbor::model::structures) {
      all.push_back({std::string(type->name), type});
    }
    for (const std::string &name : light_types()) all.push_back({name, nullptr});
    return all;
  }();
  return types;
}

std::vector<std::string> light_types() {
  std::vector<std::string> names;
  for (const auto *type : harbor::model::all_enumerations) names.emplace_back(type->name);
  for (const auto *type : harbor::model::all_flag_sets) names.emplace_back(type->name);
  return names;
}

AtWrite::AtWrite(kelp_handle *handle, std::uint32_t number, std::function<void()> code)
    : handle_(handle) {
  watched = {handle->write_notify, number, 0, std::move(code)};
  handle->write_notify = write_notify;
}

AtWrite::~AtWrite() { handle_->write_notify = watched.real; }

std::uint32_t AtWrite::seen() { return watched.seen; }

void for_each_field(const std::function<bool(const Field &)> &holds,
                    const std::function<void(const Structure &, const Field &)> &code) {
  for (const Structure *type : harbor::model::structures) {
    for (const Field *field : type->fields) {
      if (holds(*field)) code(*type, *field);
    }
  }
}

}  // namespace messages
