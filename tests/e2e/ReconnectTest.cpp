// SPDX-License-Identifier: GPL-3.0-or-later
// A cable that is pulled and put back a thousand times costs nothing that stays.
#include "controls/korvalink/KorvaLink.h"
#include "controls/korvalink/SerialTransport.h"
#include "e2e/EndToEnd.h"
#include "instrument/InstrumentMirror.h"
#include "link/DeviceModule.h"
#include "prefs/SettingsStore.h"
#include "program/ProgramState.h"
#include "shell/ui/StartUp.h"
#include "shell/ui/frmMain.h"
#include "support/FrameText.h"
#include "support/Pty.h"

#include <QFile>
#include <QSocketNotifier>

#include <array>
#include <memory>
#include <unistd.h>

using namespace e2e;

namespace {

constexpr int kWarmUp = 100;
constexpr int kCycles = 1000;
constexpr double kMemoryNoise = 8; ///< MiB

// The sanitizers keep freed memory back for a while, which is no growth of the program's.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kMemoryTells = false;
#else
constexpr bool kMemoryTells = true;
#endif

/// What an instrument says to an enquiry, cut to the frames that change the program's state; number and place in the
/// answer are those of a real one.
QByteArray enquireAnswer(const QByteArray& serial)
{
    using frametext::numbers, frametext::text;
    QByteArray answer = numbers('O', '0', 1, 28, 7, 2) + text('V', '0', serial);
    const std::array<const char*, 7> information{"T46", "USB", "0.01 to 1M", "360", "-90 to 10", "10 to 50M", "T46"};
    for (std::size_t slot = 0; slot < information.size(); ++slot)
        answer += text('l', static_cast<char>('0' + slot), information[slot]);
    return answer + numbers('L', '1', 10, 5e7, -90, 10, 0) + numbers('M', '1', 10, 5e7, -5e4, 5e4) +
           numbers('N', '1', 10, 5e7, 0.01, 1e6) + numbers('A', '1', 0, 30, 10, 0, 3) +
           numbers('B', '0', 1000, 0, 0, 1) + numbers('C', '1', 1000, 1.2, 1.3, 120, 130) +
           numbers('J', '0', 1, 0, 1, 0, 1) + numbers('K', '2', -1, 35000, 45000) + numbers('P', '0', 100, 0, 1, 0, 2) +
           numbers('Q', '0', 1024, 0, 64, 1) + numbers('R', '1', 0, 0, 1) + numbers('S', '0', 0, 0, 1) +
           numbers('s', '0', 0, 35000, 45000) + numbers('t', '0', 0) + numbers('X', '2', 35000, 45000, 100, -1, 1);
}

/// The far end of a cable that answers each enquiry. Its end is the unplugging.
class FarEnd
{
public:
    explicit FarEnd(QByteArray answer)
        : m_answer(std::move(answer))
    {
        EXPECT_TRUE(m_terminal.isValid());
    }
    ~FarEnd()
    {
        m_readable.reset();
        m_terminal.unplug();
    }
    FarEnd(const FarEnd&) = delete;
    FarEnd& operator=(const FarEnd&) = delete;

    QString path() const { return m_terminal.slavePath(); }
    int enquiries() const { return m_enquiries; }

    /// Call when the host has opened the other side: before that, there is nobody to read from.
    void serve()
    {
        m_readable = std::make_unique<QSocketNotifier>(m_terminal.master(), QSocketNotifier::Read);
        QObject::connect(m_readable.get(), &QSocketNotifier::activated, m_readable.get(), [this] { read(); });
    }

private:
    void read()
    {
        m_heard += m_terminal.receive();
        for (qsizetype end = m_heard.indexOf('\r'); end >= 0; end = m_heard.indexOf('\r')) {
            if (m_heard.startsWith("enquire ")) {
                ++m_enquiries;
                EXPECT_EQ(m_terminal.send(m_answer), m_answer.size());
            }
            m_heard.remove(0, end + 1);
        }
    }

    const QByteArray m_answer;
    Pty m_terminal;
    QByteArray m_heard;
    int m_enquiries = 0;
    std::unique_ptr<QSocketNotifier> m_readable;
};

double residentMegabytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toDouble() * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1048576.0;
}

class ReconnectTest : public EndToEndTest
{
protected:
    void SetUp() override
    {
        const QString folder = path(QStringLiteral("settings"));
        SettingsStore store(folder);
        const QString title = QStringLiteral("MarrowickGraph");
        for (const char* name : {"PlotFiles", "ExportFiles", "ScriptFiles", "UpdateFiles"})
            ASSERT_TRUE(store.SaveSetting(title, QStringLiteral("Paths"), QLatin1String(name), m_folder.path()));
        ASSERT_TRUE(store.SaveSetting(title, QStringLiteral("Prompts"), QStringLiteral("SplashScreen"), 0));
        ASSERT_TRUE(store.SaveSetting(title, QStringLiteral("Prompts"), QStringLiteral("OpenSettings"), openSettings));
        program = std::make_unique<StartUp>(folder);
        program->run({});
        ASSERT_NE(program->mainWindow(), nullptr);
    }

    const LinkContext& context() { return program->mainWindow()->deviceModule().context(); }

    /// Plugs in, opens, hears the whole answer, pulls the cable, sees the loss.
    void cycle(int number)
    {
        const QByteArray serial = "CYCLE-" + QByteArray::number(number % 2);
        auto farEnd = std::make_unique<FarEnd>(enquireAnswer(serial));
        ASSERT_TRUE(context().device.OpenTransport(std::make_unique<SerialTransport>(farEnd->path())))
            << context().device.LastError().toStdString();
        farEnd->serve();
        ASSERT_TRUE(waitFor([&] {
            return farEnd->enquiries() == 2 && context().state.gbfDeviceReady && context().device.BytesAvailable() == 0;
        }));
        ASSERT_EQ(context().mirror.strDeviceSerial.toLatin1(), serial);
        farEnd.reset();
        ASSERT_TRUE(waitFor([this] { return !context().device.Connected(); }));
        ASSERT_FALSE(context().state.gbfDeviceReady);
    }
    void cycles(int count)
    {
        for (int i = 0; i < count && !HasFatalFailure(); ++i)
            cycle(i);
    }

    void expectNoGrowth(int count)
    {
        cycles(kWarmUp);
        const int filesBefore = openFiles();
        const double memoryBefore = residentMegabytes();
        ASSERT_GT(filesBefore, 0);
        ASSERT_GT(memoryBefore, 0);
        cycles(count);
        EXPECT_EQ(openFiles(), filesBefore);
        const double growth = residentMegabytes() - memoryBefore;
        RecordProperty("grown", QString::number(growth, 'f', 2).toStdString() + " MiB");
        if (kMemoryTells) {
            EXPECT_LT(growth, kMemoryNoise);
        }
    }

    bool openSettings = false;
    std::unique_ptr<StartUp> program;
};

/// The settings dialog comes up with each connection and goes with each loss.
class ReconnectWithDialogTest : public ReconnectTest
{
protected:
    ReconnectWithDialogTest() { openSettings = true; }
};

} // namespace

TEST_F(ReconnectTest, AThousandUnpluggingsLeaveNoFileOpenAndNoMemoryBehind)
{
    expectNoGrowth(kCycles);
}

TEST_F(ReconnectWithDialogTest, NorDoesTheSettingsDialogThatComesAndGoes)
{
    expectNoGrowth(kCycles / 10);
}
