// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Command.h"

#include <QCommandLineParser>

#include <gtest/gtest.h>

/// A command's words taken apart as the program does it.
template <typename Command>
class CommandWords
{
public:
    explicit CommandWords(const char* words)
    {
        const bool takesMany = m_command.files() == cli::Command::Files::Many;
        m_parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
        m_parser.addOptions(m_command.options() + cli::CommonOptions::options(takesMany));
        const bool understood =
            m_parser.parse(QStringList(m_command.name()) + QString::fromUtf8(words).split(u' ', Qt::SkipEmptyParts));
        EXPECT_TRUE(understood) << m_parser.errorText().toStdString();
        m_arguments.readCommon(takesMany);
        m_options = m_command.read(m_arguments);
    }

    const auto& options() const { return m_options; }
    std::string problem() const { return m_arguments.outcome().sentence().toStdString(); }

private:
    Command m_command;
    QCommandLineParser m_parser;
    cli::Arguments m_arguments{m_parser};
    decltype(m_command.read(m_arguments)) m_options;
};
