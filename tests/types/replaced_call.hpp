// A platform function replaced, for the calls that the system's library makes, while this lives:
// the way to failures that the runtime has no cause for. The library's own links to the function
// are pointed elsewhere, so that no other caller sees it.
#pragma once

#include <elf.h>
#include <gtest/gtest.h>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "harness/seen_calls.hpp"

namespace harness {

class ReplacedCall {
 public:
  template <typename Function>
  ReplacedCall(const char *name, Function *replacement)
      : name_(name), replacement_(reinterpret_cast<std::uintptr_t>(replacement)) {
    begin_seeing_calls();
    dl_iterate_phdr(visit, this);
    EXPECT_FALSE(links_.empty()) << "the library does not call " << name;
  }
  ~ReplacedCall() {
    for (const auto &[place, original] : links_) write(place, original);
    end_seeing_calls();
  }
  ReplacedCall(const ReplacedCall &) = delete;
  ReplacedCall &operator=(const ReplacedCall &) = delete;

 private:
  static void write(std::uintptr_t *place, std::uintptr_t value) {
    const auto page_size = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const std::uintptr_t page = reinterpret_cast<std::uintptr_t>(place) / page_size * page_size;
    ASSERT_EQ(mprotect(reinterpret_cast<void *>(page), page_size, PROT_READ | PROT_WRITE), 0);
    *place = value;
  }

  static int visit(dl_phdr_info *info, std::size_t, void *context) {
    if (std::strstr(info->dlpi_name, "libospf_harbor_oper.so") == nullptr) return 0;
    for (int i = 0; i < info->dlpi_phnum; ++i) {
      if (info->dlpi_phdr[i].p_type != PT_DYNAMIC) continue;
      static_cast<ReplacedCall *>(context)->search(
          info->dlpi_addr,
          reinterpret_cast<const ElfW(Dyn) *>(info->dlpi_addr + info->dlpi_phdr[i].p_vaddr));
    }
    return 1;
  }

  void search(std::uintptr_t base, const ElfW(Dyn) * entry) {
    const ElfW(Sym) *symbols = nullptr;
    const char *names = nullptr;
    std::uintptr_t tables[2] = {0, 0};
    std::size_t sizes[2] = {0, 0};
    for (; entry->d_tag != DT_NULL; ++entry) {
      switch (entry->d_tag) {
        case DT_SYMTAB:
          symbols = reinterpret_cast<const ElfW(Sym) *>(entry->d_un.d_ptr);
          break;
        case DT_STRTAB:
          names = reinterpret_cast<const char *>(entry->d_un.d_ptr);
          break;
        case DT_JMPREL:
          tables[0] = entry->d_un.d_ptr;
          break;
        case DT_PLTRELSZ:
          sizes[0] = entry->d_un.d_val;
          break;
        case DT_RELA:
          tables[1] = entry->d_un.d_ptr;
          break;
        case DT_RELASZ:
          sizes[1] = entry->d_un.d_val;
          break;
        default:
          break;
      }
    }
    for (int table = 0; table < 2; ++table) {
      const auto *relocation = reinterpret_cast<const ElfW(Rela) *>(tables[table]);
      for (std::size_t i = 0; i < sizes[table] / sizeof *relocation; ++i, ++relocation) {
        const auto symbol = ELF64_R_SYM(relocation->r_info);
        if (symbol == 0 || name_ != names + symbols[symbol].st_name) continue;
        auto *place = reinterpret_cast<std::uintptr_t *>(base + relocation->r_offset);
        links_.emplace_back(place, *place);
        write(place, replacement_);
      }
    }
  }

  std::string name_;
  std::uintptr_t replacement_;
  std::vector<std::pair<std::uintptr_t *, std::uintptr_t>> links_;
};

}  // namespace harness
