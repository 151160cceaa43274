#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Fits a mode over a straight complex background to the points of a sweep by SciPy's least squares, once for each line of
standard input, and answers with its processor time in ms, fs in Hz, Q, and their standard uncertainties. Of SciPy's methods
it takes the quickest for this task.

    resonance_peers.py SWEEP    SWEEP holds rows of three 64-bit floats: frequency in Hz, conductance and susceptance in S
"""

import sys
import time

import numpy
from scipy.optimize import least_squares

F, G, B = numpy.fromfile(sys.argv[1], dtype="<f8").reshape(-1, 3).T
Y = G + 1j * B
WEIGHT = 1 / numpy.abs(Y)


def residuals(parameters):
    ln_fs, ln_q, g1, offset, offset_j, slope, slope_j = parameters
    fs = numpy.exp(ln_fs)
    mode = g1 / (1 + 1j * numpy.exp(ln_q) * (F / fs - fs / F))
    rest = (Y - mode - (offset + 1j * offset_j) - (slope + 1j * slope_j) * (F / fs - 1)) * WEIGHT
    return numpy.concatenate((rest.real, rest.imag))


def start():
    # What a user would take: the highest point, and the width at half its height.
    top = numpy.argmax(G)
    above = F[G > G[top] / 2]
    width = max(above[-1] - above[0], F[1] - F[0])
    return [numpy.log(F[top]), numpy.log(F[top] / width), G[top], 0, B[top], 0, 0]


for line in sys.stdin:
    begin = time.process_time()
    fit = least_squares(residuals, start(), method="lm")
    covariance = numpy.linalg.inv(fit.jac.T @ fit.jac) * 2 * fit.cost / (2 * F.size - fit.x.size)
    taken = (time.process_time() - begin) * 1e3
    fs, q = numpy.exp(fit.x[:2])
    fs_u, q_u = numpy.sqrt(numpy.diag(covariance))[:2] * (fs, q)
    print(f"{taken:.4f} {fs:.9f} {q:.9f} {fs_u:.9g} {q_u:.9g}", flush=True)
