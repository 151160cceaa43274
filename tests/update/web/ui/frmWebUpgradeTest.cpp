// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/ui/frmWebUpgrade.h"

#include "UpdateDoubles.h"

#include "support/WebFolder.h"

#include <QLineEdit>
#include <QPointer>
#include <QProgressBar>
#include <QSvgWidget>
#include <QTest>
#include <QTimer>

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

const char* const kSelect = "Select the updates to download and install.";
const char* const kNoConnection =
    "Unable to connect to server  Please check your internet connection. Click Next to re-try.";
const char* const kUpToDate = "The Software and firmware you are using is up to date.";
const char* const kReady = "Click next to install the updates";
const char* const kFailed = "An error occured during update download. Click Cancel to continue.";
const char* const kStopQuestion = "Upgrade file download in proress. Are you sure you want to stop this operation?";

struct ChoicesDouble : UpdateChoices
{
    void setInstall() override { install = true; }
    void setFirmwareUpdate(bool ticked) override { firmware = ticked; }
    void setSoftwareUpdate(bool ticked) override { software = ticked; }
    bool install = false;
    std::optional<bool> firmware, software;
};

class frmWebUpgradeTest : public UpdateFixture
{
protected:
    void make() { form = new frmWebUpgrade({preferences, messages, firmware, choices, limits}); }
    ~frmWebUpgradeTest() override { delete form; }

    std::string action() { return findControl<QLabel>(form, "lblAction")->text().toStdString(); }
    QPushButton* next() { return findControl<QPushButton>(form, "cmdNext"); }
    QPushButton* cancel() { return findControl<QPushButton>(form, "cmdOkCancel"); }
    QPushButton* newUrl() { return findControl<QPushButton>(form, "cmdNewURL"); }
    QCheckBox* program() { return findControl<QCheckBox>(form, "chkSoftwareVersion"); }
    QCheckBox* instrument() { return findControl<QCheckBox>(form, "chkFirmwareVersion"); }
    QProgressBar* bar() { return findControl<QProgressBar>(form, "webProgressBar"); }
    std::string download() { return findControl<QLabel>(form, "lblDownload")->text().toStdString(); }
    void press(QPushButton* button) { QTest::mouseClick(button, Qt::LeftButton); }
    /// On the screen, with the query behind it.
    void query()
    {
        make();
        form->show();
        ASSERT_TRUE(
            QTest::qWaitFor([this] { return next()->isEnabled() && !action().starts_with("Checking"); }, 20000));
    }
    /// Both are offered and served.
    void offerBoth()
    {
        list({"MGV9R9B1.deb", "T46V9R1B1.mfw"});
        server.serve("/updates/MGV9R9B1.deb", "a program");
        server.serve("/updates/MGV9R9B1.deb.minisig", "a signature");
        server.serve("/updates/T46V9R1B1.mfw", "a firmware");
    }
    /// Something happens as soon as the path is asked for.
    void onRequest(const char* path, const std::function<void()>& act)
    {
        server.answer(path, [this, act](QTcpSocket& socket) {
            socket.write(HostileServer::head(100) + "half");
            QTimer::singleShot(50, form.data(), act);
        });
    }
    std::vector<std::string> told() const
    {
        std::vector<std::string> lines;
        for (const auto& message : messages.shown)
            lines.push_back(QString("%1|%2|%3").arg(message.title, message.text).arg(message.style).toStdString());
        return lines;
    }

    FirmwareDouble firmware;
    ChoicesDouble choices;
    QPointer<frmWebUpgrade> form;
};

} // namespace

