"""A program that records and plays at once, each as far as it is told to: `phone.py in out`. Over the
simple interface of libpulse, silence both ways."""

import ctypes
import sys
import threading

PLAYBACK, RECORD = 1, 2
SAMPLES_OF_16_BITS = 3
FRAMES = b"\0" * 3200


class SampleFormat(ctypes.Structure):
    _fields_ = [("format", ctypes.c_int), ("rate", ctypes.c_uint32), ("channels", ctypes.c_uint8)]


def stream(direction, name):
    library = ctypes.CDLL("libpulse-simple.so.0")
    library.pa_simple_new.restype = ctypes.c_void_p
    sample_format = SampleFormat(SAMPLES_OF_16_BITS, 16000, 1)
    opened = library.pa_simple_new(None, b"Phone", direction, None, name,
                                   ctypes.byref(sample_format), None, None, None)
    transfer = library.pa_simple_read if direction == RECORD else library.pa_simple_write
    buffer = ctypes.create_string_buffer(FRAMES, len(FRAMES))
    error = ctypes.c_int()
    while opened and transfer(ctypes.c_void_p(opened), buffer, ctypes.c_size_t(len(FRAMES)),
                              ctypes.byref(error)) >= 0:
        pass


def keep(direction, name):
    """Comes back with the sound server."""
    ended = threading.Event()
    while not ended.wait(0.1):
        stream(direction, name)


directions = {"in": (RECORD, b"microphone"), "out": (PLAYBACK, b"voices")}
for word in sys.argv[1:]:
    threading.Thread(target=keep, args=directions[word]).start()
