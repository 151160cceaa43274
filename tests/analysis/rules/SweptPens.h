// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/resonance/SyntheticPart.h"
#include "document/PenDocument.h"

/// Pens filled as by sweeps of parts whose resonance is known.
struct SweptPens
{
    static constexpr int kPoints = 400;

    static synthetic::Part partAt(double fs)
    {
        synthetic::Part part;
        part.arms[0].fs = fs;
        return part;
    }

    /// Fills a pen as a sweep does.
    static void sweep(PenDocument& document, int pen, const synthetic::Part& part, double low = 30e3,
                      double high = 50e3, int points = kPoints)
    {
        document.setCurrentPen(pen);
        std::int32_t index = 0;
        for (const double f : synthetic::linear(low, high, points)) {
            const std::complex<double> z = 1.0 / part(f);
            const double phase = std::arg(z) * 180 / std::numbers::pi;
            document.AddImpedancePoint(f, std::abs(z), std::abs(phase), phase < 0 ? -1 : 1, index++);
        }
        document.setCurrentPen(0);
    }

    static void capacitor(PenDocument& document, int pen, double farad = 1e-9)
    {
        synthetic::Part part;
        part.arms.clear();
        part.c0 = farad;
        part.loss = 0.01;
        sweep(document, pen, part);
    }
};
