/* Two processes on one store: one changes areas, the other is told of it by handlers.
 *
 *   watch_areas FILE          prints what it hears, until there was an area and none is left
 *   watch_areas FILE make     makes two areas
 *   watch_areas FILE change   changes one of them
 *   watch_areas FILE end      ends them
 *
 * A handler is a function of a fixed name: the library calls it when the program has one. The
 * runtime calls no handler by itself; kelp_events_dispatch does, under the caller's lock. */
#include <kelp/embed.h>
#include <ospf_harbor_oper.h>
#include <stdio.h>
#include <string.h>

/* --- what is heard --- */

typedef struct {
  int areas;
  int had_any;
} heard;

static uint32_t id_of(kelp_handle *handle, tbl_ospf_area_record *record) {
  uint32_t err = 0;
  ospf_area *area = tbl_ospf_area_ospf_area_get_field(handle, 0, record);
  return ospf_area_area_id_get_value(handle, 0, area, &err);
}

uint64_t ospf_harbor_oper_tbl_ospf_area_table_record_create_handler(kelp_handle *handle,
                                                                    uint32_t space_id,
                                                                    void *context,
                                                                    tbl_ospf_area_record *record,
                                                                    uint32_t *err) {
  (void)space_id, (void)err;
  heard *so_far = context;
  ++so_far->areas;
  so_far->had_any = 1;
  printf("  area %u came\n", id_of(handle, record));
  return 0;
}

uint64_t ospf_harbor_oper_tbl_ospf_area_table_record_modify_handler(kelp_handle *handle,
                                                                    uint32_t space_id,
                                                                    void *context,
                                                                    tbl_ospf_area_record *record,
                                                                    uint32_t *err) {
  (void)space_id, (void)context, (void)err;
  uint32_t code = 0;
  ospf_area *area = tbl_ospf_area_ospf_area_get_field(handle, 0, record);
  printf("  area %u changed: %s\n", id_of(handle, record),
         ospf_area_interfaces_get_by_ref(handle, 0, area, &code) ? "it has a table of interfaces"
                                                                 : "no interfaces");
  return 0;
}

uint64_t ospf_harbor_oper_tbl_ospf_area_table_record_delete_handler(kelp_handle *handle,
                                                                    uint32_t space_id,
                                                                    void *context,
                                                                    tbl_ospf_area_record *record,
                                                                    uint32_t *err) {
  (void)space_id, (void)err;
  heard *so_far = context;
  --so_far->areas;
  printf("  area %u went\n", id_of(handle, record));
  return 0;
}

uint64_t ospf_harbor_oper_tbl_ospf_area_table_record_grouping_handler(kelp_handle *handle,
                                                                      uint32_t space_id,
                                                                      void *context, uint32_t *err,
                                                                      void *table, void *group) {
  (void)handle, (void)space_id, (void)context, (void)err, (void)table;
  const kelp_event_group *commit = group;
  if (commit->at_end) printf("  together %u\n", commit->events);
  if (!commit->at_end) printf("a transaction:\n");
  return 0;
}

/* A cursor on the table of areas, once somebody has made it. */
static kelp_feed_cursor *follow(kelp_handle *handle, kelp_error *error) {
  for (;;) {
    uint32_t err = 0;
    if (kelp_lock_read(handle, error) != 0) return NULL;
    tbl_ospf_area_table *areas = tbl_ospf_area_table_open(handle, 0, "areas", 1, &err);
    kelp_feed_cursor *cursor =
        areas ? kelp_feed_cursor_open(handle, (kelp_table *)areas, error) : NULL;
    kelp_unlock(handle, NULL);
    if (areas) return cursor;
    if (kelp_feed_wait(handle, NULL, 30000, error) != 0) return NULL;
  }
}

