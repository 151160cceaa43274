// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/korvalink/DeviceList.h"

#include "controls/korvalink/KorvaLink.h"
#include "controls/korvalink/MemoryTransport.h"
#include "controls/korvalink/RuntimeDeviceSource.h"
#include "controls/korvalink/UsbDeviceSource.h"
#include "support/Pty.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Devices as a test says.
class FixedSource : public DeviceSource
{
public:
    explicit FixedSource(std::vector<DeviceEntry>& entries)
        : m_entries(entries)
    {}
    std::vector<DeviceEntry> devices() const override { return m_entries; }
    std::unique_ptr<Transport> makeTransport(const DeviceEntry& device) const override
    {
        auto [transport, peer] = MemoryTransport::makePair();
        if (!device.problem.isEmpty())
            peer->failOpen(device.problem);
        return std::move(transport);
    }

private:
    std::vector<DeviceEntry>& m_entries;
};

std::vector<std::unique_ptr<DeviceSource>> sourcesOf(std::unique_ptr<DeviceSource> a,
                                                     std::unique_ptr<DeviceSource> b = {})
{
    std::vector<std::unique_ptr<DeviceSource>> sources;
    sources.push_back(std::move(a));
    if (b)
        sources.push_back(std::move(b));
    return sources;
}

QStringList names(const DeviceList& list)
{
    QStringList all;
    for (int i = 0; i < list.count(); ++i)
        all += list.device(i).name;
    return all;
}

class RuntimeFolderTest : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(QDir().mkpath(folder)); }

    void link(const QString& name, const QString& target) { ASSERT_TRUE(QFile::link(target, folder + '/' + name)); }

    QTemporaryDir home;
    QString folder = home.filePath("marrowick/devices");
};

TEST_F(RuntimeFolderTest, ListsLinksToTerminalsByNameAndSkipsStaleOnes)
{
    Pty first;
    Pty second;
    Pty gone;
    link("T46-2", second.slavePath());
    link("T46-1", first.slavePath());
    link("T46-0", gone.slavePath());
    link("nowhere", "/dev/pts/no-such-terminal");
    link("null", "/dev/null");
    link("folder", home.path());
    QFile plain(folder + "/plain");
    ASSERT_TRUE(plain.open(QIODevice::WriteOnly));
    gone.unplug();

    DeviceList list(sourcesOf(std::make_unique<RuntimeDeviceSource>(folder)));
    EXPECT_EQ(list.count(), 0);
    list.refresh();
    EXPECT_EQ(names(list), QStringList({"T46-1", "T46-2"}));
    EXPECT_TRUE(list.device(0).problem.isEmpty());
    EXPECT_EQ(list.device(2), DeviceEntry());
    EXPECT_EQ(list.device(-1), DeviceEntry());
    EXPECT_EQ(list.makeTransport(2), nullptr);
    EXPECT_EQ(list.makeTransport(-1), nullptr);
}

// The number of a pseudo-terminal is given out again: an old link must not lead to somebody else's terminal.
TEST_F(RuntimeFolderTest, SkipsALinkOlderThanTheTerminalItPointsTo)
{
    Pty terminal;
    link("T46-1", terminal.slavePath());
    RuntimeDeviceSource source(folder);
    ASSERT_EQ(source.devices().size(), 1u);
    struct stat status
    {};
    ASSERT_EQ(::stat(terminal.slavePath().toLocal8Bit().constData(), &status), 0);
    timespec times[2] = {status.st_ctim, status.st_ctim};
    times[1].tv_sec -= 60;
    ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(folder + "/T46-1").constData(), times, AT_SYMLINK_NOFOLLOW), 0);
    EXPECT_TRUE(source.devices().empty());
}

TEST_F(RuntimeFolderTest, SkipsATerminalThatIsNoInstrumentOrSomebodyElses)
{
    link("console", "/dev/tty");
    Pty terminal;
    link("T46-1", terminal.slavePath());
    RuntimeDeviceSource source(folder);
    ASSERT_EQ(source.devices().size(), 1u);
    EXPECT_EQ(source.devices().front().name, "T46-1");
    // Only the superuser can give a terminal away; for others it stays theirs.
    const bool given = ::chown(terminal.slavePath().toLocal8Bit().constData(), 65534, gid_t(-1)) == 0;
    ASSERT_TRUE(QFile::remove(folder + "/T46-1"));
    link("T46-1", terminal.slavePath());
    EXPECT_EQ(source.devices().empty(), given);
}