TEST_F(frmWebUpgradeTest, ItOpensPaintedAndAsksAfterATenthOfASecond)
{
    offerBoth();
    make();
    EXPECT_EQ(form->giCurrentStep, 1);
    EXPECT_EQ(action(), "Checking the internet for updates.\nPlease wait.");
    EXPECT_EQ(newUrl()->text(), "&Set URL");
    EXPECT_EQ(next()->text(), "&Next >>");
    EXPECT_EQ(cancel()->text(), "&Cancel");
    EXPECT_EQ(program()->text(), "MarrowickGraph &Software Version");
    EXPECT_EQ(instrument()->text(), "T46 &Firmware Version");
    EXPECT_EQ(download(), "");
    EXPECT_EQ(findControl<QTimer>(form, "Timer")->interval(), 100);
    EXPECT_TRUE(findControl<QTimer>(form, "Timer")->isSingleShot());
    form->show();
    EXPECT_FALSE(program()->isVisible());
    EXPECT_FALSE(instrument()->isVisible());
    EXPECT_FALSE(bar()->isVisible());
    EXPECT_THAT(server.requests, IsEmpty());
    const auto* const picture = findControl<QSvgWidget>(form, "imgWebUpdate");
    EXPECT_EQ(picture->geometry(), QRect(0, 0, form->width() * 2280 / 6120, form->height()));
    EXPECT_TRUE(QTest::qWaitFor([this] { return form->giCurrentStep == 2; }, 20000));
}

TEST_F(frmWebUpgradeTest, WhatIsNewerIsOfferedTickedAndStored)
{
    offerBoth();
    query();
    EXPECT_EQ(form->giCurrentStep, 2);
    EXPECT_EQ(action(), kSelect);
    EXPECT_FALSE(newUrl()->isVisible()) << "what was found stays with its address";
    EXPECT_EQ(program()->text(), "Download software version 9.9");
    EXPECT_EQ(instrument()->text(), "Download firmware version 9.1");
    EXPECT_TRUE(program()->isVisible() && program()->isChecked());
    EXPECT_TRUE(instrument()->isVisible() && instrument()->isChecked());
    EXPECT_EQ(choices.software, true);
    EXPECT_EQ(choices.firmware, true);
    EXPECT_EQ(stored("SoftwareUpgrade", "FileName"), updates() + "/MGV9R9B1.deb");
    EXPECT_EQ(stored("FirmwareUpgrade", "FileName"), updates() + "/T46V9R1B1.mfw");
    EXPECT_EQ(stored("Upgrade", "Available"), "True");
    EXPECT_THAT(server.paths(), ElementsAre("/updates", "/updates")) << "one query each, the firmware first";
    EXPECT_FALSE(QFile::exists(updates())) << "a query writes no file";
}

TEST_F(frmWebUpgradeTest, AListingWithoutAQuotedNameOfTheProgramGivesTheConnectionMessage)
{
    for (const char* page : {"<html>nothing quoted, MGV9R9B1.deb</html>", "\"T46V9R1B1.mfw\"", ""}) {
        server.serve("/updates", page);
        query();
        EXPECT_EQ(action(), kNoConnection) << page;
        EXPECT_EQ(form->giCurrentStep, 1);
        EXPECT_TRUE(next()->isVisible() && next()->isEnabled());
        EXPECT_EQ(stored("Upgrade", "Available"), "(none)");
        delete form;
    }
}

TEST_F(frmWebUpgradeTest, WithoutAnAddressTheConnectionMessageComesAndTheWayToSetOneIsThere)
{
    preferences.setValue(options::kWebUrl, QString());
    query();
    EXPECT_EQ(action(), kNoConnection);
    EXPECT_TRUE(newUrl()->isVisible());
    offerBoth();
    QTimer::singleShot(100, [this] {
        auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        ASSERT_TRUE(dialog);
        findControl<QLineEdit>(dialog, "txtURL")->setText(server.url());
        QTest::mouseClick(findControl<QPushButton>(dialog, "OKButton"), Qt::LeftButton);
    });
    press(newUrl());
    press(next());
    EXPECT_FALSE(newUrl()->isVisible()) << "it goes with the first try";
    EXPECT_EQ(form->giCurrentStep, 2);
}

