// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/korvalink/SerialTransport.h"
#include "link/LinkFixture.h"
#include "script/DocumentsInMemory.h"
#include "script/ScriptActions.h"
#include "support/Pty.h"

#include <QDir>
#include <QRegularExpression>
#include <QTest>

/// What a script's action called, by a word for each call.
class RecordingPorts : public ScriptPictures,
                       public ScriptPrinting,
                       public ScriptLoopView,
                       public ScriptFileNames,
                       public ScriptInput
{
public:
    Outcome ExportFile(PenDocument&, const QString& fileName, std::int32_t format) override
    {
        calls << QStringLiteral("picture %1 %2").arg(format).arg(fileName);
        return outcome;
    }
    Outcome print(PenDocument&, bool landscape) override
    {
        calls << (landscape ? QStringLiteral("print landscape") : QStringLiteral("print portrait"));
        return outcome;
    }
    bool isShowing() const override { return loopShows; }
    void close() override
    {
        calls << QStringLiteral("close loop");
        loopShows = false;
    }
    Outcome ExportFile(const QString& fileName, std::int32_t format) override
    {
        calls << QStringLiteral("loop picture %1 %2").arg(format).arg(fileName);
        return outcome;
    }
    Outcome print(bool landscape) override
    {
        calls << (landscape ? QStringLiteral("print loop landscape") : QStringLiteral("print loop portrait"));
        return outcome;
    }
    QString Dialog(const QString& caption) override
    {
        calls << QStringLiteral("name? ") + caption;
        if (whileAsking)
            whileAsking();
        return name;
    }
    void clearFileName() override { calls << QStringLiteral("clear name"); }
    std::optional<QString> inputBox(const QString& prompt, const QString& title) override
    {
        calls << QStringLiteral("input? %1 | %2").arg(title, prompt);
        if (whileAsking)
            whileAsking();
        return line;
    }

    ScriptPorts ports() { return {this, this, this, this, this}; }

    QStringList calls;
    Outcome outcome = Outcome::success();
    bool loopShows = false;
    QString name;                ///< the answer to the question for a file's name
    std::optional<QString> line; ///< the answer to the question for a line
    std::function<void()> whileAsking;
};

/// The actions of scripts on a real pseudo-terminal whose far end the test holds, with documents in memory.
class ScriptFixture : public LinkFixture
{
protected:
    ScriptFixture()
    {
        QObject::connect(&documents, &DocumentList::added, [this](PenDocument* document) {
            QObject::connect(document, &PenDocument::fileUsed, [this](const QString& file) { used << file; });
        });
        setFolder(options::kPlotFiles, QStringLiteral("plots"));
        setFolder(options::kExportFiles, QStringLiteral("exports"));
        actions.ports() = ports.ports();
        actions.setClock([] { return QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7)); });
        connectPty();
        mirror.strDeviceSerial = QStringLiteral("SN7");
    }

    void setFolder(const options::FolderOption& option, const QString& name)
    {
        QDir(folder.path()).mkpath(name);
        preferences.setValue(option.option, folder.filePath(name));
    }
    QString inPlots(const QString& name) const { return folder.filePath(QStringLiteral("plots/")) + name; }
    QString inExports(const QString& name) const { return folder.filePath(QStringLiteral("exports/")) + name; }

    void connectPty()
    {
        ASSERT_TRUE(device.OpenTransport(std::make_unique<SerialTransport>(pty.slavePath()), QStringLiteral("PTY")))
            << device.LastError().toStdString();
        ASSERT_TRUE(waitFor([this] { return module.answers().complete(); }));
        farEnd();
    }
    static bool waitFor(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, 30000); }

    /// What has arrived at the instrument since the last call.
    QByteArray farEnd()
    {
        QByteArray bytes = std::exchange(m_received, QByteArray());
        for (int quiet = 0; quiet < 3 || device.WritePending() > 0; ++quiet) {
            device.Flush();
            QCoreApplication::processEvents();
            const QByteArray chunk = pty.receive();
            bytes += chunk;
            if (!chunk.isEmpty())
                quiet = 0;
        }
        return bytes;
    }
    /// The instrument reads what has come so far.
    void drain() { m_received += pty.receive(); }
    /// The instrument sends the frames; what it is answered when they have been handled, but for the output pin, which
    /// is said again with every document.
    QByteArray act(const QByteArray& frames)
    {
        const QByteArray mark = "mark " + QByteArray::number(++m_marks);
        pty.send(frames);
        pty.send(frametext::text('r', '0', mark));
        EXPECT_TRUE(waitFor([this, &mark] { return panel(1) == QString::fromLatin1(mark); }));
        QString answer = QString::fromLatin1(farEnd());
        static const QRegularExpression pin(QStringLiteral("setpin [0-9]+\r"));
        return answer.remove(pin).toLatin1();
    }
    /// A frame with a field that is no number: the read pass ends with it.
    void sendBroken(const QByteArray& frame)
    {
        bool handled = false;
        const auto connection = QObject::connect(&device, &KorvaLink::DataReceived, [&handled] { handled = true; });
        pty.send(frame);
        EXPECT_TRUE(waitFor([&handled] { return handled; }));
        QObject::disconnect(connection);
    }

    /// The instrument reads no more, so that what is written now stays in the queue.
    void fillTerminal()
    {
        while (device.Connected() && device.WritePending() == 0)
            device.Write(QString(1024, u'x'));
    }
    /// A document as frame "U" makes it.
    PenDocument* newDocument(char kind, const QByteArray& title = "Title of it")
    {
        EXPECT_EQ(act(frametext::text('U', kind, title)), " ");
        messages.shown.clear();
        ports.calls.clear();
        return window.active.get();
    }
    void newDocumentWithoutInstrument()
    {
        state.giNewDocType = PenDocument::Impedance;
        memory.showDocument(*documents.LoadNewDoc());
    }
    static void addPoints(PenDocument& document, int pen, int count)
    {
        document.setCurrentPen(pen);
        for (int i = 0; i < count; ++i) {
            if (document.pgiTestType() == PenDocument::Amplitude)
                document.AddAmplitudePoint(1000.0 * (i + 1), -3.5, 10, 1, i);
            else
                document.AddImpedancePoint(1000.0 * (i + 1), 50.0 + i, 30, 1, i);
        }
    }
    /// "text | title | style" of each message.
    QStringList said() const
    {
        QStringList list;
        for (const RecordingMessages::Shown& shown : messages.shown)
            list << QStringLiteral("%1 | %2 | %3").arg(shown.text, shown.title).arg(shown.style);
        return list;
    }

    Pty pty{Pty::HostEnd::KeptOpen};
    RecordingPorts ports;
    QStringList used; ///< for the quick file list
    DocumentContext documentContext{preferences, messages, plotSource, window.active};
    DocumentsInMemory memory{documentContext, window.active};
    DocumentList documents{documentContext, state, memory};
    ScriptActions actions{module, documents, memory};

private:
    QByteArray m_received;
    int m_marks = 0;
};
