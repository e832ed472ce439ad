#include "tables/handlers.hpp"

#include "module/failure.hpp"

namespace harbor::handlers {

namespace {

// The absence of a handler: no error, and a trace.
std::uint64_t absent(const TableFacts &facts, TableForm form, std::uint32_t *err) {
  *err = 0;
  report(facts, form);
  return 0;
}

std::uint64_t event(const TableFacts &facts, EventHandler handler, TableForm missing,
                    kelp_handle *handle, std::uint32_t space_id, void *context, void *record,
                    std::uint32_t *err) {
  if (!begin(handle, err)) return 0;
  if (handler == nullptr) return absent(facts, missing, err);
  return handler(handle, space_id, context, record, err);
}

// Without a handler of its own a _dm event goes on as the plain event would, with a null context.
std::uint64_t dm_event(const TableFacts &facts, DmEventHandler handler, TableForm missing,
                       EventHandler fallback, TableForm fallback_missing, kelp_handle *handle,
                       std::uint32_t space_id, void *record, std::uint32_t *err) {
  if (!begin(handle, err)) return 0;
  if (handler != nullptr) return handler(handle, space_id, record, err);
  absent(facts, missing, err);
  return event(facts, fallback, fallback_missing, handle, space_id, nullptr, record, err);
}

}  // namespace

std::uint64_t on_create(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                        void *context, void *record, std::uint32_t *err) {
  return event(facts, facts.handlers->on_create, TableForm::default_create_handler, handle,
               space_id, context, record, err);
}

std::uint64_t on_modify(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                        void *context, void *record, std::uint32_t *err) {
  return event(facts, facts.handlers->on_modify, TableForm::default_modify_handler, handle,
               space_id, context, record, err);
}

std::uint64_t on_delete(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                        void *context, void *record, std::uint32_t *err) {
  return event(facts, facts.handlers->on_delete, TableForm::default_delete_handler, handle,
               space_id, context, record, err);
}

std::uint64_t on_create_dm(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                           void *record, std::uint32_t *err) {
  return dm_event(facts, facts.handlers->on_create_dm, TableForm::default_create_dm_handler,
                  facts.handlers->on_create, TableForm::default_create_handler, handle, space_id,
                  record, err);
}

std::uint64_t on_delete_dm(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                           void *record, std::uint32_t *err) {
  return dm_event(facts, facts.handlers->on_delete_dm, TableForm::default_delete_dm_handler,
                  facts.handlers->on_delete, TableForm::default_delete_handler, handle, space_id,
                  record, err);
}

std::uint64_t on_grouping(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                          void *arg_a, std::uint32_t *err, void *arg_b, void *arg_c) {
  if (!begin(handle, err)) return 0;
  const GroupingHandler handler = facts.handlers->on_grouping;
  if (handler == nullptr) return absent(facts, TableForm::default_grouping_handler, err);
  return handler(handle, space_id, arg_a, err, arg_b, arg_c);
}

std::uint64_t on_free(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                      void *arg_a, std::uint32_t arg_u32, std::uint32_t *err, void *arg_b) {
  if (!begin(handle, err)) return 0;
  const FreeHandler handler = facts.handlers->on_free;
  if (handler == nullptr) return absent(facts, TableForm::default_free_handler, err);
  return handler(handle, space_id, arg_a, arg_u32, err, arg_b);
}

}  // namespace harbor::handlers
