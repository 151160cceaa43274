// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/ui/LinkImages.h"

#include <QSvgRenderer>
#include <QSvgWidget>

// A static library's resources are known only after this call, which has to stand outside any namespace.
static void initialiseResources()
{
    Q_INIT_RESOURCE(devices);
}

namespace linkimages {

void load(QSvgWidget& widget, const QString& name)
{
    initialiseResources();
    widget.load(QStringLiteral(":/link/%1.svg").arg(name));
    widget.renderer()->setAspectRatioMode(Qt::KeepAspectRatio);
}

} // namespace linkimages
