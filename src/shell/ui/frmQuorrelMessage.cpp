// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/frmQuorrelMessage.h"

#include "program/EventSounds.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextEdit>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kIconUnit = 16;
constexpr int kLineLength = 62; // average characters: a comfortable measure for reading

enum IconNumber
{
    IconStop = 1,
    IconQuestion = 2,
    IconExclamation = 3,
    IconInformation = 4
};

int buttonPart(int style)
{
    return style < 0 ? 0 : style % kIconUnit;
}

int iconPart(int style)
{
    return style < 0 ? 0 : style / kIconUnit;
}

} // namespace

QList<frmQuorrelMessage::Button> frmQuorrelMessage::buttonSet(int style)
{
    static const Button ok{QT_TR_NOOP("OK"), UserMessages::ReplyOk};
    static const Button cancel{QT_TR_NOOP("Cancel"), UserMessages::ReplyCancel};
    static const Button abort{QT_TR_NOOP("Abort"), UserMessages::ReplyAbort};
    static const Button retry{QT_TR_NOOP("Retry"), UserMessages::ReplyRetry};
    static const Button ignore{QT_TR_NOOP("Ignore"), UserMessages::ReplyIgnore};
    static const Button yes{QT_TR_NOOP("Yes"), UserMessages::ReplyYes};
    static const Button no{QT_TR_NOOP("No"), UserMessages::ReplyNo};
    switch (buttonPart(style)) {
    case UserMessages::OkCancel:
        return {ok, cancel};
    case UserMessages::AbortRetryIgnore:
        return {abort, retry, ignore};
    case UserMessages::YesNoCancel:
        return {yes, no, cancel};
    case UserMessages::YesNo:
        return {yes, no};
    case UserMessages::RetryCancel:
        return {retry, cancel};
    default:
        return {ok};
    }
}

int frmQuorrelMessage::harmlessButton(const QList<Button>& buttons)
{
    for (int i = 0; i < buttons.size(); ++i) {
        if (buttons[i].reply == UserMessages::ReplyCancel)
            return i;
    }
    return buttons.size() > 1 ? 1 : 0;
}

int frmQuorrelMessage::harmlessReply(int style)
{
    const QList<Button> buttons = buttonSet(style);
    return buttons[harmlessButton(buttons)].reply;
}

int frmQuorrelMessage::message(QWidget* objOwner, const QString& strMessage, int style, const QString& strTitle,
                               EventSounds* sounds)
{
    const QPointer<frmQuorrelMessage> box = new frmQuorrelMessage(objOwner, strMessage, style, strTitle, sounds);
    box->exec();
    if (box.isNull())
        return harmlessReply(style);
    const int reply = box->reply();
    delete box;
    return reply == UserMessages::ReplyNone ? harmlessReply(style) : reply;
}

frmQuorrelMessage::frmQuorrelMessage(QWidget* objOwner, const QString& strMessage, int style, const QString& strTitle,
                                     EventSounds* sounds)
    : QDialog(objOwner, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                            Qt::WindowCloseButtonHint)
    , m_buttons(buttonSet(style))
    , m_icon(iconPart(style))
    , m_sounds(sounds)
{
    setObjectName(QStringLiteral("frmQuorrelMessage"));
    setWindowTitle(strTitle);
    setAccessibleName(strTitle);
    setAccessibleDescription(strMessage);

    picIcon = new QLabel(this);
    picIcon->setObjectName(QStringLiteral("picIcon"));

    // A label would not break a path without blanks; a text view breaks anywhere, scrolls and can be selected.
    txtMessage = new QTextEdit(this);
    txtMessage->setObjectName(QStringLiteral("txtMessage"));
    txtMessage->setAccessibleName(tr("Message"));
    txtMessage->setReadOnly(true);
    txtMessage->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    txtMessage->setTabChangesFocus(true);
    txtMessage->setFrameShape(QFrame::NoFrame);
    txtMessage->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    txtMessage->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    txtMessage->viewport()->setAutoFillBackground(false);
    txtMessage->document()->setDocumentMargin(0);
    txtMessage->setPlainText(strMessage);

    setupformlayout(static_cast<int>(m_buttons.size()));
    setCommandButtons();
    showIcon();
    fitText();
}