TEST_F(RuntimeFolderTest, AMissingFolderIsAnEmptyList)
{
    EXPECT_TRUE(RuntimeDeviceSource(home.filePath("not/there")).devices().empty());
}

TEST_F(RuntimeFolderTest, TheStandardListReadsTheUsersRuntimeFolder)
{
    const QString standard = RuntimeDeviceSource().folder();
    EXPECT_EQ(standard, qEnvironmentVariable("XDG_RUNTIME_DIR") + "/marrowick/devices");
    ASSERT_TRUE(QDir().mkpath(standard));
    Pty terminal;
    ASSERT_TRUE(QFile::link(terminal.slavePath(), standard + "/T46-7"));
    DeviceList devices;
    KorvaLink korva(devices);
    int index = 0;
    QString name;
    const int count = korva.DeviceCount();
    while (index < count && (!korva.GetDeviceName(index, name) || name != "T46-7"))
        ++index;
    ASSERT_LT(index, count);
    korva.Configure("KorvaLink", 1, 0, index);
    EXPECT_TRUE(korva.Open()) << korva.LastError().toStdString();
    EXPECT_EQ(korva.ConnectedName(), "T46-7");
    QFile::remove(standard + "/T46-7");
}

TEST_F(RuntimeFolderTest, ADeviceThatMayNotBeOpenedIsListedWithItsProblem)
{
    Pty terminal;
    ASSERT_EQ(::chmod(terminal.slavePath().toLocal8Bit().constData(), 0000), 0);
    link("T46-1", terminal.slavePath());
    if (::geteuid() == 0) {
        // Both are the user's own, as for any other user who runs this.
        constexpr uid_t kNobody = 65534;
        ASSERT_EQ(::chown(terminal.slavePath().toLocal8Bit().constData(), kNobody, gid_t(-1)), 0);
        ASSERT_EQ(::lchown(QFile::encodeName(folder + "/T46-1").constData(), kNobody, gid_t(-1)), 0);
    }
    home.setAutoRemove(true);
    ASSERT_EQ(::chmod(home.path().toLocal8Bit().constData(), 0755), 0);
    DeviceList list(sourcesOf(std::make_unique<RuntimeDeviceSource>(folder)));
    KorvaLink korva(list);
    {
        const OrdinaryUser user;
        ASSERT_EQ(korva.DeviceCount(), 1);
        EXPECT_TRUE(korva.GetDeviceProblem(0).contains("70-marrowick.rules"));
        korva.Configure("KorvaLink", 1, 0, 0);
        EXPECT_FALSE(korva.Open());
        EXPECT_TRUE(korva.LastError().contains("70-marrowick.rules")) << korva.LastError().toStdString();
    }
}

TEST(DeviceListTest, KeepsTheOrderOfItsSourcesAndItsSnapshot)
{
    std::vector<DeviceEntry> usb = {{"B", "/dev/ttyACM1", {}}};
    std::vector<DeviceEntry> folder = {{"A", "/x/A", {}}};
    DeviceList list(sourcesOf(std::make_unique<FixedSource>(usb), std::make_unique<FixedSource>(folder)));
    list.refresh();
    EXPECT_EQ(names(list), QStringList({"B", "A"}));
    usb.clear();
    EXPECT_EQ(names(list), QStringList({"B", "A"}));
    list.refresh();
    EXPECT_EQ(names(list), QStringList({"A"}));
}

TEST(DeviceListTest, TheLinkOpensTheSelectedDeviceAndSaysWhyNot)
{
    std::vector<DeviceEntry> present = {{"locked", "a", "You may not open it."}, {"T46-1", "b", {}}};
    DeviceList list(sourcesOf(std::make_unique<FixedSource>(present)));
    KorvaLink link(list);
    QSignalSpy connected(&link, &KorvaLink::DeviceConnected);
    link.Configure("KorvaLink", 1, 0, 0);
    EXPECT_FALSE(link.Open());
    EXPECT_EQ(link.LastError(), "You may not open it.");
    link.Configure("KorvaLink", 1, 0, 1);
    EXPECT_TRUE(link.Open());
    EXPECT_EQ(link.ConnectedName(), "T46-1");
    EXPECT_EQ(connected.count(), 1);
    link.Configure("SomethingElse", 1, 0, 1);
    EXPECT_FALSE(link.Open());
    EXPECT_FALSE(link.Connected());
}

