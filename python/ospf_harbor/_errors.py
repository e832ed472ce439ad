"""What is raised: each error says a code (as errno has it), a text, and the field it is about."""
import errno


class Error(Exception):
    """A call that failed. `code` is the library's code, `text` says what was found and expected,
    `field` is the field or table that it is about ("ospf_area.area_id"), or None."""

    def __init__(self, code, text, field=None):
        super().__init__(code, text, field)
        self.code = code
        self.text = text
        self.field = field

    def __str__(self):
        where = '' if self.field is None or self.field in self.text else f'{self.field}: '
        return f'{where}{self.text} ({errno.errorcode.get(self.code, "code")} {self.code})'


class BadValue(Error, ValueError):
    """A value that its field cannot hold."""

    def __init__(self, field, found, expected):
        super().__init__(errno.EINVAL, f'found {found!r}, expected {expected}', field)


class BadType(Error, TypeError):
    """Something of another type, or of another table, than what is asked for."""

    def __init__(self, field, found, expected):
        super().__init__(errno.EINVAL, f'found {type(found).__name__}, expected {expected}', field)


class BadImage(Error, ValueError):
    """An image or a document that its reader would not take."""


class NoSuchKey(Error, KeyError):
    """A key, a name or an instance that is not there."""

    def __init__(self, text, field=None):
        super().__init__(errno.ENOENT, text, field)

    __str__ = Error.__str__


class Gone(Error):
    """An object, a row or a table that has been ended, or was found under a lock of a store that
    has been given up since."""

    def __init__(self, what, why):
        super().__init__(errno.ENOENT, f'{what}: {why}')


class Closed(Error):
    """A database or a handle that has been closed."""

    def __init__(self, what):
        super().__init__(errno.EBADF, f'{what} has been closed')


class Foreign(Error):
    """An object or a table of one database that is given to another."""

    def __init__(self, what):
        super().__init__(errno.EXDEV, f'{what} is of another database')


class WrongThread(Error):
    """A handle or a lock that is used by another thread than the one that made it."""

    def __init__(self, what):
        super().__init__(errno.EPERM, f'{what} is of another thread; each thread has its own')


class LockNeeded(Error):
    """A store that is touched without a lock, or changed under the read lock."""

    def __init__(self, text):
        super().__init__(errno.EPERM, text)