TEST_F(frmWebUpgradeTest, ANameThatLeadsElsewhereGivesTheConnectionMessage)
{
    for (const char* name : {"MG/../../V9R9B1.deb", "MG..V9R9B1", "MGV9R9B1\x01.deb",
                             "MG\xff"
                             "V9R9B1.deb"}) {
        list({name});
        query();
        EXPECT_EQ(action(), kNoConnection) << name;
        EXPECT_EQ(stored("SoftwareUpgrade", "FileName"), "(none)");
        delete form;
    }
}

TEST_F(frmWebUpgradeTest, AVersionEqualToTheInstalledOneOffersNothing)
{
    list({"MGV1R28B9.deb", "T46V1R20B9.mfw"});
    query();
    EXPECT_EQ(action(), kUpToDate);
    EXPECT_EQ(form->giCurrentStep, 4);
    EXPECT_FALSE(next()->isVisible());
    EXPECT_EQ(cancel()->text(), "&Finish");
    EXPECT_EQ(stored("Upgrade", "Available"), "False");
    EXPECT_EQ(stored("SoftwareUpgrade", "FileName"), "(none)");
    EXPECT_FALSE(choices.software || choices.firmware);
    press(cancel());
    EXPECT_FALSE(form->isVisible());
}

TEST_F(frmWebUpgradeTest, WithoutAModelTheFirmwareIsNotAskedFor)
{
    firmware.tag.clear();
    firmware.connected = false;
    offerBoth();
    query();
    EXPECT_THAT(server.paths(), ElementsAre("/updates"));
    EXPECT_FALSE(instrument()->isVisible());
    EXPECT_EQ(stored("FirmwareUpgrade", "FileName"), "(none)");
}

TEST_F(frmWebUpgradeTest, WithAModelButNoDeviceTheOfferStaysHiddenAndNextStillLeadsOn)
{
    firmware.connected = false;
    list({"MGV1R28B3.deb", "T46V9R1B1.mfw"});
    query();
    EXPECT_EQ(form->giCurrentStep, 2);
    EXPECT_EQ(stored("Upgrade", "Available"), "True");
    EXPECT_FALSE(instrument()->isVisible());
    EXPECT_FALSE(instrument()->isChecked());
    EXPECT_FALSE(choices.firmware);
    press(next());
    EXPECT_EQ(action(), "No updates have been selected. Click Cancel to continue.");
    EXPECT_EQ(form->giCurrentStep, 4);
    EXPECT_FALSE(next()->isVisible());
}

TEST_F(frmWebUpgradeTest, AFirmwareThatIsNotListedNeedsNoSpecialCase)
{
    firmware.major = firmware.minor = 0;
    list({"MGV1R28B3.deb"});
    query();
    EXPECT_EQ(action(), kUpToDate);
}

TEST_F(frmWebUpgradeTest, BothAreFetchedIntoTheUpdateFolderWithTheProgramsSignature)
{
    offerBoth();
    query();
    press(next());
    EXPECT_EQ(action(), kReady);
    EXPECT_EQ(form->giCurrentStep, 3);
    EXPECT_TRUE(next()->isVisible() && next()->isEnabled());
    EXPECT_THAT(files(), ElementsAre("MGV9R9B1.deb", "MGV9R9B1.deb.minisig", "T46V9R1B1.mfw"));
    EXPECT_EQ(content("MGV9R9B1.deb"), "a program");
    EXPECT_EQ(content("MGV9R9B1.deb.minisig"), "a signature");
    EXPECT_EQ(content("T46V9R1B1.mfw"), "a firmware");
    EXPECT_EQ(download(), "");
    EXPECT_FALSE(bar()->isVisible());
    EXPECT_EQ(bar()->value(), 100);
    EXPECT_THAT(told(), IsEmpty());
    press(next());
    EXPECT_TRUE(choices.install);
    EXPECT_EQ(choices.software, true);
    EXPECT_EQ(choices.firmware, true);
    EXPECT_FALSE(form->isVisible());
}

