/* An area in a table: made, stored, found again, printed, and everything given back.
 *
 * Calls that can fail do nothing when the error word that they get is set, with one exception:
 * create_record sets the word to 0, whatever it held. What comes as a pointer is tested, since a
 * null stands for what could not be had; the words of the rest may be collected in a row. */
#include <kelp/embed.h>
#include <ospf_harbor_oper.h>
#include <stdio.h>
#include <string.h>

/* Says what failed and, where the handle knows more, why; gives 1. */
static int failed(const char *what, uint32_t err, const kelp_handle *handle) {
  kelp_error error = {0};
  if (kelp_handle_last_error(handle, &error) == 0 && err != 0)
    snprintf(error.text, sizeof error.text, "%s", strerror((int)err));
  fprintf(stderr, "%s: %s\n", what, error.text[0] ? error.text : "no reason given");
  return 1;
}

/* Makes the area 0.0.0.51 and enters it in the table. */
static int add_area(kelp_handle *handle, tbl_ospf_area_table *areas) {
  uint32_t err = 0;
  tbl_ospf_area_record *record = tbl_ospf_area_create_record(handle, 0, &err);
  if (!record) return failed("no record", err, handle);
  ospf_area *area = ospf_area_create(handle, 0);
  if (!area) {
    failed("no area", 0, handle);
    tbl_ospf_area_destroy_record(handle, 0, record, &err);
    return 1;
  }
  tbl_ospf_area_ospf_area_set_field(handle, 0, record, area); /* the record owns it from here on */
  ospf_area_area_id_set_value(handle, 0, area, 51, &err);
  tbl_ospf_area_insert(handle, 0, areas, record, &err);
  if (err == 0) return 0;
  failed("the area did not get into its table", err, handle);
  err = 0; /* a set word would stop the next call too */
  tbl_ospf_area_destroy_record(handle, 0, record, &err);
  return 1;
}

/* Finds the first area and prints it. */
static int show_area(kelp_handle *handle, tbl_ospf_area_table *areas) {
  uint32_t err = 0;
  tbl_ospf_area_record *record =
      tbl_ospf_area_ospf_area_area_id_get_first(handle, 0, areas, &err);
  if (!record) return failed("no area found", err, handle);
  char text[4096];
  memset(text, ' ', sizeof text); /* the text has gaps, which keep what the buffer held */
  uint32_t length = tbl_ospf_area_table_record_print(handle, 0, text, record, sizeof text, &err);
  if (err != 0) return failed("the area cannot be printed", err, handle);
  printf("%u area\n%.*s", tbl_ospf_area_table_get_count(handle, 0, areas), (int)length, text);
  return 0;
}

/* Ends the areas, then their table: a table does not own its records. */
static int end_areas(kelp_handle *handle, tbl_ospf_area_table *areas) {
  uint32_t err = 0;
  tbl_ospf_area_record *record;
  while (err == 0 &&
         (record = tbl_ospf_area_ospf_area_area_id_get_first(handle, 0, areas, &err)) != NULL)
    tbl_ospf_area_destroy_record(handle, 0, record, &err);
  tbl_ospf_area_table_free(handle, 0, areas, &err);
  return err == 0 ? 0 : failed("the table cannot be ended", err, handle);
}

int main(void) {
  kelp_error error;
  kelp_database *database = kelp_database_open_private("example", NULL, &error);
  if (!database) return fprintf(stderr, "%s\n", error.text), 1;
  kelp_handle *handle = kelp_handle_create(database, NULL, &error);
  int status = 1;
  if (!handle) {
    fprintf(stderr, "%s\n", error.text);
  } else {
    uint32_t err = 0;
    tbl_ospf_area_table *areas = tbl_ospf_area_table_open(handle, 0, "areas", 0, &err);
    if (areas) {
      status = add_area(handle, areas) || show_area(handle, areas);
      status |= end_areas(handle, areas);
    } else {
      failed("the table cannot be opened", err, handle);
    }
    kelp_handle_destroy(handle);
  }
  if (kelp_database_close(database, &error) != 0 || error.text[0])
    status = 1, fprintf(stderr, "%s\n", error.text);
  return status;
}
