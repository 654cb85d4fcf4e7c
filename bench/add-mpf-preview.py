#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
# add-mpf-preview.py PICTURE.jpg PREVIEW.jpg OUT.jpg: PICTURE with PREVIEW kept after it and listed in an APP2 "MPF"
# block (CIPA DC-007), the way cameras store their large preview.
import struct
import sys

picture, preview = (open(name, "rb").read() for name in sys.argv[1:3])
count = 2
entries_at = 8 + 2 + 3 * 12 + 4          # after the TIFF header and an IFD of three entries
tiff_size = entries_at + 16 * count
segment = 2 + 2 + 4 + tiff_size           # marker, length, "MPF\0", the TIFF block
picture_size = len(picture) + segment
tiff_start = 2 + 2 + 2 + 4                # offsets in the block count from its TIFF header

tiff = b"II*\0" + struct.pack("<IH", 8, 3)
tiff += struct.pack("<HHI", 0xB000, 7, 4) + b"0100"
tiff += struct.pack("<HHII", 0xB001, 4, 1, count)
tiff += struct.pack("<HHII", 0xB002, 7, 16 * count, entries_at)
tiff += struct.pack("<I", 0)
tiff += struct.pack("<IIIHH", 0x030000, picture_size, 0, 0, 0)
tiff += struct.pack("<IIIHH", 0x010002, len(preview), picture_size - tiff_start, 0, 0)
with open(sys.argv[3], "wb") as out:
    out.write(picture[:2] + b"\xff\xe2" + struct.pack(">H", segment - 2) + b"MPF\0" + tiff + picture[2:] + preview)
