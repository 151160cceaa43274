// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/ui/frmAbout.h"
#include "shell/ui/MainWindowHarness.h"
#include "update/web/SigningKey.h"
#include "update/web/ui/frmUpdate.h"

#include <QCheckBox>
#include <QDeadlineTimer>
#include <QDesktopServices>
#include <QFile>
#include <QFileDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTimer>
#include <QUrl>

#include <algorithm>

namespace {

/// Takes what a desktop would open.
class Opener : public QObject
{
    Q_OBJECT

public:
    Opener() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open"); }
    ~Opener() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl& url) { opened.append(url); }
};

class FrmMainUpdateTest : public MainWindowHarness
{
protected:
    FrmMainUpdateTest()
    {
        QObject::connect(&m_poll, &QTimer::timeout, &m_poll, [this] { attend(); });
        m_poll.start(2);
    }

    /// Does this with the next modal window of that kind, once those told before have had their turn. A window that
    /// nobody expects, or that stays, is closed and counts as a failure: no test waits for ever.
    template <typename Window>
    void when(const std::function<void(Window&)>& act)
    {
        m_steps.push_back({[](QWidget& window) { return qobject_cast<Window*>(&window) != nullptr; },
                           [act](QWidget& window) { act(static_cast<Window&>(window)); }});
    }
    /// The main window's command, to its end; every step was taken.
    void runCommand(const char* name)
    {
        m_deadline.setRemainingTime(20000);
        trigger(name);
        EXPECT_TRUE(m_steps.empty()) << "a window did not come";
        m_steps.clear();
    }
    /// Ticks the program alone and goes on.
    void whenChooserInstall()
    {
        when<frmUpdate>([](frmUpdate& chooser) {
            chooser.findChild<QRadioButton*>(QStringLiteral("optInstall"))->click();
            chooser.findChild<QCheckBox*>(QStringLiteral("chkSoftwareUpdate"))->click();
            QTest::mouseClick(chooser.findChild<QPushButton*>(QStringLiteral("cmdNext")), Qt::LeftButton);
        });
    }
    void whenPickerTakesProposal()
    {
        when<QFileDialog>([](QFileDialog& picker) { static_cast<QDialog&>(picker).accept(); });
    }

    QString updates() { return preferences.value(options::kUpdateFiles.option); }
    /// In the folder of update files, for its owner alone.
    QString write(const QString& name, const QByteArray& bytes)
    {
        EXPECT_TRUE(QDir().mkpath(updates()));
        QFile file(updates() + u'/' + name);
        EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size());
        EXPECT_TRUE(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
        return file.fileName();
    }
    /// The installer that the file dialog will propose; it notes that it ran.
    QString writeInstaller(const QString& name)
    {
        const QString file = write(name, kInstaller);
        preferences.setValue(options::kSoftwareUpgradeFile, file);
        return file;
    }
    bool ran() { return QFile::exists(updates() + QStringLiteral("/started")); }

    const QByteArray kInstaller = "#!/bin/sh\nprintf started > \"$(dirname \"$0\")/started\"\n";
    const SigningKey key;

private:
    struct Step
    {
        std::function<bool(QWidget&)> fits;
        std::function<void(QWidget&)> act;
    };

    void attend()
    {
        QWidget* const window = QApplication::activeModalWidget();
        if (window == nullptr)
            return;
        if (m_deadline.hasExpired()) {
            ADD_FAILURE() << window->metaObject()->className() << " stayed";
            window->close();
            return;
        }
        if (std::find(m_met.begin(), m_met.end(), window) != m_met.end())
            return;
        m_met.emplace_back(window);
        if (m_steps.empty() || !m_steps.front().fits(*window)) {
            ADD_FAILURE() << "unexpected: " << window->metaObject()->className();
            window->close();
            return;
        }
        // Not from here: while a timer's slot runs it does not tick again, and an act may open the next window.
        QTimer::singleShot(0, window, [act = m_steps.front().act, window] { act(*window); });
        m_steps.erase(m_steps.begin());
    }

