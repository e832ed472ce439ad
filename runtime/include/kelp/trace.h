/* Tracing. Modules emit a message index and raw arguments; the texts stay in the file of the module
 * and are applied only when a trace is read.
 *
 * A message goes out when its level is at or below the level of its module. Level 0 always goes
 * out: it is written to the file sink at once, and one line about it to standard error, since the
 * process is about to end. Everything else goes to a ring in memory, to the file sink when one is
 * open, and to the callback sink when one is set.
 *
 * A record, in memory and in a file alike, little-endian, padded with zeroes to a multiple of 8:
 *
 *   offset size meaning
 *        0    4 magic 0x54504c4b ("KLPT")
 *        4    4 length of the whole record in bytes, a multiple of 8
 *        8    8 time, nanoseconds since 1970-01-01 UTC
 *       16   16 identity of the source
 *       32    4 message index within the source
 *       36    2 module id
 *       38    1 level
 *       39    1 number of arguments, 0 to 3
 *       40    8 sequence number in the process, from 1; a gap means lost records
 *       48    - the arguments, each: u32 kind (1, 4 or 5), u32 length, then the bytes, padded to 8.
 *               Kind 1 is a text without NUL (cut at 1024 bytes), 4 a 32-bit integer, 5 a pointer.
 *
 * Emitters and kelp_trace_* may be called from any thread. */
#ifndef KELP_TRACE_H
#define KELP_TRACE_H

#include <kelp/base.h>

KELP_EXTERN_C_BEGIN

/* --- what modules call --- */

/* Registers a module by name, once, and writes its id to *id_word and its present level to
 * *level_word (which may be null). A repeated call gives the same id, writes only what differs and
 * costs one comparison. Ids start at 1 and stay below 1,025; 0 is what goes out before any
 * registration, and what a module gets when there are no ids left. */
KELP_API void xlog_module_init_fn(const char *name, uint32_t *id_word, uint32_t *level_word);

/* Non-zero when messages of this level (0 to 7) of the module go out. */
KELP_API uint32_t xlog_module_test(uint16_t module, uint32_t level);

/* The emitters. identity: the 16 bytes of the source; level_word: the level in its top byte,
 * 0, 0x3000000, 0x6000000 or 0x7000000. The digits name the arguments: 1 a text (null is allowed),
 * 4 a 32-bit integer, 5 a pointer, 0 none. */
KELP_API void __XLf_0(const uint8_t *identity, uint32_t index, uint16_t module,
                      uint32_t level_word);
KELP_API void __XLf_1(const uint8_t *identity, uint32_t index, uint16_t module, uint32_t level_word,
                      const char *a);
KELP_API void __XLf_4(const uint8_t *identity, uint32_t index, uint16_t module, uint32_t level_word,
                      uint32_t a);
KELP_API void __XLf_5(const uint8_t *identity, uint32_t index, uint16_t module, uint32_t level_word,
                      const void *a);
KELP_API void __XLf_11(const uint8_t *identity, uint32_t index, uint16_t module,
                       uint32_t level_word, const char *a, const char *b);
KELP_API void __XLf_14(const uint8_t *identity, uint32_t index, uint16_t module,
                       uint32_t level_word, const char *a, uint32_t b);
KELP_API void __XLf_44(const uint8_t *identity, uint32_t index, uint16_t module,
                       uint32_t level_word, uint32_t a, uint32_t b);
KELP_API void __XLf_444(const uint8_t *identity, uint32_t index, uint16_t module,
                        uint32_t level_word, uint32_t a, uint32_t b, uint32_t c);
KELP_API void __XLf_51(const uint8_t *identity, uint32_t index, uint16_t module,
                       uint32_t level_word, const void *a, const char *b);

/* --- what programs call --- */

enum kelp_trace_level {
  KELP_TRACE_FATAL = 0,
  KELP_TRACE_ERROR = 3,
  KELP_TRACE_INFORMATION = 6,
  KELP_TRACE_DEBUG = 7
};

/* One argument of a message; kind says which member holds it. */
typedef struct kelp_trace_argument {
  uint8_t kind; /* 1, 4 or 5 */
  const char *text;
  uint32_t text_length;
  uint32_t number;
  uint64_t pointer;
} kelp_trace_argument;

/* A decoded message. Pointers in it are good until the callback that was given it returns. */
typedef struct kelp_trace_event {
  uint64_t time_ns;
  uint64_t sequence;
  uint8_t identity[16];
  uint32_t index;
  uint16_t module;
  uint8_t level;
  uint8_t argument_count;
  char signature[4]; /* the digits of the emitter: "0", "1", "44", ... */
  kelp_trace_argument arguments[3];
} kelp_trace_event;

