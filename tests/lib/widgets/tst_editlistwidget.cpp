#include <QListView>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTest>
#include <QToolButton>

#include "testmain.h"
#include "widgets/editlistwidget.h"

using NVB::GUI::EditListWidget;

namespace {
void fill(QStandardItemModel& model)
{
    for (const char* name : {"Alpha", "Beta", "Gamma"})
        model.appendRow(new QStandardItem(QLatin1String(name)));
}
} // namespace

class TestEditListWidget : public QObject
{
    Q_OBJECT

private slots:
    void shouldOfferRemoveOnlyForCurrentRow();
    void shouldAskOwnerToAddAndRemove();
    void shouldReportCurrentAndEditedRow();
    void shouldShowNoButtonsWhenReadOnly();
    void shouldPlaceExtraButtonsAfterRemove();
};

void TestEditListWidget::shouldOfferRemoveOnlyForCurrentRow()
{
    QStandardItemModel model;
    fill(model);
    EditListWidget list(false);
    list.setModel(&model);
    QVERIFY(!list.removeButton()->isEnabled());
    list.setCurrentIndex(model.index(1, 0));
    QVERIFY(list.removeButton()->isEnabled());
    list.setCurrentIndex(QModelIndex());
    QVERIFY(!list.removeButton()->isEnabled());
    // A reset of the model takes the current row with it.
    list.setCurrentIndex(model.index(0, 0));
    QSignalSpy current(&list, &EditListWidget::currentItem);
    model.clear();
    QVERIFY(!list.removeButton()->isEnabled());
    QVERIFY(!current.isEmpty());
    QVERIFY(!current.last().at(0).toModelIndex().isValid());
}

void TestEditListWidget::shouldAskOwnerToAddAndRemove()
{
    QStandardItemModel model;
    fill(model);
    EditListWidget list(false);
    list.setModel(&model);
    QSignalSpy add(&list, &EditListWidget::addItem);
    QSignalSpy remove(&list, &EditListWidget::removeItem);
    list.addButton()->click();
    QCOMPARE(add.count(), 1);
    list.setCurrentIndex(model.index(2, 0));
    list.removeButton()->click();
    QCOMPARE(remove.count(), 1);
    QCOMPARE(remove.at(0).at(0).toModelIndex().data().toString(), QStringLiteral("Gamma"));
    // The list itself never removes.
    QCOMPARE(model.rowCount(), 3);
}

void TestEditListWidget::shouldReportCurrentAndEditedRow()
{
    QStandardItemModel model;
    fill(model);
    EditListWidget list(false);
    list.setModel(&model);
    list.resize(200, 200);
    list.show();
    QVERIFY(QTest::qWaitForWindowExposed(&list));
    QSignalSpy current(&list, &EditListWidget::currentItem);
    QSignalSpy edit(&list, &EditListWidget::editItem);
    const QRect rect = list.view()->visualRect(model.index(1, 0));
    QTest::mouseClick(list.view()->viewport(), Qt::LeftButton, {}, rect.center());
    QCOMPARE(current.count(), 1);
    QCOMPARE(current.at(0).at(0).toModelIndex().data().toString(), QStringLiteral("Beta"));
    QTest::mouseDClick(list.view()->viewport(), Qt::LeftButton, {}, rect.center());
    QCOMPARE(edit.count(), 1);
    QCOMPARE(edit.at(0).at(0).toModelIndex().row(), 1);
}

void TestEditListWidget::shouldShowNoButtonsWhenReadOnly()
{
    QStandardItemModel model;
    fill(model);
    EditListWidget list(true);
    list.setModel(&model);
    list.setCurrentIndex(model.index(0, 0));
    QVERIFY(list.isReadOnly());
    QVERIFY(list.addButton()->isHidden());
    QVERIFY(list.removeButton()->isHidden());
    QVERIFY(!list.removeButton()->isEnabled());
}

void TestEditListWidget::shouldPlaceExtraButtonsAfterRemove()
{
    EditListWidget list(false);
    auto* edit = new QToolButton();
    edit->setText(QStringLiteral("Edit"));
    list.addToolButton(edit);
    list.addToolButton(nullptr);
    QCOMPARE(edit->parentWidget(), &list);
    list.resize(300, 200);
    list.show();
    QVERIFY(QTest::qWaitForWindowExposed(&list));
    QVERIFY(edit->x() > list.removeButton()->x());
    QVERIFY(list.removeButton()->x() > list.addButton()->x());
}

NVB_TEST_MAIN(TestEditListWidget)
#include "tst_editlistwidget.moc"
