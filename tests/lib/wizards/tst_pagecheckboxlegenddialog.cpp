#include <QLabel>
#include <QTest>

#include "testmain.h"
#include "wizards/common/pagecheckboxlegenddialog.h"

using NVB::GUI::PageCheckBoxLegendDialog;

class TestPageCheckBoxLegendDialog : public QObject
{
    Q_OBJECT

private slots:
    void shouldKeepOnePicturePerState();
    void shouldIgnoreUnknownStates();
};

void TestPageCheckBoxLegendDialog::shouldKeepOnePicturePerState()
{
    const QList<int> states = PageCheckBoxLegendDialog().states();
    QCOMPARE(states, (QList<int> {0, 1, 2, 1001}));
    for (int state : states) {
        PageCheckBoxLegendDialog dialog;
        QVERIFY(!dialog.textLegend(state).isEmpty());
        QVERIFY(dialog.pixmapLegend(state).isNull());
        QPixmap picture(16, 16);
        picture.fill(Qt::red);
        dialog.setPixmapLegend(state, picture);
        QCOMPARE(dialog.pixmapLegend(state).size(), QSize(16, 16));
        for (int other : states)
            if (other != state)
                QVERIFY(dialog.pixmapLegend(other).isNull());
    }
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
