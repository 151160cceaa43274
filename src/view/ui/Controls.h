// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>
#include <QString>
#include <QVBoxLayout>

#include <initializer_list>
#include <utility>

/// How the pages of the view options make their controls: named as in the rest of the program, acting on what the user
/// does and not on what the dialog itself shows.
namespace viewcontrols {

template <typename Control>
Control* named(Control* control, const QString& name)
{
    control->setObjectName(name);
    return control;
}

template <typename Control>
Control* named(Control* control, const char* name)
{
    return named(control, QString(QLatin1String(name)));
}

/// A member of an array of controls.
template <typename Control>
Control* named(Control* control, const char* name, int index)
{
    return named(control, QStringLiteral("%1_%2").arg(QLatin1String(name)).arg(index));
}

inline QString withoutAccessKey(QString text)
{
    return text.remove(QLatin1Char('&'));
}

/// A frame with its controls one below the other.
inline QGroupBox* frame(const QString& title, const char* name, QWidget* parent)
{
    auto* const box = named(new QGroupBox(title, parent), name);
    new QVBoxLayout(box);
    return box;
}

/// An option in a frame; screen readers hear the frame's title with it.
template <typename Action>
QRadioButton* option(QGroupBox* box, const char* name, const QString& text, Action action)
{
    auto* const button = named(new QRadioButton(text, box), name);
    button->setAccessibleName(QStringLiteral("%1: %2").arg(box->title(), withoutAccessKey(text)));
    box->layout()->addWidget(button);
    QObject::connect(button, &QRadioButton::clicked, box, std::move(action));
    return button;
}

/// A button that does its work and is never pressed by Enter in another control.
template <typename Action>
QPushButton* button(QWidget* parent, const QString& name, const QString& text, Action action)
{
    auto* const made = named(new QPushButton(text, parent), name);
    made->setAutoDefault(false);
    QObject::connect(made, &QPushButton::clicked, parent, std::move(action));
    return made;
}

/// Several parts that make one page.
inline QWidget* pageOf(std::initializer_list<QWidget*> parts)
{
    auto* const page = new QWidget;
    auto* const layout = new QVBoxLayout(page);
    layout->setContentsMargins({});
    for (QWidget* part : parts)
        layout->addWidget(part);
    return page;
}

} // namespace viewcontrols
