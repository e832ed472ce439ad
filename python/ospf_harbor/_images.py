"""Images, texts and documents: written with the room that they need, and checked before they are
read."""
import ctypes

from ._errors import BadImage, BadType, Error
from ._library import CheckResult, ImageVisitor, Pointer, Size, Text, U32, checker, function
from ._values import encoded

CHECK_OBJECT, CHECK_RECORD = 0, 1
_OID_PIECES = range(19, 22)


def written(handle, field, call, write, room, grows=False):
    """What a writer gives, called with more room until it fits. A text that is cut is no failure:
    it grows until there is room left."""
    room += 64
    while True:
        # Behind the room that is told lies what a writer may need for its last word.
        buffer = ctypes.create_string_buffer(b' ' * (room + 64), room + 64)
        length = write(call, handle, buffer, room)
        code = handle._error.value
        if code == 90 and room < 1 << 28 or code == 0 and grows and length + 256 >= room:
            handle._error.value = 0
            room *= 4
            continue
        if code:
            handle._fail(field)
        return buffer.raw[:length]


def _octets(image, name):
    if not isinstance(image, (bytes, bytearray, memoryview)):
        raise BadType(name, image, 'bytes')
    return bytes(image)


def _fault(result):
    return BadImage(22, result.text.decode(errors='replace'), result.path.decode() or None)


def checked_image(kind, name, image, has_references):
    """The image as a reader may have it: looked through, with its references empty. Without a
    reference it is the same bytes."""
    image = _octets(image, name)
    result = CheckResult()
    check = checker('ospf_harbor_check_image', U32, U32, Text, Text, Size, Pointer)
    if check(kind, name.encode(), image, len(image), ctypes.byref(result)):
        raise _fault(result)
    if not has_references:
        return image
    spans = []

    @ImageVisitor
    def visit(span, _):
        piece = span.contents
        if piece.piece in _OID_PIECES:
            spans.append((piece.offset, piece.length))

    checker('ospf_harbor_check_walk', U32, U32, Text, Text, Size, ImageVisitor, Pointer, Pointer)(
        kind, name.encode(), image, len(image), visit, None, None)
    emptied = bytearray(image)
    for offset, length in spans:
        emptied[offset:offset + length] = bytes(length)
    return bytes(emptied)


class Document:
    """An XML document that has been checked, parsed for the length of a block."""

    def __init__(self, kind, name, text):
        if isinstance(text, str):
            text = encoded(text, name)
        text = _octets(text, name)
        result = CheckResult()
        check = checker('ospf_harbor_check_xml', U32, U32, Text, Text, Size, Size, Pointer)
        if check(kind, name.encode(), text, len(text), 0, ctypes.byref(result)):
            raise _fault(result)
        self._text = text

    def __enter__(self):
        message = ctypes.create_string_buffer(512)
        parse = function('kelp_xml_parse', Pointer, Text, Size, Pointer, U32)
        self._document = parse(self._text, len(self._text), message, 512)
        if not self._document:
            raise BadImage(22, message.value.decode(errors='replace'))
        return self._document

    def __exit__(self, *_):
        function('kelp_xml_free', None, Pointer)(self._document)


def document_failure(handle, name, message):
    """Raises what a reader of a document said."""
    text = message.value.decode(errors='replace')
    try:
        handle._fail(name, 'reading the document')
    except Error as failure:
        raise BadImage(failure.code, text or failure.text, name) from None