TEST(DeviceListTest, NamesAreCutToTheSizeOfTheBuffer)
{
    std::vector<DeviceEntry> present = {{QString(200, 'n'), "a", {}}};
    DeviceList list(sourcesOf(std::make_unique<FixedSource>(present)));
    KorvaLink link(list);
    ASSERT_EQ(link.DeviceCount(), 1);
    QString name;
    EXPECT_TRUE(link.GetDeviceName(0, name, 128));
    EXPECT_EQ(name, QString(127, 'n'));
    EXPECT_TRUE(link.GetDeviceName(0, name, 0));
    EXPECT_EQ(name, "");
    EXPECT_FALSE(link.GetDeviceName(1, name, 128));
}

TEST(DeviceListTest, DevicesAreWatchedOnlyWhileSomebodyListens)
{
    std::vector<DeviceEntry> present;
    DeviceList list(sourcesOf(std::make_unique<FixedSource>(present)));
    KorvaLink link(list);
    EXPECT_FALSE(list.isWatching());
    const auto connection = QObject::connect(&link, &KorvaLink::DeviceAttached, &link, [] {});
    EXPECT_TRUE(list.isWatching());
    QObject::disconnect(connection);
    QCoreApplication::processEvents();
    EXPECT_FALSE(list.isWatching());
}

TEST(DeviceListTest, AttachedIsRaisedForANewDeviceOnlyAndAgainWhenItComesBack)
{
    QTemporaryDir home;
    const QString folder = home.filePath("marrowick/devices");
    Pty old;
    Pty fresh;
    ASSERT_TRUE(QDir().mkpath(folder));
    ASSERT_TRUE(QFile::link(old.slavePath(), folder + "/old"));
    DeviceList list(sourcesOf(std::make_unique<RuntimeDeviceSource>(folder)));
    KorvaLink link(list);
    QSignalSpy attached(&link, &KorvaLink::DeviceAttached);
    QSignalSpy appeared(&list, &DeviceList::deviceAppeared);
    ASSERT_TRUE(list.isWatching());
    ASSERT_TRUE(QFile::link(fresh.slavePath(), folder + "/fresh"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return appeared.count() == 1; }));
    EXPECT_EQ(appeared.last().first().toString(), "fresh");

    // Neither a link taken away nor a stale one is an arrival: the next one told of is the third.
    ASSERT_TRUE(QFile::remove(folder + "/fresh"));
    ASSERT_TRUE(QFile::link("/dev/pts/no-such-terminal", folder + "/stale"));
    ASSERT_TRUE(QFile::link(old.slavePath(), folder + "/third"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return appeared.count() == 2; }));
    EXPECT_EQ(appeared.last().first().toString(), "third");

    ASSERT_TRUE(QFile::link(fresh.slavePath(), folder + "/fresh"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return appeared.count() == 3; }));
    EXPECT_EQ(appeared.last().first().toString(), "fresh");
    EXPECT_EQ(attached.count(), 3);
}

TEST(DeviceListTest, AnInstrumentInAnotherSocketIsAnArrival)
{
    QTemporaryDir home;
    const QString folder = home.filePath("marrowick/devices");
    Pty one, other;
    ASSERT_TRUE(QDir().mkpath(folder));
    ASSERT_TRUE(QFile::link(one.slavePath(), folder + "/T46-1"));
    DeviceList list(sourcesOf(std::make_unique<RuntimeDeviceSource>(folder)));
    KorvaLink link(list);
    QSignalSpy attached(&link, &KorvaLink::DeviceAttached);
    ASSERT_TRUE(QFile::link(other.slavePath(), folder + "/new"));
    // In one step, as a cable is moved between two looks.
    ASSERT_EQ(::rename((folder + "/new").toLocal8Bit().constData(), (folder + "/T46-1").toLocal8Bit().constData()), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return attached.count() >= 1; }));
}

TEST(DeviceListTest, SeesAFolderThatIsMadeLater)
{
    QTemporaryDir home;
    const QString folder = home.filePath("marrowick/devices");
    Pty terminal;
    DeviceList list(sourcesOf(std::make_unique<RuntimeDeviceSource>(folder)));
    QSignalSpy appeared(&list, &DeviceList::deviceAppeared);
    list.startWatching();
    ASSERT_TRUE(QDir().mkpath(folder));
    ASSERT_TRUE(QFile::link(terminal.slavePath(), folder + "/T46-1"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return appeared.count() == 1; }));
}