    std::vector<Step> m_steps;
    std::vector<QPointer<QWidget>> m_met; ///< one that comes to the front again is no new one
    QDeadlineTimer m_deadline;
    QTimer m_poll;
};

/// Trusts the keys of that folder for as long as the result lives.
auto trusting(const QString& folder)
{
    qputenv("MARROWICK_TRUSTED_KEYS", QFile::encodeName(folder));
    return qScopeGuard([] { qunsetenv("MARROWICK_TRUSTED_KEYS"); });
}

} // namespace

TEST_F(FrmMainUpdateTest, theButtonInAboutOpensTheChooser)
{
    load();
    when<frmAbout>([](frmAbout& about) {
        QTest::mouseClick(about.findChild<QPushButton*>(QStringLiteral("cmdUpgrade")), Qt::LeftButton);
        QTest::keyClick(&about, Qt::Key_Escape);
    });
    when<frmUpdate>([](frmUpdate& chooser) { QTest::keyClick(&chooser, Qt::Key_Escape); });
    runCommand("mnuHelpAbout");
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_FALSE(main->isUnloaded());
}

TEST_F(FrmMainUpdateTest, cancelAtASaveQuestionKeepsTheProgramAndAsksForNoInstaller)
{
    load();
    newDocument(PenDocument::Impedance)->SetModified();
    messages.replies = {UserMessages::ReplyOk, UserMessages::ReplyCancel};
    whenChooserInstall();
    runCommand("mnuHelpUpdate");
    EXPECT_EQ(messages.shown.size(), 2U);
    EXPECT_EQ(main->gcolDocuments().count(), 1);
    EXPECT_FALSE(main->isUnloaded());
}

TEST_F(FrmMainUpdateTest, aSignedInstallerIsRunAndTheProgramEnds)
{
    load();
    const auto trusted = trusting(updates());
    write(QStringLiteral("ours.pub"), key.publicKeyText());
    const QString file = writeInstaller(QStringLiteral("Setup.exe"));
    write(QStringLiteral("Setup.exe.minisig"), key.sign(kInstaller));
    newDocument(PenDocument::Impedance);
    whenChooserInstall();
    whenPickerTakesProposal();
    runCommand("mnuHelpUpdate");
    EXPECT_TRUE(QTest::qWaitFor([this] { return main->isUnloaded(); }, 20000));
    EXPECT_TRUE(QTest::qWaitFor([this] { return ran(); }, 20000)) << file.toStdString();
    EXPECT_EQ(messages.shown.size(), 1U) << "the question before it";
}

TEST_F(FrmMainUpdateTest, aSignedPackageGoesToTheDesktopsPackageInstallerAndTheProgramEnds)
{
    load();
    const auto trusted = trusting(updates());
    Opener opener;
    write(QStringLiteral("ours.pub"), key.publicKeyText());
    const QString file = writeInstaller(QStringLiteral("MGV9R9B1.deb"));
    write(QStringLiteral("MGV9R9B1.deb.minisig"), key.sign(kInstaller));
    whenChooserInstall();
    when<QFileDialog>([](QFileDialog& picker) {
        EXPECT_EQ(picker.windowTitle(), QStringLiteral("Open Upgrade File"));
        EXPECT_EQ(picker.selectedNameFilter(), QStringLiteral("Debian packages (*.deb)"));
        EXPECT_EQ(picker.selectedFiles().value(0).section(u'/', -1), QStringLiteral("MGV9R9B1.deb"));
        static_cast<QDialog&>(picker).accept();
    });
    runCommand("mnuHelpUpdate");
    EXPECT_TRUE(QTest::qWaitFor([this] { return main->isUnloaded(); }, 20000));
    EXPECT_EQ(opener.opened, QList<QUrl>{QUrl::fromLocalFile(file)});
    EXPECT_FALSE(ran());
}

