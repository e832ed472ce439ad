// The program that keeps rows, and processes.
#include "rows.hpp"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace store_test {

std::filesystem::path Folder::in_memory() {
  return access("/dev/shm", W_OK) == 0 ? "/dev/shm" : std::filesystem::temp_directory_path();
}

Rows::Rows(const std::string &path, const kelp_store_options *options) {
  database = kelp_database_open_file(path.c_str(), options, &error);
  if (database != nullptr) handle = kelp_handle_create(database, nullptr, &error);
}

Rows::~Rows() {
  kelp_handle_destroy(handle);
  kelp_database_close(database, nullptr);
}

tbl_ospfv2_unknown_sub_tlv_table *Rows::table(bool read_only) {
  std::uint32_t err = 0;
  return tbl_ospfv2_unknown_sub_tlv_table_open(handle, 0, "rows", read_only ? 1 : 0, &err);
}

// Tables are walked: records are not found by key.
tbl_ospfv2_unknown_sub_tlv_record *Rows::find(std::uint16_t key) {
  std::uint32_t err = 0;
  tbl_ospfv2_unknown_sub_tlv_table *rows = table(true);
  if (rows == nullptr) return nullptr;
  auto *record =
      tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_type_get_first(handle, 0, rows, &err);
  while (record != nullptr && err == 0) {
    const ospfv2_unknown_sub_tlv *row =
        tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_get_field(handle, 0, record);
    if (ospfv2_unknown_sub_tlv_type_get_value(handle, 0, row, &err) == key) return record;
    record = tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_type_get_next(handle, 0, rows,
                                                                             record, &err);
  }
  return nullptr;
}

std::uint32_t Rows::put(std::uint16_t key, const std::string &bytes) {
  std::uint32_t err = 0;
  const auto *octets = reinterpret_cast<const std::uint8_t *>(bytes.data());
  const auto count = static_cast<std::uint32_t>(bytes.size());
  if (tbl_ospfv2_unknown_sub_tlv_record *known = find(key)) {
    ospfv2_unknown_sub_tlv *row =
        tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_get_field(handle, 0, known);
    ospfv2_unknown_sub_tlv_value_set_mem(handle, 0, row, octets, count, &err);
    return err;
  }
  tbl_ospfv2_unknown_sub_tlv_table *rows = table(false);
  ospfv2_unknown_sub_tlv *row = ospfv2_unknown_sub_tlv_create(handle, 0);
  tbl_ospfv2_unknown_sub_tlv_record *record =
      tbl_ospfv2_unknown_sub_tlv_create_record(handle, 0, &err);
  if (rows == nullptr || row == nullptr || record == nullptr) return err == 0 ? 12 : err;
  ospfv2_unknown_sub_tlv_type_set_value(handle, 0, row, key, &err);
  ospfv2_unknown_sub_tlv_value_set_mem(handle, 0, row, octets, count, &err);
  tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_set_field(handle, 0, record, row);
  tbl_ospfv2_unknown_sub_tlv_insert(handle, 0, rows, record, &err);
  return err;
}

std::uint32_t Rows::erase(std::uint16_t key) {
  std::uint32_t err = 0;
  tbl_ospfv2_unknown_sub_tlv_record *known = find(key);
  if (known == nullptr) return 2;
  tbl_ospfv2_unknown_sub_tlv_destroy_record(handle, 0, known, &err);
  return err;
}

std::int32_t Rows::commit(const Model &rows) {
  if (const std::int32_t code = lock_write()) return code;
  for (const auto &[key, bytes] : rows) {
    if (const std::uint32_t code = put(key, bytes)) return static_cast<std::int32_t>(code);
  }
  return unlock();
}

Model Rows::all() {
  Model found;
  std::uint32_t err = 0;
  tbl_ospfv2_unknown_sub_tlv_table *rows = table(true);
  if (rows == nullptr) return found;
  auto *record =
      tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_type_get_first(handle, 0, rows, &err);
  while (record != nullptr && err == 0) {
    ospfv2_unknown_sub_tlv *row =
        tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_get_field(handle, 0, record);
    const std::uint16_t key = ospfv2_unknown_sub_tlv_type_get_value(handle, 0, row, &err);
    std::string bytes(ospfv2_unknown_sub_tlv_value_len_get_value(handle, 0, row, &err), '\0');
    if (!bytes.empty()) {
      ospfv2_unknown_sub_tlv_value_get_mem(handle, 0, row,
                                           reinterpret_cast<std::uint8_t *>(bytes.data()),
                                           static_cast<std::uint32_t>(bytes.size()), &err);
    }
    found[key] = bytes;
    record = tbl_ospfv2_unknown_sub_tlv_ospfv2_unknown_sub_tlv_type_get_next(handle, 0, rows,
                                                                             record, &err);
  }
  return found;
}

std::string Rows::check() {
  std::string found;
  if (lock_read() != 0) return error.text;
  const auto note = [](void *context, const char *text) {
    *static_cast<std::string *>(context) += std::string(text) + "\n";
  };
  kelp_error result;
  if (kelp_database_check(database, note, &found, &result) != 0 && found.empty())
    found = result.text;
  unlock();
  return found;
}

pid_t start(const std::function<int()> &work) {
  const pid_t process = fork();
  if (process == 0) _exit(work());
  return process;
}

int wait_for(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
}

int run(const std::function<int()> &work) { return wait_for(start(work)); }

Signal::Signal() {
  if (pipe(ends_) != 0) std::abort();
}
Signal::~Signal() {
  close(ends_[0]);
  close(ends_[1]);
}
void Signal::give(char what) {
  if (write(ends_[1], &what, 1) != 1) std::abort();
}
char Signal::take() {
  char what = 0;
  return read(ends_[0], &what, 1) == 1 ? what : '\0';
}

void forget_run_of_machine(const std::string &path) {
  std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
  file.seekp(128);
  file.write("another run ....", 16);
}

std::string some_bytes(std::uint64_t seed, std::size_t length) {
  std::string bytes(length, '\0');
  for (char &byte : bytes) {
    seed = seed * UINT64_C(6364136223846793005) + 1442695040888963407;
    byte = static_cast<char>(seed >> 56);
  }
  return bytes;
}

std::string verify(const std::string &path, const std::vector<Model> &expected) {
  int ends[2];
  if (pipe(ends) != 0) return "no pipe";
  const pid_t process = start([&] {
    close(ends[0]);
    std::string answer;
    {
      Rows rows(path);
      if (!rows.is_open()) {
        answer = std::string("it cannot be opened: ") + rows.error.text;
      } else {
        answer = rows.check();
        if (rows.lock_read() != 0) answer += rows.error.text;
        const Model found = rows.all();
        rows.unlock();
        bool known = false;
        for (const Model &each : expected) known = known || each == found;
        if (!known) answer += "rows that nobody committed: " + std::to_string(found.size());
      }
    }
    const ssize_t written = write(ends[1], answer.data(), answer.size());
    return written < 0 ? 1 : 0;
  });
  close(ends[1]);
  std::string answer;
  char buffer[4096];
  for (ssize_t length; (length = read(ends[0], buffer, sizeof buffer)) > 0;) {
    answer.append(buffer, static_cast<std::size_t>(length));
  }
  close(ends[0]);
  const int status = wait_for(process);
  if (status != 0) answer += "the process that looked ended with " + std::to_string(status);
  return answer;
}

}  // namespace store_test
