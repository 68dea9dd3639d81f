#include <QSignalSpy>
#include <QTest>

#include "testmain.h"
#include "widgets/elidedlabel.h"

using NVB::GUI::ElidedLabel;

class TestElidedLabel : public QObject
{
    Q_OBJECT

private slots:
    void shouldElideOnlyWhenNarrow_data();
    void shouldElideOnlyWhenNarrow();
    void shouldShowWholeTextAsToolTipWhileElided();
    void shouldAskForTheWholeTextsWidth();
};

void TestElidedLabel::shouldElideOnlyWhenNarrow_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("elided");
    QTest::addColumn<QString>("ellipsisAt");

    QTest::newRow("wide") << 2000 << int(Qt::ElideRight) << false << QString();
    QTest::newRow("narrow right") << 80 << int(Qt::ElideRight) << true << QStringLiteral("end");
    QTest::newRow("narrow middle") << 80 << int(Qt::ElideMiddle) << true << QStringLiteral("middle");
    QTest::newRow("narrow left") << 80 << int(Qt::ElideLeft) << true << QStringLiteral("start");
}

void TestElidedLabel::shouldElideOnlyWhenNarrow()
{
    QFETCH(int, width);
    QFETCH(int, mode);
    QFETCH(bool, elided);
    QFETCH(QString, ellipsisAt);

    const QString text = QStringLiteral("/home/user/Documents/projects/backup/a-very-long-folder-name");
    ElidedLabel label(text);
    label.setElideMode(Qt::TextElideMode(mode));
    label.resize(width, label.sizeHint().height());
    QCOMPARE(label.isElided(), elided);
    const QString shown = label.elidedText();
    if (!elided) {
        QCOMPARE(shown, text);
        return;
    }
    const QChar ellipsis(0x2026);
    QVERIFY(shown.size() < text.size());
    if (ellipsisAt == QLatin1String("end"))
        QVERIFY(shown.endsWith(ellipsis));
    else if (ellipsisAt == QLatin1String("start"))
        QVERIFY(shown.startsWith(ellipsis));
    else
        QVERIFY(!shown.startsWith(ellipsis) && !shown.endsWith(ellipsis) && shown.contains(ellipsis));
}

void TestElidedLabel::shouldShowWholeTextAsToolTipWhileElided()
{
    ElidedLabel label(QStringLiteral("Amazon S3 bucket in the far region"));
    label.resize(40, 20);
    label.show();
    QVERIFY(QTest::qWaitForWindowExposed(&label));
    QCOMPARE(label.toolTip(), label.text());
    label.resize(2000, 20);
    QVERIFY(label.toolTip().isEmpty());
    label.resize(40, 20);
    label.setText(QStringLiteral("Another long account name"));
    QCOMPARE(label.toolTip(), QStringLiteral("Another long account name"));
}

void TestElidedLabel::shouldAskForTheWholeTextsWidth()
{
    ElidedLabel label(QStringLiteral("Short"));
    QSignalSpy changed(&label, &ElidedLabel::textChanged);
    const int shortWidth = label.sizeHint().width();
    label.setText(QStringLiteral("Short and then much longer"));
    label.setText(QStringLiteral("Short and then much longer"));
    // Bindings to the text property hear of a change once, not of a repeat.
    QCOMPARE(changed.count(), 1);
    QVERIFY(label.sizeHint().width() > shortWidth);
    QVERIFY(label.minimumSizeHint().width() < label.sizeHint().width());
}

NVB_TEST_MAIN(TestElidedLabel)
#include "tst_elidedlabel.moc"
