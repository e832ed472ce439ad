// Registering the functions of modules that end records, tables and objects.
#include "parts/finishers.hpp"

#include "base/failure.hpp"

namespace kelp {

namespace {

template <typename Function>
std::int32_t enter(const char *name, Function function, void (*set)(const char *, Function),
                   const char *caller, kelp_error *error) {
  if (name == nullptr || *name == '\0') {
    return fail(error, KELP_ERR_INVALID, "%s: no name, expected a text", caller);
  }
  const bool done = without_exceptions([&] { set(name, function); });
  return done ? succeed(error) : fail(error, KELP_ERR_NO_MEMORY, "%s: no memory", caller);
}

}  // namespace

}  // namespace kelp

extern "C" int32_t kelp_module_set_vft_lookup(const char *module_name, kelp_vft_lookup lookup,
                                              kelp_error *error) {
  return kelp::enter(module_name, lookup, kelp::set_vft_lookup, "kelp_module_set_vft_lookup",
                     error);
}

extern "C" int32_t kelp_type_set_destroyer(const char *type_name, kelp_object_destroyer destroyer,
                                           kelp_error *error) {
  return kelp::enter(type_name, destroyer, kelp::set_destroyer, "kelp_type_set_destroyer", error);
}
