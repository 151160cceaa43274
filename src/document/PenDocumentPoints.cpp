// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/korvalink/KorvaLink.h"
#include "document/PenDocument.h"
#include "program/UserMessages.h"

namespace {

/// The highest point number that the amplitude road lets through to the graph.
constexpr std::int32_t kHighestPoint = 1024;

} // namespace

void PenDocument::AddAmplitudePoint(double dblFreq, double dblAmp, double dblPhase, double dblSign, std::int32_t lPoint)
{
    if (lPoint > kHighestPoint) {
        m_context.device.Write(QStringLiteral("y\r"));
        m_context.messages.message(tr("Too many points!"), UserMessages::Stop, tr("Add Point Error"));
        return;
    }
    if (pgiTestType != Amplitude) {
        refuseWrongType();
        return;
    }
    writePoint(dblFreq, dblAmp, -1.0 * dblAmp, dblPhase * dblSign, -1.0 * dblPhase, lPoint);
}

void PenDocument::AddImpedancePoint(double dblFreq, double l_dblImp, double dblPhase, double dblSign,
                                    std::int32_t lPoint)
{
    if (pgiTestType == Impedance)
        writePoint(dblFreq, l_dblImp, 1.0 / l_dblImp, dblPhase * dblSign, -1.0 * dblPhase, lPoint);
    else if (pgiTestType == Reactance)
        CalculateReactance(dblFreq, l_dblImp, dblPhase, dblSign, lPoint);
    else
        refuseWrongType();
}

void PenDocument::CalculateReactance(double dblFreq, double dblImp, double dblPhase, double dblSign,
                                     std::int32_t lPoint)
{
    KorvaLink& device = m_context.device;
    device.SetPolar(dblImp, dblPhase * dblSign);
    AddReactancePoint(dblFreq, device.Reactance(), device.Resistance(), device.Susceptance(), device.Conductance(),
                      lPoint);
}

void PenDocument::CalculateImpedance(double dblFreq, double dblReactance, double dblResistance, std::int32_t lPoint)
{
    KorvaLink& device = m_context.device;
    device.SetRectangular(dblReactance, dblResistance);
    // The phase of the conversion is signed already.
    AddImpedancePoint(dblFreq, device.Modulus(), device.Phase(), 1.0, lPoint);
}

void PenDocument::AddReactancePoint(double dblFreq, double dblReac, double dblRes, double dblSusc, double dblCond,
                                    std::int32_t lPoint)
{
    if (pgiTestType != Reactance) {
        refuseWrongType();
        return;
    }
    writePoint(dblFreq, dblReac, dblSusc, dblRes, dblCond, lPoint);
}

void PenDocument::writePoint(double x, double y, double alternate, double third, double fourth, std::int32_t lPoint)
{
    const auto frequency = static_cast<float>(x);
    const int pen = gCurrentPen;
    m_graph.setPoint(pen, lPoint, frequency, static_cast<float>(y));
    m_graph.setPoint(pen + kPens, lPoint, frequency, static_cast<float>(alternate));
    m_graph.setPoint(pen + 3 * kPens, lPoint, frequency, static_cast<float>(third));
    m_graph.setPoint(pen + 2 * kPens, lPoint, frequency, static_cast<float>(fourth));
    if (isHidden(pen))
        UpdatePenHide(pen, false);
}

void PenDocument::refuseWrongType()
{
    m_context.device.DisableDataEvent();
    m_context.device.Write(QStringLiteral("y\r"));
    m_context.messages.message(tr("Wrong type of data for graph"), UserMessages::Stop, tr("Add Point Error"));
}