void frmQuorrelMessage::setupformlayout(int intNum)
{
    auto* const body = new QHBoxLayout;
    const int gap = style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing, nullptr, this);
    body->setSpacing(std::max(2 * gap, 12));
    body->addWidget(picIcon, 0, Qt::AlignTop);
    body->addWidget(txtMessage, 0, Qt::AlignVCenter);
    body->addStretch();

    auto* const row = new QHBoxLayout;
    row->addStretch();
    for (int i = 0; i < intNum; ++i) {
        auto* const button = new QPushButton(this);
        button->setObjectName(QStringLiteral("btnCommands_%1").arg(i));
        button->setAutoDefault(true);
        connect(button, &QPushButton::clicked, this, [this, i] { btnCommands_Click(i); });
        row->addWidget(button);
        btnCommands[static_cast<std::size_t>(i)] = button;
    }
    row->addStretch();

    auto* const whole = new QVBoxLayout(this);
    whole->setSpacing(std::max(2 * gap, 12));
    whole->addLayout(body);
    whole->addLayout(row);
    whole->setSizeConstraint(QLayout::SetFixedSize);
}

void frmQuorrelMessage::setCommandButtons()
{
    for (qsizetype i = 0; i < m_buttons.size(); ++i)
        btnCommands[static_cast<std::size_t>(i)]->setText(tr(m_buttons[i].text));
    btnCommands[0]->setDefault(true);
    btnCommands[0]->setFocus();
}

void frmQuorrelMessage::showIcon()
{
    QStyle::StandardPixmap icon = QStyle::SP_CustomBase;
    QString name;
    switch (m_icon) {
    case IconStop:
        icon = QStyle::SP_MessageBoxCritical;
        name = tr("Error");
        break;
    case IconQuestion:
        icon = QStyle::SP_MessageBoxQuestion;
        name = tr("Question");
        break;
    case IconExclamation:
        icon = QStyle::SP_MessageBoxWarning;
        name = tr("Warning");
        break;
    case IconInformation:
        icon = QStyle::SP_MessageBoxInformation;
        name = tr("Information");
        break;
    default:
        picIcon->hide();
        return;
    }
    const int side = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    picIcon->setPixmap(style()->standardIcon(icon, nullptr, this).pixmap(QSize(side, side), devicePixelRatioF()));
    picIcon->setAccessibleName(name);
}

void frmQuorrelMessage::fitText()
{
    const QFontMetrics metrics(txtMessage->font());
    const QScreen* const display = parentWidget() != nullptr ? parentWidget()->screen() : screen();
    const QSize room = display->availableGeometry().size();
    const int widest = std::min(metrics.averageCharWidth() * kLineLength, room.width() / 2);
    const int highest = std::max(room.height() / 2, metrics.lineSpacing());

    // Measured in a document of its own: that of the view follows the view's present width.
    QTextDocument text;
    text.setDefaultFont(txtMessage->font());
    text.setDocumentMargin(0);
    QTextOption wrap;
    wrap.setWrapMode(txtMessage->wordWrapMode());
    text.setDefaultTextOption(wrap);
    text.setPlainText(txtMessage->toPlainText());
    text.setTextWidth(widest);
    const int width =
        std::clamp(static_cast<int>(std::ceil(text.idealWidth())) + 2, metrics.averageCharWidth() * 20, widest);
    text.setTextWidth(width);
    const int height = static_cast<int>(std::ceil(text.size().height()));
    const bool scrolls = height > highest;
    txtMessage->setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    const int bar = scrolls ? style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this) : 0;
    txtMessage->setFixedSize(width + bar, std::min(height, highest));
    txtMessage->setFocusPolicy(scrolls ? Qt::StrongFocus : Qt::ClickFocus);
}

void frmQuorrelMessage::btnCommands_Click(int index)
{
    m_reply = m_buttons[index].reply;
    done(m_reply);
}

void frmQuorrelMessage::reject()
{
    btnCommands_Click(m_buttons.size() > 1 ? 1 : 0);
}

