"""The till component from Python, with the standard library alone."""

import ctypes
import datetime

NULL, BOOL, INT16, INT32, INT64, DOUBLE, MONEY, TEXT, DATE, OBJECT = range(10)
HEADLESS, WINDOWS = 0, 1
MUST_EXIST, MAKE_EMPTY, MAKE_DEMO = range(3)


class _Text(ctypes.Structure):
    _fields_ = [("bytes", ctypes.c_char_p), ("length", ctypes.c_size_t)]


class _Date(ctypes.Structure):
    _fields_ = [(name, ctypes.c_int16) for name in
                ("year", "month", "day", "hour", "minute", "second", "millisecond")]


class _Any(ctypes.Union):
    _fields_ = [("boolean", ctypes.c_int32), ("int16", ctypes.c_int16),
                ("int32", ctypes.c_int32), ("int64", ctypes.c_int64),
                ("number", ctypes.c_double), ("text", _Text), ("date", _Date),
                ("object", ctypes.c_void_p)]


class Value(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int32), ("owned", ctypes.c_int32), ("any", _Any)]


_Message = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_char_p)


class _Options(ctypes.Structure):
    _fields_ = [("size", ctypes.c_uint32), ("windows", ctypes.c_int32),
                ("settings", ctypes.c_char_p), ("components", ctypes.c_void_p),
                ("host", ctypes.c_void_p), ("message", _Message)]


class TillError(Exception):
    def __init__(self, status, text):
        super().__init__(text)
        self.status = status


class Library:
    """libzrtpv.so; one for all tills of a program."""

    def __init__(self, path="libzrtpv.so.1"):
        self._c = ctypes.CDLL(path)
        self._c.zrtpv_error.restype = ctypes.c_char_p
        self._c.zrtpv_version.restype = ctypes.c_char_p

    def version(self):
        return self._c.zrtpv_version().decode()

    def call(self, function, *arguments):
        status = getattr(self._c, function)(*arguments)
        if status:
            raise TillError(status, self._c.zrtpv_error().decode())

    def to_value(self, value):
        made = Value(NULL, 0)
        if isinstance(value, bool):
            made.type, made.any.boolean = BOOL, value
        elif isinstance(value, int):
            made.type, made.any.int64 = INT64, value
        elif isinstance(value, float):
            made.type, made.any.number = DOUBLE, value
        elif isinstance(value, Object):
            made.type, made.any.object = OBJECT, value.handle
        elif isinstance(value, datetime.datetime):
            made.type = DATE
            made.any.date = _Date(value.year, value.month, value.day, value.hour, value.minute,
                                  value.second, value.microsecond // 1000)
        elif value is not None:
            text = str(value).encode()
            self.call("zrtpv_set_text", ctypes.byref(made), text, ctypes.c_size_t(len(text)))
        return made

    def take(self, value):
        """The value as Python's own; what it owned is released or moved along."""
        plain = {NULL: lambda: None, BOOL: lambda: bool(value.any.boolean),
                 INT16: lambda: value.any.int16, INT32: lambda: value.any.int32,
                 INT64: lambda: value.any.int64, DOUBLE: lambda: value.any.number,
                 MONEY: lambda: value.any.int64 / 10000,
                 TEXT: lambda: value.any.text.bytes[:value.any.text.length].decode(),
                 DATE: lambda: self._moment(value.any.date)}
        if value.type == OBJECT:
            return Object(self, value.any.object)
        taken = plain[value.type]()
        self.call("zrtpv_clear", ctypes.byref(value))
        return taken

    @staticmethod
    def _moment(date):
        return datetime.datetime(date.year, date.month, date.day, date.hour, date.minute,
                                 date.second, date.millisecond * 1000)


class _Driven:
    """What is driven by the names of its members."""

    def __init__(self, library, handle, prefix):
        self._library, self.handle, self._prefix = library, handle, prefix

    def get(self, name):
        result = Value()
        self._run("get", name.encode(), ctypes.byref(result))
        return self._library.take(result)

    def put(self, name, value):
        made = self._library.to_value(value)
        try:
            self._run("put", name.encode(), ctypes.byref(made))
        finally:
            if made.owned:
                self._library.call("zrtpv_clear", ctypes.byref(made))

    def call(self, name, *arguments):
        """The result; with arguments by reference see call_with."""
        return self.call_with(name, *arguments)[0]

    def call_with(self, name, *arguments):
        """The result and the arguments as the member left them."""
        values = (Value * len(arguments))(*[self._library.to_value(a) for a in arguments])
        result = Value()
        self._run("call", name.encode(), values, ctypes.c_size_t(len(arguments)),
                  ctypes.byref(result))
        return self._library.take(result), [self._library.take(value) for value in values]

    def _run(self, action, *arguments):
        self._library.call(self._prefix + action, ctypes.c_void_p(self.handle), *arguments)


class Object(_Driven):
    def __init__(self, library, handle):
        super().__init__(library, handle, "zrtpv_object_")

    def release(self):
        self._library.call("zrtpv_object_release", ctypes.c_void_p(self.handle))


class Till(_Driven):
    """`with Till(library) as till: ...`; in the thread that made it."""

    def __init__(self, library, windows=HEADLESS, settings=None, message=print):
        self._message = _Message(lambda _, text: message(text.decode()))
        options = _Options(ctypes.sizeof(_Options), windows,
                           settings.encode() if settings else None, None, None, self._message)
        handle = ctypes.c_void_p()
        library.call("zrtpv_create", ctypes.byref(options), ctypes.byref(handle))
        super().__init__(library, handle.value, "zrtpv_")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._library.call("zrtpv_release", ctypes.c_void_p(self.handle))

    def open_file(self, path, if_missing=MUST_EXIST, user=1):
        self._run("open_file", path.encode(), ctypes.c_int32(if_missing), ctypes.c_int32(user))

    def play(self, scenario):
        """The transcript; a TillError when something did not hold."""
        transcript = Value()
        try:
            self._run("play", scenario.encode(), ctypes.byref(transcript))
        except TillError as error:
            raise TillError(error.status, f"{error}\n{self._library.take(transcript)}") from None
        return self._library.take(transcript)
