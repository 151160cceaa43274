// SPDX-License-Identifier: GPL-3.0-or-later
// What may happen while a message, the chooser or a wait runs the event loop: a frame, an unplug, a closed document, a
// new start, a quit. Each is injected at each such place; what is asserted here is that the program ends in a state
// that makes sense. That no memory is used after its end is the sanitizers' to say.
#include "LinkFixture.h"

#include <QTimer>

#include <string>

namespace {

using frametext::numbers;
using frametext::text;

enum class Injected
{
    Frame,
    Unplug,
    CloseDocument,
    Start,
    Quit,
};

enum class Place
{
    Chooser,
    WaitRound,
    ExtentsEvents,
    WrongGraph,
    AllLocked,
    NewFormat,
    Overwrite,
    FileNew,
    AbortOk,
    AbortCancel,
    Notice,
    PointRefused,
    Disconnected,
    WriteBufferFull,
    SettingsShown,
};

class Reentrancy : public LinkFixture, public ::testing::WithParamInterface<std::tuple<Place, Injected>>
{
protected:
    void inject()
    {
        if (injected)
            return;
        injected = true;
        switch (std::get<1>(GetParam())) {
        case Injected::Frame:
            peer().send(numbers('D', '0', 1, 1000, 2000) + numbers('H', '1', 1000, -3, 10, 1, 0) + numbers('E', '0') +
                        numbers('Y', '0'));
            settle();
            break;
        case Injected::Unplug:
            peer().unplug();
            settle();
            break;
        case Injected::CloseDocument:
            document.reset();
            settle();
            break;
        case Injected::Start:
            run.mnuTestStart_Click();
            break;
        case Injected::Quit:
            // What the main window does when it ends: settings, link, documents.
            module.DeviceSaveSettings();
            device.Close();
            document.reset();
            settle();
            break;
        }
    }

    void arrange()
    {
        setting("Prompts", "OpenSettings", 0);
        connectDevice();
        document = makeDocument(PenDocument::Amplitude);
        activate(document);
        document->gbfSendZoom = false;
        written();
    }

