#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Saves and loads the arrays and texts of a plot with numpy and HDF5, one task a line of standard input, and answers
each with its time in ms, so that they take turns with the program they are compared with.

    plotfile_peers.py FOLDER    FOLDER holds x.f32 and y.f32 (40 x 1024 floats) and texts.json
    tasks: numpy|hdf5 save|durable|load; durable is a save and fsync of the file
"""

import json
import os
import sys
import time

import h5py
import numpy

FOLDER = sys.argv[1]
X, Y = (numpy.fromfile(os.path.join(FOLDER, name), dtype="<f4").reshape(40, 1024) for name in ("x.f32", "y.f32"))
with open(os.path.join(FOLDER, "texts.json"), encoding="utf-8") as file:
    PROPERTIES = json.load(file)
NPZ, HDF = os.path.join(FOLDER, "peer.npz"), os.path.join(FOLDER, "peer.h5")


def numpy_save():
    numpy.savez(NPZ, x=X, y=Y, texts=json.dumps(PROPERTIES))


def numpy_durable():
    with open(NPZ, "wb") as file:
        numpy.savez(file, x=X, y=Y, texts=json.dumps(PROPERTIES))
        file.flush()
        os.fsync(file.fileno())


def numpy_load():
    with numpy.load(NPZ) as archive:
        return archive["x"], archive["y"], json.loads(str(archive["texts"]))


def hdf5_save():
    with h5py.File(HDF, "w") as file:
        file["x"], file["y"] = X, Y
        file.attrs["texts"] = json.dumps(PROPERTIES)


def hdf5_durable():
    hdf5_save()
    descriptor = os.open(HDF, os.O_RDONLY)
    os.fsync(descriptor)
    os.close(descriptor)


def hdf5_load():
    with h5py.File(HDF, "r") as file:
        return file["x"][:], file["y"][:], json.loads(file.attrs["texts"])


for save, load in ((numpy_save, numpy_load), (hdf5_save, hdf5_load)):
    save()
    x, y, texts = load()
    if not (numpy.array_equal(x, X) and numpy.array_equal(y, Y) and texts == PROPERTIES):
        sys.exit("a peer does not read what it wrote")

for line in sys.stdin:
    task = globals()["_".join(line.split())]
    start = time.perf_counter()
    task()
    print(f"{(time.perf_counter() - start) * 1e3:.4f}", flush=True)
