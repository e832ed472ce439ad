// Registering and finding the functions of modules.
#include "parts/finishers.hpp"

#include <dlfcn.h>

#include <cstring>
#include <mutex>
#include <string>
#include <unordered_map>

#include "base/failure.hpp"
#include "base/undying.hpp"

namespace kelp {

namespace {

// One registry for each kind of function; never destroyed.
template <typename Function>
struct Registry {
  std::mutex mutex;
  std::unordered_map<std::string, Function> functions;

  static Registry &the() { return undying<Registry>(); }
};

template <typename Function>
void enter(const char *name, Function function) {
  auto &registry = Registry<Function>::the();
  const std::lock_guard lock(registry.mutex);
  if (function == nullptr) {
    registry.functions.erase(name);
  } else {
    registry.functions[name] = function;
  }
}

// The registered function of the name, else the process's function "<name><suffix>".
template <typename Function>
Function find(const char *text, std::size_t size, const char *suffix) {
  Function found = nullptr;
  without_exceptions([&] {
    const std::string name(text, strnlen(text, size));
    auto &registry = Registry<Function>::the();
    {
      const std::lock_guard lock(registry.mutex);
      const auto place = registry.functions.find(name);
      if (place != registry.functions.end()) found = place->second;
    }
    if (found == nullptr) {
      found = reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, (name + suffix).c_str()));
    }
  });
  return found;
}

}  // namespace

void set_vft_lookup(const char *module_name, kelp_vft_lookup lookup) { enter(module_name, lookup); }

void set_destroyer(const char *type_name, kelp_object_destroyer destroyer) {
  enter(type_name, destroyer);
}

const kelp_table_vft *find_vft(kelp_handle *handle, const kelp_type_record *table_type) {
  if (table_type == nullptr) return nullptr;
  const auto lookup = find<kelp_vft_lookup>(table_type->module_name, sizeof table_type->module_name,
                                            "_table_get_vft");
  if (lookup == nullptr) return nullptr;
  const kelp_table_vft *vft = nullptr;
  std::uint32_t err = 0;
  lookup(handle, KELP_SPACE_RUNTIME, table_type->md5, &vft, &err);
  return err == 0 ? vft : nullptr;
}

kelp_object_destroyer find_destroyer(const kelp_type_record *type) {
  if (type == nullptr) return nullptr;
  return find<kelp_object_destroyer>(type->type_name, sizeof type->type_name, "_destroy");
}

ObjectInitializer find_initializer(const kelp_type_record *type) {
  return find<ObjectInitializer>(type->type_name, sizeof type->type_name, "_initialize");
}

}  // namespace kelp
