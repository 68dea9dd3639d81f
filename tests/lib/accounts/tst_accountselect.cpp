#include <QAction>
#include <QDialogButtonBox>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardItemModel>
#include <QtTest>

#include "accounts/accountfactory.h"
#include "accounts/local/localadd.h"
#include "accounts/mns/mnsedit.h"
#include "accounts/selectitem.h"
#include "accounts/selectmns.h"
#include "accounts/selectstandalon.h"
#include "accounts/selectstandalonmenu.h"
#include "accounts/sftp/sftpadd.h"
#include "accounts/storagesadd.h"
#include "accounts/storagesinfo.h"
#include "cloud/cloudtype.h"
#include "models/models.h"
#include "testmain.h"

using namespace NVB::GUI::Settings;
using namespace NVB::GUI::Settings::Account;
namespace Column = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Column;

class TestAccountSelect : public QObject
{
    Q_OBJECT

private slots:
    void shouldRaiseTypeOfClickedTile();
    void shouldOfferOnlyProvidersWithDialog();
    void shouldDoubleAmpersandOnlyInMenu();
    void shouldGiveNoDialogForUnofferedTypes_data();
    void shouldGiveNoDialogForUnofferedTypes();
    void shouldGiveEachProviderItsDialog();
    void shouldGiveServiceAccountsTheManagedDialog();
    void shouldOfferLocalStorageInManagedSelector();
    void shouldRemoveTheAskedRowEvenAfterRowsMoved();
    void shouldKeepRowWhenRemovalIsRefused();
};

void TestAccountSelect::shouldRaiseTypeOfClickedTile()
{
    SelectStandalon select;
    select.resize(320, 600);
    select.show();
    QSignalSpy chosen(&select, &Select::accountSelected);
    Select::Item* sftp = select.item(int(NVL::Cloud::Type::Sftp));
    QVERIFY(sftp);
    select.ensureWidgetVisible(sftp);
    QTest::mouseClick(sftp, Qt::LeftButton);
    QCOMPARE(chosen.count(), 1);
    QCOMPARE(chosen.first().first().toInt(), 33);
}

void TestAccountSelect::shouldOfferOnlyProvidersWithDialog()
{
    // A tile that opens nothing would be a dead end for the user.
    SelectStandalon select;
    int enabled = 0;
    for (const Select::Item* item : select.items()) {
        QCOMPARE(item->isEnabled(), AccountFactory::hasDialog(item->type()));
        enabled += item->isEnabled();
    }
    QVERIFY(enabled > 1);
}

void TestAccountSelect::shouldDoubleAmpersandOnlyInMenu()
{
    SelectStandalon::Menu menu(false);
    const QList<QAction*> actions = menu.actions();
    QCOMPARE(actions.first()->text(), QStringLiteral("Amazon S3 && Glacier"));
    QCOMPARE(actions.first()->data().toInt(), 2);
    SelectStandalon select;
    QCOMPARE(select.items().first()->name(), QStringLiteral("Amazon S3 & Glacier"));
    // The menu without OpenStack drops exactly that family.
    SelectStandalon::Menu withoutOpenStack(true);
    int openStack = 0;
    for (const QAction* action : actions)
        openStack += NVL::Cloud::OpenStack.contains(NVL::Cloud::Type(action->data().toInt()));
    QVERIFY(openStack > 0);
    QCOMPARE(withoutOpenStack.actions().size(), actions.size() - openStack);
    for (const QAction* action : withoutOpenStack.actions())
        QVERIFY(!NVL::Cloud::OpenStack.contains(NVL::Cloud::Type(action->data().toInt())));
}

void TestAccountSelect::shouldGiveNoDialogForUnofferedTypes_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("Aruba") << 16;
    QTest::newRow("gap") << 32;
    QTest::newRow("nonsense") << -4;
}

void TestAccountSelect::shouldGiveNoDialogForUnofferedTypes()
{
    QFETCH(int, type);
    QVERIFY(!AccountFactory::add(type));
    QVERIFY(!AccountFactory::hasDialog(type));
}

void TestAccountSelect::shouldGiveEachProviderItsDialog()
{
    QScopedPointer<QDialog> dialog(AccountFactory::add(NVL::Cloud::Type::FileSystem));
    auto* local = qobject_cast<Local::Add*>(dialog.data());
    QVERIFY(local);
    QScopedPointer<QDialog> other(AccountFactory::add(33));
    auto* sftp = qobject_cast<Sftp::Add*>(other.data());
    QVERIFY(sftp);
    QVERIFY(local->id() != sftp->id());
    QVERIFY(!AccountFactory::view(QModelIndex()));
}