static int watch(kelp_handle *handle, kelp_error *error) {
  heard so_far = {0};
  kelp_feed_cursor *cursor = follow(handle, error);
  int code = cursor ? 0 : error->code;
  while (code == 0 && (so_far.areas > 0 || !so_far.had_any)) {
    code = kelp_feed_wait(handle, cursor, 30000, error);
    if (code == 0) code = kelp_lock_read(handle, error);
    if (code != 0) break;
    code = kelp_events_dispatch(handle, cursor, &so_far, NULL, error);
    kelp_unlock(handle, NULL);
    fflush(stdout);
  }
  kelp_feed_cursor_close(cursor);
  return code;
}

/* --- what is changed; each is one transaction --- */

static uint32_t make_area(kelp_handle *handle, tbl_ospf_area_table *areas, uint32_t id) {
  uint32_t err = 0;
  tbl_ospf_area_record *record = tbl_ospf_area_create_record(handle, 0, &err);
  ospf_area *area = ospf_area_create(handle, 0);
  if (!record || !area) return err != 0 ? err : KELP_ERR_NO_MEMORY;
  tbl_ospf_area_ospf_area_set_field(handle, 0, record, area);
  ospf_area_area_id_set_value(handle, 0, area, id, &err);
  tbl_ospf_area_insert(handle, 0, areas, record, &err);
  return err;
}

static uint32_t change_area(kelp_handle *handle, tbl_ospf_area_table *areas,
                            tbl_ospf_area_record *record) {
  uint32_t err = 0;
  ospf_area *area = tbl_ospf_area_ospf_area_get_field(handle, 0, record);
  tbl_ospf_interface_table *below = tbl_ospf_interface_table_open_auto_id(handle, 0, 0, &err);
  ospf_area_interfaces_set_by_ref(handle, 0, area, below, &err);
  /* Who changes the object in a record says so. */
  kelp_feed_record_changed(handle, (kelp_table *)areas, (kelp_record *)record, NULL);
  return err;
}

/* Rows of a table that is followed are ended by request: they go when every cursor has passed them
 * and somebody runs the collector. */
static uint32_t end_areas(kelp_handle *handle, tbl_ospf_area_table *areas) {
  uint32_t err = 0;
  tbl_ospf_area_record *record = tbl_ospf_area_ospf_area_area_id_get_first(handle, 0, areas, &err);
  while (record && err == 0) {
    tbl_ospf_area_request_record_destroy(handle, 0, areas, record, &err);
    record = tbl_ospf_area_ospf_area_area_id_get_next(handle, 0, areas, record, &err);
  }
  return err;
}

static int change(kelp_handle *handle, const char *what, kelp_error *error) {
  uint32_t err = 0;
  int code = kelp_lock_write(handle, error);
  if (code != 0) return code;
  tbl_ospf_area_table *areas = tbl_ospf_area_table_open(handle, 0, "areas", 0, &err);
  if (areas && strcmp(what, "make") == 0) {
    code = kelp_table_enable_cursors(handle, (kelp_table *)areas, 1, error);
    if (code == 0) err = make_area(handle, areas, 0);
    if (code == 0 && err == 0) err = make_area(handle, areas, 51);
  } else if (areas && strcmp(what, "change") == 0) {
    err = change_area(handle, areas,
                      tbl_ospf_area_ospf_area_area_id_get_first(handle, 0, areas, &err));
  } else if (areas) {
    err = end_areas(handle, areas);
  }
  if (code == 0 && err == 0) return kelp_unlock(handle, error);
  if (code == 0) code = kelp_handle_last_error(handle, error);
  kelp_rollback(handle, NULL);
  return code;
}

int main(int count, char **words) {
  kelp_error error = {0};
  if (count < 2 || count > 3) {
    fprintf(stderr, "usage: watch_areas FILE [make|change|end]\n");
    return 2;
  }
  kelp_database *database = kelp_database_open_file(words[1], NULL, &error);
  kelp_handle *handle = database ? kelp_handle_create(database, NULL, &error) : NULL;
  int code = handle ? 0 : error.code;
  if (handle) code = count == 2 ? watch(handle, &error) : change(handle, words[2], &error);
  if (code != 0) fprintf(stderr, "%s\n", error.text);
  kelp_handle_destroy(handle);
  return kelp_database_close(database, NULL) != 0 || code != 0;
}
