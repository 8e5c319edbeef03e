// UTF-8, RFC 3629: one code point at a time into a caller's buffer.
#pragma once

/// Appends code at the cursor *w and advances it. fence is the buffer's last byte, which stays free for the
/// caller's terminating zero: a code point that does not fit whole before it is dropped. Surrogates and
/// values above 0x10FFFF become U+FFFD. Code 0 is one zero byte.
void utf8_encode(char **w, const char *fence, unsigned code);
