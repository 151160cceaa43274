// SPDX-License-Identifier: GPL-3.0-or-later
#include "export/ui/frmExportImage.h"

#include "export/ui/ExportBench.h"

#include <QComboBox>
#include <QImage>
#include <QPushButton>
#include <QSlider>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class FrmExportImageTest : public ::testing::Test
{
protected:
    std::unique_ptr<frmExportImage> open()
    {
        auto form = std::make_unique<frmExportImage>(model, QStringLiteral("Loop of run.gzd"), bench.exports);
        form->show();
        return form;
    }

    ExportBench bench;
    GraphModel model{1, 8};
};

TEST_F(FrmExportImageTest, writesAnyGraphAndKeepsSettingsOfItsOwn)
{
    model.setMainTitle(QStringLiteral("Title"));
    auto form = open();
    findControl<QComboBox>(form.get(), "combFormat")->setCurrentIndex(0);
    findControl<QComboBox>(form.get(), "combResolution")->setCurrentIndex(1);
    findControl<QSlider>(form.get(), "sldYRatio")->setValue(25);
    bench.picker.answer = bench.path("loop.png");
    QTest::mouseClick(findControl<QPushButton>(form.get(), "btnSaveImage"), Qt::LeftButton);
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(bench.picker.name, "Loop of run");
    EXPECT_EQ(QImage(bench.path("loop.jpg")).size(), QSize(640, 160));
    form.reset();
    EXPECT_EQ(bench.preferences.value(options::kLoopExportImage.type), 0);
    EXPECT_EQ(bench.preferences.value(options::kLoopExportImage.resolution), 1);
    EXPECT_EQ(bench.preferences.value(options::kLoopExportImage.yAspect), 25);
    EXPECT_EQ(bench.preferences.value(options::kExportImage.type), 2) << "the document's are others";
}

TEST_F(FrmExportImageTest, scriptsUseItWithoutShowingIt)
{
    frmExportImage form(model, QStringLiteral("Loop"), bench.exports);
    EXPECT_TRUE(form.ExportFile(bench.path("a.b"), 1, false));
    EXPECT_TRUE(bench.content("a.wmf").startsWith("\xd7\xcd\xc6\x9a"));
}

TEST_F(FrmExportImageTest, closesWhenTheGraphGoes)
{
    auto graph = std::make_unique<GraphModel>(1, 8);
    frmExportImage form(*graph, QStringLiteral("Loop"), bench.exports);
    form.show();
    graph.reset();
    EXPECT_FALSE(form.isVisible());
}

} // namespace
