#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes the table of a text export with numpy and pandas, one task a line of standard input, and answers each with its
time in ms, so that they take turns with the program they are compared with. Both write numbers that read back.

    export_peers.py TABLE FOLDER    TABLE holds rows of five 32-bit floats
    tasks: numpy, pandas
"""

import os
import sys
import time

import numpy
import pandas

TABLE = numpy.fromfile(sys.argv[1], dtype="<f4").reshape(-1, 5)
FRAME = pandas.DataFrame(TABLE)
FILE = os.path.join(sys.argv[2], "peer.txt")


def write_numpy():
    numpy.savetxt(FILE, TABLE, fmt="%.9g", delimiter="\t")


def write_pandas():
    FRAME.to_csv(FILE, sep="\t", header=False, index=False)


for write in (write_numpy, write_pandas):
    write()
    if not numpy.array_equal(numpy.loadtxt(FILE, delimiter="\t").astype("<f4"), TABLE):
        sys.exit("a peer does not read what it wrote")

for line in sys.stdin:
    task = globals()["write_" + line.strip()]
    start = time.perf_counter()
    task()
    print(f"{(time.perf_counter() - start) * 1e3:.4f}", flush=True)
