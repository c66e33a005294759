#!/usr/bin/env python3
"""Counts the pixels of a PNG screenshot that are close to given colours.

Usage: png_colour_pixels.py IMAGE.png RRGGBB [RRGGBB ...]
Prints "WIDTH HEIGHT" on the first line, then per colour the number of pixels whose red, green
and blue each lie within 40 of it, and the first and last row where such pixels occur ("-1 -1"
when there are none). Reads 8-bit RGB and RGBA images without interlacing (what Chromium
writes) with nothing but the standard library.
"""

import struct
import sys
import zlib

TOLERANCE = 40


def chunks(data):
    offset = 8
    while offset < len(data):
        (length,) = struct.unpack(">I", data[offset : offset + 4])
        kind = data[offset + 4 : offset + 8]
        yield kind, data[offset + 8 : offset + 8 + length]
        offset += 12 + length


def paeth(a, b, c):
    p = a + b - c
    pa, pb, pc = abs(p - a), abs(p - b), abs(p - c)
    if pa <= pb and pa <= pc:
        return a
    return b if pb <= pc else c


def unfilter(kind, line, previous, stride):
    out = bytearray(line)
    for i in range(len(out)):
        left = out[i - stride] if i >= stride else 0
        up = previous[i]
        corner = previous[i - stride] if i >= stride else 0
        if kind == 1:
            out[i] = (out[i] + left) & 0xFF
        elif kind == 2:
            out[i] = (out[i] + up) & 0xFF
        elif kind == 3:
            out[i] = (out[i] + ((left + up) >> 1)) & 0xFF
        elif kind == 4:
            out[i] = (out[i] + paeth(left, up, corner)) & 0xFF
    return out


def read_rows(path):
    with open(path, "rb") as image:
        data = image.read()
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        raise SystemExit(f"{path} is not a PNG file")
    header, compressed = None, b""
    for kind, body in chunks(data):
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", body)
        elif kind == b"IDAT":
            compressed += body
    width, height, depth, colour, _, _, interlace = header
    if depth != 8 or colour not in (2, 6) or interlace != 0:
        raise SystemExit(f"{path}: only 8-bit RGB or RGBA without interlacing is read")
    stride = 3 if colour == 2 else 4
    raw = zlib.decompress(compressed)
    previous = bytearray(width * stride)
    rows = []
    for y in range(height):
        start = y * (width * stride + 1)
        line = unfilter(raw[start], raw[start + 1 : start + 1 + width * stride], previous, stride)
        rows.append((line, stride))
        previous = line
    return width, height, rows


def main(arguments):
    path, colours = arguments[0], [bytes.fromhex(c) for c in arguments[1:]]
    width, height, rows = read_rows(path)
    print(width, height)
    for colour in colours:
        count, first, last = 0, -1, -1
        for y, (line, stride) in enumerate(rows):
            hits = sum(
                1
                for x in range(0, width * stride, stride)
                if abs(line[x] - colour[0]) <= TOLERANCE
                and abs(line[x + 1] - colour[1]) <= TOLERANCE
                and abs(line[x + 2] - colour[2]) <= TOLERANCE
            )
            if hits:
                count += hits
                first = y if first < 0 else first
                last = y
        print(count, first, last)


if __name__ == "__main__":
    main(sys.argv[1:])