TEST_F(frmWebUpgradeTest, ARealServersFolderIsOfferedAndFetched)
{
    WebFolder web;
    const QByteArray content = QByteArray("0123456789").repeated(50000);
    ASSERT_TRUE(web.started() && web.add("MGV9R9B1.deb", content) && web.add("MGV9R9B1.deb.minisig", "a signature") &&
                web.add("T46V9R1B1.mfw", "a firmware"));
    preferences.setValue(options::kWebUrl, web.url());
    query();
    EXPECT_EQ(action(), kSelect);
    press(next());
    EXPECT_EQ(action(), kReady);
    EXPECT_THAT(files(), ElementsAre("MGV9R9B1.deb", "MGV9R9B1.deb.minisig", "T46V9R1B1.mfw"));
    EXPECT_EQ(content.toStdString(), this->content("MGV9R9B1.deb"));
}

TEST_F(frmWebUpgradeTest, ATickOnTheProgramAloneFetchesNoFirmware)
{
    offerBoth();
    query();
    QTest::keyClick(instrument(), Qt::Key_Space);
    press(next());
    EXPECT_THAT(files(), ElementsAre("MGV9R9B1.deb", "MGV9R9B1.deb.minisig"));
    press(next());
    EXPECT_EQ(choices.firmware, false);
    EXPECT_EQ(choices.software, true);
}

TEST_F(frmWebUpgradeTest, TheTextsOfADownloadAreShownWhileItRuns)
{
    offerBoth();
    std::vector<std::string> seen;
    const auto look = [this, &seen](const char* path) {
        server.answer(path, [this, &seen](QTcpSocket& socket) {
            socket.write(HostileServer::head(4) + "ha");
            QTimer::singleShot(50, &socket, [this, &seen, &socket] {
                seen.push_back(action() + '|' + download() + '|' + std::to_string(bar()->value()) +
                               (bar()->isVisible() ? "|shown" : "") + (instrument()->isEnabled() ? "|open" : "") +
                               (program()->isEnabled() ? "|open" : "") + (next()->isEnabled() ? "|next" : ""));
                socket.write("lf");
                socket.disconnectFromHost();
            });
        });
    };
    look("/updates/T46V9R1B1.mfw");
    look("/updates/MGV9R9B1.deb");
    query();
    press(next());
    EXPECT_THAT(seen,
                ElementsAre("Downloading the selected updates. Please wait.|Getting Firmware upgrade|50|shown|open",
                            "Downloading the selected updates. Please wait.|Getting Software upgrade|50|shown"));
    EXPECT_EQ(form->giCurrentStep, 3);
}

TEST_F(frmWebUpgradeTest, AShortTransferIsToldAndStillLeadsToTheInstallation)
{
    offerBoth();
    server.answer("/updates/MGV9R9B1.deb", HostileServer::head(100) + "half");
    query();
    press(next());
    EXPECT_THAT(told(), ElementsAre("Download Error|File:MGV9R9B1.deb did not download correctly|16"));
    EXPECT_EQ(form->giCurrentStep, 3);
    EXPECT_EQ(action(), kReady);
    EXPECT_THAT(files(), ElementsAre("MGV9R9B1.deb.part", "T46V9R1B1.mfw"));
}

TEST_F(frmWebUpgradeTest, ALengthThatCannotBeReadFallsToTheErrorText)
{
    for (const char* length : {"", "Content-Length: none\r\n"}) {
        offerBoth();
        server.answer("/updates/MGV9R9B1.deb",
                      QByteArray("HTTP/1.1 200 OK\r\n") + length + "Connection: close\r\n\r\na program");
        query();
        press(next());
        EXPECT_EQ(action(), kFailed);
        EXPECT_EQ(form->giCurrentStep, 4);
        EXPECT_FALSE(next()->isVisible());
        EXPECT_THAT(told(), IsEmpty());
        delete form;
    }
}

TEST_F(frmWebUpgradeTest, AFileThatIsGoneFallsToTheErrorTextWhateverComesBehindIt)
{
    offerBoth();
    server.answer("/updates/T46V9R1B1.mfw", "HTTP/1.1 404 Gone\r\nContent-Length: 4\r\n\r\nnone");
    query();
    press(next());
    EXPECT_EQ(action(), kFailed);
    EXPECT_EQ(form->giCurrentStep, 4);
    EXPECT_THAT(files(), ElementsAre("MGV9R9B1.deb", "MGV9R9B1.deb.minisig"));
    press(cancel());
    EXPECT_FALSE(form->isVisible());
}

