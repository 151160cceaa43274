// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/DrawProgram.h"

#include "controls/graph/GraphModel.h"
#include "controls/graph/ui/GraphPicture.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace cli;
using ::testing::HasSubstr;

namespace {

QByteArray content(const QString& name)
{
    QFile file(name);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

TEST(DrawProgram, TheNameTellsTheKindOfPicture)
{
    const auto format = [](const char* name) { return DrawProgram::formatOf(OutputFile(QString::fromUtf8(name))); };
    EXPECT_EQ(format("a.b.PNG"), QStringLiteral("png"));
    EXPECT_EQ(format("a.jpeg"), QStringLiteral("jpeg"));
    EXPECT_EQ(format("-"), QStringLiteral("png"));
    for (const char* name : {"a", "png", "a.doc", "a.png.bak", "/dev/null"})
        EXPECT_EQ(format(name), QString()) << name;
}

TEST(DrawProgram, ThePictureIsThatOfTheGraphItself)
{
    const QTemporaryDir folder;
    GraphModel model;
    model.setMainTitle(QStringLiteral("Drawn elsewhere"));
    for (int point = 0; point < 50; ++point)
        model.setPoint(0, point, 1000.0F + static_cast<float>(point), static_cast<float>(point % 7 + 1));
    model.PEactions(graph::Reinitialise);
    ASSERT_TRUE(DrawProgram::check().ok()) << DrawProgram::check().sentence().toStdString();
    const OutputFile picture(folder.filePath(QStringLiteral("a.png")));
    const Outcome drawn = DrawProgram::draw(model, picture, QSize(640, 480));
    ASSERT_TRUE(drawn.ok()) << drawn.sentence().toStdString();
    const ValueOr<QByteArray> here = graph::pictureBytes(model, graph::PictureFormat::Png, 640, 480);
    ASSERT_TRUE(here.ok());
    EXPECT_GT(here.value().size(), 1000);
    EXPECT_TRUE(content(picture.name()) == here.value());
}

TEST(DrawProgram, ItsSentenceIsHandedOnWithoutItsName)
{
    const QTemporaryDir folder;
    const GraphModel model;
    const OutputFile nowhere(folder.filePath(QStringLiteral("none/a.png")));
    EXPECT_EQ(DrawProgram::draw(model, nowhere, QSize(640, 480)).sentence(),
              QStringLiteral("Cannot write %1: No such file or directory.").arg(nowhere.name()));
    const OutputFile full(QStringLiteral("/dev/full"));
    EXPECT_THAT(DrawProgram::draw(model, full, QSize(640, 480)).sentence().toStdString(), HasSubstr("format"))
        << "a name without a kind is refused by the program";
}