/* Gets each message. When reading back, a non-zero result ends the reading; a sink's is not used. A
 * sink must not emit messages: those that it does are dropped. */
typedef int (*kelp_trace_callback)(void *context, const kelp_trace_event *event);

/* The text of message index of the source, with its conversions, or null when it is not known. */
typedef const char *(*kelp_trace_text_source)(void *context, const uint8_t identity[16],
                                              uint32_t index);

/* Sets the highest level that goes out, 0 to 7, for the module of that name, registered now or
 * later; null sets it for all, those that come later included. It is KELP_TRACE_INFORMATION to
 * begin with. 0, or 22 for a level above 7, or 12. */
KELP_API int32_t kelp_trace_set_level(const char *module_name, uint32_t level);

/* The name of a registered module, null for an id that was not given out. Lives with the process.
 */
KELP_API const char *kelp_trace_module_name(uint16_t module);

/* Calls sink with every message that goes out, on the thread that emits it; null ends that. */
KELP_API void kelp_trace_set_sink(kelp_trace_callback sink, void *context);

/* Where the line about a fatal message gets its text; null: it shows the index and the arguments.
 */
KELP_API void kelp_trace_set_text_source(kelp_trace_text_source source, void *context);

/* Sets the bytes of the ring in memory, rounded up to 8, and empties it; 0 turns it off. 64 KiB to
 * begin with. 0; 22 for more bytes than an address space holds, or 12 without memory, with the old
 * ring left in place. */
KELP_API int32_t kelp_trace_set_ring_size(size_t bytes);

/* Calls callback with the records in the ring, oldest first. Gives how many were read. */
KELP_API uint64_t kelp_trace_read_ring(kelp_trace_callback callback, void *context);

/* Empties the ring. */
KELP_API void kelp_trace_clear_ring(void);

/* Appends every record from now on to the file; null closes it. error may be null. 0; errno when
 * the file cannot be opened, and the one before stays open then; or errno of what kept records from
 * the file before, which is closed all the same, with their number in error. Records are buffered
 * and reach the system whole, several at a time. A process that was forked goes on writing to the
 * file, beside the one that it came from. */
struct kelp_error; /* kelp/embed.h */
KELP_API int32_t kelp_trace_open_file(const char *path, struct kelp_error *error);

/* Hands to the system what is buffered for the file. 0, or errno when records were lost since this
 * was called last, because the system did not take them (a full disk): those are gone, and what
 * comes later is written again as soon as there is room. */
KELP_API int32_t kelp_trace_flush(void);

/* What was found in a trace file. */
typedef struct kelp_trace_file_report {
  uint64_t records;
  uint64_t bytes_passed_over; /* that are no record: torn ones, and what does not belong there */
  uint64_t places_passed_over;
} kelp_trace_file_report;

/* Calls callback with the records of a file, in order. Bytes that are no record, as a full disk or
 * a process that was killed leaves them, are passed over up to the next record; error then says
 * where the first ones lie, what was found there and what was expected, and how many they are, with
 * the result 0. errno when the file cannot be read; 22 when it holds bytes and no record at all. */
KELP_API int32_t kelp_trace_read_file(const char *path, kelp_trace_callback callback, void *context,
                                      struct kelp_error *error);

/* The same, and says in *report, which may be null, what it found. */
KELP_API int32_t kelp_trace_scan_file(const char *path, kelp_trace_callback callback, void *context,
                                      kelp_trace_file_report *report, struct kelp_error *error);

/* Reads the one record at the beginning of the bytes, which may come from anywhere. 0: *event is
 * the message, its texts point into the bytes, *length is how many bytes the record takes. 11: the
 * bytes end within the record, *length is how many it takes at least. 22: no trace record, or one
 * that was torn; *length is how many bytes lead to the next place where a record may begin, or all
 * of them. *event is good for nothing after a failure; error, which may be null, says what was
 * found and expected. */
KELP_API int32_t kelp_trace_read_record(const uint8_t *bytes, size_t size, kelp_trace_event *event,
                                        size_t *length, struct kelp_error *error);

/* Applies an event's arguments to its text: %s, %p, %d, %u and %% in order. Writes at most size
 * bytes, NUL included, and gives the length of the full text. A conversion without an argument of
 * its kind is shown as it stands. */
KELP_API size_t kelp_trace_format(const kelp_trace_event *event, const char *text, char *buffer,
                                  size_t size);

KELP_EXTERN_C_END

#endif
