/* A small tree: two areas with an interface each; walked, and ended from the leaves up.
 *
 * A row refers to the table below it. The reference counts: a table is freed only when no row
 * refers to it any more, and it does not own its rows, so an end goes down first: rows below, their
 * table, then the row that referred to it. */
#include <kelp/embed.h>
#include <ospf_harbor_oper.h>
#include <stdio.h>
#include <string.h>

/* What every step needs, and the first failure. Once a step failed the rest is passed over. */
typedef struct {
  kelp_handle *handle;
  const char *failed; /* what could not be done, null for nothing */
  char why[sizeof((kelp_error *)0)->text];
} work;

/* True as long as nothing failed. made is what a step gave, for one that gives nothing any address;
 * err is the step's error word. */
static int done(work *at, const char *step, const void *made, uint32_t err) {
  if (at->failed) return 0;
  if (made && err == 0) return 1;
  kelp_error error = {0};
  kelp_handle_last_error(at->handle, &error);
  at->failed = step;
  snprintf(at->why, sizeof at->why, "%s", error.text[0] ? error.text : strerror((int)err));
  return 0;
}

/* Selects no authentication. A new interface selects an arm that is not there; it can be shown, but
 * writing its image needs the arm. */
static void without_authentication(work *at, ospf_interface *interface) {
  uint32_t err = 0;
  uint32_t *arm = u_int32_create(at->handle, 0);
  if (!done(at, "arm of the authentication", arm, 0)) return;
  ospf_authentication *choice =
      ospf_interface_authentication_val_get(at->handle, 0, interface, &err);
  ospf_authentication_no_auth_set(at->handle, 0, choice, arm, &err); /* the choice owns it now */
  done(at, "authentication", arm, err);
}

/* An interface of that name in the table. */
static void add_interface(work *at, tbl_ospf_interface_table *interfaces, const char *name) {
  uint32_t err = 0;
  tbl_ospf_interface_record *record = tbl_ospf_interface_create_record(at->handle, 0, &err);
  if (!done(at, "interface record", record, err)) return;
  ospf_interface *interface = ospf_interface_create(at->handle, 0);
  if (done(at, "interface", interface, 0)) {
    tbl_ospf_interface_ospf_interface_set_field(at->handle, 0, record, interface);
    kelp_vstring text = {0};
    kelp_vstring_assign(at->handle, 0, &text, name, strlen(name), &err);
    ospf_interface_name_set(at->handle, 0, interface, &text, &err); /* moves the text */
    kelp_vstring_destroy_internal(at->handle, 0, &text, 0);
    without_authentication(at, interface);
    tbl_ospf_interface_insert(at->handle, 0, interfaces, record, &err);
    if (done(at, "interface row", record, err)) return; /* the table knows it now */
  }
  err = 0;
  tbl_ospf_interface_destroy_record(at->handle, 0, record, &err); /* with what it holds */
}

/* An area with one interface. */
static void add_area(work *at, tbl_ospf_area_table *areas, uint32_t id, const char *interface) {
  uint32_t err = 0;
  tbl_ospf_area_record *record = tbl_ospf_area_create_record(at->handle, 0, &err);
  if (!done(at, "area record", record, err)) return;
  ospf_area *area = ospf_area_create(at->handle, 0);
  if (done(at, "area", area, 0)) {
    tbl_ospf_area_ospf_area_set_field(at->handle, 0, record, area);
    ospf_area_area_id_set_value(at->handle, 0, area, id, &err);
    tbl_ospf_area_insert(at->handle, 0, areas, record, &err);
    if (done(at, "area row", record, err)) {
      tbl_ospf_interface_table *below =
          tbl_ospf_interface_table_open_auto_id(at->handle, 0, 0, &err);
      if (!done(at, "table of interfaces", below, err)) return;
      ospf_area_interfaces_set_by_ref(at->handle, 0, area, below, &err);
      if (done(at, "reference to the interfaces", below, err)) {
        add_interface(at, below, interface);
      } else {
        err = 0;
        tbl_ospf_interface_table_free(at->handle, 0, below, &err);
      }
      return;
    }
  }
  err = 0;
  tbl_ospf_area_destroy_record(at->handle, 0, record, &err);
}