TEST_F(frmWebUpgradeTest, WithoutASignatureOnTheServerTheProgramIsFetchedAllTheSame)
{
    offerBoth();
    server.answer("/updates/MGV9R9B1.deb.minisig", "HTTP/1.1 404 Gone\r\nContent-Length: 4\r\n\r\nnone");
    query();
    press(next());
    EXPECT_EQ(form->giCurrentStep, 3);
    EXPECT_THAT(files(), ElementsAre("MGV9R9B1.deb", "T46V9R1B1.mfw"));
}

TEST_F(frmWebUpgradeTest, NothingIsWrittenOutsideTheUpdateFolder)
{
    offerBoth();
    query();
    const QString elsewhere = folder.filePath("elsewhere/MGV9R9B1.deb");
    preferences.setValue(options::kSoftwareUpgradeFile, elsewhere);
    preferences.setValue(options::kFirmwareUpgradeFile, updates() + "/../T46V9R1B1.mfw");
    press(next());
    EXPECT_EQ(action(), kFailed);
    EXPECT_FALSE(QFile::exists(folder.filePath("elsewhere")));
    EXPECT_FALSE(QFile::exists(folder.filePath("T46V9R1B1.mfw")));
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(frmWebUpgradeTest, WithoutStoredNamesTheOldOnesAreFetched)
{
    offerBoth();
    server.serve("/updates/Setup.exe", "old program");
    server.serve("/updates/Upgrade.mfw", "old firmware");
    query();
    preferences.setValue(options::kSoftwareUpgradeFile, QString());
    preferences.setValue(options::kFirmwareUpgradeFile, QString());
    press(next());
    EXPECT_EQ(content("Setup.exe"), "old program");
    EXPECT_EQ(content("Upgrade.mfw"), "old firmware");
}

TEST_F(frmWebUpgradeTest, CancelDuringADownloadAsksAndYesStops)
{
    offerBoth();
    onRequest("/updates/T46V9R1B1.mfw", [this] { press(cancel()); });
    messages.replies = {UserMessages::ReplyYes};
    query();
    press(next());
    EXPECT_THAT(told(), ElementsAre(std::string("Internet Updates|") + kStopQuestion + "|36",
                                    "Download Error|File:T46V9R1B1.mfw did not download correctly|16"));
    EXPECT_EQ(action(), kFailed);
    EXPECT_EQ(form->giCurrentStep, 4);
    EXPECT_THAT(files(), ElementsAre("T46V9R1B1.mfw.part")) << "the program is not begun";
    EXPECT_TRUE(form->isVisible());
    press(cancel());
    EXPECT_FALSE(form->isVisible());
}

TEST_F(frmWebUpgradeTest, CancelDuringADownloadAsksAndNoGoesOn)
{
    offerBoth();
    server.answer("/updates/T46V9R1B1.mfw", [this](QTcpSocket& socket) {
        socket.write(HostileServer::head(4) + "ha");
        QTimer::singleShot(50, form.data(), [this, &socket] {
            press(cancel());
            socket.write("lf");
        });
    });
    messages.replies = {UserMessages::ReplyNo};
    query();
    press(next());
    EXPECT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(form->giCurrentStep, 3);
    EXPECT_EQ(content("T46V9R1B1.mfw"), "half");
}

TEST_F(frmWebUpgradeTest, TheCloseBoxDuringADownloadAsksAndCancelStopsIt)
{
    offerBoth();
    onRequest("/updates/T46V9R1B1.mfw", [this] { form->close(); });
    messages.replies = {UserMessages::ReplyCancel};
    query();
    choices = {};
    press(next());
    EXPECT_THAT(told(), ElementsAre(std::string("Internet Updates|") + kStopQuestion + "|33",
                                    "Download Error|File:T46V9R1B1.mfw did not download correctly|16"));
    EXPECT_TRUE(form->isVisible());
    EXPECT_EQ(action(), kFailed);
    EXPECT_FALSE(choices.firmware || choices.software);
}

TEST_F(frmWebUpgradeTest, TheCloseBoxDuringADownloadAsksAndOkClosesAndClearsTheChoices)
{
    offerBoth();
    onRequest("/updates/T46V9R1B1.mfw", [this] { form->close(); });
    messages.replies = {UserMessages::ReplyOk};
    query();
    press(next());
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(choices.firmware, false);
    EXPECT_EQ(choices.software, false);
    EXPECT_EQ(messages.shown.size(), 1u);
    EXPECT_THAT(files(), ElementsAre("T46V9R1B1.mfw.part"));
}

TEST_F(frmWebUpgradeTest, CancelWhileTheSignatureComesAsksAndYesEndsInTheErrorText)
{
    offerBoth();
    onRequest("/updates/MGV9R9B1.deb.minisig", [this] { press(cancel()); });
    messages.replies = {UserMessages::ReplyYes};
    query();
    press(next());
    EXPECT_EQ(messages.shown.size(), 1u);
    EXPECT_EQ(action(), kFailed);
    EXPECT_THAT(files(), ElementsAre("MGV9R9B1.deb", "T46V9R1B1.mfw"));
}

TEST_F(frmWebUpgradeTest, CancelBeforeTheChoiceIsFetchedClosesWithoutAQuestion)
{
    offerBoth();
    query();
    press(cancel());
    EXPECT_FALSE(form->isVisible());
    EXPECT_THAT(told(), IsEmpty());
    EXPECT_THAT(files(), IsEmpty());
    EXPECT_EQ(stored("Upgrade", "Available"), "True");
}

TEST_F(frmWebUpgradeTest, CancelBeforeTheInstallationLeavesTheChoicesAsTheQuerySetThem)
{
    offerBoth();
    query();
    press(next());
    press(cancel());
    EXPECT_FALSE(form->isVisible());
    EXPECT_FALSE(choices.install);
    EXPECT_THAT(told(), IsEmpty());
}

TEST_F(frmWebUpgradeTest, CancelDuringTheQueryClosesAndStoresNothing)
{
    onRequest("/updates", [this] { press(cancel()); });
    make();
    form->show();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !form->isVisible(); }, 20000));
    EXPECT_EQ(server.requests.size(), 1) << "nothing more is asked";
    EXPECT_EQ(stored("Upgrade", "Available"), "(none)");
    EXPECT_EQ(action(), "Checking the internet for updates.\nPlease wait.");
    EXPECT_THAT(told(), IsEmpty());
}

