// Under a mode that is neither on nor off every place that reads it ends the process; under a
// handle that tracks, an object without state bytes is refused with 22.
#include <array>

#include "messages/setting.hpp"
#include "messages/state_sites.hpp"
#include "messages/type_drivers.hpp"

namespace messages {

namespace {

// A site on an object made under a handle that tracks, with its fault. Gives the error word.
std::uint32_t run(kelp_handle *handle, const StateSite &site,
                  const std::function<void(kelp_handle *, void *)> &fault) {
  void *object = create(handle, site.type);
  site.prepare(handle, object);
  if (site.fault == Fault::before) {
    fault(handle, object);
    return site.run(handle, object);
  }
  std::uint32_t number = 0;
  if (site.fault == Fault::last_write_but_one) {
    void *other = create(handle, site.type);
    const AtWrite count(handle, 0xFFFFFFFF, [] {});
    site.run(handle, other);
    number = AtWrite::seen() - 2;
  }
  const AtWrite moment(handle, number, [&] { fault(handle, object); });
  return site.run(handle, object);
}

void drive_corrupted(DrivenForm &form, const std::vector<StateSite> &sites) {
  const auto fault = [](kelp_handle *handle, void *) { corrupt(handle); };
  for (const StateSite &site : sites) {
    form.drive(site.row, form.form(), [&] { run(tracking(), site, fault); });
  }
}

// Stands in for the count of a new object, behind which the mode is read again.
void corrupt_while_counting(kelp_handle *handle, std::uint32_t, const kelp_type_record *,
                            std::uint64_t *, std::uint32_t *) {
  corrupt(handle);
}

void corrupted_handle(DrivenForm &form) {
  drive_corrupted(form, whole_object_sites());
  drive_corrupted(form, transfers());
  drive_corrupted(form, state_readers());
  drive_corrupted(form, state_writers());
  drive_corrupted(form, writers());
  for (const Structure *structure : harbor::model::structures) {
    const std::string type(structure->name);
    form.drive(type + " initialize, once counted", form.form(), [&] {
      kelp_handle *handle = tracking();
      void *object = create(handle, type);
      const ReplacedCall count("kelplib_type_stats_create_object", corrupt_while_counting);
      initialize(type, handle, object);
    });
  }
}

void drive_untracked(DrivenForm &form, const std::vector<StateSite> &sites) {
  const auto fault = [](kelp_handle *, void *object) { untrack(object); };
  for (const StateSite &site : sites) {
    form.drive(site.row, form.form(), [&] {
      kelp_handle *handle = tracking();
      EXPECT_EQ(run(handle, site, fault), 22u);
      EXPECT_EQ(kelp_handle_last_error(handle, nullptr), KELP_ERR_INVALID);
    });
  }
}

void object_not_tracked(DrivenForm &form) {
  drive_untracked(form, state_writers());
  drive_untracked(form, writers());
  drive_untracked(form, transfers());
}

void object_non_tracked(DrivenForm &form) { drive_untracked(form, state_readers()); }

// Only the arm that is a structure of its own can lack state bytes.
void arm_not_tracked(DrivenForm &form) {
  form.drive("crypto_algorithm_val", form.form(), [] {
    kelp_handle *handle = tracking();
    void *object = create(handle, "ospf_authentication");
    void *arm = create(handle, "ospf_crypto_algorithm");
    untrack(arm);
    std::uint32_t err = 0;
    call<void>("ospf_authentication_crypto_algorithm_val_set", handle, space, object, arm, &err);
    EXPECT_EQ(err, KELP_ERR_INVALID);
  });
}

constexpr std::array<TypeDriver, 4> drivers{{
    {"Corrupted KELP Handle", corrupted_handle},
    {"The object is not state tracked", object_not_tracked},
    {"The object is non state tracked", object_non_tracked},
    {"The val object is not state tracked", arm_not_tracked},
}};

}  // namespace

std::span<const TypeDriver> state_drivers() { return drivers; }

}  // namespace messages
