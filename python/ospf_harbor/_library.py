"""The shared libraries: where they are, and their functions by name."""
import ctypes
import functools
import os
import pathlib

from ._errors import Error

Pointer = ctypes.c_void_p
U8, U16, U32, U64 = ctypes.c_uint8, ctypes.c_uint16, ctypes.c_uint32, ctypes.c_uint64
I32, I64 = ctypes.c_int32, ctypes.c_int64
F64, Text, Size = ctypes.c_double, ctypes.c_char_p, ctypes.c_size_t

PACKAGE = pathlib.Path(__file__).absolute().parent


def _folders():
    """Where the libraries may be: OSPF_HARBOR_LIBRARIES (folders with ":" between them), or in an
    installed tree, which may have been moved, the library folders above this package."""
    told = os.environ.get('OSPF_HARBOR_LIBRARIES')
    if told:
        return [pathlib.Path(folder) for folder in told.split(':')]
    prefix = PACKAGE.parents[3]  # of PREFIX/lib/python3.11/dist-packages/ospf_harbor
    return [*prefix.glob('lib*'), *prefix.glob('lib*/*-linux-gnu*')]


def _load(name):
    for folder in _folders():
        if (folder / name).exists():
            return ctypes.CDLL(str(folder / name), mode=ctypes.RTLD_GLOBAL)
    return ctypes.CDLL(name, mode=ctypes.RTLD_GLOBAL)


kelp = _load('libkelp.so.1')
oper = _load('libospf_harbor_oper.so.1')


@functools.cache
def _check_library():
    try:
        return _load('libospf_harbor_check.so.1')
    except OSError as failure:
        raise Error(95, f'{failure}; images and documents are not read without it') from None


def _bound(library, name, result, arguments):
    function = library[name]
    function.restype = result
    function.argtypes = arguments
    return function


@functools.cache
def function(name, result, *arguments):
    """A function of the model's library, or of the runtime."""
    library = kelp if name.startswith(('kelp', 'ip_address', 'u_int', 'mt_', 'double')) else oper
    return _bound(library, name, result, arguments)


@functools.cache
def checker(name, result, *arguments):
    """A function of the library that checks what comes from outside."""
    return _bound(_check_library(), name, result, arguments)


class KelpError(ctypes.Structure):
    _fields_ = [('code', I32), ('text', ctypes.c_char * 512)]


class DatabaseOptions(ctypes.Structure):
    _fields_ = [('struct_size', Size), ('marked_shared', U32), ('shared_tinfo', U32),
                ('memory_limit', Size), ('replication_cache_entries', U32)]


class StoreOptions(ctypes.Structure):
    _fields_ = [('struct_size', Size), ('read_only', U32), ('create', U32),
                ('reserved_bytes', U64), ('file_mode', U32), ('wait_ms', U32),
                ('replication_cache_entries', U32), ('durability', U32), ('image_bytes', U64)]


class HandleOptions(ctypes.Structure):
    _fields_ = [('struct_size', Size), ('state_tracking', U32), ('tenant', I32),
                ('work_space_size', U32), ('collector_context', U32), ('quiet_insert', U32),
                ('space_id', U32), ('peer_stamp', U32)]


class MemoryStatistics(ctypes.Structure):
    _fields_ = [(name, U64) for name in (
        'live_allocations', 'live_bytes', 'used_bytes', 'peak_used_bytes', 'reserved_bytes',
        'limit_bytes', 'total_allocations', 'failed_allocations', 'own_bytes')]


class CollectorReport(ctypes.Structure):
    _fields_ = [(name, U32) for name in ('records_ended', 'records_waiting', 'tables_freed',
                                         'tables_waiting', 'objects_ended')]


class Address(ctypes.Structure):
    """ip_address, its header first."""
    _fields_ = [('header', U8 * 16), ('family', U8), ('prefix_length', U8), ('has_prefix', U8),
                ('reserved', U8 * 5), ('bytes', U8 * 16), ('scope', U32), ('reserved_word', U32)]


class TextField(ctypes.Structure):
    """kelp_vstring."""
    _fields_ = [('text', Pointer), ('length', U32), ('header', U8 * 4)]


class VariantEntry(ctypes.Structure):
    _fields_ = [('variant_id', U32), ('used_length', U32), ('alloc_slop', U32), ('reserved', U32),
                ('create_count', U64), ('destroy_count', U64), ('reserved_counter', U64)]


class VariantInfo(ctypes.Structure):
    _fields_ = [('n_variants', ctypes.c_int8), ('entries', ctypes.POINTER(VariantEntry))]


class TypeRecord(ctypes.Structure):
    _fields_ = [('magic', U32), ('md5', U8 * 16), ('md5_text', ctypes.c_char * 33),
                ('type_name', ctypes.c_char * 64), ('module_name', ctypes.c_char * 64),
                ('kind', ctypes.c_char * 64), ('resolved_variant', I32), ('reserved', U32),
                ('varinfo', ctypes.POINTER(VariantInfo)), ('plain_counters', U32)]


class Header(ctypes.Structure):
    """What every object begins with."""
    _fields_ = [('tinfo', ctypes.POINTER(TypeRecord)), ('variant', ctypes.c_int8),
                ('created_variant', ctypes.c_int8), ('obj_flags', U8)]


class RecordShell(ctypes.Structure):
    """A record: the second object is there in tables whose rows have a key object."""
    _fields_ = [('header', Header), ('record_table', Pointer), ('ref_word', U32),
                ('tenant_id', U16), ('rec_flags', U32), ('src', U8), ('links', Pointer * 3),
                ('balance', I32), ('objects', Pointer * 2)]


class TableShell(ctypes.Structure):
    """A table, as far as the number of its records, those of all tenants and sources."""
    _fields_ = [('header', Header), ('tbl_name', ctypes.c_char * 208), ('record_count', U32)]


class CheckResult(ctypes.Structure):
    _fields_ = [('fault', U32), ('line', U32), ('column', U32), ('offset', Size),
                ('skipped', Size), ('name', ctypes.c_char * 64), ('path', ctypes.c_char * 256),
                ('piece', ctypes.c_char * 32), ('found', ctypes.c_char * 128),
                ('expected', ctypes.c_char * 128), ('text', ctypes.c_char * 768)]


class ImageSpan(ctypes.Structure):
    _fields_ = [('offset', Size), ('length', Size), ('piece', U32), ('depth', U32),
                ('path', Text), ('name', Text), ('value', Text)]


ImageVisitor = ctypes.CFUNCTYPE(None, ctypes.POINTER(ImageSpan), Pointer)


def checked(call, *arguments):
    """Calls a function of the runtime whose last argument is a kelp_error, and raises what it
    tells; gives what the function gives."""
    error = KelpError()
    result = call(*arguments, ctypes.byref(error))
    if error.code:
        raise Error(error.code, error.text.decode(errors='replace'))
    return result, error