TEST_F(frmWebUpgradeTest, EscapeIsCancel)
{
    offerBoth();
    onRequest("/updates/T46V9R1B1.mfw", [this] { QTest::keyClick(form, Qt::Key_Escape); });
    messages.replies = {UserMessages::ReplyYes};
    query();
    press(next());
    EXPECT_EQ(messages.shown.front().style, UserMessages::YesNo | UserMessages::Question);
    QTest::keyClick(form, Qt::Key_Escape);
    EXPECT_FALSE(form->isVisible());
}

TEST_F(frmWebUpgradeTest, AWindowThatIsDestroyedInMidDownloadTakesItsTransferWithIt)
{
    offerBoth();
    onRequest("/updates/T46V9R1B1.mfw", [this] { delete form; });
    query();
    form->FetchSelectedUpdates();
    EXPECT_FALSE(form);
    EXPECT_THAT(files(), ElementsAre("T46V9R1B1.mfw.part"));
}

TEST_F(frmWebUpgradeTest, AServerThatStallsEndsInTheToldTextWithinTheLimit)
{
    server.stall("/updates", "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n\"MGV9R9B1.deb\"");
    QElapsedTimer time;
    time.start();
    query();
    EXPECT_EQ(action(), kNoConnection);
    EXPECT_LT(time.elapsed(), 15000);
}
