#include <QLabel>
#include <QTest>

#include "testmain.h"
#include "widgets/attentionframe.h"

using NVB::GUI::AttentionFrame;

class TestAttentionFrame : public QObject
{
    Q_OBJECT

private slots:
    void shouldShowTextGivenBySignal();
    void shouldLookDifferentPerKind();
};

void TestAttentionFrame::shouldShowTextGivenBySignal()
{
    AttentionFrame frame(QStringLiteral("This change will force a Full backup"));
    QCOMPARE(frame.text(), QStringLiteral("This change will force a Full backup"));
    QCOMPARE(frame.kind(), AttentionFrame::Warning);
    QLabel* shown = nullptr;
    for (QLabel* label : frame.findChildren<QLabel*>())
        if (label->text() == frame.text())
            shown = label;
    QVERIFY(shown);
    QVERIFY(shown->wordWrap());
    frame.setText(QStringLiteral("The password and confirmation password do not match"));
    QCOMPARE(shown->text(), QStringLiteral("The password and confirmation password do not match"));
}

void TestAttentionFrame::shouldLookDifferentPerKind()
{
    AttentionFrame frame(QStringLiteral("Note"), AttentionFrame::Information);
    frame.resize(300, 40);
    const QImage information = frame.grab().toImage();
    frame.setKind(AttentionFrame::Error);
    QCOMPARE(frame.kind(), AttentionFrame::Error);
    const QImage error = frame.grab().toImage();
    QVERIFY(information != error);
    QVERIFY(frame.palette().color(QPalette::Window) != QColor(Qt::white));
}

NVB_TEST_MAIN(TestAttentionFrame)
#include "tst_attentionframe.moc"
