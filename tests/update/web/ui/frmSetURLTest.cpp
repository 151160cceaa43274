// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/web/ui/frmSetURL.h"

#include "UpdateDoubles.h"

#include <QLineEdit>
#include <QTest>

namespace {

class frmSetURLTest : public UpdateFixture
{
protected:
    frmSetURLTest()
    {
        preferences.setValue(options::kWebUrl, QString("http://before.example/"));
        form = std::make_unique<frmSetURL>(preferences);
        form->show();
        address = findControl<QLineEdit>(form.get(), "txtURL");
    }
    void press(const char* button) { QTest::mouseClick(findControl<QPushButton>(form.get(), button), Qt::LeftButton); }

    std::unique_ptr<frmSetURL> form;
    QLineEdit* address;
};

} // namespace

TEST_F(frmSetURLTest, ItOpensWithTheStoredAddressAndTellsWhatIsWanted)
{
    EXPECT_EQ(address->text(), "http://before.example/");
    EXPECT_TRUE(form->findChild<QLabel*>()->text().contains("https://www.example.com/updates"));
    EXPECT_EQ(form->findChild<QLabel*>()->buddy(), address);
}

TEST_F(frmSetURLTest, OkStoresTheAddressAndCloses)
{
    address->setText("http://after.example/");
    press("OKButton");
    EXPECT_EQ(stored("Web", "URL"), "http://after.example/");
    EXPECT_FALSE(form->isVisible());
}

TEST_F(frmSetURLTest, CancelStoresNothing)
{
    address->setText("http://after.example/");
    press("CancelButton");
    EXPECT_EQ(stored("Web", "URL"), "http://before.example/");
    EXPECT_FALSE(form->isVisible());
}