/* Rows are found by stepping: a table has no look-up by key, it is a tree in the order of its keys.
 * A step in it is short, and a program that looks rows up often keeps their addresses. */
static void show(work *at, tbl_ospf_area_table *areas) {
  uint32_t err = 0;
  for (tbl_ospf_area_record *row =
           tbl_ospf_area_ospf_area_area_id_get_first(at->handle, 0, areas, &err);
       row != NULL;
       row = tbl_ospf_area_ospf_area_area_id_get_next(at->handle, 0, areas, row, &err)) {
    ospf_area *area = tbl_ospf_area_ospf_area_get_field(at->handle, 0, row);
    uint32_t id = ospf_area_area_id_get_value(at->handle, 0, area, &err);
    tbl_ospf_interface_table *interfaces =
        ospf_area_interfaces_get_by_ref(at->handle, 0, area, &err);
    tbl_ospf_interface_record *first =
        tbl_ospf_interface_ospf_interface_name_get_first(at->handle, 0, interfaces, &err);
    char image[2048];
    uint32_t length = tbl_ospf_interface_table_record_marshal(at->handle, 0, image, first,
                                                              sizeof image, &err);
    printf("area %u: %u interface, an image of %u bytes\n", id,
           tbl_ospf_interface_table_get_count(at->handle, 0, interfaces), length);
  }
  done(at, "walk of the areas", areas, err);
}

/* Ends the interfaces of an area, their table, and the area. Words are fresh for each step, so that
 * one failure does not keep the rest alive. */
static void end_area(work *at, tbl_ospf_area_record *row) {
  uint32_t err = 0;
  ospf_area *area = tbl_ospf_area_ospf_area_get_field(at->handle, 0, row);
  tbl_ospf_interface_table *below = ospf_area_interfaces_get_by_ref(at->handle, 0, area, &err);
  if (below) {
    tbl_ospf_interface_record *interface;
    while (err == 0 && (interface = tbl_ospf_interface_ospf_interface_name_get_first(
                            at->handle, 0, below, &err)) != NULL)
      tbl_ospf_interface_destroy_record(at->handle, 0, interface, &err);
    done(at, "end of the interfaces", below, err);
    err = 0;
    ospf_area_interfaces_set_by_ref(at->handle, 0, area, NULL, &err); /* gives up the reference */
    tbl_ospf_interface_table_free(at->handle, 0, below, &err);
    done(at, "end of the table of interfaces", below, err);
  }
  err = 0;
  tbl_ospf_area_destroy_record(at->handle, 0, row, &err);
  done(at, "end of the area", row, err);
}

static void end_areas(work *at, tbl_ospf_area_table *areas) {
  uint32_t err = 0;
  uint32_t left = tbl_ospf_area_table_get_count(at->handle, 0, areas);
  tbl_ospf_area_record *row;
  while (left-- > 0 && (row = tbl_ospf_area_ospf_area_area_id_get_first(at->handle, 0, areas,
                                                                        &err)) != NULL)
    end_area(at, row);
  tbl_ospf_area_table_free(at->handle, 0, areas, &err);
  done(at, "end of the areas", areas, err);
}

int main(void) {
  kelp_error error = {0};
  work at = {0};
  kelp_database *database = kelp_database_open_private("example", NULL, &error);
  if (database) at.handle = kelp_handle_create(database, NULL, &error);
  if (!at.handle) {
    fprintf(stderr, "%s\n", error.text);
    kelp_database_close(database, NULL);
    return 1;
  }
  uint32_t err = 0;
  tbl_ospf_area_table *areas = tbl_ospf_area_table_open(at.handle, 0, "areas", 0, &err);
  if (done(&at, "table of areas", areas, err)) {
    add_area(&at, areas, 0, "core");
    add_area(&at, areas, 51, "branch");
    if (!at.failed) show(&at, areas);
    end_areas(&at, areas);
  }
  if (at.failed) fprintf(stderr, "%s: %s\n", at.failed, at.why);
  kelp_handle_destroy(at.handle);
  if (kelp_database_close(database, &error) != 0 || error.text[0])
    at.failed = "close", fprintf(stderr, "%s\n", error.text);
  return at.failed != NULL;
}
