// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "instrument/InstrumentEvents.h"
#include "link/AnswerWatch.h"
#include "link/Frame.h"
#include "link/LinkContext.h"
#include "link/PlotState.h"
#include "link/StatusPanels.h"

#include <QObject>

#include <array>
#include <functional>
#include <optional>

class PenDocument;
class SettingsDialogPort;

/// The host's end of the instrument's link: reads frames, dispatches them, keeps the mirror of the instrument, saves
/// and sends the sweep settings.
///
/// Connects itself to the link's events. Owned by the program's start-up code: it must outlive every nested event loop
/// that a handler runs (messages, choosers, event processing).
class DeviceModule : public QObject
{
    Q_OBJECT

public:
    /// Handles one frame. False: a field that must be a number was none, which ends the read pass.
    using Handler = std::function<bool(const Frame&)>;

    explicit DeviceModule(const LinkContext& context, QObject* parent = nullptr);
    ~DeviceModule() override;

    const LinkContext& context() const { return m_context; }
    PlotState& plotState() { return m_plotState; }
    StatusPanels& panels() { return m_panels; }
    /// What the instrument's side tells the rest of the program.
    InstrumentEvents& events() { return m_events; }
    /// Whether the instrument has told all of its state.
    AnswerWatch& answers() { return m_answers; }

    /// The settings dialog that frames write to; null when it is closed. Not owned.
    void setSettingsDialog(SettingsDialogPort* dialog);
    SettingsDialogPort& settingsDialog() const { return *m_dialog; }

    /// Adds the handler of a message code; replaces the one there was. A frame without a handler is ignored.
    /// Handlers may run event loops: inbound frames wait meanwhile.
    void registerHandler(char code, Handler handler);

    /// Reads what the link holds, as long as a whole frame waits, and dispatches each valid frame. A strict field that
    /// is no number ends the pass and loses what was read. May be entered again from a handler that has switched the
    /// data event on: the inner pass then goes on behind the frame that is being handled.
    void DeviceReadInput();
    /// One run of bytes up to one behind its carriage return: a frame, if p1 is 67 and its first ":" stands at
    /// column 2. While the firmware wizard reads the version only code "O" passes. The answer is that of
    /// DeviceDispatch.
    bool DeviceFrameReceived(const char* bytes, std::size_t p1);
    /// Hands the frame to the handler of its code.
    bool DeviceDispatch(const Frame& frame);

    /// Pushes the settings and asks the instrument for its complete state, twice.
    void DeviceEnquire();
    /// Back to a program that has met no instrument, with the settings saved under "Device".
    void DeviceInitialise();
    /// Close and DeviceInitialise.
    void DeviceReset();

    /// Under the section named by the serial number; nothing while that is empty, or while the instrument of that
    /// number has not told its complete state: what the mirror holds is not yet its own.
    void DeviceSaveSettings();
    /// A key that is missing or unreadable keeps the value in hand.
    void DeviceLoadSettings();
    /// Nine commands: phase, idlefreq, points, atten, repeat, sweepmode, period, startfreq, endfreq.
    void DeviceSendSettings();

    /// Panel 5: points of the test, while plotting with the number of the last one before it.
    void showTestPoints();

private:
    using Method = bool (DeviceModule::*)(const Frame&);
    void registerOwnHandlers();

    void deviceConnected();
    void deviceDisconnected();
    void deviceAttached();
    void writeBufferFull();

    bool handleBuffered();
    void readStatus(const Frame& frame, std::int32_t bfIdleOutput);
    /// The active document while it is the one under test, otherwise null.
    PenDocument* documentUnderTest() const;
    void endOfPoints();
    void showMeasured(PenDocument& document, double frequency, int action);

    bool attenuation(const Frame& frame);           // A
    bool calibrationSlope(const Frame& frame);      // B
    bool trim(const Frame& frame);                  // C
    bool testStarted(const Frame& frame);           // D
    bool testEnded(const Frame& frame);             // E
    bool impedancePoint(const Frame& frame);        // F
    bool idleLevel(const Frame& frame);             // G
    bool amplitudePoint(const Frame& frame);        // H
    bool idleImpedance(const Frame& frame);         // I
    bool options(const Frame& frame);               // J
    bool sweep(const Frame& frame);                 // K
    bool amplitudeLimits(const Frame& frame);       // L
    bool reactanceLimits(const Frame& frame);       // M
    bool impedanceLimits(const Frame& frame);       // N
    bool firmwareVersion(const Frame& frame);       // O
    bool points(const Frame& frame);                // P
    bool testParameters(const Frame& frame);        // Q
    bool calibration(const Frame& frame);           // R
    bool period(const Frame& frame);                // S
    bool notice(const Frame& frame);                // T
    bool serialNumber(const Frame& frame);          // V
    bool completeState(const Frame& frame);         // X
    bool pointsFinished(const Frame& frame);        // Y
    bool activePen(const Frame& frame);             // a
    bool extentsWanted(const Frame& frame);         // c
    bool endOfProgram(const Frame& frame);          // h
    bool scriptState(const Frame& frame);           // k
    bool deviceInformation(const Frame& frame);     // l
    bool stateText(const Frame& frame);             // r
    bool sweepRange(const Frame& frame);            // s
    bool frequencyCompensation(const Frame& frame); // t
    bool loopView(const Frame& frame);              // u

    /// strRxBuffer: the bytes of the present pass that are not handled yet lie in [m_rxBegin, m_rxEnd).
    static constexpr std::size_t kRxBufferSize = 31200;
    std::array<char, kRxBufferSize> m_strRxBuffer{};
    std::size_t m_rxBegin = 0;
    std::size_t m_rxEnd = 0;

    LinkContext m_context;
    InstrumentEvents m_events;
    AnswerWatch m_answers{m_events};
    /// Serial number of the instrument that has been given its settings over this connection.
    std::optional<QString> m_settingsGivenTo;
    PlotState m_plotState;
    StatusPanels m_panels;
    SettingsDialogPort* m_dialog;
    std::array<Handler, 256> m_handlers;
};
