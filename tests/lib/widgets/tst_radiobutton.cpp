#include <QTest>
#include <QVBoxLayout>

#include "testmain.h"
#include "widgets/radiobutton.h"

using NVB::GUI::RadioButton;

class TestRadioButton : public QObject
{
    Q_OBJECT

private slots:
    void shouldCheckWhenNoteIsClicked();
    void shouldWrapToGivenWidth();
};

void TestRadioButton::shouldCheckWhenNoteIsClicked()
{
    QWidget page;
    auto* layout = new QVBoxLayout(&page);
    auto* first = new RadioButton(
        QStringLiteral("<table><tr><td>First</td></tr><tr><td><small>note</small></td></tr></table>"));
    auto* second = new RadioButton(
        QStringLiteral("<table><tr><td>Second</td></tr><tr><td><small>a note below it</small></td></tr></table>"));
    layout->addWidget(first);
    layout->addWidget(second);
    first->setChecked(true);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    QTest::mouseClick(second, Qt::LeftButton, {}, QPoint(second->width() / 2, second->height() - 3));
    QVERIFY(second->isChecked());
    QVERIFY(!first->isChecked());
}

void TestRadioButton::shouldWrapToGivenWidth()
{
    RadioButton button(QStringLiteral("<table><tr><td>Select partitions to back up by hand, one by one, from the "
                                      "list of every disk of this machine</td></tr></table>"));
    QVERIFY(button.heightForWidth(120) > button.heightForWidth(1200));
    QVERIFY(button.sizeHint().width() <= 40 + NVB::GUI::RichButtonText::PreferredWidth);
}

NVB_TEST_MAIN(TestRadioButton)
#include "tst_radiobutton.moc"
