#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Prints format, title and the first curve of a plot file, with a stock CBOR library and nothing of this project.

With --all behind the file's name: every point of every subset up to the first that was not measured, one a line:
subset, number of the point, X, Y. With --present those behind it as well.
"""
import struct
import sys
import zlib

import cbor2

with open(sys.argv[1], "rb") as file:
    envelope = cbor2.load(file)
if isinstance(envelope, cbor2.CBORTag):  # the self-described tag, kept by some releases of the library
    envelope = envelope.value
content = envelope["content"]
if isinstance(content, cbor2.CBORTag):
    content = content.value
if zlib.crc32(content) != envelope["crc32"]:
    sys.exit("the checksum does not match")
content = cbor2.loads(content)


def floats(entry):
    assert entry.tag == 85, "an array of 32-bit floats, little endian"
    return struct.unpack(f"<{len(entry.value) // 4}f", entry.value)


points = content["Points"]
xs, ys = floats(content["XData"]), floats(content["YData"])
if "--all" in sys.argv[2:] or "--present" in sys.argv[2:]:
    for subset in range(content["Subsets"]):
        pen = subset % 10  # its first subset tells where it ends: a phase of -65536 is one that was not measured
        for point in range(points):
            if xs[pen * points + point] == 0 or ys[pen * points + point] == -65536:
                if "--present" in sys.argv[2:]:
                    continue
                break
            at = subset * points + point
            print(subset, point, repr(xs[at]), repr(ys[at]))
    sys.exit()
print(envelope["format"], envelope["version"])
print(content["MainTitle"])
for x, y in zip(xs[:points], ys[:points]):
    print(repr(x), repr(y))