TEST_F(FrmMainUpdateTest, eachReasonNotToStartAnInstallerHasItsSentenceAndTheProgramGoesOn)
{
    load();
    const auto trusted = trusting(updates());
    const QString publicKey = QStringLiteral("ours.pub"), signature = QStringLiteral("Setup.exe.minisig");
    const QString file = writeInstaller(QStringLiteral("Setup.exe"));
    const QFile::Permissions owner = QFile::ReadOwner | QFile::WriteOwner;
    const std::pair<std::function<void()>, QString> reasons[] = {
        {[] {}, QStringLiteral("No key for program updates is trusted here: %1 has none.").arg(updates())},
        {[&] { write(publicKey, key.publicKeyText()); },
         QStringLiteral("Its signature Setup.exe.minisig is not beside it.")},
        {[&] { write(signature, "signed"); },
         QStringLiteral("Setup.exe.minisig is no signature of the minisign program.")},
        {[&] { write(signature, SigningKey().sign(kInstaller)); },
         QStringLiteral("It was signed with the key [0-9A-F]+, which is not trusted here.")},
        {[&] { write(signature, key.sign("something else")); },
         QStringLiteral("It does not fit its signature: one of the two was changed or damaged. Fetch both again.")},
        {[&] {
             write(signature, key.sign(kInstaller));
             ASSERT_TRUE(QFile::setPermissions(file, owner | QFile::WriteOther));
         },
         QStringLiteral("Other users may write it. Take that right away and check where it came from.")},
        {[&] {
             ASSERT_TRUE(QFile::setPermissions(file, owner));
             ASSERT_TRUE(QFile::setPermissions(updates(), QFile::Permissions(0x7777)));
         },
         QStringLiteral("Other users may change the folder that it lies in. Move it to a folder of yours.")},
        {[&] {
             ASSERT_TRUE(QFile::setPermissions(updates(), owner | QFile::ExeOwner));
             ASSERT_TRUE(QFile::rename(file, file + QStringLiteral(".real")));
             ASSERT_TRUE(QFile::link(file + QStringLiteral(".real"), file));
         },
         QStringLiteral("It is no regular file.")},
    };
    for (const auto& [prepare, reason] : reasons) {
        prepare();
        messages.shown.clear();
        newDocument(PenDocument::Impedance);
        whenChooserInstall();
        whenPickerTakesProposal();
        runCommand("mnuHelpUpdate");
        ASSERT_EQ(messages.shown.size(), 2U) << reason.toStdString();
        EXPECT_EQ(messages.shown[1].title, QStringLiteral("Software install"));
        EXPECT_TRUE(QRegularExpression(QRegularExpression::anchoredPattern("Setup.exe was not started. " + reason))
                        .match(messages.shown[1].text)
                        .hasMatch())
            << messages.shown[1].text.toStdString();
        EXPECT_EQ(main->gcolDocuments().count(), 0);
        EXPECT_FALSE(main->isUnloaded());
    }
    EXPECT_FALSE(ran());
}

TEST_F(FrmMainUpdateTest, aCancelledFileDialogLeavesTheProgramRunningWithoutAWord)
{
    load();
    writeInstaller(QStringLiteral("Setup.exe"));
    newDocument(PenDocument::Impedance);
    whenChooserInstall();
    when<QFileDialog>([](QFileDialog& picker) { QTest::keyClick(&picker, Qt::Key_Escape); });
    runCommand("mnuHelpUpdate");
    EXPECT_EQ(messages.shown.size(), 1U) << "the question before it";
    EXPECT_EQ(main->gcolDocuments().count(), 0) << "the documents are closed already";
    EXPECT_FALSE(main->isUnloaded());
}

TEST_F(FrmMainUpdateTest, anInstallerThatIsGoneLeavesTheProgramRunningWithoutAWord)
{
    load();
    const QString file = writeInstaller(QStringLiteral("Setup.exe"));
    whenChooserInstall();
    when<QFileDialog>([&file](QFileDialog& picker) {
        // Behind the dialog's own look for it.
        QObject::connect(&picker, &QFileDialog::fileSelected, &picker, [&file] { QFile::remove(file); });
        static_cast<QDialog&>(picker).accept();
    });
    runCommand("mnuHelpUpdate");
    EXPECT_FALSE(QFile::exists(file));
    EXPECT_EQ(messages.shown.size(), 1U) << "the question before it";
    EXPECT_FALSE(main->isUnloaded());
}

#include "frmMainUpdateTest.moc"
