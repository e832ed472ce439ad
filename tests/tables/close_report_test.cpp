// What kelp_database_close says of tables that nobody ended.
#include <gtest/gtest.h>
#include <kelp/embed.h>

#include <string>

#include "ospf_harbor_oper.h"

namespace {

void add_area(kelp_handle *handle, tbl_ospf_area_table *areas, std::uint32_t id) {
  std::uint32_t err = 0;
  auto *record = tbl_ospf_area_create_record(handle, 0, &err);
  ospf_area *area = ospf_area_create(handle, 0);
  ospf_area_area_id_set_value(handle, 0, area, id, &err);
  tbl_ospf_area_ospf_area_set_field(handle, 0, record, area);
  tbl_ospf_area_insert(handle, 0, areas, record, &err);
  EXPECT_EQ(err, 0u);
}

// Closes a database after the work and gives the report.
template <typename Work>
std::string report_after(Work work) {
  kelp_database *database = kelp_database_open_private("net", nullptr, nullptr);
  kelp_handle *handle = kelp_handle_create(database, nullptr, nullptr);
  work(handle);
  kelp_handle_destroy(handle);
  kelp_error error{};
  EXPECT_EQ(kelp_database_close(database, &error), 0);
  return error.text;
}

TEST(CloseReport, NamesTheTablesThatAreLeft) {
  const std::string report = report_after([](kelp_handle *handle) {
    std::uint32_t err = 0;
    auto *areas = tbl_ospf_area_table_open(handle, 0, "areas", 0, &err);
    add_area(handle, areas, 1);
    add_area(handle, areas, 2);
    tbl_ospf_interface_table_open_auto_id(handle, 0, 0, &err);
    EXPECT_EQ(err, 0u);
  });
  EXPECT_TRUE(report.starts_with("database 'net' was closed with 6 allocations of ")) << report;
  EXPECT_NE(report.find(" bytes still in use; tables that are left: tbl_ospf_area 'areas' with 2 "
                        "records, tbl_ospf_interface 0 with 0 records"),
            std::string::npos)
      << report;
}

TEST(CloseReport, IsEmptyWhenAllWasEnded) {
  EXPECT_EQ(report_after([](kelp_handle *handle) {
              std::uint32_t err = 0;
              auto *areas = tbl_ospf_area_table_open(handle, 0, "areas", 0, &err);
              tbl_ospf_area_table_free(handle, 0, areas, &err);
              EXPECT_EQ(err, 0u);
            }),
            "");
}

// As many as there is room for.
TEST(CloseReport, EndsWhereItsRoomDoes) {
  const std::string report = report_after([](kelp_handle *handle) {
    for (int i = 0; i < 100; ++i) {
      std::uint32_t err = 0;
      const std::string name = "areas " + std::to_string(i);
      tbl_ospf_area_table_open(handle, 0, name.c_str(), 0, &err);
      EXPECT_EQ(err, 0u);
    }
  });
  EXPECT_LT(report.size(), sizeof kelp_error::text);
  EXPECT_NE(report.find("'areas 0' with 0 records, tbl_ospf_area 'areas 1'"), std::string::npos);
  EXPECT_TRUE(report.ends_with("records, ...")) << report;
}

}  // namespace
