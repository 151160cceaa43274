// SPDX-License-Identifier: GPL-3.0-or-later
// A plugin of the widget library that stands in for the person in front of a program under test: it presses a button of
// every modal window that is shown. The file that $MARROWICK_OPERATOR names holds a line for each window that wants
// another button than the default one, "title=button", in their order; what was pressed is added to the same name
// with ".log" behind it.
#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QGenericPlugin>
#include <QList>
#include <QPushButton>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <utility>

namespace {

constexpr int kLook = 20; // ms between two looks

class Operator : public QObject
{
public:
    Operator()
        : m_name(qEnvironmentVariable("MARROWICK_OPERATOR"))
    {
        QFile file(m_name);
        if (file.open(QIODevice::ReadOnly)) {
            for (const QString& line : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts))
                m_answers.append({line.section(u'=', 0, 0), line.section(u'=', 1)});
        }
        startTimer(kLook);
    }

protected:
    void timerEvent(QTimerEvent*) override
    {
        // Without a person there is nobody to press anything before the windows are there.
        const auto* const application = qobject_cast<QApplication*>(QCoreApplication::instance());
        auto* const dialog = application ? qobject_cast<QDialog*>(QApplication::activeModalWidget()) : nullptr;
        if (!dialog || !dialog->isVisible())
            return;
        QPushButton* const button = buttonOf(*dialog, wanted(dialog->windowTitle()));
        if (!button)
            return;
        note(dialog->windowTitle(), shown(*button));
        // Behind this call, since it runs in whatever event loop the window has.
        QTimer::singleShot(0, button, &QPushButton::click);
    }

private:
    static QString shown(const QPushButton& button) { return button.text().remove(u'&'); }

    QString wanted(const QString& title)
    {
        const auto found =
            std::find_if(m_answers.begin(), m_answers.end(), [&](const auto& answer) { return answer.first == title; });
        if (found == m_answers.end())
            return {};
        const QString button = found->second;
        m_answers.erase(found);
        return button;
    }

    static QPushButton* buttonOf(const QDialog& dialog, const QString& text)
    {
        for (QPushButton* const button : dialog.findChildren<QPushButton*>()) {
            if (button->isVisible() && (text.isEmpty() ? button->isDefault() : shown(*button) == text))
                return button;
        }
        return nullptr;
    }

    void note(const QString& title, const QString& button) const
    {
        QFile log(m_name + QStringLiteral(".log"));
        if (log.open(QIODevice::Append))
            log.write(QStringLiteral("%1=%2\n").arg(title, button).toUtf8());
    }

    QString m_name;
    QList<std::pair<QString, QString>> m_answers;
};

class OperatorPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "operator.json")

public:
    QObject* create(const QString&, const QString&) override { return new Operator; }
};

} // namespace

#include "Operator.moc"
