/* What modules of types ask of a handle: its last error, the variants of its domain, the type
 * records that objects point at, the counters of created objects, and where nested state bytes
 * lie. Also the guarded memory calls, the assertion, and the hand-through to the communications
 * library.
 *
 * A function makes the handle's database the calling thread's current one only where its doc block
 * says so. A function with an error word does nothing on a non-zero word unless it says otherwise,
 * and stores a code that it sets as the handle's last error. err may be null. */
#ifndef KELP_CORE_H
#define KELP_CORE_H

#include <kelp/handle.h>

KELP_EXTERN_C_BEGIN

/* --- the last error of a handle --- */

/* Forgets the error that the handle stored last. Touches no error word, cr_err included. Makes the
 * handle's database the current one. A null handle is passed over. */
KELP_API void kelp_clear_last_error(kelp_handle *handle);

/* Remembers code as the handle's last error; kelp_handle_last_error reads it. The caller sets its
 * error word itself. While cr_create is set, a cr_err that is 0 takes the code too, so that a chain
 * of _cr calls ends at a create without memory. Makes the handle's database the current one. A null
 * handle is passed over. */
KELP_API void kelp_store_err(kelp_handle *handle, uint32_t code);

/* Adds words to the error that was stored last, for kelp_handle_last_error: what it is about (a type
 * and its field, a table) and what was found and expected. Both are copied, cut at 127 and 255
 * characters; what is null, or was added before, stays as it is. A later kelp_store_err forgets
 * them. Nothing else of the handle changes. A null handle is passed over. */
KELP_API void kelp_describe_err(kelp_handle *handle, const char *subject, const char *text);

/* Remembers a variant mismatch as the handle's last error and sets the error word: both become
 * KELP_ERR_EPOCH, whatever code is given. err may be null. */
KELP_API void kelp_store_epoch_err(kelp_handle *handle, uint32_t code, uint32_t *err);

/* --- variants --- */

/* The variant that the handle's domain gives to the record's type: what kelp_handle_set_variant
 * fixed for the type's name, else the highest variant of the record. Called for every object that
 * is made or marshalled; a handle without fixed variants answers from the record alone.
 * A null record, or one without variant info, sets the error word to 22 where it is zero, stores
 * 22 as the last error and gives 0. A value already in the error word stops nothing. */
KELP_API int8_t kelp_domain_lookup_variant(kelp_handle *handle, const kelp_domain *domain,
                                           const kelp_type_record *record, uint32_t *err);

/* The object's variant as a signed byte; 0 for a null object. is_structure and is_plain_valued say
 * what the caller tests and do not change the answer. */
KELP_API int8_t kelp_get_instance_variant(const void *object, int32_t is_structure,
                                          int32_t is_plain_valued);

/* The object's obj_flags byte, from which a writer takes the bits that go on the wire; 0 for a null
 * object. */
KELP_API uint8_t kelp_get_instance_obj_flag(const void *object, int32_t is_structure,
                                            int32_t is_plain_valued);

/* Brings the object up to the lower of highest and the domain's variant of its type: announces the
 * variant byte to write_notify and writes it. Never lowers a variant, does nothing to a null object
 * or one that is there already, and leaves the error word alone unless the lookup fails.
 * record is the object's type record, null for a null object. */
KELP_API void kelplib_adjust_variant(kelp_handle *handle, uint32_t space_id, void *object,
                                     const kelp_type_record *record, int32_t highest,
                                     uint32_t *err);

/* --- type records --- */

/* What the first word of an object with OBJ_TINFO_BLOCK points at: the type record, and whatever
 * the block's maker puts behind it. The block comes from obj_alloc; destroy frees it. */
typedef struct kelp_tinfo_block {
  kelp_type_record *tinfo;
} kelp_tinfo_block;

/* The object's type record, seeing through OBJ_TINFO_BLOCK. Null for a null object. */
KELP_API kelp_type_record *kelp_get_manifested_type_info(const void *object);

/* Where the object's type record pointer is to be stored: its first word, or the first word of its
 * block when it has one. The object must not be null. */
KELP_API kelp_type_record **kelp_get_manifested_type_info_ptr_mem(void *object);

/* A module's function that registers all of its type records with the runtime. */
typedef void (*kelp_typeinfo_initializer)(kelp_handle *handle, uint32_t space_id, uint32_t *err);

/* The runtime's copy of a static type record, when the handle's shared_tinfo is set; the static
 * record itself when it is not. An unknown record makes the runtime call initialize once. A record
 * that is still unknown then is answered by the static record, with the code as the last error: the
 * result is never null for a non-null record. */
KELP_API kelp_type_record *kelp_type_info_ptr_get(kelp_handle *handle, uint32_t space_id,
                                                  kelp_type_record *static_record,
                                                  kelp_typeinfo_initializer initialize);

/* Gives a runtime copy variant info of its own. is_new 1 makes it from the static record with the
 * counters at 0; is_new 0 refreshes lengths and variants that the static record has more of, and
 * keeps every counter. Without memory the copy keeps the variant info that it has, and the last
 * error is 12. */
KELP_API void kelp_update_variant_info(kelp_handle *handle, uint32_t space_id,
                                       kelp_type_record_copy *copy,
                                       const kelp_type_record *static_record, uint32_t is_new);

