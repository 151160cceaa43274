// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/MainWindowHarness.h"
#include "update/web/ui/frmUpdate.h"

#include <QCheckBox>
#include <QFile>
#include <QFileDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

namespace {

class FrmMainUpdateTest : public MainWindowHarness
{
protected:
    /// Does this with each modal window as it comes, one behind the other.
    void inTurn(const std::vector<std::function<void(QWidget&)>>& acts)
    {
        m_acts = acts;
        QObject::connect(&m_poll, &QTimer::timeout, &m_poll, [this] {
            QWidget* const window = QApplication::activeModalWidget();
            if (!window || window == m_last || seen == m_acts.size())
                return;
            m_last = window;
            // Not from here: while a timer's slot runs it does not tick again, and an act may open the next window.
            QTimer::singleShot(0, window, [act = m_acts[seen++], window] { act(*window); });
        });
        m_poll.start(2);
    }
    /// Ticks the program alone and goes on.
    static void installProgram(QWidget& window)
    {
        ASSERT_TRUE(qobject_cast<frmUpdate*>(&window));
        window.findChild<QRadioButton*>(QStringLiteral("optInstall"))->click();
        window.findChild<QCheckBox*>(QStringLiteral("chkSoftwareUpdate"))->click();
        QTest::mouseClick(window.findChild<QPushButton*>(QStringLiteral("cmdNext")), Qt::LeftButton);
    }

    std::size_t seen = 0;

private:
    std::vector<std::function<void(QWidget&)>> m_acts;
    QPointer<QWidget> m_last;
    QTimer m_poll;
};

} // namespace

TEST_F(FrmMainUpdateTest, cancelAtASaveQuestionKeepsTheProgramAndAsksForNoInstaller)
{
    load();
    newDocument(PenDocument::Impedance)->SetModified();
    messages.replies = {UserMessages::ReplyOk, UserMessages::ReplyCancel};
    inTurn({installProgram, [](QWidget& other) { ADD_FAILURE() << other.metaObject()->className(); }});
    trigger("mnuHelpUpdate");
    EXPECT_EQ(seen, 1U);
    EXPECT_EQ(messages.shown.size(), 2U);
    EXPECT_EQ(main->gcolDocuments().count(), 1);
    EXPECT_FALSE(main->isUnloaded());
}

TEST_F(FrmMainUpdateTest, anInstallerWithoutASignatureIsToldAndTheProgramGoesOn)
{
    load();
    const QString updates = preferences.value(options::kUpdateFiles.option);
    const QString file = updates + QStringLiteral("/MGV9R9B1.deb");
    ASSERT_TRUE(QDir().mkpath(updates));
    QFile made(file);
    ASSERT_TRUE(made.open(QFile::WriteOnly));
    preferences.setValue(options::kSoftwareUpgradeFile, file);
    newDocument(PenDocument::Impedance);
    inTurn({installProgram, [](QWidget& picker) {
                auto* const dialog = qobject_cast<QFileDialog*>(&picker);
                ASSERT_TRUE(dialog);
                EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Open Upgrade File"));
                EXPECT_EQ(dialog->selectedNameFilter(), QStringLiteral("Debian packages (*.deb)"));
                EXPECT_EQ(dialog->selectedFiles().value(0).section(u'/', -1), QStringLiteral("MGV9R9B1.deb"));
                static_cast<QDialog*>(dialog)->accept();
            }});
    trigger("mnuHelpUpdate");
    EXPECT_EQ(seen, 2U);
    EXPECT_EQ(main->gcolDocuments().count(), 0);
    ASSERT_EQ(messages.shown.size(), 2U);
    EXPECT_TRUE(messages.shown[1].text.startsWith(QStringLiteral("MGV9R9B1.deb was not started. ")));
    EXPECT_FALSE(main->isUnloaded());
}
