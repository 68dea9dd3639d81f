#include <QLabel>
#include <QTest>

#include "app/application.h"
#include "testmain.h"
#include "wizards/common/pagecheckboxlegenddialog.h"

using NVB::GUI::PageCheckBoxLegendDialog;

class TestPageCheckBoxLegendDialog : public QObject
{
    Q_OBJECT

private slots:
    void shouldTitleWithApplicationName();
    void shouldExplainFourStates_data();
    void shouldExplainFourStates();
    void shouldIgnoreUnknownStates();
};

void TestPageCheckBoxLegendDialog::shouldTitleWithApplicationName()
{
    PageCheckBoxLegendDialog dialog;
    QCOMPARE(dialog.windowTitle(), QStringLiteral("%1 Legend").arg(NVB::GUI::Application::applicationName()));
    QCOMPARE(dialog.states(), (QList<int> {0, 1, 2, 1001}));
}

void TestPageCheckBoxLegendDialog::shouldExplainFourStates_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("start");
    QTest::newRow("checked") << 2 << QStringLiteral("The folder is selected, including all the subitems.");
    QTest::newRow("unchecked") << 0 << QStringLiteral("The folder is not selected and no subitems");
    QTest::newRow("partly") << 1 << QStringLiteral("The folder is included, and some subitems are excluded.");
    QTest::newRow("incomplete") << 1001 << QStringLiteral("The folder itself is not included but some subitems");
}

void TestPageCheckBoxLegendDialog::shouldExplainFourStates()
{
    QFETCH(int, state);
    QFETCH(QString, start);
    PageCheckBoxLegendDialog dialog;
    QVERIFY(dialog.textLegend(state).startsWith(start));
    QVERIFY(dialog.pixmapLegend(state).isNull());
    QPixmap picture(16, 16);
    picture.fill(Qt::red);
    dialog.setPixmapLegend(state, picture);
    QCOMPARE(dialog.pixmapLegend(state).size(), QSize(16, 16));
    // One picture per state; the others stay empty.
    for (int other : dialog.states())
        if (other != state)
            QVERIFY(dialog.pixmapLegend(other).isNull());
}

void TestPageCheckBoxLegendDialog::shouldIgnoreUnknownStates()
{
    PageCheckBoxLegendDialog dialog;
    QPixmap picture(16, 16);
    picture.fill(Qt::blue);
    const int labels = dialog.findChildren<QLabel*>().size();
    dialog.setPixmapLegend(3, picture);
    dialog.setPixmapLegend(-1, picture);
    QCOMPARE(dialog.findChildren<QLabel*>().size(), labels);
    for (int state : dialog.states())
        QVERIFY(dialog.pixmapLegend(state).isNull());
    QVERIFY(dialog.textLegend(3).isEmpty());
}

NVB_TEST_MAIN(TestPageCheckBoxLegendDialog)
#include "tst_pagecheckboxlegenddialog.moc"