void TestAccountSelect::shouldGiveServiceAccountsTheManagedDialog()
{
    qputenv("NVB_EDITION", "managed");
    const auto restore = qScopeGuard([] { qunsetenv("NVB_EDITION"); });
    QScopedPointer<QDialog> local(AccountFactory::add(NVL::Cloud::Type::FileSystem));
    QVERIFY(qobject_cast<Local::Add*>(local.data()));

    QStandardItemModel model(1, Column::Count);
    const QUuid id = QUuid::createUuid();
    model.setData(model.index(0, Column::ID), id.toString());
    model.setData(model.index(0, Column::DisplayName), QStringLiteral("Service bucket"));
    model.setData(model.index(0, Column::Prefix), QStringLiteral("office-7"));
    for (int type : {2, 3, 33, 38}) {
        model.setData(model.index(0, Column::Type), type);
        QScopedPointer<QDialog> dialog(AccountFactory::edit(model.index(0, 0)));
        auto* managed = qobject_cast<MnsEdit*>(dialog.data());
        QVERIFY2(managed, qPrintable(QString::number(type)));
        QCOMPARE(managed->id(), id);
        QCOMPARE(managed->type(), type);
        // Nothing can be saved, so no caller ever waits for a change.
        QVERIFY(!managed->buttonBox()->button(QDialogButtonBox::Ok));
        QTimer::singleShot(0, managed->buttonBox()->button(QDialogButtonBox::Close), &QPushButton::click);
        QCOMPARE(managed->exec(), int(QDialog::Rejected));
        QScopedPointer<Storages::Info> view(AccountFactory::view(model.index(0, 0)));
        QVERIFY(view);
        QCOMPARE(view->title(), QStringLiteral("Service bucket"));
    }
    // A new one carries a fresh id, as every account dialog does.
    QScopedPointer<QDialog> fresh(AccountFactory::add(2));
    QVERIFY(qobject_cast<MnsEdit*>(fresh.data()));
    QVERIFY(!qobject_cast<MnsEdit*>(fresh.data())->id().isNull());
    QVERIFY(!AccountFactory::add(-4));
}

void TestAccountSelect::shouldOfferLocalStorageInManagedSelector()
{
    SelectMns select;
    QCOMPARE(select.items().size(), 1);
    QCOMPARE(select.items().first()->type(), 1);
}

namespace {

QStandardItemModel* accounts(const QStringList& names)
{
    auto* model = new QStandardItemModel(0, Column::Count);
    for (const QString& name : names) {
        QList<QStandardItem*> row;
        for (int column = 0; column < Column::Count; ++column)
            row.append(new QStandardItem);
        row[Column::DisplayName]->setData(name, Qt::DisplayRole);
        row[Column::ID]->setData(QUuid::createUuid().toString(), Qt::DisplayRole);
        model->appendRow(row);
    }
    return model;
}

QMessageBox* openQuestion()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* box = qobject_cast<QMessageBox*>(widget); box && box->isVisible())
            return box;
    }
    return nullptr;
}

QStringList names(const QAbstractItemModel& model)
{
    QStringList result;
    for (int row = 0; row < model.rowCount(); ++row)
        result.append(model.index(row, Column::DisplayName).data().toString());
    return result;
}

} // namespace

void TestAccountSelect::shouldRemoveTheAskedRowEvenAfterRowsMoved()
{
    QScopedPointer<QStandardItemModel> model(accounts({QStringLiteral("first"), QStringLiteral("second")}));
    AccountFactory::removeDialogExec(model.data(), model->index(1, 0));
    QMessageBox* box = openQuestion();
    QVERIFY(box);
    QVERIFY(!box->isModal());
    QCOMPARE(box->text(), QStringLiteral("Delete \"second\" account?"));
    QCOMPARE(box->defaultButton(), box->button(QMessageBox::No));
    // The list changes while the question stands.
    model->insertRow(0, new QStandardItem(QStringLiteral("newcomer")));
    box->button(QMessageBox::Yes)->click();
    QCOMPARE(names(*model), QStringList({QStringLiteral("newcomer"), QStringLiteral("first")}));
    QTRY_VERIFY(!openQuestion());
}

void TestAccountSelect::shouldKeepRowWhenRemovalIsRefused()
{
    QScopedPointer<QStandardItemModel> model(accounts({QStringLiteral("kept")}));
    AccountFactory::removeDialogExec(model.data(), model->index(0, 0));
    QMessageBox* box = openQuestion();
    QVERIFY(box);
    box->button(QMessageBox::No)->click();
    QCOMPARE(names(*model), QStringList({QStringLiteral("kept")}));
    QTRY_VERIFY(!openQuestion());
}

NVB_TEST_MAIN(TestAccountSelect)
#include "tst_accountselect.moc"
