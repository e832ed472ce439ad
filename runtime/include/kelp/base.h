/* The words that every header of the runtime's contract starts from: export marking, the error
 * codes that travel in error words, and the incomplete types that the other headers complete.
 *
 * Every header in this folder compiles on its own and never includes anything of the system that
 * runs on the runtime. The .h are C11 and C++20 and hold declarations only; the .hpp are C++20 and
 * hold what the runtime and its modules do inline. */
#ifndef KELP_BASE_H
#define KELP_BASE_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define KELP_EXTERN_C_BEGIN extern "C" {
#define KELP_EXTERN_C_END }
#else
#define KELP_EXTERN_C_BEGIN
#define KELP_EXTERN_C_END
#endif

#if defined(__GNUC__)
#define KELP_API __attribute__((visibility("default")))
#define KELP_PRINTF(format_at, first_at) __attribute__((format(printf, format_at, first_at)))
#define KELP_NORETURN __attribute__((noreturn))
#else
#define KELP_API
#define KELP_PRINTF(format_at, first_at)
#define KELP_NORETURN
#endif

KELP_EXTERN_C_BEGIN

typedef struct kelp_handle kelp_handle;
typedef struct kelp_type_record kelp_type_record;
typedef struct kelp_table kelp_table;
typedef struct kelp_record kelp_record;
typedef struct kelp_database kelp_database;
typedef struct kelp_xml_document kelp_xml_document;

/* Codes of error words and of kelp_error. They are errno values, and where a file cannot be opened,
 * read or written the system's own, which may be any. KELP_ERR_EPOCH is the runtime's variant
 * mismatch and is only ever set by kelp_store_epoch_err. */
enum kelp_error_code {
  KELP_ERR_PERMISSION = 1,
  KELP_ERR_NOT_FOUND = 2,
  KELP_ERR_INPUT_OUTPUT = 5,
  KELP_ERR_TOO_LONG = 7,
  KELP_ERR_AGAIN = 11,
  KELP_ERR_NO_MEMORY = 12,
  KELP_ERR_BAD_ADDRESS = 14,
  KELP_ERR_BUSY = 16,
  KELP_ERR_EXISTS = 17,
  KELP_ERR_INVALID = 22,
  KELP_ERR_NO_SPACE = 28,
  KELP_ERR_DEADLOCK = 35,
  KELP_ERR_EPOCH = 43,
  KELP_ERR_NO_ROOM = 90,
  KELP_ERR_NOT_SUPPORTED = 95,
  KELP_ERR_TIMED_OUT = 110
};

/* The space_id that stands for the runtime itself. */
#define KELP_SPACE_RUNTIME UINT32_C(0xFFFFFFFF)

KELP_EXTERN_C_END

#endif