void frmQuorrelMessage::answerHarmlessly()
{
    btnCommands_Click(harmlessButton(m_buttons));
}

void frmQuorrelMessage::closeEvent(QCloseEvent* event)
{
    answerHarmlessly();
    event->accept();
}

void frmQuorrelMessage::copyText()
{
    const QString selected = txtMessage->textCursor().selection().toPlainText();
    QApplication::clipboard()->setText(selected.isEmpty() ? txtMessage->toPlainText() : selected);
}

void frmQuorrelMessage::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Copy))
        copyText();
    else
        QDialog::keyPressEvent(event);
}

void frmQuorrelMessage::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (m_announced)
        return;
    m_announced = true;
    if (m_sounds != nullptr)
        m_sounds->play(eventNameOfIcon(m_icon));
}

void frmQuorrelMessage::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    // The constructor's own changes come before there is anything to adapt.
    if (btnCommands[0] == nullptr)
        return;
    if (event->type() == QEvent::FontChange)
        fitText();
    else if (event->type() == QEvent::StyleChange || event->type() == QEvent::PaletteChange)
        showIcon();
}

QuorrelMessages::QuorrelMessages(EventSounds* sounds)
    : m_sounds(sounds)
{}

QWidget* QuorrelMessages::owner() const
{
    if (QWidget* const modal = QApplication::activeModalWidget())
        return modal;
    if (QWidget* const active = QApplication::activeWindow())
        return active;
    return m_mainWindow != nullptr && m_mainWindow->isVisible() ? m_mainWindow.data() : nullptr;
}

int QuorrelMessages::message(const QString& strMessage, int style, const QString& strTitle)
{
    return frmQuorrelMessage::message(owner(), strMessage, style, strTitle, m_sounds);
}

int QuorrelMessages::systemBox(const QString& strMessage, int style, const QString& strTitle)
{
    struct Choice
    {
        QMessageBox::StandardButton button;
        int reply;
    };
    static constexpr Choice kChoices[] = {
        {QMessageBox::Ok, ReplyOk},       {QMessageBox::Cancel, ReplyCancel}, {QMessageBox::Abort, ReplyAbort},
        {QMessageBox::Retry, ReplyRetry}, {QMessageBox::Ignore, ReplyIgnore}, {QMessageBox::Yes, ReplyYes},
        {QMessageBox::No, ReplyNo},
    };
    QMessageBox::StandardButtons buttons = QMessageBox::Ok;
    switch (buttonPart(style)) {
    case OkCancel:
        buttons = QMessageBox::Ok | QMessageBox::Cancel;
        break;
    case AbortRetryIgnore:
        buttons = QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore;
        break;
    case YesNoCancel:
        buttons = QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        break;
    case YesNo:
        buttons = QMessageBox::Yes | QMessageBox::No;
        break;
    case RetryCancel:
        buttons = QMessageBox::Retry | QMessageBox::Cancel;
        break;
    default:
        break;
    }
    static constexpr QMessageBox::Icon kIcons[] = {QMessageBox::NoIcon, QMessageBox::Critical, QMessageBox::Question,
                                                   QMessageBox::Warning, QMessageBox::Information};
    const int icon = iconPart(style);
    const QPointer<QMessageBox> box = new QMessageBox(kIcons[icon < static_cast<int>(std::size(kIcons)) ? icon : 0],
                                                      strTitle, strMessage, buttons, owner());
    box->setObjectName(QStringLiteral("systemBox"));
    box->setTextFormat(Qt::PlainText);
    const int pressed = box->exec();
    if (box.isNull())
        return frmQuorrelMessage::harmlessReply(style);
    delete box;
    for (const Choice& choice : kChoices) {
        if (choice.button == pressed)
            return choice.reply;
    }
    return frmQuorrelMessage::harmlessReply(style);
}

void QuorrelMessages::dismiss()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* const window : windows) {
        if (auto* const box = qobject_cast<frmQuorrelMessage*>(window); box != nullptr && box->isVisible())
            box->answerHarmlessly();
    }
}
