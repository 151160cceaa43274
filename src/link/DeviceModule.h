// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "instrument/InstrumentEvents.h"
#include "link/AnswerWatch.h"
#include "link/LinkContext.h"
#include "link/StatusFrames.h"
#include "link/StatusPanels.h"
#include "link/rules/Frame.h"

#include <QObject>
#include <QTimer>

#include <array>
#include <functional>
#include <memory>
#include <optional>

class DocumentFollower;
class SettingsDialogPort;
class SweepRecorder;

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
    SweepRecorder& recorder() { return *m_recorder; }
    DocumentFollower& follower() { return *m_follower; }
    StatusPanels& panels() { return m_panels; }
    /// Milliseconds without an answer after which panel 1 says so; 5000 unless set.
    void setLongestSilence(int milliseconds) { m_silence.setInterval(milliseconds); }
    /// What the instrument's side tells the rest of the program.
    InstrumentEvents& events() { return m_events; }
    /// Whether the instrument has told all of its state.
    AnswerWatch& answers() { return m_answers; }

    /// The settings dialog that is asked; null when it is closed. Not owned.
    void setSettingsDialog(SettingsDialogPort* dialog);
    SettingsDialogPort& settingsDialog() const { return *m_dialog; }

    /// Adds the handler of a message code; replaces the one there was. A frame without a handler is ignored.
    /// Handlers may run event loops: inbound frames wait meanwhile.
    void registerHandler(char code, Handler handler);
    /// Frames of every other code are dropped until 0 is set: the firmware wizard listens to "O" alone. Until then no
    /// connection opens the settings, and no device that appears the chooser.
    void setOnlyCode(char code) { m_onlyCode = code; }

    /// Reads what the link holds, as long as a whole frame waits, and dispatches each valid frame. A strict field that
    /// is no number ends the pass and loses what was read. May be entered again from a handler that has switched the
    /// data event on: the inner pass then goes on behind the frame that is being handled.
    void DeviceReadInput();
    /// One run of bytes up to one behind its carriage return: a frame, if p1 is 67 and its first ":" stands at
    /// column 2. The answer is that of DeviceDispatch.
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
    /// A key that is missing or unreadable, or whose value no instrument can have, keeps the value in hand.
    void DeviceLoadSettings();
    /// Nine commands: phase, idlefreq, points, atten, repeat, sweepmode, period, startfreq, endfreq.
    void DeviceSendSettings();
    /// The serial number of the instrument that has been given its stored settings over this connection.
    const std::optional<QString>& settingsGivenTo() const { return m_settingsGivenTo; }

    /// The instrument has told its complete state: from now on its settings are live. It is given what was stored under
    /// its serial number.
    void answerComplete();
    /// It has told its serial number. Where the complete state came ahead of it, the stored settings are given now.
    void serialNumberTold();

    /// The count of samples that a DT46 is to average: what was stored for it, or else what it has reported. Nothing
    /// for an instrument without, and while neither is known.
    std::optional<int> knownSamples() const;
    /// "samples", where a count is known and no script runs.
    void DeviceSendSamples();

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
    void tellSilence();
    void giveSettings();

    bool notice(const Frame& frame);        // T
    bool activePen(const Frame& frame);     // a
    bool extentsWanted(const Frame& frame); // c
    bool endOfProgram(const Frame& frame);  // h
    bool scriptState(const Frame& frame);   // k
    bool stateText(const Frame& frame);     // r
    bool loopView(const Frame& frame);      // u

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
    StatusPanels m_panels;
    SettingsDialogPort* m_dialog;
    std::array<Handler, 256> m_handlers;
    StatusFrames m_statusFrames;
    bool m_silenceTold = false;
    char m_onlyCode = 0;
    QTimer m_silence; ///< runs from a connection to its first complete state
    std::unique_ptr<SweepRecorder> m_recorder;
    std::unique_ptr<DocumentFollower> m_follower;
};
