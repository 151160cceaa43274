// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ui/PictureExport.h"

#include "controls/graph/GraphModel.h"
#include "controls/graph/ui/GraphPicture.h"
#include "export/ExportNames.h"
#include "files/SafeFile.h"

#include <QPointer>

namespace PictureExport {
namespace {

ValueOr<QByteArray> bytesOf(const GraphModel& graph, int format, const QSize& size)
{
    if (format == ImageExport::Metafile)
        return graph::metafileBytes(graph, size);
    const auto kind = format == ImageExport::Jpeg ? graph::PictureFormat::Jpeg : graph::PictureFormat::Bmp;
    return graph::pictureBytes(graph, kind, size.width(), size.height());
}

} // namespace

Outcome ExportFile(const GraphModel& graph, const QString& l_strFileName, int iExportFormat, bool bfCheckOverWrite,
                   const ImageExport::Choice& choice, UserMessages& messages)
{
    const QPointer<const GraphModel> alive(&graph);
    const QString name = ImageExport::completed(l_strFileName, iExportFormat);
    if (bfCheckOverWrite && !ExportNames::mayWrite(l_strFileName, name, messages))
        return Outcome::success();
    const std::optional<QSize> size = ImageExport::size(iExportFormat, choice);
    if (!alive || !size)
        return Outcome::success();
    const ValueOr<QByteArray> bytes = bytesOf(graph, iExportFormat, *size);
    return bytes ? files::writeFile(name, bytes.value()) : Outcome::failure(bytes.sentence());
}

} // namespace PictureExport
