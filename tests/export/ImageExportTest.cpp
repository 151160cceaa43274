// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ImageExport.h"

#include "document/DocumentBench.h"
#include "export/ExportNames.h"

#include <gtest/gtest.h>

using namespace ImageExport;

TEST(ImageExport, RatiosOfHalfAt1024Give512By512)
{
    EXPECT_EQ(size(Jpeg, {Jpeg, 3, 50, 50}), QSize(512, 512));
    EXPECT_EQ(size(Bitmap, {Bitmap, 3, 50, 100}), QSize(512, 1024));
}

TEST(ImageExport, EachResolutionIsTheSquareItNames)
{
    const int sides[] = {320, 640, 800, 1024, 1280, 1600};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(size(Bitmap, {Bitmap, i, 100, 100}), QSize(sides[i], sides[i])) << i;
}

TEST(ImageExport, TheMetafileSizeIgnoresTheResolution)
{
    for (int resolution = 0; resolution < 6; ++resolution)
        EXPECT_EQ(size(Metafile, {Metafile, resolution, 100, 25}), QSize(20000, 5000)) << resolution;
}

TEST(ImageExport, AResolutionOutsideTheListWritesNothingNotEvenAMetafile)
{
    for (const int format : {Jpeg, Metafile, Bitmap}) {
        EXPECT_FALSE(size(format, {format, 6, 100, 100})) << format;
        EXPECT_FALSE(size(format, {format, -1, 100, 100})) << format;
    }
}

TEST(ImageExport, OtherFormatsWriteNothing)
{
    EXPECT_FALSE(size(3, {3, 0, 100, 100}));
    EXPECT_FALSE(size(-1, {-1, 0, 100, 100}));
}

TEST(ImageExport, NamesEndAtTheirFirstDotAndTakeTheExtensionOfTheFormat)
{
    EXPECT_EQ(completed("/home/lab/a.b.png", Jpeg), "/home/lab/a.jpg");
    EXPECT_EQ(completed("/home/lab/a", Bitmap), "/home/lab/a.bmp");
    EXPECT_EQ(completed("/home/lab/a.txt", Metafile), "/home/lab/a.wmf");
    EXPECT_EQ(completed("/home/lab.d/a", 9), "/home/lab.wmf") << "folders included, other formats as the metafile";
}

TEST(ImageExport, FiltersAreThoseOfTheFormats)
{
    EXPECT_EQ(filter(Jpeg), "JPEG files (*.jpg)|*.jpg");
    EXPECT_EQ(filter(Metafile), "Meta files (*.wmf)|*.wmf");
    EXPECT_EQ(filter(Bitmap), "Bitmap files (*.bmp)|*.bmp");
}

TEST(ImageExport, TheDefaultsAreAWholeBitmapOf1600AndStoredNonsenseIsNoChoice)
{
    DocumentBench bench;
    Choice choice = stored(bench.preferences, options::kExportImage);
    EXPECT_EQ(choice.format, Bitmap);
    EXPECT_EQ(size(choice.format, choice), QSize(1600, 1600));
    bench.preferences.setValue(options::kExportImage.type, 7);
    bench.preferences.setValue(options::kExportImage.resolution, 6);
    bench.preferences.setValue(options::kExportImage.xAspect, 0);
    bench.preferences.setValue(options::kExportImage.yAspect, 1000);
    choice = stored(bench.preferences, options::kExportImage);
    EXPECT_EQ(choice.format, -1);
    EXPECT_EQ(choice.resolution, -1);
    EXPECT_EQ(choice.xAspect, 10);
    EXPECT_EQ(choice.yAspect, 100);
    EXPECT_EQ(stored(bench.preferences, options::kLoopExportImage).format, Bitmap) << "the loop has its own";
}

TEST(ExportNames, TheTitleIsProposedUnlessItIsNoneOrNoFileCanBearIt)
{
    using ExportNames::suggested;
    EXPECT_EQ(suggested(QStringLiteral("Langevin 40"), QStringLiteral("Document 1")), "Langevin 40");
    EXPECT_EQ(suggested(QStringLiteral("Title"), QStringLiteral("Document 1")), "Document 1");
    EXPECT_EQ(suggested(QStringLiteral("a/b"), QStringLiteral("/home/lab/run.7.gzd")), "run");
    EXPECT_EQ(suggested(QStringLiteral("V1.2"), QStringLiteral("x")), "V1");
    EXPECT_EQ(suggested(QStringLiteral("a?b"), QStringLiteral("what?")), "fileName");
    EXPECT_EQ(suggested(QString(), QStringLiteral("x")), "fileName");
}

TEST(ExportNames, ATextNameWithAnyExtensionEndsInTxt)
{
    for (const char* name : {"/lab/a", "/lab/a.csv", "/lab/a.b.c", "/lab/a.txt", "/lab/a."})
        EXPECT_EQ(ExportNames::textFile(QLatin1String(name)), "/lab/a.txt") << name;
}

TEST(ExportNames, TheFileDialogOpensInTheFolderOfExports)
{
    DocumentBench bench;
    bench.preferences.setValue(options::kExportFiles.option, QStringLiteral("/home/lab/Export"));
    bench.picker.answer = QStringLiteral("/home/lab/Export/x");
    EXPECT_EQ(ExportNames::ask(bench.picker, bench.preferences, QStringLiteral("f|g"), QStringLiteral("run")),
              "/home/lab/Export/x");
    EXPECT_EQ(bench.picker.title, "Save As");
    EXPECT_EQ(bench.picker.filters, "f|g");
    EXPECT_EQ(bench.picker.folder, "/home/lab/Export");
    EXPECT_EQ(bench.picker.name, "run");
}

TEST(ExportNames, AFolderWithADotIsAskedAboutSinceTheFileWouldGoElsewhere)
{
    DocumentBench bench;
    bench.messages.replies = {UserMessages::ReplyNo};
    EXPECT_FALSE(
        ExportNames::mayWrite(QStringLiteral("/nowhere/lab.d/a"), QStringLiteral("/nowhere/lab.txt"), bench.messages));
    ASSERT_EQ(bench.messages.shown.size(), 1U);
    EXPECT_EQ(bench.messages.shown[0].text,
              "The name of an export ends at its first dot, and a folder's name holds one here.\n"
              "The file would be saved as \"/nowhere/lab.txt\". Save it there?");
    EXPECT_TRUE(
        ExportNames::mayWrite(QStringLiteral("/nowhere/a.b"), QStringLiteral("/nowhere/a.txt"), bench.messages));
    EXPECT_EQ(bench.messages.shown.size(), 1U);
}
