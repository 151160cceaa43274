// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/Device.h"
#include "sim/Runs.h"
#include "sim/bench/Measurement.h"
#include "sim/port/Pace.h"
#include "sim/protocol/CommandParser.h"
#include "sim/protocol/Frames.h"
#include "sim/script/ScriptRunner.h"
#include "values/Outcome.h"

#include <functional>
#include <memory>

namespace sim {

/// A simulated T46 or DT46: takes the commands and sends the frames that docs/instrument-protocol.md describes. The
/// same commands and the same seed give the same frames of points, whatever the pace.
class Instrument : public Device, private ScriptHost
{
public:
    struct Setup
    {
        Model model = Model::T46;
        QByteArray serial; ///< valid by isSerialNumber()
        std::shared_ptr<const Specimen> specimen;
        std::uint64_t seed = 1;
        double noise = 1; ///< times that of a good instrument
        Pace pace;
        double idleLevelsPerSecond = 2; ///< level frames between tests; 0 for none
        int firmwareMajor = 1, firmwareMinor = 28;
        std::optional<KeptMemory>
            memory; ///< of the same model, as kept at the last run; the state of a new instrument when there is none
        /// Called whenever something is to survive switching off. May be empty.
        std::function<Outcome(const KeptMemory&)> keep;
        /// Called before a new serial number is taken over; a failure leaves the old one. May be empty.
        std::function<Outcome(const QByteArray&)> serialChanging;
        std::unique_ptr<ScriptRunner> scriptRunner; ///< none: a script is kept, but not run
    };

    static constexpr int kLongestScript = 256 * 1024;
    static constexpr Duration kTransferSilence = std::chrono::seconds(1);
    static constexpr Duration kSpotInterval = std::chrono::milliseconds(100);

    Instrument(Setup setup, FrameSink& sink);
    ~Instrument() override;

    void hostArrived(Moment now) override;
    void hostLeft() override;
    void receive(std::string_view bytes, Moment now) override;
    void advance(Moment now, int frameBudget) override;
    std::optional<Moment> nextDue() const override;
    QByteArray serial() const override { return m_state.constants.serial; }
    QString activity() const override;

    const InstrumentState& state() const override { return m_state; }
    const QByteArray& script() const { return m_script; }
    bool scriptIsRunning() const { return m_scriptRunning; }
    /// Lines that were no command since the start.
    int unknownCommands() const { return m_unknownCommands; }
    /// Sends any frame as it stands, for demonstrations and tests.
    void send(const Frame& frame) override;

    /// 1 to 32 letters, digits, ".", "_" and "-", not beginning with ".".
    static bool isSerialNumber(const QByteArray& text);
    /// Every command word, for tests and documentation.
    static QStringList commandWords();

private:
    using Handler = void (Instrument::*)(const std::string& argument);
    struct Command
    {
        const char* word;
        Handler handler;
    };
    static const std::vector<Command>& commands();

    // Of a script that runs on the instrument.
    bool execute(std::string_view command) override;
    void finished(const Outcome& outcome) override;

    void takeInput(Moment now);
    void advanceScript(Moment now);
    bool dispatch(const std::string& word, const std::string& argument);

    void startFrequency(const std::string& argument);
    void endFrequency(const std::string& argument);
    void idleFrequency(const std::string& argument);
    void spotFrequency(const std::string& argument);
    void points(const std::string& argument);
    void attenuation(const std::string& argument);
    void repeat(const std::string& argument);
    void sweepMode(const std::string& argument);
    void period(const std::string& argument);
    void phase(const std::string& argument);
    void samples(const std::string& argument);
    void linear(const std::string& argument);
    void amplitudeTest(const std::string&);
    void impedanceTest(const std::string&);
    void amplitudeSpot(const std::string& argument);
    void impedanceSpot(const std::string& argument);
    void stopCommand(const std::string&);
    void runScript(const std::string&);
    void enquire(const std::string& argument);
    void setPin(const std::string& argument);
    void loadScript(const std::string& argument);
    void setReferenceTrim(const std::string& argument);
    void setDutTrim(const std::string& argument);
    void setFrequencyCompensation(const std::string& argument);
    void setSerial(const std::string& argument);
    void applyCalibration(const std::string& argument);
    void loopback(const std::string& argument);
    void phaseCalibration(const std::string&);
    void calibrate(const std::string& argument);
    void slopeCalibration(const std::string&);
    void diagnose(const std::string&);
    void factorySettings(const std::string&);
    void save(const std::string&);

    void begin(std::unique_ptr<Run> run);
    void beginPass();
    void measureDuePoints(int& frameBudget);
    void passEnded();
    void endRun(bool completed);
    void beginSpot(TestKind kind, const std::string& argument);
    void sendSpotLevel();
    void sendIdleLevel();
    void scheduleIdleLevel();
    void stopScript();
    void takeScriptBytes(const std::string& bytes);
    void giveUpTransfer();
    void setTrim(int InstrumentConstants::*code, const std::string& argument);
    void setFrequency(double SweepSettings::*frequency, const std::string& argument);
    void keepConstants();
    void keep();
    bool idleLevelsWanted() const;

    FrameSink& m_sink;
    Setup m_setup;
    Measurement m_measurement;
    InstrumentState m_state;
    KeptMemory m_kept;
    CommandParser m_parser;
    Moment m_now{0};
    bool m_hostKnown = false; ///< has enquired since it came
    int m_unknownCommands = 0;

    std::unique_ptr<Run> m_run;
    std::uint64_t m_runNumber = 0;
    int m_nextPoint = 0;
    int m_sinceMarker = 0;
    Moment m_pointDue{0};

    std::optional<TestKind> m_spot;
    Moment m_levelDue{0};
    std::uint64_t m_levelNumber = 0;

    std::optional<bool> m_runEndedNews; ///< for the script runner: a run is over, completed or not

    QByteArray m_script;
    bool m_scriptRunning = false;
    bool m_transferring = false;
    bool m_transferTooLong = false;
    Moment m_lastTransferByte{0};
};

} // namespace sim
