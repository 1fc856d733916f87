#!/usr/bin/env python3
"""Writes a part of an Xvfb screen as PNG.

usage: screenshot.py XVFB-FRAME-BUFFER PNG LEFT TOP WIDTH HEIGHT

The frame buffer is the file that Xvfb -fbdir keeps: a window dump (X11/XWDFile.h), here of 32 bits a pixel.
"""

import struct
import sys
import zlib


def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def main():
    source, target = sys.argv[1:3]
    left, top, width, height = map(int, sys.argv[3:])
    with open(source, "rb") as file:
        dump = file.read()
    header = struct.unpack(">25I", dump[:100])
    header_size, byte_order, bits, line_size, colours = header[0], header[7], header[11], header[12], header[19]
    if bits != 32 or byte_order != 0:
        sys.exit(f"{source}: no screen of 32 bits a pixel with the lowest byte first")
    pixels = header_size + 12 * colours
    rows = bytearray()
    for row in range(top, top + height):
        start = pixels + row * line_size + 4 * left
        line = dump[start:start + 4 * width]
        rgb = bytearray(3 * width)
        rgb[0::3], rgb[1::3], rgb[2::3] = line[2::4], line[1::4], line[0::4]
        rows += b"\0" + rgb
    with open(target, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
                   + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


if __name__ == "__main__":
    main()
