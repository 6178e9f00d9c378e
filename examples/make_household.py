#!/usr/bin/env python3
"""Writes household.bin: five telegrams of an invented household meter, as its optical port sends
them every few seconds. The third one is damaged on its way: one bit of a value is flipped, so that
its checksums no longer fit.

    examples/make_household.py [FILE]

Each telegram is one SML file (open, get-list response, close) in one transport frame. The same
bytes are written every time.
"""

import pathlib
import sys

SERVER = bytes.fromhex("0a0158595a0000123456")
FIRST_TIME = 48211764  # seconds index of the meter
INTERVAL = 4
WH, W, V = 30, 27, 35  # unit codes

# One row per telegram: energy taken and given in 0.1 Wh, power in W, voltage in 0.1 V.
TELEGRAMS = [
    (147981129, 20124380, 412, 2314),
    (147981134, 20124380, 405, 2309),
    (147981138, 20124380, 398, 2311),
    (147981138, 20124387, -655, 2337),
    (147981138, 20124395, -712, 2340),
]
DAMAGED = 2
ABSENT = b"\x01"


def crc16(data):
    """CRC-16 of ITU-T X.25, low byte first."""
    register = 0xFFFF
    for byte in data:
        register ^= byte
        for _ in range(8):
            register = register >> 1 ^ (0x8408 if register & 1 else 0)
    return (register ^ 0xFFFF).to_bytes(2, "little")


def octets(data):
    assert len(data) < 15
    return bytes([len(data) + 1]) + data


def unsigned(value, size):
    return bytes([0x61 + size]) + value.to_bytes(size, "big")


def signed(value, size):
    return bytes([0x51 + size]) + value.to_bytes(size, "big", signed=True)


def sequence(*elements):
    return bytes([0x70 + len(elements)]) + b"".join(elements)


def seconds(value):
    return sequence(unsigned(1, 1), unsigned(value, 4))


def obis(a, b, c, d, e, f=255):
    return octets(bytes([a, b, c, d, e, f]))


def entry(name, value, unit=ABSENT, scaler=ABSENT, status=ABSENT):
    return sequence(name, status, ABSENT, unit, scaler, value, ABSENT)


def message(number, tag, body):
    head = b"\x76" + octets(number.to_bytes(4, "big")) + unsigned(0, 1) + unsigned(0, 1)
    content = head + sequence(unsigned(tag, 2), body)
    return content + b"\x63" + crc16(content) + b"\x00"


def sml_file(number, time, taken, given, power, voltage):
    entries = sequence(
        entry(obis(129, 129, 199, 130, 3), octets(b"XYZ")),
        entry(obis(1, 0, 0, 0, 9), octets(SERVER)),
        entry(obis(1, 0, 1, 8, 0), signed(taken, 8), unsigned(WH, 1), signed(-1, 1),
              unsigned(0x0182, 2)),
        entry(obis(1, 0, 2, 8, 0), signed(given, 8), unsigned(WH, 1), signed(-1, 1)),
        entry(obis(1, 0, 16, 7, 0), signed(power, 4), unsigned(W, 1), signed(0, 1)),
        entry(obis(1, 0, 32, 7, 0), unsigned(voltage, 2), unsigned(V, 1), signed(-1, 1)),
    )
    list_name = obis(1, 0, 98, 10, 255)
    file_id = octets(number.to_bytes(3, "big"))
    opened = sequence(ABSENT, ABSENT, file_id, octets(SERVER), ABSENT, ABSENT)
    listed = sequence(ABSENT, octets(SERVER), list_name, seconds(time), entries, ABSENT, ABSENT)
    return (message(3 * number, 0x0101, opened) + message(3 * number + 1, 0x0701, listed)
            + message(3 * number + 2, 0x0201, sequence(ABSENT)))


def frame(payload):
    escape = b"\x1b" * 4
    padding = -len(payload) % 4
    framed = escape + b"\x01" * 4 + payload.replace(escape, 2 * escape) + bytes(padding)
    framed += escape + b"\x1a" + bytes([padding])
    return framed + crc16(framed)


def main():
    here = pathlib.Path(__file__).resolve().parent
    target = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else here / "household.bin"
    stream = b""
    for i, values in enumerate(TELEGRAMS):
        telegram = bytearray(frame(sml_file(1001 + i, FIRST_TIME + INTERVAL * i, *values)))
        if i == DAMAGED:
            at = telegram.find(values[0].to_bytes(8, "big")) + 6
            telegram[at] ^= 0x10
        stream += telegram
    target.write_bytes(stream)


if __name__ == "__main__":
    main()
