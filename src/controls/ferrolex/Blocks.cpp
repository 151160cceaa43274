// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ferrolex/Blocks.h"

#include "controls/ferrolex/ExpressionParser.h"
#include "controls/ferrolex/Finding.h"
#include "controls/ferrolex/Lexer.h"
#include "controls/ferrolex/Names.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace ferrolex {
namespace {

constexpr std::size_t kDeepestBlock = 60;

QString tr(const char* text)
{
    return QCoreApplication::translate("Ferrolex", text);
}

} // namespace

Blocks::Blocks(Program& program, Names& names, Findings& findings)
    : m_program(program)
    , m_names(names)
    , m_findings(findings)
{
    m_open.push_back({});
}

QString Blocks::word(What what)
{
    switch (what) {
    case What::If:
    case What::Chained:
        return QStringLiteral("if");
    case What::Repeat:
        return QStringLiteral("repeat");
    case What::For:
        return QStringLiteral("for");
    default:
        return QStringLiteral("procedure");
    }
}

Block& Blocks::block()
{
    Open& open = m_open.back();
    return open.inElse ? open.statement.otherwise : open.statement.body;
}

void Blocks::add(Statement statement)
{
    block().push_back(std::move(statement));
}

void Blocks::open(What what, Statement statement)
{
    if (m_open.size() == kDeepestBlock)
        m_findings.error(statement.offset, tr("Blocks are nested more than 60 deep."));
    Open open;
    open.what = what;
    open.statement = std::move(statement);
    m_open.push_back(std::move(open));
    m_names.openBlock();
}

void Blocks::openProcedure(Statement statement)
{
    if (!isOutermost())
        m_findings.error(statement.offset, tr("A procedure cannot stand inside a block."));
    open(What::Procedure, std::move(statement));
    m_open.back().procedure = m_program.procedures.size();
}

void Blocks::count(std::int32_t slot)
{
    m_open.back().statement.target = slot;
    m_counters.insert(slot);
}

void Blocks::close()
{
    bool chained = true;
    while (chained) {
        m_names.closeBlock();
        Open closed = std::move(m_open.back());
        m_open.pop_back();
        chained = closed.what == What::Chained;
        if (closed.what == What::Procedure) {
            m_program.procedures[closed.procedure].body = std::move(closed.statement.body);
            // One that stands in another, which has been told, can be called when that has ended, too.
            if (isOutermost())
                m_callable = m_program.procedures.size();
        } else if (m_open.size() < kDeepestBlock) {
            add(std::move(closed.statement));
        } // else it was told, and a destructor of such depth is not worth its stack
    }
}

bool Blocks::beginElse(const Token& first)
{
    Open& open = m_open.back();
    if (open.what != What::If && open.what != What::Chained) {
        m_findings.error(first.offset, tr("There is no \"if\" that this \"else\" belongs to."));
        return false;
    }
    if (open.inElse) {
        m_findings.error(first.offset, tr("This \"if\" has an \"else\" already."));
        return false;
    }
    m_names.closeBlock();
    m_names.openBlock();
    open.inElse = true;
    return true;
}

void Blocks::end(TokenCursor& cursor, const Token& first)
{
    if (isOutermost()) {
        m_findings.error(first.offset, tr("There is no block that this \"end\" could end."));
        return;
    }
    const Open& ending = m_open.back();
    const QString begun = word(ending.what);
    const Token named = cursor.peek();
    if (named.kind == Token::Kind::Word) {
        cursor.next();
        if (!sameWord(named.text, begun.toStdString()))
            m_findings.error(named.offset,
                             tr("The block of line %1 was begun by \"%2\" and ends with \"end\" or \"end %2\".")
                                 .arg(ending.statement.line)
                                 .arg(begun));
    }
    if (ending.what == What::For)
        m_counters.erase(ending.statement.target);
    close();
}

void Blocks::finish()
{
    while (!isOutermost()) {
        m_findings.error(m_open.back().statement.offset,
                         tr("The block that \"%1\" begins has no \"end\".").arg(word(m_open.back().what)));
        close();
    }
    m_program.statements = std::move(m_open.back().statement.body);
}

bool Blocks::inLoop() const
{
    return std::any_of(m_open.begin(), m_open.end(),
                       [](const Open& open) { return open.what == What::Repeat || open.what == What::For; });
}

bool Blocks::isOpen(std::size_t procedure) const
{
    return std::any_of(m_open.begin(), m_open.end(), [procedure](const Open& open) {
        return open.what == What::Procedure && open.procedure == procedure;
    });
}

} // namespace ferrolex
