/* The two writers of readable text. Modules build the text form of objects with them, field by
 * field, each call behind what was written so far and with the space that is left.
 *
 * Both never write past the space they are given and return what they really wrote, so a short
 * buffer ends in a text that is cut, without an error. Under a set error word they write nothing
 * and return 0. They take no lock and keep no state. */
#ifndef KELP_TEXT_H
#define KELP_TEXT_H

#include <kelp/base.h>

KELP_EXTERN_C_BEGIN

/* Writes count blanks at buffer, at most size of them, and returns how many. No NUL is written
 * behind them: modules call it also over the indentation of a line that stands there already. */
KELP_API uint32_t kelp_print_space(kelp_handle *handle, uint32_t space_id, char *buffer,
                                   uint32_t count, uint32_t size, uint32_t *err);

/* Formats like snprintf into buffer, at most size bytes of it, and returns the bytes written. No NUL
 * is written behind them: a text is as long as the results say, and what a module leaves out between
 * two of its texts keeps what the buffer held. A text that does not fit is cut. With size 0 nothing
 * is written and the result is 0. A format that the C library refuses gives the empty text. */
KELP_API uint32_t kelp_snprintf(kelp_handle *handle, uint32_t space_id, char *buffer, uint32_t size,
                                uint32_t *err, const char *format, ...) KELP_PRINTF(6, 7);

KELP_EXTERN_C_END

#endif
