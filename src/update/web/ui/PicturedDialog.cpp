// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/ui/PicturedDialog.h"

#include <QEvent>
#include <QSvgRenderer>
#include <QSvgWidget>
#include <QVBoxLayout>

// A static library's resources are known only after this call, which has to stand outside any namespace.
static void initialiseResources()
{
    Q_INIT_RESOURCE(webupdate);
}

namespace {

constexpr int kWidth = 6120;
constexpr int kPicture = 2280;

} // namespace

PicturedDialog::PicturedDialog(const QString& pictureName, QWidget* parent)
    : QDialog(parent)
    , m_picture(nullptr)
    , m_content(new QWidget(this))
    , m_column(new QVBoxLayout(m_content))
{
    initialiseResources();
    m_picture = new QSvgWidget(QStringLiteral(":/update/update.svg"), this);
    m_picture->setObjectName(pictureName);
    m_picture->renderer()->setAspectRatioMode(Qt::KeepAspectRatioByExpanding);
    m_picture->lower();
    m_content->installEventFilter(this);
    setMinimumSize(fontMetrics().averageCharWidth() * 70, fontMetrics().height() * 14);
}

bool PicturedDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Polish)
        makeRoom();
    return QDialog::eventFilter(watched, event);
}

void PicturedDialog::makeRoom()
{
    const QSize needed = m_content->minimumSizeHint();
    const int width = (needed.width() * kWidth + kWidth - kPicture - 1) / (kWidth - kPicture);
    setMinimumSize(minimumSize().expandedTo({width, needed.height()}));
}

void PicturedDialog::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    const int picture = width() * kPicture / kWidth;
    m_picture->setGeometry(0, 0, picture, height());
    m_content->setGeometry(picture, 0, width() - picture, height());
}
