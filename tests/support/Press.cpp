// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Press.h"

#include <QApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QWindow>

namespace press {
namespace {

constexpr int kPatience = 5000;

QString plain(QString text)
{
    constexpr QChar kMark(1);
    text = text.section(u'\t', 0, 0);
    return text.replace(QLatin1String("&&"), kMark).remove(u'&').replace(kMark, u'&');
}

bool isNamed(const QAction& entry, const QString& name)
{
    return entry.objectName() == name || plain(entry.text()) == name;
}

QAction* entryOf(const QMenu& menu, const QString& name)
{
    for (QAction* entry : menu.actions()) {
        if (isNamed(*entry, name))
            return entry;
    }
    return nullptr;
}

/// The entries to click from this menu to the command; empty when it is not there.
QList<QAction*> wayTo(const QMenu& menu, const QString& objectName)
{
    for (QAction* entry : menu.actions()) {
        if (entry->objectName() == objectName)
            return {entry};
        if (const QMenu* const sub = entry->menu()) {
            if (const QList<QAction*> rest = wayTo(*sub, objectName); !rest.isEmpty())
                return QList<QAction*>{entry} + rest;
        }
    }
    return {};
}

testing::AssertionResult failed(const QString& sentence)
{
    return testing::AssertionFailure() << sentence.toStdString();
}

/// The mouse goes to the native window, as it does on a screen: what lies above a widget gets the click.
void click(QWidget& widget, Qt::MouseButton button, QPoint place)
{
    QWidget& top = *widget.window();
    QTest::mouseClick(top.windowHandle(), button, Qt::NoModifier, widget.mapTo(&top, place));
}

testing::AssertionResult clickEntry(QMenu& menu, QAction& entry)
{
    const QString name = plain(entry.text());
    if (!QTest::qWaitFor([&menu] { return menu.isVisible() && menu.windowHandle() != nullptr; }, kPatience))
        return failed(QStringLiteral("the menu of \"%1\" does not come up").arg(name));
    if (!entry.isVisible())
        return failed(QStringLiteral("\"%1\" is hidden").arg(name));
    if (!entry.isEnabled())
        return failed(QStringLiteral("\"%1\" is disabled").arg(name));
    click(menu, Qt::LeftButton, menu.actionGeometry(&entry).center());
    return testing::AssertionSuccess();
}

testing::AssertionResult clickWay(QMenu& top, const QList<QAction*>& way)
{
    QPointer<QMenu> menu = &top;
    for (QAction* entry : way) {
        // The entry's own menu is looked up before the click: behind it all of them may be gone.
        const QPointer<QMenu> next = entry->menu();
        if (const auto clicked = clickEntry(*menu, *entry); !clicked)
            return clicked;
        menu = next;
    }
    settle();
    if (QApplication::activePopupWidget() != nullptr)
        return failed(QStringLiteral("the menu stays open"));
    return testing::AssertionSuccess();
}

QMenu* openPopup(QWidget& widget, QPoint place)
{
    const QPoint at = place.isNull() ? widget.rect().center() : place;
    click(widget, Qt::RightButton, at);
    QMenu* popup = nullptr;
    const auto there = [&popup] {
        return (popup = qobject_cast<QMenu*>(QApplication::activePopupWidget())) != nullptr;
    };
    // Where the platform does not turn the right button into a menu, the desktop does.
    if (!QTest::qWaitFor(there, 50)) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, widget.mapToGlobal(at));
        QApplication::sendEvent(&widget, &event);
        static_cast<void>(QTest::qWaitFor(there, kPatience));
    }
    return popup;
}

/// Remarks of the library while a key is pressed: a key that two commands claim does nothing but make one.
QStringList* g_remarks = nullptr;
QtMessageHandler g_before = nullptr;

void noteRemark(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (g_remarks != nullptr)
        g_remarks->append(text);
    if (g_before != nullptr)
        g_before(type, context, text);
}

} // namespace

void settle()
{
    for (int i = 0; i < 5; ++i) {
        QApplication::processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

testing::AssertionResult menu(QMainWindow& window, const QString& objectName)
{
    QMenuBar& bar = *window.menuBar();
    for (QAction* top : bar.actions()) {
        const QList<QAction*> way = top->menu() == nullptr ? QList<QAction*>() : wayTo(*top->menu(), objectName);
        if (way.isEmpty())
            continue;
        if (!top->isEnabled())
            return failed(QStringLiteral("the menu of %1 is disabled").arg(objectName));
        click(bar, Qt::LeftButton, bar.actionGeometry(top).center());
        return clickWay(*top->menu(), way);
    }
    return failed(QStringLiteral("no menu holds %1").arg(objectName));
}

testing::AssertionResult shortcut(QWidget& window, const QKeySequence& keys)
{
    if (!window.isActiveWindow()) {
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            return failed(QStringLiteral("the window does not become the active one"));
    }
    QStringList remarks;
    g_remarks = &remarks;
    g_before = qInstallMessageHandler(noteRemark);
    QWindow* const target = window.window()->windowHandle();
    for (int i = 0; i < keys.count(); ++i)
        QTest::keyClick(target, keys[static_cast<uint>(i)].key(), keys[static_cast<uint>(i)].keyboardModifiers());
    settle();
    qInstallMessageHandler(g_before);
    g_remarks = nullptr;
    for (const QString& remark : remarks) {
        if (remark.contains(QLatin1String("Ambiguous shortcut")))
            return failed(remark);
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult popup(QWidget& widget, const QStringList& path, QPoint place)
{
    QMenu* const top = openPopup(widget, place);
    if (top == nullptr)
        return failed(QStringLiteral("no popup comes up"));
    QList<QAction*> way;
    const QMenu* menu = top;
    for (const QString& name : path) {
        QAction* const entry = menu == nullptr ? nullptr : entryOf(*menu, name);
        if (entry == nullptr) {
            top->close();
            settle();
            return failed(QStringLiteral("the popup has no entry ") + path.join(QStringLiteral(" > ")));
        }
        way.append(entry);
        menu = entry->menu();
    }
    return clickWay(*top, way);
}

testing::AssertionResult popup(QWidget& widget, const std::function<QAction*(const QMenu&)>& pick, QPoint place)
{
    QMenu* const top = openPopup(widget, place);
    if (top == nullptr)
        return failed(QStringLiteral("no popup comes up"));
    if (QAction* const entry = pick(*top))
        return clickWay(*top, {entry});
    top->close();
    settle();
    return failed(QStringLiteral("the popup has no such entry"));
}

WhileModal::WhileModal(std::function<void(QWidget&)> action)
    : m_timer(new QTimer)
{
    QObject::connect(m_timer, &QTimer::timeout, m_timer, [this, action = std::move(action)] {
        QWidget* const modal = QApplication::activeModalWidget();
        if (m_happened || modal == nullptr || !modal->isVisible())
            return;
        m_happened = true;
        m_timer->stop();
        action(*modal);
    });
    m_timer->start(5);
}

WhileModal::~WhileModal()
{
    delete m_timer;
}

} // namespace press