/* The 16-byte identity (md5) of the object's type; it lives as long as the type record. A null
 * object, or one without a type record, sets the error word and the last error to 22 and gives
 * null. */
KELP_API const uint8_t *kelp_get_luid(kelp_handle *handle, uint32_t space_id, const void *object,
                                      uint32_t *err);

/* --- objects --- */

/* Tests an object before something takes hold of it. With refuse_embedded an object that lives in
 * a record or in other memory (OBJ_EMBEDDED) is refused, with refuse_nested one that is a child of
 * another object (OBJ_NESTED). 0 when the object passes, 1 when it is refused, 22 when it is null.
 * (0, 1) is the test of a reference's target, (1, 1) that of a record's object. */
KELP_API uint32_t kelplib_validate_object_flags(const void *object, int32_t refuse_embedded,
                                                int32_t refuse_nested);

/* The handle's work space: *buffer and *size (bytes) get a buffer that belongs to the handle and
 * that the next call may hand out again. Its size is the handle option work_space_size. Without
 * memory *buffer is null, *size 0, and the error word and the last error are 12. */
KELP_API void kelplib_get_handle_ws(kelp_handle *handle, void **buffer, uint32_t *size,
                                    uint32_t *err);

/* Counts a created object: counter_notify on *create_count, then plus 1, plainly when the record's
 * plain_counters is set and atomically otherwise. A null record or counter sets 22. */
KELP_API void kelplib_type_stats_create_object(kelp_handle *handle, uint32_t space_id,
                                               const kelp_type_record *record,
                                               uint64_t *create_count, uint32_t *err);

/* Counts a destroyed object. Required: it is given the address of the variant entry's create_count,
 * as the create side is, and finds destroy_count in the same entry. */
KELP_API void kelplib_type_stats_destroy_object(kelp_handle *handle, uint32_t space_id,
                                                const kelp_type_record *record,
                                                uint64_t *create_count, uint32_t *err);

/* --- nested state bytes --- */

/* The distance in bytes from an object with OBJ_STTR_RELOCATED to its state bytes, as
 * kelplib_update_sttr_offset was last told; 0 when none is known. */
KELP_API uint32_t kelplib_get_sttr_offset(kelp_handle *handle, uint32_t space_id,
                                          const void *object);

/* Remembers the distance for an embedded object and sets its OBJ_STTR_RELOCATED, announced to
 * write_notify when the bit was clear. The distance is kept beside the objects, by address, so that
 * a whole-object copy does not overwrite it; it goes with kelp_hd_mapping_destroy, or with the
 * memory that holds the object. hd_mapped of the handle becomes non-zero; that of another handle
 * follows when it is locked. Without memory for the distance the process ends. */
KELP_API void kelplib_update_sttr_offset(kelp_handle *handle, uint32_t space_id, void *object,
                                         uint32_t distance);

/* The state tracking mark of a marshalled object: 1 when the flag byte at offset 1 of the image has
 * bit 8, else 0; 0 for a null image. */
KELP_API uint8_t kelplib_type_header_get_state_tracking_flag(const void *image);

/* Forgets what is kept by the object's address: the distance of its state bytes. The object's own
 * bytes are not touched, OBJ_STTR_RELOCATED included. hd_mapped of the handle becomes 0 when no
 * distance is left. An object without a mapping is no error. A null object sets 22. */
KELP_API void kelp_hd_mapping_destroy(kelp_handle *handle, uint32_t space_id, void *object,
                                      uint32_t *err);

/* --- guarded memory calls --- */

/* As memcpy, but ranges that overlap are copied as memmove does. A null pointer with a length above
 * 0 ends the process. Gives destination. */
KELP_API void *__memcpy_to_buf(void *destination, const void *source, size_t length);

/* As memset. A null destination with a length above 0 ends the process. Gives destination. */
KELP_API void *__memset_to_buf(void *destination, int value, size_t length);

/* As strncpy: copies at most length bytes and fills up with NULs; a source of length bytes or more
 * leaves no NUL at the end. A null pointer with a length above 0 ends the process. */
KELP_API char *__strncpy_to_buf(char *destination, const char *source, size_t length);

/* Reports a failed assertion on standard error, flushes the trace and ends the process. */
KELP_API KELP_NORETURN void bassert(const char *expression, const char *source, int line);

/* --- the communications library --- */

/* What a registered handler points at: kelp_bundle_deliver (kelp/embed.h) calls it with each bundle
 * that comes in. flags are those of the registration. */
typedef void (*kelp_bundle_handler)(void *context, const void *bundle, size_t length,
                                    uint64_t flags);

/* Adds a handler of bundles for the whole process. A null handler is passed over; one that is
 * registered with the same context already only gets the new flags. flags are the handler's own. */
KELP_API void tarn_comm_bundle_handler_register(void *handler, void *context, uint64_t flags);

/* Takes the handler registered with this context out again; flags are not looked at. A handler that
 * is not registered is no error. */
KELP_API void tarn_comm_bundle_handler_unregister(void *handler, void *context, uint64_t flags);

KELP_EXTERN_C_END

#endif
