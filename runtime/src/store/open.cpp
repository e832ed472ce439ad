// Opening, making and closing a store: what a file must be to be trusted, and what is done after
// the machine was started again.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cinttypes>
#include <cstring>
#include <mutex>
#include <set>

#include "base/failure.hpp"
#include "kelp/core.h"
#include "store/check.hpp"
#include "store/guard.hpp"
#include "store/store.hpp"

#ifndef MAP_FIXED_NOREPLACE
#define MAP_FIXED_NOREPLACE 0x100000
#endif

namespace kelp::store {

namespace {

constexpr std::uint64_t kLeastReserved = kHeapOffset + 16 * kSpanBytes;
constexpr std::uint64_t kFirstBytes = kHeapOffset;

// The stores that this process has open. Never destroyed: threads may close theirs late.
struct OpenStores {
  std::mutex mutex;
  std::set<std::pair<std::uint64_t, std::uint64_t>> files;
};

OpenStores &open_stores() {
  static auto *const open = new OpenStores;
  return *open;
}

// The first bytes of a file as a message may show them.
struct Printable {
  char text[5];
};

Printable printable(const char (&magic)[16]) {
  Printable shown{};
  for (int i = 0; i < 4; ++i) shown.text[i] = magic[i] >= ' ' && magic[i] <= '~' ? magic[i] : '.';
  return shown;
}

std::uint32_t checksum_of(const Identity &identity) {
  return static_cast<std::uint32_t>(hash_of(&identity, offsetof(Identity, checksum)));
}

// A run of addresses for a new store: the first free one from a random place on.
std::uint64_t choose_address(std::uint64_t reserved, const std::uint8_t (&id)[16]) {
  std::uint64_t random = 0;
  std::memcpy(&random, id, sizeof random);
  const std::uint64_t places = (kHighestAddress - kLowestAddress) / reserved;
  for (std::uint64_t turn = 0; turn < places; ++turn) {
    const std::uint64_t address = kLowestAddress + (random + turn) % places * reserved;
    void *wanted = reinterpret_cast<void *>(address);
    void *found = mmap(wanted, reserved, PROT_NONE,
                       MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE | MAP_FIXED_NOREPLACE, -1, 0);
    if (found == MAP_FAILED) continue;
    munmap(found, reserved);
    if (found == wanted) return address;
  }
  return 0;
}

}  // namespace

std::unique_ptr<Store> Store::open(const std::string &path, const Options &options,
                                   kelp_error *error) {
  std::unique_ptr<Store> store(new Store);
  store->path_ = path;
  store->options_ = options;
  store->pid_ = getpid();
  if (store->open_files(error) != 0) return nullptr;
  succeed(error);
  return store;
}

// Opens the files in an order in which a refused file stays as it is: the database is read first,
// and the two beside it are made only for one that is trusted or is to be made.
std::int32_t Store::open_files(kelp_error *error) {
  const int access = options_.read_only ? O_RDONLY : O_RDWR;
  const auto open_database = [&] {
    file_ = File(::open(path_.c_str(), access | O_CLOEXEC));
    return file_ ? 0 : errno;
  };
  // lost: of a store that is to be made anew, what transactions change is not looked at.
  bool lost = false;
  Identity identity{};
  const auto read_header = [&](bool again) -> std::int32_t {
    struct stat found {};
    Header header{};
    if (fstat(file_.number(), &found) != 0) {
      return fail(error, errno, "store '%s': %s", path_.c_str(), std::strerror(errno));
    }
    if (!S_ISREG(found.st_mode)) {
      return fail(error, EINVAL, "store '%s': it is no regular file", path_.c_str());
    }
    const ssize_t length = pread(file_.number(), &header, sizeof header, 0);
    if (length < 0) {
      return fail(error, errno, "store '%s': %s", path_.c_str(), std::strerror(errno));
    }
    device_ = found.st_dev;
    file_number_ = found.st_ino;
    if (const auto wrong = check_identity(header.identity, found.st_size, error)) return wrong;
    std::uint8_t boot[16];
    boot_identity(boot);
    identity = header.identity;
    lost = !again && identity.durability == kSurvivesPower &&
           std::memcmp(header.boot, boot, sizeof boot) != 0;
    return lost ? 0 : check_header(header, static_cast<std::uint64_t>(found.st_size), error);
  };
  std::int32_t code = open_database();
  if (code == 0)
    code = read_header(false);
  else if (code != ENOENT || !options_.create || options_.read_only) {
    return fail(error, code, "store '%s': %s", path_.c_str(), std::strerror(code));
  } else {
    code = 0;
  }
  if (code != 0) return code;
  if ((code = gate_.open(path_ + "-lock", options_.mode, deadline(), error)) != 0) return code;
  // Another process may have made or replaced it before the lock was had.
  code = open_database();
  if (code == ENOENT && options_.create && !options_.read_only) {
    if ((code = create_file(error)) != 0) return code;
    code = open_database();
  }
  if (code != 0) return fail(error, code, "store '%s': %s", path_.c_str(), std::strerror(code));
  if ((code = read_header(false)) != 0) return code;
  if (lost) {
    if ((code = recover(identity, error)) != 0) return code;
    code = open_database();
    if (code != 0) return fail(error, code, "store '%s': %s", path_.c_str(), std::strerror(code));
    if ((code = read_header(true)) != 0) return code;
  }
  if ((code = map(error)) != 0) return code;
  if ((code = gate_.enter(header_->identity.id, error)) != 0) return code;
  if ((code = journal_.open(path_ + "-log", options_.mode, header_->identity.id, error)) != 0) {
    return code;
  }
  if ((code = open_redo(error)) != 0) return code;
  if ((code = meet_restart(error)) != 0) return code;
  gate_.settle();
  return 0;
}

std::int32_t Store::check_identity(const Identity &identity, std::int64_t size,
                                   kelp_error *error) const {
  const char *path = path_.c_str();
  if (size < static_cast<std::int64_t>(kFirstBytes)) {
    return fail(error, EINVAL, "store '%s': %" PRId64 " bytes found, expected at least %" PRIu64,
                path, size, std::uint64_t{kFirstBytes});
  }
  if (std::memcmp(identity.magic, kStoreMagic, sizeof kStoreMagic) != 0) {
    return fail(error, EINVAL,
                "store '%s': it does not begin as a database does: '%.4s' found, expected '%.4s'",
                path, printable(identity.magic).text, "kelp");
  }
  if (identity.byte_order != kByteOrder) {
    return fail(error, EINVAL, "store '%s': byte order mark %08x found, expected %08x", path,
                identity.byte_order, kByteOrder);
  }
  if (identity.layout != kLayoutVersion) {
    return fail(
        error, EINVAL, "store '%s': layout %u found, expected %u: it was made by %s program", path,
        identity.layout, kLayoutVersion, identity.layout > kLayoutVersion ? "a newer" : "an older");
  }
  if (identity.checksum != checksum_of(identity)) {
    return fail(error, EINVAL, "store '%s': header checksum %08x found, expected %08x", path,
                identity.checksum, checksum_of(identity));
  }
  if (identity.address < kLowestAddress || identity.address % kSpanBytes != 0 ||
      identity.reserved_bytes < kLeastReserved || identity.span_bytes != kSpanBytes ||
      identity.reserved_bytes > kHighestAddress - identity.address) {
    return fail(error, EINVAL,
                "store '%s': addresses %" PRIx64 " and %" PRIu64
                " bytes from there, expected "
                "within %" PRIx64 " to %" PRIx64,
                path, identity.address, identity.reserved_bytes, kLowestAddress, kHighestAddress);
  }
  return 0;
}

std::int32_t Store::check_header(const Header &header, std::uint64_t size,
                                 kelp_error *error) const {
  const char *path = path_.c_str();
  const Identity &identity = header.identity;
  if (const auto code = check_identity(identity, static_cast<std::int64_t>(size), error)) {
    return code;
  }
  if (header.head.types_used > kTypesBytes) {
    return fail(error, EINVAL,
                "store '%s': %" PRIu64 " bytes of types found, expected at most %" PRIu64, path,
                header.head.types_used, std::uint64_t{kTypesBytes});
  }
  // An unfinished transaction may have left any number; the journal's is looked at when it is
  // undone.
  const std::uint64_t most = (identity.reserved_bytes - kHeapOffset) / kSpanBytes;
  if (header.head.spans > most || kHeapOffset + header.head.spans * kSpanBytes > size) {
    return fail(error, EINVAL,
                "store '%s': %" PRIu64 " bytes found, expected %" PRIu64 ": the file was cut", path,
                size, kHeapOffset + header.head.spans * kSpanBytes);
  }
  return 0;
}

// A new file under a name of its own, so that nobody ever meets half of one.
std::int32_t Store::create_file(kelp_error *error) {
  std::uint64_t reserved = std::max(options_.reserved_bytes, kLeastReserved);
  reserved = (reserved + kSpanBytes - 1) / kSpanBytes * kSpanBytes;
  if (reserved > kHighestAddress - kLowestAddress) {
    return fail(error, EINVAL,
                "store '%s': %" PRIu64 " bytes to be reserved, expected at most %" PRIu64,
                path_.c_str(), reserved, kHighestAddress - kLowestAddress);
  }
  Header header{};
  Identity &identity = header.identity;
  std::memcpy(identity.magic, kStoreMagic, sizeof kStoreMagic);
  identity.layout = kLayoutVersion;
  identity.byte_order = kByteOrder;
  identity.reserved_bytes = reserved;
  identity.span_bytes = kSpanBytes;
  identity.durability = options_.durability;
  if (getrandom(identity.id, sizeof identity.id, 0) != sizeof identity.id) {
    return fail(error, errno, "store '%s': no random identity: %s", path_.c_str(),
                std::strerror(errno));
  }
  identity.id[0] |= 1;
  identity.address = choose_address(reserved, identity.id);
  if (identity.address == 0) {
    return fail(error, ENOMEM,
                "store '%s': no %" PRIu64 " bytes of addresses are free between %" PRIx64
                " and %" PRIx64,
                path_.c_str(), reserved, kLowestAddress, kHighestAddress);
  }
  identity.checksum = checksum_of(identity);
  boot_identity(header.boot);
  header.clean = 1;
  std::fill(std::begin(header.head.bins), std::end(header.head.bins), kNoSpan);
  std::fill(std::begin(header.head.classes), std::end(header.head.classes), kNoSpan);
  header.head.directory.next_oid = kFirstOid;
  header.head.redo_end = kRedoStart;
  // What the file is made anew from stands before the file does.
  if (options_.durability == kSurvivesPower) {
    if (const auto code = make_file(header, path_ + "-image", error)) return code;
  }
  return make_file(header, path_, error);
}

std::int32_t Store::make_file(const Header &header, const std::string &place,
                              kelp_error *error) const {
  const std::string name = place + "-new";
  File made(
      ::open(name.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, options_.mode));
  if (!made) {
    return fail(error, errno, "store '%s': %s", name.c_str(), std::strerror(errno));
  }
  std::int32_t code = provide_room(made.number(), name.c_str(), 0, kFirstBytes, error);
  if (code != 0) {
    unlink(name.c_str());
    return code;
  }
  code = write_at(made.number(), 0, &header, sizeof header);
  if (code == 0 && fsync(made.number()) != 0) code = errno;
  if (code == 0 && rename(name.c_str(), place.c_str()) != 0) code = errno;
  if (code == 0) code = sync_folder_of(place.c_str());
  if (code == 0) return 0;
  unlink(name.c_str());
  return fail(error, code, "store '%s': it cannot be made: %s", place.c_str(), std::strerror(code));
}

std::int32_t Store::map(kelp_error *error) {
  {
    OpenStores &open = open_stores();
    const std::lock_guard lock(open.mutex);
    if (!open.files.insert({device_, file_number_}).second) {
      device_ = file_number_ = 0;
      return fail(error, EBUSY, "store '%s': this process has it open already", path_.c_str());
    }
  }
  Identity identity{};
  if (pread(file_.number(), &identity, sizeof identity, 0) != sizeof identity) {
    return fail(error, EIO, "store '%s': its header cannot be read", path_.c_str());
  }
  reserved_ = identity.reserved_bytes;
  void *wanted = reinterpret_cast<void *>(identity.address);
  const int access = options_.read_only ? PROT_READ : PROT_READ | PROT_WRITE;
  void *mapped = mmap(wanted, reserved_, access, MAP_SHARED | MAP_FIXED_NOREPLACE | MAP_NORESERVE,
                      file_.number(), 0);
  const int reason = errno;
  if (mapped != MAP_FAILED && mapped != wanted) munmap(mapped, reserved_);
  if (mapped != wanted) {
    return fail(error, mapped == MAP_FAILED ? reason : EEXIST,
                "store '%s': it cannot be mapped at %" PRIx64
                ", where its objects point, for %" PRIu64 " bytes: %s",
                path_.c_str(), identity.address, reserved_,
                mapped == MAP_FAILED && reason != EEXIST ? std::strerror(reason)
                                                         : "something lies there in this process");
  }
  base_ = static_cast<std::byte *>(mapped);
  header_ = reinterpret_cast<Header *>(base_);
  if (!guard_range(base_, reserved_, &damaged_)) {
    return fail(error, ENOMEM, "store '%s': more than %zu ranges are guarded", path_.c_str(),
                kMostRanges);
  }
  heap_.attach(this, &header_->head, base_ + kHeapOffset, (reserved_ - kHeapOffset) / kSpanBytes);
  return map_types(error);
}

std::int32_t Store::map_types(kelp_error *error) {
  const int access = options_.read_only ? PROT_READ : PROT_READ | PROT_WRITE;
  void *shared = mmap(nullptr, kTypesBytes, access, MAP_SHARED, file_.number(), kTypesOffset);
  void *own = mmap(base_ + kTypesOffset, kTypesBytes, PROT_READ | PROT_WRITE,
                   MAP_PRIVATE | MAP_FIXED, file_.number(), kTypesOffset);
  if (shared == MAP_FAILED || own == MAP_FAILED) {
    if (shared != MAP_FAILED) munmap(shared, kTypesBytes);
    return fail(error, errno, "store '%s': its types cannot be mapped: %s", path_.c_str(),
                std::strerror(errno));
  }
  types_ = static_cast<std::byte *>(shared);
  guard_range(types_, kTypesBytes, &damaged_);
  return 0;
}

// What was not synced when the machine stopped may be lost in part, so that the file is looked
// through before it is used.
std::int32_t Store::meet_restart(kelp_error *error) {
  std::uint8_t boot[16];
  boot_identity(boot);
  const bool same_run = std::memcmp(header_->boot, boot, sizeof boot) == 0;
  const bool is_kept = header_->identity.durability == kSurvivesPower;
  if (!same_run && (header_->clean == 0 || is_kept)) {
    if (const auto code = mend(error)) return code;
    std::string first;
    const std::uint64_t findings = check(view(), [&](const std::string &text) {
      if (first.empty()) first = text;
    });
    if (findings != 0) {
      return fail(error, EIO,
                  "store '%s': the machine was started again while it was in use, and %" PRIu64
                  " things in it are damaged, the first: %s",
                  path_.c_str(), findings, first.c_str());
    }
  }
  if (options_.read_only) return 0;
  const bool was_clean = header_->clean != 0;
  std::memcpy(header_->boot, boot, sizeof boot);
  header_->clean = 0;
  // Before anything else of it is changed on the disk: a file that says that all was synced is not
  // looked through.
  if (was_clean && fdatasync(file_.number()) != 0) {
    return fail(error, errno, "store '%s': it cannot be synced: %s", path_.c_str(),
                std::strerror(errno));
  }
  return 0;
}

std::int32_t Store::open_redo(kelp_error *error) {
  if (options_.read_only || header_->identity.durability != kSurvivesPower) return 0;
  next_image_ = std::max(options_.image_bytes, header_->head.spans * kSpanBytes / 2);
  return redo_.open(path_ + "-redo", options_.mode, header_->identity.id, error);
}

std::int32_t Store::close(kelp_error *error) {
  std::int32_t code = succeed(error);
  if (base_ != nullptr && pid_ == getpid()) {
    if (writing_) rollback();
    const bool settled = gate_.is_entered() && gate_.unsettle(deadline());
    if (settled && !options_.read_only && gate_.alone() && journal_.length() == 0 &&
        !damaged_.load()) {
      if (fdatasync(file_.number()) == 0) {
        header_->clean = 1;
        if (fdatasync(file_.number()) != 0) code = errno;
      } else {
        code = errno;
      }
      if (code != 0) {
        fail(error, code, "store '%s': it cannot be synced: %s", path_.c_str(),
             std::strerror(code));
      }
    }
    gate_.leave();
    journal_.close();
  }
  if (types_ != nullptr) {
    release_range(types_);
    munmap(types_, kTypesBytes);
    types_ = nullptr;
  }
  if (base_ != nullptr) {
    release_range(base_);
    munmap(base_, reserved_);
    base_ = nullptr;
  }
  if (file_number_ != 0) {
    OpenStores &open = open_stores();
    const std::lock_guard lock(open.mutex);
    open.files.erase({device_, file_number_});
    file_number_ = 0;
  }
  file_ = File();
  return code;
}

}  // namespace kelp::store
