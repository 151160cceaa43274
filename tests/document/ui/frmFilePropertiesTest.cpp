// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/ui/frmFileProperties.h"

#include "document/DocumentBench.h"
#include "widgets/ui/ElidingLabel.h"

#include <QApplication>
#include <QHelpEvent>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QToolTip>

#include <gtest/gtest.h>

namespace {

class FrmFilePropertiesTest : public ::testing::Test
{
protected:
    QString text(const char* name)
    {
        auto* found = form.findChild<QLabel*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found != nullptr ? found->text() : QString();
    }

    DocumentBench bench;
    std::unique_ptr<PenDocument> document = bench.document(PenDocument::Impedance);
    frmFileProperties form;
};

TEST_F(FrmFilePropertiesTest, documentNeverSavedSaysSoTwice)
{
    form.ShowDetails(*document);
    EXPECT_EQ(text("lblFilePath"), "Not yet saved");
    EXPECT_EQ(text("lblFileName"), "Not yet saved");
}

TEST_F(FrmFilePropertiesTest, savedDocumentShowsItsFileAndOrigin)
{
    document->SetFileName("/home/lab/plots/run.gzd");
    document->peGraph().setTXAxisLabel("MarrowickGraph V1.28.0 | T46 V1.23.4 Uncalibrated : 20 Nov 2026");
    form.ShowDetails(*document);
    EXPECT_EQ(text("lblFilePath"), "/home/lab/plots/");
    EXPECT_EQ(text("lblFileName"), "run.gzd");
    EXPECT_EQ(text("lblVersion"), "MarrowickGraph V1.28.0");
    EXPECT_EQ(text("lblInstrument"), "T46 V1.23.4 Uncalibrated");
    EXPECT_EQ(text("lblDate"), "20 Nov 2026");
}

TEST_F(FrmFilePropertiesTest, textWithoutADateIsTheOldFormat)
{
    document->peGraph().setTXAxisLabel("MarrowickGraph V1.2.0 | T46");
    form.ShowDetails(*document);
    EXPECT_EQ(text("lblVersion"), "MarrowickGraph V1.2.0");
    EXPECT_EQ(text("lblInstrument"), "Old graph format");
    EXPECT_EQ(text("lblDate"), "Not available");
}

TEST_F(FrmFilePropertiesTest, theToolTipOfALongTextShowsItsLettersAndOpensNoFile)
{
    const QString hostile = QStringLiteral("<img src=\"/nowhere/picture\">").repeated(20);
    document->peGraph().setTXAxisLabel(hostile + " | T46 V1.23.4 Uncalibrated : 20 Nov 2026");
    form.ShowDetails(*document);
    form.show();
    auto* label = form.findChild<ElidingLabel*>("lblVersion");
    ASSERT_NE(label, nullptr);
    ASSERT_GT(label->fontMetrics().horizontalAdvance(hostile), label->width());
    QHelpEvent event(QEvent::ToolTip, QPoint(2, 2), label->mapToGlobal(QPoint(2, 2)));
    QApplication::sendEvent(label, &event);
    EXPECT_TRUE(QToolTip::text().contains("&lt;img")) << QToolTip::text().toStdString();
    EXPECT_FALSE(QToolTip::text().contains("<img"));
    QToolTip::hideText();
}

TEST_F(FrmFilePropertiesTest, okAndEscapeClose)
{
    form.ShowDetails(*document);
    form.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&form));
    auto* button = form.findChild<QPushButton*>("btnOKButton");
    ASSERT_NE(button, nullptr);
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_FALSE(form.isVisible());
    form.show();
    QTest::keyClick(&form, Qt::Key_Escape);
    EXPECT_FALSE(form.isVisible());
}

TEST_F(FrmFilePropertiesTest, aLongPathDoesNotWidenTheFormBeyondReason)
{
    document->SetFileName("/" + QString(2000, 'x') + "/run.gzd");
    form.ShowDetails(*document);
    form.adjustSize();
    EXPECT_LT(form.width(), 1000);
    EXPECT_EQ(text("lblFilePath").size(), 2002);
}

} // namespace
