#!/usr/bin/env python3
"""Drops files onto a window as a file manager would, by the XDND protocol of X11.

  tools/window_hands/drop_files.py WINDOW FILE...     exit status 1 when the window does not take them
"""
import ctypes
import pathlib
import sys
import time

x11 = ctypes.CDLL("libX11.so.6")
Long, ULong, Int = ctypes.c_long, ctypes.c_ulong, ctypes.c_int
for name in ("XOpenDisplay", "XInternAtom", "XDefaultRootWindow", "XCreateSimpleWindow"):
    getattr(x11, name).restype = ctypes.c_void_p if name == "XOpenDisplay" else ULong

CLIENT_MESSAGE, SELECTION_REQUEST, SELECTION_NOTIFY = 33, 30, 31
HEAD = [("type", Int), ("serial", ULong), ("send_event", Int), ("display", ctypes.c_void_p)]


class Message(ctypes.Structure):
    _fields_ = HEAD + [("window", ULong), ("message_type", ULong), ("format", Int), ("data", Long * 5)]


class Request(ctypes.Structure):
    _fields_ = HEAD + [(name, ULong) for name in ("owner", "requestor", "selection", "target", "property", "time")]


class Notify(ctypes.Structure):
    _fields_ = HEAD + [(name, ULong) for name in ("requestor", "selection", "target", "property", "time")]


class Event(ctypes.Union):
    _fields_ = [("type", Int), ("message", Message), ("request", Request), ("notify", Notify), ("pad", Long * 24)]


def main(window, files):
    display = ctypes.c_void_p(x11.XOpenDisplay(None))
    if not display:
        sys.exit("drop_files: no display")

    def atom(name):
        return x11.XInternAtom(display, name.encode(), 0)

    uris = "".join(pathlib.Path(file).resolve().as_uri() + "\r\n" for file in files).encode()
    text, selection = atom("text/uri-list"), atom("XdndSelection")
    root = ULong(x11.XDefaultRootWindow(display))
    source = x11.XCreateSimpleWindow(display, root, 0, 0, 1, 1, 0, ULong(0), ULong(0))
    x11.XSetSelectionOwner(display, ULong(selection), ULong(source), ULong(0))

    def send(kind, *data):
        event = Event()
        event.message = Message(type=CLIENT_MESSAGE, display=display, window=window, message_type=atom(kind), format=32,
                                data=(Long * 5)(source, *data))
        x11.XSendEvent(display, ULong(window), 0, Long(0), ctypes.byref(event))
        x11.XFlush(display)

    def answer(request):
        x11.XChangeProperty(display, ULong(request.requestor), ULong(request.property), ULong(text), 8, 0, uris, len(uris))
        event = Event()
        event.notify = Notify(type=SELECTION_NOTIFY, display=display, requestor=request.requestor,
                              selection=request.selection, target=request.target, property=request.property)
        x11.XSendEvent(display, ULong(request.requestor), 0, Long(0), ctypes.byref(event))
        x11.XFlush(display)

    send("XdndEnter", 5 << 24, text, 0, 0)
    send("XdndPosition", 0, 300 << 16 | 300, 0, atom("XdndActionCopy"))
    deadline = time.monotonic() + 20
    while time.monotonic() < deadline:
        if not x11.XPending(display):
            time.sleep(0.01)
            continue
        event = Event()
        x11.XNextEvent(display, ctypes.byref(event))
        if event.type == SELECTION_REQUEST:
            answer(event.request)
        elif event.type == CLIENT_MESSAGE and event.message.message_type == atom("XdndStatus"):
            if not event.message.data[1] & 1:
                sys.exit("drop_files: the window takes no files")
            send("XdndDrop", 0, 0, 0, 0)
        elif event.type == CLIENT_MESSAGE and event.message.message_type == atom("XdndFinished"):
            return
    sys.exit("drop_files: the window does not answer")


if __name__ == "__main__":
    main(int(sys.argv[1], 0), sys.argv[2:])
