/* An area in a table: made, stored, found again, printed, and everything given back. */
#include <kelp/embed.h>
#include <ospf_harbor_oper.h>
#include <stdio.h>
#include <string.h>

int main(void) {
  kelp_error error;
  kelp_database *database = kelp_database_open_private("example", NULL, &error);
  kelp_handle *handle = database ? kelp_handle_create(database, NULL, &error) : NULL;
  if (!handle) return fprintf(stderr, "%s\n", error.text), 1;

  uint32_t err = 0; /* looked at once: after a failure the calls that follow do nothing */
  tbl_ospf_area_table *areas = tbl_ospf_area_table_open(handle, 0, "areas", 0, &err);
  tbl_ospf_area_record *record = tbl_ospf_area_create_record(handle, 0, &err);
  ospf_area *area = ospf_area_create(handle, 0);
  ospf_area_area_id_set_value(handle, 0, area, 51, &err);
  tbl_ospf_area_ospf_area_set_field(handle, 0, record, area);
  tbl_ospf_area_insert(handle, 0, areas, record, &err);

  char text[4096];
  memset(text, ' ', sizeof text);
  record = tbl_ospf_area_ospf_area_area_id_get_first(handle, 0, areas, &err);
  uint32_t length = tbl_ospf_area_table_record_print(handle, 0, text, record, sizeof text, &err);
  printf("%u area\n%.*s", tbl_ospf_area_table_get_count(handle, 0, areas), (int)length, text);

  tbl_ospf_area_destroy_record(handle, 0, record, &err);
  tbl_ospf_area_table_free(handle, 0, areas, &err);
  if (err != 0) fprintf(stderr, "%s\n", strerror((int)err));
  kelp_handle_destroy(handle);
  kelp_database_close(database, &error);
  return err != 0;
}
