#!/usr/bin/python3
"""Saves and loads what a full plot file holds with numpy and HDF5; prints name, best save and best load in ms."""

import json
import os
import sys
import time

import h5py
import numpy

FOLDER, ROUNDS = sys.argv[1], int(sys.argv[2])
X = numpy.random.default_rng(1).random((40, 1024), dtype=numpy.float32)
Y = X + numpy.float32(1)
TEXTS = json.dumps({f"text {i}": f"annotation {i}" for i in range(60)})


def best(task):
    least = float("inf")
    for _ in range(ROUNDS):
        start = time.perf_counter()
        task()
        least = min(least, time.perf_counter() - start)
    return least * 1e3


def numpy_save():
    numpy.savez(os.path.join(FOLDER, "peer.npz"), x=X, y=Y, texts=TEXTS)


def numpy_load():
    with numpy.load(os.path.join(FOLDER, "peer.npz")) as archive:
        return archive["x"], archive["y"], json.loads(str(archive["texts"]))


def hdf_save():
    with h5py.File(os.path.join(FOLDER, "peer.h5"), "w") as file:
        file["x"], file["y"] = X, Y
        file.attrs["texts"] = TEXTS


def hdf_load():
    with h5py.File(os.path.join(FOLDER, "peer.h5"), "r") as file:
        return file["x"][:], file["y"][:], json.loads(file.attrs["texts"])


for name, save, load in (("numpy", numpy_save, numpy_load), ("HDF5", hdf_save, hdf_load)):
    print(name, f"{best(save):.4f}", f"{best(load):.4f}")
