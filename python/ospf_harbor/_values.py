"""Between Python's values and those of fields: numbers with their ranges, addresses, enumerations
and flag sets, and the plain values that JSON can carry."""
import ctypes
import enum
import ipaddress
import struct

from ._errors import BadType, BadValue
from ._library import Address, Pointer, Text, TextField, U32, function

ADDRESS_SIZE = ctypes.sizeof(Address)
# Behind the header: family, prefix length, whether it has one, octets, zone.
_address_parts = struct.Struct('<BBB5x16sI')
_VALUES_AT = Address.family.offset

_parse_address = function('ip_address_parse', U32, Text, Pointer)


def address_value(raw):
    """The address in its 48 bytes: None, an address, or an interface where it has a prefix."""
    family, length, has_prefix, octets, scope = _address_parts.unpack_from(raw, _VALUES_AT)
    if family == 4:
        value = ipaddress.IPv4Address(octets[:4])
        return ipaddress.IPv4Interface((value, length)) if has_prefix else value
    if family != 6:
        return None
    value = ipaddress.IPv6Address(octets)
    if scope:
        value = ipaddress.IPv6Address(f'{value}%{scope}')
    return ipaddress.IPv6Interface(f'{value}/{length}') if has_prefix else value


_ADDRESS_TYPES = (ipaddress.IPv4Address, ipaddress.IPv6Address, ipaddress.IPv4Network,
                  ipaddress.IPv6Network, str)


def address_of(value, field):
    """An address that holds the value; its header is empty."""
    if not (value is None or isinstance(value, _ADDRESS_TYPES)):
        raise BadType(field, value, 'an address of ipaddress, its text, or None')
    address = Address()
    text = '' if value is None else str(value)
    if '\0' in text or _parse_address(text.encode(errors='replace'), ctypes.byref(address)):
        raise BadValue(field, value, 'an address such as "10.0.0.1", "fe80::1%3" or "10.0.0.0/8"')
    return address


def number_of(value, field, most):
    """A whole number from 0 to most; what is no number is refused, a boolean too."""
    if isinstance(value, bool) or not hasattr(value, '__index__'):
        raise BadType(field, value, f'a number from 0 to {most}')
    number = value.__index__()
    if not 0 <= number <= most:
        raise BadValue(field, value, f'a number from 0 to {most}')
    return number


def dotted_number_of(value, field, most):
    """As number_of, and of 32 bits also a dotted quad or an IPv4 address, for keys and IDs."""
    if most == 0xFFFFFFFF and isinstance(value, (str, ipaddress.IPv4Address)):
        try:
            return int(ipaddress.IPv4Address(value))
        except ipaddress.AddressValueError:
            raise BadValue(field, value, 'a number, or a dotted quad') from None
    return number_of(value, field, most)


def real_of(value, field):
    if isinstance(value, bool) or not isinstance(value, (int, float)):
        raise BadType(field, value, 'a number')
    try:
        return float(value)
    except OverflowError:
        raise BadValue(field, value, 'a number that a double holds') from None


def truth_of(value, field):
    if isinstance(value, bool) or (isinstance(value, int) and value in (0, 1)):
        return int(value)
    raise BadType(field, value, 'True or False')


def octets_of(value, field):
    """Octets, given as such or as hexadecimal digits."""
    if isinstance(value, (bytes, bytearray, memoryview)):
        return bytes(value)
    if isinstance(value, str):
        try:
            return bytes.fromhex(value)
        except ValueError:
            raise BadValue(field, value, 'octets, or their hexadecimal digits') from None
    return bytes(number_of(each, field, 255) for each in sequence_of(value, field))


def sequence_of(value, field):
    if isinstance(value, (str, bytes)) or not hasattr(value, '__iter__'):
        raise BadType(field, value, 'a sequence')
    return list(value)


def encoded(value, field):
    """The bytes of a text. Bytes that are no UTF-8 are kept as the characters that os.fsdecode
    makes of them."""
    if isinstance(value, bytes):
        return value
    if not isinstance(value, str):
        raise BadType(field, value, 'a text')
    try:
        return value.encode('utf-8', 'surrogateescape')
    except UnicodeEncodeError:
        raise BadValue(field, value, 'a text that UTF-8 can carry') from None


def decoded(octets):
    return octets.decode('utf-8', 'surrogateescape')


def text_at(place):
    """The text of the kelp_vstring at an address."""
    text = TextField.from_address(place)
    return decoded(ctypes.string_at(text.text, text.length)) if text.length else ''


class Enumeration(enum.IntEnum):
    """A value of an enumeration."""

    @classmethod
    def of(cls, value, field=None):
        """The member that a number, a name or the end of a name stands for ("IPV4"). A number
        without a name stays a number, which only newer editions know."""
        if isinstance(value, cls):
            return value
        if isinstance(value, str):
            found = [each for each in cls if each.name == value] or [
                each for each in cls if each.name.lower().endswith(value.lower()) and value]
            if len(found) == 1:
                return found[0]
            raise BadValue(field, value, 'one of ' + ', '.join(each.name for each in cls))
        number = number_of(value, field, 0xFFFFFFFF)
        return cls._value2member_map_.get(number, number)


class Flags(enum.IntFlag, boundary=enum.KEEP):
    """Bits of a flag set."""

    @classmethod
    def of(cls, value, field=None):
        """The flags that a number, a name, or several names stand for."""
        if isinstance(value, str):
            value = [value]
        if not hasattr(value, '__index__'):
            names = sequence_of(value, field)
            for name in names:
                if name not in cls.__members__:
                    raise BadValue(field, name, 'one of ' + ', '.join(cls.__members__))
            bits = 0
            for name in names:
                bits |= cls[name]
            return cls(bits)
        return cls(number_of(value, field, 255))


def plain(value):
    """A value as JSON has it: names of members, texts of addresses, hexadecimal octets."""
    if isinstance(value, Enumeration):
        return value.name
    if isinstance(value, Flags):
        unknown = value & ~sum(type(value))
        return int(value) if unknown else [each.name for each in value]
    if isinstance(value, (bool, int, float, str)) or value is None:
        return value
    if isinstance(value, bytes):
        return value.hex()
    if isinstance(value, dict):
        return {name: plain(each) for name, each in value.items()}
    if isinstance(value, (list, tuple)):
        return [plain(each) for each in value]
    return str(value)