TEST(DeviceListTest, AListenerMayStopTheWatching)
{
    std::vector<DeviceEntry> present;
    QTemporaryDir home;
    Pty one;
    Pty two;
    DeviceList list(sourcesOf(std::make_unique<RuntimeDeviceSource>(home.path())));
    int raised = 0;
    QObject::connect(&list, &DeviceList::deviceAppeared, &list, [&] {
        ++raised;
        list.stopWatching();
    });
    list.startWatching();
    ASSERT_TRUE(QFile::link(one.slavePath(), home.filePath("one")));
    ASSERT_TRUE(QTest::qWaitFor([&] { return raised == 1; }));
    ASSERT_TRUE(QFile::link(two.slavePath(), home.filePath("two")));
    QCoreApplication::processEvents();
    EXPECT_EQ(raised, 1);
    EXPECT_FALSE(list.isWatching());
}

UsbPort usbPort(const QString& name, const QString& serial, const QString& manufacturer, std::uint16_t vendor = 0x1234,
                std::uint16_t product = 0x5678)
{
    UsbPort port;
    port.name = name;
    port.path = "/dev/" + name;
    port.serialNumber = serial;
    port.manufacturer = manufacturer;
    port.product = "T46";
    port.vendorId = vendor;
    port.productId = product;
    return port;
}

TEST(UsbDeviceSourceTest, SelectsInstrumentsByManufacturerAndNamesThemBySerialNumber)
{
    const auto found =
        UsbDeviceSource::select({usbPort("ttyACM1", "T46-9", "MARROWICK Instruments"),
                                 usbPort("ttyACM0", "X", "Somebody"), usbPort("ttyACM2", "", "Marrowick")},
                                UsbDeviceSource::builtInTable());
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0], (DeviceEntry{"T46-9", "/dev/ttyACM1", {}}));
    EXPECT_EQ(found[1], (DeviceEntry{"ttyACM2", "/dev/ttyACM2", {}}));
}

TEST(UsbDeviceSourceTest, TellsPortsWithOneSerialNumberApart)
{
    const auto found = UsbDeviceSource::select(
        {usbPort("ttyACM1", "S", "Marrowick"), usbPort("ttyACM0", "S", "Marrowick")}, UsbDeviceSource::builtInTable());
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].name, "S (ttyACM0)");
    EXPECT_EQ(found[1].name, "S (ttyACM1)");
}

TEST(UsbDeviceSourceTest, ReadsATableOfNumbersAndTexts)
{
    const auto table = UsbDeviceSource::parseTable("# comment\n0123:aBcD # ours\n\nAcme Labs | DT46\nAcme\n| nothing\n"
                                                   "0000:1234\n12345:1\n");
    ASSERT_EQ(table.size(), 4u);
    EXPECT_EQ(table[0], (UsbIdentity{0x0123, 0xabcd, {}, {}}));
    EXPECT_EQ(table[1], (UsbIdentity{0, 0, "Acme Labs", "DT46"}));
    EXPECT_EQ(table[2], (UsbIdentity{0, 0, "Acme", {}}));
    EXPECT_EQ(table[3].manufacturerText, "12345:1");

    EXPECT_TRUE(UsbDeviceSource::matches(usbPort("a", "", "", 0x0123, 0xabcd), {table[0]}));
    EXPECT_FALSE(UsbDeviceSource::matches(usbPort("a", "", "", 0x0123, 0xabce), {table[0]}));
    EXPECT_FALSE(UsbDeviceSource::matches(usbPort("a", "", "Acme Labs"), {table[1]}));
    EXPECT_TRUE(UsbDeviceSource::matches(usbPort("a", "", "acme labs"), {table[2]}));
    EXPECT_FALSE(UsbDeviceSource::matches(usbPort("a", "", "Acme", 0), {table[2]}));
}

TEST(UsbDeviceSourceTest, TheTableCanBeExtendedInTheConfigurationFolder)
{
    const QString folder = qEnvironmentVariable("XDG_CONFIG_HOME") + "/marrowick";
    ASSERT_TRUE(QDir().mkpath(folder));
    QFile file(folder + "/usb-devices.conf");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("abcd:0001\n");
    file.close();
    const UsbDeviceSource source;
    EXPECT_TRUE(UsbDeviceSource::matches(usbPort("a", "", "", 0xabcd, 1), source.table()));
    file.remove();
    EXPECT_FALSE(UsbDeviceSource::matches(usbPort("a", "", "", 0xabcd, 1), UsbDeviceSource().table()));
}

} // namespace