    std::unique_ptr<PenDocument> document;
    bool injected = false;
};

TEST_P(Reentrancy, NothingIsUsedThatIsGone)
{
    arrange();
    const Place place = std::get<0>(GetParam());
    switch (place) {
    case Place::Chooser:
        module.DeviceReset();
        window.onDeviceChooser = [this] {
            device.Open();
            inject();
        };
        run.mnuTestStart_Click();
        break;
    case Place::WaitRound:
        window.onProcessEvents = [this] { inject(); };
        run.mnuTestStart_Click();
        break;
    case Place::ExtentsEvents:
        startPlotting();
        document->gbfSendZoom = true;
        mirror.bfGraphExtents = true;
        QTimer::singleShot(0, [this] { inject(); });
        run.mnuTestStart_Click();
        break;
    case Place::WrongGraph:
        document->peGraph().setXAxisLabel(QStringLiteral("Phase trim"));
        messages.whileShowing = [this] { inject(); };
        run.mnuTestStart_Click();
        break;
    case Place::AllLocked:
        for (int pen = 0; pen < PenDocument::kPens; ++pen)
            document->UpdatePenLock(pen, true);
        messages.whileShowing = [this] { inject(); };
        run.mnuTestStart_Click();
        break;
    case Place::NewFormat:
        setNewerFormat(*document);
        messages.whileShowing = [this] { inject(); };
        run.mnuTestStart_Click();
        break;
    case Place::Overwrite:
        document->peGraph().setYData(0, 0, -1.0F);
        messages.whileShowing = [this] { inject(); };
        run.mnuTestStart_Click();
        break;
    case Place::FileNew:
        window.active = nullptr;
        window.onFileNew = [this] { inject(); };
        run.mnuTestStart_Click();
        break;
    case Place::AbortOk:
    case Place::AbortCancel:
        startPlotting();
        messages.replies = {place == Place::AbortOk ? UserMessages::ReplyOk : UserMessages::ReplyCancel};
        messages.whileShowing = [this] { inject(); };
        run.QuestionTestCancel();
        break;
    case Place::Notice:
        messages.whileShowing = [this] { inject(); };
        send(text('T', '1', "Something is wrong.") + numbers('D', '0', 1, 1000, 2000) +
             numbers('H', '1', 1000, -3, 10, 1, 0));
        break;
    case Place::PointRefused:
        startPlotting();
        messages.whileShowing = [this] { inject(); };
        send(numbers('H', '1', 1000, -3, 10, 1, 1025) + numbers('F', '1', 1000, 3, 10, 1, 1) +
             numbers('H', '1', 1000, -3, 10, 1, 1));
        break;
    case Place::Disconnected:
        setting("Prompts", "NotifyDevice", 1);
        startPlotting();
        messages.whileShowing = [this] { inject(); };
        peer().unplug();
        settle();
        break;
    case Place::WriteBufferFull:
        peer().setRoom(0);
        for (int i = 0; i < 100; ++i)
            device.Write(QString(2000, u'x'));
        messages.whileShowing = [this] { inject(); };
        settle();
        break;
    case Place::SettingsShown:
        device.Close();
        setting("Prompts", "OpenSettings", 1);
        window.onShowSettings = [this] { inject(); };
        run.OpenFirstDeviceFound();
        break;
    }
    settle();

    EXPECT_TRUE(injected);
    EXPECT_TRUE(device.DataEventEnabled());
    if (!device.Connected() && std::get<1>(GetParam()) != Injected::Quit) {
        EXPECT_FALSE(state.gbfPlotting);
    }
    // A test never runs on without the link or the document that it was started on.
    const QStringList commands = written();
    const auto injection = std::get<1>(GetParam());
    if (injection == Injected::Unplug || injection == Injected::CloseDocument || injection == Injected::Quit) {
        EXPECT_FALSE(commands.contains(QStringLiteral("amptest"))) << commands.join(u'|').toStdString();
    }
    // The program is still usable: a test can be run from here.
    messages.whileShowing = nullptr;
    messages.replies.clear();
    window.onProcessEvents = nullptr;
    peer().setRoom(-1);
    device.Close();
    settle();
    connectDevice();
    document = makeDocument(PenDocument::Amplitude);
    activate(document);
    mirror.bfGraphExtents = false;
    state.gbfPlotting = false;
    run.mnuTestStart_Click();
    EXPECT_TRUE(written().join(u'|').endsWith(QStringLiteral("y|amptest")));
    startPlotting();
    send(numbers('H', '1', 1000, -3, 10, 1, 0));
    EXPECT_EQ(document->peGraph().YData(0, 0), -3.0F);
}

std::string nameOf(const ::testing::TestParamInfo<std::tuple<Place, Injected>>& info)
{
    static const char* const places[] = {"Chooser",      "WaitRound",       "ExtentsEvents", "WrongGraph",
                                         "AllLocked",    "NewFormat",       "Overwrite",     "FileNew",
                                         "AbortOk",      "AbortCancel",     "Notice",        "PointRefused",
                                         "Disconnected", "WriteBufferFull", "SettingsShown"};
    static const char* const injections[] = {"Frame", "Unplug", "CloseDocument", "Start", "Quit"};
    return std::string(places[static_cast<int>(std::get<0>(info.param))]) +
           injections[static_cast<int>(std::get<1>(info.param))];
}

INSTANTIATE_TEST_SUITE_P(
    EveryPlace, Reentrancy,
    ::testing::Combine(::testing::Values(Place::Chooser, Place::WaitRound, Place::ExtentsEvents, Place::WrongGraph,
                                         Place::AllLocked, Place::NewFormat, Place::Overwrite, Place::FileNew,
                                         Place::AbortOk, Place::AbortCancel, Place::Notice, Place::PointRefused,
                                         Place::Disconnected, Place::WriteBufferFull, Place::SettingsShown),
                       ::testing::Values(Injected::Frame, Injected::Unplug, Injected::CloseDocument, Injected::Start,
                                         Injected::Quit)),
    nameOf);

} // namespace
