// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/Device.h"
#include "sim/FirmwareUpdate.h"
#include "sim/KeptMemory.h"
#include "sim/Levels.h"
#include "sim/MeasuredLevels.h"
#include "sim/RunningTest.h"
#include "sim/ScriptSlot.h"
#include "sim/parts/RangeWatch.h"
#include "sim/protocol/CommandParser.h"

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
        double idleLevelsPerSecond = 2;            ///< level frames between tests; 0 for none
        int firmwareMajor = 1, firmwareMinor = 28; ///< of the image that it was made with
        firmware::TrustedKeys firmwareKeys;        ///< without any, no firmware is taken
        FaultPlan firmwareFaults;
        std::optional<KeptMemory>
            memory; ///< of the same model, as kept at the last run; the state of a new instrument when there is none
        /// Called whenever something is to survive switching off. May be empty.
        std::function<Outcome(const KeptMemory&)> keep;
        /// Called before a new serial number is taken over; a failure leaves the old one. May be empty.
        std::function<Outcome(const QByteArray&)> serialChanging;
        /// Called with a sentence for the person who runs the simulator, which no frame tells the host. May be empty.
        std::function<void(const QString&)> tell;
        std::unique_ptr<ScriptRunner> scriptRunner; ///< none: a script is kept, but not run
    };

    Instrument(Setup setup, FrameSink& sink);
    ~Instrument() override;

    void hostArrived(Moment now) override;
    void hostLeft() override;
    void receive(std::string_view bytes, Moment now) override;
    void advance(Moment now, int frameBudget) override;
    std::optional<Moment> nextDue() const override;
    QByteArray serial() const override { return m_state.constants.serial; }
    QString activity() const override;
    Leave takeLeave() override;
    void powered(Moment now) override;

    const InstrumentState& state() const override { return m_state; }
    const ferrolex::Measured& measured() const override { return m_sink.measured(); }
    const QByteArray& script() const { return m_script.script(); }
    bool scriptIsRunning() const { return m_script.isRunning(); }
    /// Lines that were no command since the start.
    int unknownCommands() const { return m_unknownCommands; }
    /// Sends any frame as it stands, for demonstrations and tests.
    void send(const Frame& frame) override;

    /// Every command word, for tests and documentation.
    static QStringList commandWords();

private:
    struct Command
    {
        const char* word;
        void (Instrument::*handler)(std::string_view argument);
    };
    /// Those that do more than change a setting or a constant.
    static const std::vector<Command>& commands();

    // Of a script that runs on the instrument.
    bool execute(std::string_view command) override;
    void finished(const Outcome& outcome) override;

    void takeInput(Moment now);
    bool dispatch(std::string_view word, std::string_view argument);

    void amplitudeTest(std::string_view);
    void impedanceTest(std::string_view);
    void amplitudeSpot(std::string_view argument);
    void impedanceSpot(std::string_view argument);
    void stop(std::string_view);
    void enquire(std::string_view text);
    void loadScript(std::string_view argument);
    void runScript(std::string_view);
    void setSerial(std::string_view argument);
    void calibrate(std::string_view argument);
    void phaseCalibration(std::string_view);
    void slopeCalibration(std::string_view);
    void diagnose(std::string_view);
    void save(std::string_view);

    void begin(std::unique_ptr<Run> run);
    void runEnded(bool completed, bool constants);
    void beginSpot(TestKind kind, std::string_view argument);
    void takeScriptBytes(const std::string& bytes);
    void bootCommand(std::string_view word, std::string_view argument);
    void keepFirmware();
    void giveUpTransfer();
    void stopScript();
    void keepConstants();
    /// A failure is told to host and user.
    Outcome keep();
    bool idleLevelsWanted() const;
    void tell(const QString& sentence) const;

    MeasuredLevels m_sink;
    Setup m_setup;
    Measurement m_measurement;
    RangeWatch m_range;
    InstrumentState m_state;
    KeptMemory m_kept;
    CommandParser m_parser;
    RunningTest m_test;
    Levels m_levels;
    ScriptSlot m_script;
    std::unique_ptr<FirmwareUpdate> m_update;
    Moment m_now{0};
    bool m_hostKnown = false; ///< has enquired since it came
    int m_unknownCommands = 0;
};

} // namespace sim
