#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include "testmain.h"
#include "widgets/checkbox.h"

using NVB::GUI::CheckBox;

namespace {
const QString RichText = QStringLiteral(
    "<table><tr><td><b>Save backup plan configuration</b></td></tr><tr><td><small><b>Note:</b> a long note that "
    "explains what happens to the encryption password when the configuration travels with the backup, long "
    "enough to wrap</small></td></tr></table>");
}

class TestCheckBox : public QObject
{
    Q_OBJECT

private slots:
    void shouldToggleWhenTextIsClicked();
    void shouldGrowTallerWhenNarrower();
    void shouldNameItselfByPlainWords();
    void shouldDrawTheText();
};

void TestCheckBox::shouldToggleWhenTextIsClicked()
{
    CheckBox box(RichText);
    box.resize(box.sizeHint());
    box.show();
    QVERIFY(QTest::qWaitForWindowExposed(&box));
    QSignalSpy toggled(&box, &CheckBox::toggled);
    // Far right and low down: inside the note, nowhere near the indicator.
    QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(box.width() - 5, box.height() - 3));
    QVERIFY(box.isChecked());
    QCOMPARE(toggled.count(), 1);
    QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(box.width() - 5, box.height() - 3));
    QVERIFY(!box.isChecked());
}

void TestCheckBox::shouldGrowTallerWhenNarrower()
{
    CheckBox box(RichText);
    QVERIFY(box.hasHeightForWidth());
    const int wide = box.heightForWidth(2000);
    const int narrow = box.heightForWidth(150);
    QVERIFY2(narrow > wide, qPrintable(QStringLiteral("%1 <= %2").arg(narrow).arg(wide)));
    // A layout gives it room for the whole text.
    QWidget page;
    auto* layout = new QVBoxLayout(&page);
    layout->addWidget(new CheckBox(RichText, &page));
    page.resize(200, 10);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    QVERIFY(page.height() >= narrow);
}

void TestCheckBox::shouldNameItselfByPlainWords()
{
    CheckBox box(RichText);
    QVERIFY(box.accessibleName().startsWith(QStringLiteral("Save backup plan configuration")));
    QVERIFY(!box.accessibleName().contains(QLatin1Char('<')));
    // The toolkit's own text stays empty, or it would be drawn a second time.
    QVERIFY(box.text().isEmpty());
}

void TestCheckBox::shouldDrawTheText()
{
    CheckBox empty;
    CheckBox full(RichText);
    empty.resize(300, 60);
    full.resize(300, 60);
    const QImage blank = empty.grab().toImage();
    const QImage drawn = full.grab().toImage();
    // Both draw the indicator; only the text tells them apart.
    QVERIFY(blank != drawn);
}

NVB_TEST_MAIN(TestCheckBox)
#include "tst_checkbox.moc"
