// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/instrument/SeriesPart.h"

#include <functional>
#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// An instrument as docs/instrument-protocol.md tells it, played for tests: what it was commanded, what it measures,
/// what it answers. It shares no code with the program or its simulator, so that neither judges itself. No terminal, no
/// clock: see ScriptedInstrument.
namespace played {

/// What the commands set. Frequencies in Hz, period in ms.
struct Settings
{
    // None of them is what a fresh host would ask for: what a host forgets to say shows.
    double start = 7000, end = 9000, idle = 0, spot = 5000;
    int points = 33, attenuation = 1, mode = 2, period = 0, samples = 4, pin = 2, penOfPin = 0;
    bool repeat = true, phase = false, linear = false;

    bool operator==(const Settings&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Settings& settings);

/// What kind of instrument it is.
struct Traits
{
    bool sampling = false; ///< a DT46: averages samples, has no attenuator
    std::string madeFor;   ///< version of the host that the firmware was made for; empty: gets on with any
    SeriesPart part;
    Settings settings; ///< in force when it is switched on
};

struct SweptPoint
{
    double hertz = 0;
    SeriesPart::Value value;
};

/// A pass of a test, from its "D" on.
struct Sweep
{
    bool amplitude = false;
    Settings settings; ///< in force when it began
    std::vector<SweptPoint> points;
    enum class End
    {
        Running,
        Complete,
        Stopped, ///< by "y", "x" or another start
        HostGone
    } end = End::Running;
};

using Frames = std::vector<std::string>;

class Protocol
{
public:
    Protocol(std::string serial, Traits traits);
    Protocol(const Protocol&) = delete;
    Protocol& operator=(const Protocol&) = delete;

    /// The answer to a command, which comes without its carriage return.
    Frames take(std::string_view command);
    /// True while a run of points is under way; next() measures one point of it, and what follows the last.
    bool running() const { return m_pass.has_value(); }
    Frames next();
    /// The level of a spot measurement, or of the idle output when none runs; none while points are measured.
    bool spotRunning() const { return m_spot != Spot::None; }
    Frames level() const;

    /// Bytes of a script that are still to come; they are no commands.
    std::size_t scriptBytesAwaited() const { return m_scriptAwaited; }
    Frames takeScript(std::string_view bytes);
    /// The transfer has fallen silent.
    Frames giveUpScript();
    bool scriptRunning() const { return m_scriptRunning; }
    /// The script has come to its end.
    Frames endScript();
    const std::string& script() const { return m_script; }

    /// What happens to the settings by themselves when a test begins.
    void setOnStart(std::function<void(Settings&)> change) { m_onStart = std::move(change); }

    /// The host is gone: what runs ends without a word.
    void hostGone();

    const Settings& settings() const { return m_settings; }
    const std::vector<Sweep>& sweeps() const { return m_sweeps; }
    const SeriesPart& part() const { return m_traits.part; }

private:
    enum class Kind
    {
        Test,
        Calibration,
        PhaseTrim,
        DiagnosisInLoop,
        DiagnosisOfPart
    };
    struct Pass
    {
        Kind kind = Kind::Test;
        bool amplitude = false;
        double from = 0, to = 0;
        int points = 0;
        bool linear = false;
        int next = 0;
        bool backward = false; ///< mode 2: the present pass goes from B to A
        double frequency(int point) const;
    };
    enum class Spot
    {
        None,
        Amplitude,
        Impedance
    };
    using Answer = std::function<Frames(std::string_view argument)>;

    void addSettings();
    void addActions();
    Answer number(double low, double high, double Settings::*field, char frame);
    Answer whole(int low, int high, int Settings::*field, char frame);
    Answer flag(bool Settings::*field, char frame);
    Answer trim(int& code);

    Frames enquire(std::string_view version);
    Frames setPin(std::string_view digits);
    Frames begin(Pass pass);
    Frames beginTest(bool amplitude);
    Frames startOfPass();
    Frames stopped();
    Frames endOfPass();
    std::string pointFrame(int point);
    std::string trimPoint(int point) const;
    std::string frame(char code) const;
    std::string testFrame(char code, bool running, double from, double to) const;
    std::string levelFrame(bool amplitude, double hertz) const;
    std::string pointsFrame(int points) const;
    void endSweep(Sweep::End end);

    double highestFrequency() const { return m_traits.sampling ? 5e6 : 5e7; }
    int highestAttenuation() const { return m_traits.sampling ? 0 : 4; }

    std::string m_serial;
    Traits m_traits;
    Settings m_settings;
    std::function<void(Settings&)> m_onStart;
    std::map<std::string, Answer, std::less<>> m_answers;

    std::optional<Pass> m_pass;
    Spot m_spot = Spot::None;
    int m_lastTest = 2;
    std::vector<Sweep> m_sweeps;
    std::string m_script;
    std::size_t m_scriptAwaited = 0;
    bool m_scriptRunning = false;

    bool m_loopBack = false, m_applyCalibration = true, m_calibrated = false;
    std::string m_stampTime = "0", m_stampDate = "0", m_newStamp;
    int m_vref = 120, m_vdut = 130;
    double m_calOffset = 0.5, m_calSlope = 1.02, m_compensation = 1000000;
};

/// A frame of numbers, and one of text, in their columns.
std::string numbersFrame(char code, char f, const std::vector<double>& numbers, int i = 0);
std::string textFrame(char code, char f, std::string_view text);
/// Plain decimals or an exponent, whichever shows more digits in 13 columns.
std::string numberText(double value);

} // namespace played
