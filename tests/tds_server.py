#!/usr/bin/python3
"""A server of the shop's kind as far as the log-in, which it refuses: it demands
encryption, shows the certificate that it is given, and notes what comes through.

    tds_server.py FOLDER CERTIFICATE KEY

prints its port, then answers until its input ends. FOLDER/notes gets a line a
connection: "login" when a log-in packet came, "nothing" when the till left before.
"""
import pathlib
import socket
import ssl
import struct
import sys
import threading

PRELOGIN, LOGIN, REPLY = 0x12, 0x10, 0x04


def read_exactly(line, length):
    data = b""
    while len(data) < length:
        piece = line.recv(length - len(data))
        if not piece:
            raise EOFError
        data += piece
    return data


def read_packet(line):
    header = read_exactly(line, 8)
    return header[0], read_exactly(line, struct.unpack(">H", header[2:4])[0] - 8)


def packet(kind, body):
    return struct.pack(">BBHHBB", kind, 1, len(body) + 8, 0, 1, 0) + body


def prelogin_answer():
    version, encryption = b"\x0f\x00\x07\xd0\x00\x00", b"\x03"  # 3: required
    offset = 2 * 5 + 1
    options = struct.pack(">BHH", 0, offset, len(version))
    options += struct.pack(">BHH", 1, offset + len(version), len(encryption))
    return packet(REPLY, options + b"\xff" + version + encryption)


def shake_hands(line, context):
    """The encryption's own greeting travels inside of packets."""
    incoming, outgoing = ssl.MemoryBIO(), ssl.MemoryBIO()
    tls = context.wrap_bio(incoming, outgoing, server_side=True)
    while True:
        try:
            tls.do_handshake()
            done = True
        except ssl.SSLWantReadError:
            done = False
        answer = outgoing.read()
        if answer:
            line.sendall(packet(PRELOGIN, answer))
        if done:
            return tls, incoming, outgoing
        incoming.write(read_packet(line)[1])


def first_packet(line, tls, incoming):
    while True:
        try:
            return tls.read(4096)
        except ssl.SSLWantReadError:
            piece = line.recv(4096)
            if not piece:
                return b""
            incoming.write(piece)


def refusal():
    text = "Login failed for user 'caja'."
    body = struct.pack("<IBBH", 18456, 1, 14, len(text)) + text.encode("utf-16-le")
    body += struct.pack("<BBI", 0, 0, 1)
    done = struct.pack("<BHHQ", 0xFD, 2, 0, 0)
    return packet(REPLY, struct.pack("<BH", 0xAA, len(body)) + body + done)


def meet(line, context, note):
    """What came is noted before it is answered: a test asks for it then."""
    seen = "nothing"
    try:
        read_packet(line)
        line.sendall(prelogin_answer())
        tls, incoming, outgoing = shake_hands(line, context)
        login = first_packet(line, tls, incoming)
        if login and login[0] == LOGIN:
            seen = "login"
            note(seen)
            tls.write(refusal())
            line.sendall(outgoing.read())
    except (EOFError, OSError):  # an alert of the till's is one of them
        pass
    if seen == "nothing":
        note(seen)


def serve(listener, context, notes):
    def note(what):
        with open(notes, "a", encoding="utf-8") as book:
            book.write(what + "\n")

    while True:
        line, _ = listener.accept()
        line.settimeout(5)
        with line:
            meet(line, context, note)


def main(folder, certificate, key):
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.maximum_version = ssl.TLSVersion.TLSv1_2  # as the real one, before TDS 8
    context.load_cert_chain(certificate, key)
    listener = socket.create_server(("127.0.0.1", 0))
    print(listener.getsockname()[1], flush=True)
    threading.Thread(
        target=serve, args=(listener, context, pathlib.Path(folder) / "notes"), daemon=True).start()
    sys.stdin.read()


if __name__ == "__main__":
    main(*sys.argv[1:])
