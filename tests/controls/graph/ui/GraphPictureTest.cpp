// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ui/GraphPicture.h"

#include "GraphFixture.h"

#include <QDir>
#include <QFile>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgRenderer>
#include <QTemporaryDir>

#include <csignal>
#include <sys/resource.h>

namespace {

class GraphPicture : public GraphFixture
{
protected:
    GraphPicture()
    {
        for (int i = 0; i < 1024; ++i) {
            const double f = std::pow(10.0, 3 + 3.0 * i / 1023);
            model.setPoint(0, i, static_cast<float>(f), static_cast<float>(100 + 50 * (i % 2)));
        }
        settle();
    }
    QString path(const char* name) { return folder.filePath(QLatin1String(name)); }
    QByteArray content(const QString& fileName)
    {
        QFile file(fileName);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QTemporaryDir folder;
};

} // namespace

TEST_F(GraphPicture, ImagesHaveTheSizeAskedFor)
{
    const std::pair<graph::PictureFormat, const char*> formats[] = {{graph::PictureFormat::Png, "a.png"},
                                                                    {graph::PictureFormat::Jpeg, "a.jpg"},
                                                                    {graph::PictureFormat::Bmp, "a.bmp"}};
    for (const auto& [format, name] : formats) {
        ASSERT_TRUE(view.savePicture(path(name), format, 512, 300)) << name;
        const QImage image(path(name));
        EXPECT_EQ(image.size(), QSize(512, 300)) << name;
        EXPECT_GT(redPixels(image, image.rect()), 500) << name;
    }
}

TEST_F(GraphPicture, AModelWithoutAWindowIsDrawn)
{
    GraphModel alone;
    alone.setPoint(0, 0, 1, 1);
    alone.setPoint(0, 1, 2, 5);
    alone.setSubsetColors(0, 0x0000FF);
    alone.PEactions(graph::Reinitialise);
    const QImage image = graph::pictureImage(alone, 400, 400);
    EXPECT_GT(redPixels(image, image.rect()), 100);
}

TEST_F(GraphPicture, APictureTwiceAsLargeShowsTheSameFiner)
{
    const QImage large = graph::pictureImage(model, 1800, 1200);
    const QImage larger = graph::pictureImage(model, 3600, 2400);
    int differing = 0;
    const QImage reduced = larger.scaled(large.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    for (int y = 0; y < large.height(); y += 3) {
        for (int x = 0; x < large.width(); x += 3)
            differing += std::abs(large.pixelColor(x, y).lightness() - reduced.pixelColor(x, y).lightness()) > 128;
    }
    EXPECT_LT(differing, large.width() * large.height() / 9 / 20);
}

TEST_F(GraphPicture, VectorsHoldEveryPoint)
{
    ASSERT_TRUE(view.savePicture(path("a.svg"), graph::PictureFormat::Svg, 320, 240));
    const QByteArray svg = content(path("a.svg"));
    qsizetype longest = 0;
    for (qsizetype from = svg.indexOf("points=\""); from >= 0; from = svg.indexOf("points=\"", from + 1)) {
        const qsizetype start = from + 8;
        longest = std::max(longest, svg.mid(start, svg.indexOf('"', start) - start).count(','));
    }
    EXPECT_EQ(longest, 1024);
    EXPECT_TRUE(QSvgRenderer(svg).isValid());
    ASSERT_TRUE(view.savePicture(path("a.pdf"), graph::PictureFormat::Pdf, 320, 240));
    EXPECT_TRUE(content(path("a.pdf")).startsWith("%PDF-"));
}

TEST_F(GraphPicture, PaintingFillsTheRectangleAndNothingElse)
{
    QImage image(600, 500, QImage::Format_RGB32);
    image.fill(Qt::green);
    {
        QPainter painter(&image);
        graph::paintPicture(model, painter, QRectF(100, 50, 400, 300));
        EXPECT_TRUE(painter.isActive());
    }
    EXPECT_EQ(image.pixelColor(50, 25), QColor(Qt::green));
    EXPECT_EQ(image.pixelColor(550, 450), QColor(Qt::green));
    EXPECT_EQ(image.pixelColor(104, 54), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(496, 346), QColor(Qt::white));
    EXPECT_GT(redPixels(image, QRect(100, 50, 400, 300)), 300);
}

TEST_F(GraphPicture, SizesThatCannotBeAreRefusedAndNothingIsWritten)
{
    for (const QSize& size : {QSize(0, 100), QSize(100, -1), QSize(15, 100), QSize(20001, 100)}) {
        const Outcome outcome =
            view.savePicture(path("no.png"), graph::PictureFormat::Png, size.width(), size.height());
        EXPECT_FALSE(outcome);
        EXPECT_FALSE(outcome.sentence().isEmpty());
    }
    EXPECT_FALSE(QFile::exists(path("no.png")));
    EXPECT_FALSE(view.savePicture(path("missing/folder/a.png"), graph::PictureFormat::Png, 100, 100));
}

TEST_F(GraphPicture, APictureThatDoesNotFitOnTheDiskLeavesTheOldOneAndSaysSo)
{
    const QString name = path("a.bmp");
    ASSERT_TRUE(view.savePicture(name, graph::PictureFormat::Bmp, 32, 32));
    const QByteArray before = content(name);
    // A limit on the size of files fails a write as a full disk does, here at the last bytes of the picture.
    rlimit unlimited{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &unlimited), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit = unlimited;
    limit.rlim_cur = 64 * 64 * 3; // a header and three bytes a pixel are wanted
    setrlimit(RLIMIT_FSIZE, &limit);
    const Outcome outcome = view.savePicture(name, graph::PictureFormat::Bmp, 64, 64);
    setrlimit(RLIMIT_FSIZE, &unlimited);
    std::signal(SIGXFSZ, handler);
    EXPECT_FALSE(outcome);
    EXPECT_TRUE(outcome.sentence().contains(name));
    EXPECT_EQ(content(name), before);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

TEST_F(GraphPicture, ADarkDesktopDoesNotReachPictures)
{
    QPalette dark;
    dark.setColor(QPalette::Window, Qt::black);
    const QPalette before = QApplication::palette();
    QApplication::setPalette(dark);
    const QImage image = graph::pictureImage(model, 400, 300);
    QApplication::setPalette(before);
    EXPECT_EQ(image.pixelColor(1, 1), QColor(Qt::white));
}
