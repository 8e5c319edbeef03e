"""How a path is written as text in lists, facts, the catalogue and the index page.

A path is bytes, and any byte but 0. Its text is one line of valid UTF-8 and gives the same bytes back: a
backslash is written \\\\, a tab \\t, a line feed \\n, a carriage return \\r; other control characters, and bytes
that are no UTF-8, are \\xHH. Names without such things, which is nearly all of them, are written as they are.
"""

import re

SHORT = {"\\": "\\\\", "\t": "\\t", "\n": "\\n", "\r": "\\r"}
LONG = {text.encode()[1:]: character.encode() for character, text in SHORT.items()}
# "surrogateescape" hands bytes that are no UTF-8 over as U+DC80 to U+DCFF.
TO_ESCAPE = re.compile("[\\\\\x00-\x1f\x7f\udc80-\udcff]")
ESCAPED = re.compile(rb"\\(x[0-9a-f]{2}|.?)", re.DOTALL)


def text_of(path):
    """The text of a path that is given as bytes."""
    return TO_ESCAPE.sub(_escape, path.decode("utf-8", "surrogateescape"))


def path_of(text):
    """The bytes of a path that is given as text. ValueError when it is not what text_of writes."""
    return ESCAPED.sub(_unescape, text.encode("utf-8"))


def _escape(match):
    character = match.group()
    return SHORT.get(character) or f"\\x{ord(character) & 0xFF:02x}"


def _unescape(match):
    escape = match.group(1)
    if escape.startswith(b"x") and len(escape) == 3:
        return bytes([int(escape[1:], 16)])
    if escape not in LONG:
        raise ValueError("a backslash before " + repr(escape))
    return LONG[escape]
