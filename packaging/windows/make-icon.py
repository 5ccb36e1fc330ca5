#!/usr/bin/env python3
"""Puts PNG pictures of one icon, one for each size, into an .ico file.

    make-icon.py OUT.ico IN.png...
"""
import struct
import sys
from pathlib import Path


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    pictures = [Path(name).read_bytes() for name in sys.argv[2:]]
    place = 6 + 16 * len(pictures)
    header = struct.pack("<3H", 0, 1, len(pictures))
    for picture in pictures:
        width, height = struct.unpack_from(">2I", picture, 16)
        # 256 is written as 0.
        header += struct.pack("<4B2H2I", width % 256, height % 256, 0, 0, 1, 32, len(picture), place)
        place += len(picture)
    Path(sys.argv[1]).write_bytes(header + b"".join(pictures))


if __name__ == "__main__":
    main()
