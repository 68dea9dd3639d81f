#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHostInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include "accounts/accountutility.h"
#include "accounts/advanced/advanced.h"
#include "accounts/advanced/advancedstorage.h"
#include "accounts/advanced/prefixvalidator.h"
#include "accounts/local/localadd.h"
#include "accounts/s3/amazons3compatibleadvancedstorage.h"
#include "accounts/storagesadd.h"
#include "cloud/operationmanager.h"
#include "core/apppath.h"
#include "testmain.h"
#include "widgets/progresswheel.h"

using namespace NVB::GUI::Settings;
using namespace NVB::GUI::Settings::Account;

namespace {

// A frame dialog whose prefix listing the test answers by hand.
class PrefixSource : public Storages::Add
{
public:
    PrefixSource()
        : Storages::Add(NVL::Cloud::Type::AmazonS3)
    { }
    bool canRequestPrefixes() const override { return true; }
    void loadPrefixes() override { ++requests; }
    void answer(const QStringList& prefixes) { emit loadPrefixiesFinished(prefixes); }
    int requests = 0;

protected:
    void onAccept() override { }
    void onSetItem(const QModelIndex&) override { }
    void onAdvancedClicked() override { }
};

// The computer's name as the system gives it, independent of the dialog.
QString hostName()
{
    return QHostInfo::localHostName().trimmed();
}

void writeConfig(const QByteArray& attributes)
{
    QFile file(NVB::Defines::AppPath::to().config() + QStringLiteral("/nvbBackup.conf"));
    QVERIFY(QDir().mkpath(QFileInfo(file).path()));
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write("<nvbBackup " + attributes + "/>");
}

QPushButton* ok(Advanced& dialog)
{
    return dialog.buttonBox()->button(QDialogButtonBox::Ok);
}

} // namespace

class TestAdvanced : public QObject
{
    Q_OBJECT

private slots:
    void shouldRefuseFolderCharacters_data();
    void shouldTakeServicePrefixInManagedEdition();
    void shouldTurnWheelOfItsFrameWhileListing();
    void shouldRefuseFolderCharacters();
    void shouldRemoveSlashAsItIsTyped();
    void shouldEnableOkOnlyForNonBlankPrefix();
    void shouldStartFromGivenOrDefaultPrefix();
    void shouldListOnceAndMergeTheComputerName();
    void shouldListPrefixesOfLocalFolder();
    void shouldTakeOverPrefixChosenInLocalDialog();
    void shouldMapSignatureChoice_data();
    void shouldMapSignatureChoice();
};

void TestAdvanced::shouldRefuseFolderCharacters_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("acceptable");
    QTest::newRow("plain") << "office-01" << true;
    QTest::newRow("backslash and space") << "my\\laptop 2" << true;
    for (const char* bad : {"/", ":", "*", "?", ">", "<", "|"})
        QTest::newRow(bad) << QStringLiteral("a%1b").arg(QLatin1String(bad)) << false;
}

void TestAdvanced::shouldRefuseFolderCharacters()
{
    QFETCH(QString, text);
    QFETCH(bool, acceptable);
    NVB::GUI::PrefixValidator validator;
    QSignalSpy error(&validator, &NVB::GUI::PrefixValidator::error);
    int pos = text.size();
    QCOMPARE(validator.validate(text, pos) == QValidator::Acceptable, acceptable);
    QCOMPARE(error.count(), acceptable ? 0 : 1);
    QCOMPARE(AccountUtility::prefixFilter(text).size(), acceptable ? text.size() : text.size() - 1);
}

void TestAdvanced::shouldRemoveSlashAsItIsTyped()
{
    Advanced dialog(QStringLiteral("office"), {}, false);
    dialog.show();
    QLineEdit* edit = dialog.prefixCombo()->lineEdit();
    edit->setFocus();
    edit->setCursorPosition(3);
    QTest::keyClick(edit, Qt::Key_Slash);
    QTest::keyClicks(edit, QStringLiteral("x"));
    QTRY_COMPARE(dialog.prefix(), QStringLiteral("offxice"));
    // A slash that arrives in one piece, as a paste does, is repaired too.
    edit->setText(QStringLiteral("a/b"));
    emit const_cast<NVB::GUI::PrefixValidator*>(qobject_cast<const NVB::GUI::PrefixValidator*>(edit->validator()))
        ->error();
    QTRY_COMPARE(dialog.prefix(), QStringLiteral("ab"));
}

void TestAdvanced::shouldEnableOkOnlyForNonBlankPrefix()
{
    Advanced dialog(QStringLiteral("office"), {}, false);
    dialog.prefixCombo()->setCurrentText(QStringLiteral("   "));
    QVERIFY(!ok(dialog)->isEnabled());
    dialog.prefixCombo()->setCurrentText(QStringLiteral("  office  "));
    QVERIFY(ok(dialog)->isEnabled());
    QCOMPARE(dialog.prefix(), QStringLiteral("office"));
}

void TestAdvanced::shouldStartFromGivenOrDefaultPrefix()
{
    const QString computer = hostName();
    QCOMPARE(Advanced::defaultPrefix(), computer);
    Advanced given(QStringLiteral("laptop"), {QStringLiteral("nas")}, false);
    QCOMPARE(given.prefix(), QStringLiteral("laptop"));
    QVERIFY(given.prefixCombo()->findText(computer) >= 0);
    QVERIFY(given.prefixCombo()->findText(QStringLiteral("nas")) >= 0);
    Advanced blank(QStringList {computer}, false);
    QCOMPARE(blank.prefix(), computer);
    QCOMPARE(blank.prefixCombo()->count(), 1);
}

void TestAdvanced::shouldTakeServicePrefixInManagedEdition()
{
    const auto restore
        = qScopeGuard([] { QFile::remove(NVB::Defines::AppPath::to().config() + QStringLiteral("/nvbBackup.conf")); });
    writeConfig(R"(edition="managed" mnsPrefix=" office-7 ")");
    QCOMPARE(Advanced::defaultPrefix(), QStringLiteral("office-7"));
    Advanced managed(QStringList {}, false);
    QCOMPARE(managed.prefix(), QStringLiteral("office-7"));
    QScopedPointer<Local::Add> account(new Local::Add);
    QCOMPARE(account->prefix(), QStringLiteral("office-7"));
    // Without a prefix from the service, or outside its edition, the
    // computer's name stands.
    writeConfig(R"(edition="managed")");
    QCOMPARE(Advanced::defaultPrefix(), hostName());
    writeConfig(R"(edition="standalone" mnsPrefix="office-7")");
    QCOMPARE(Advanced::defaultPrefix(), hostName());
}

void TestAdvanced::shouldTurnWheelOfItsFrameWhileListing()
{
    PrefixSource source;
    Advanced dialog(source, false);
    dialog.show();
    QVERIFY(!dialog.progressWheel()->isAnimated());
    QTest::mouseClick(dialog.prefixCombo(), Qt::LeftButton);
    QVERIFY(dialog.progressWheel()->isAnimated());
    QVERIFY(dialog.buttonBox()->button(QDialogButtonBox::Cancel)->isEnabled());
    source.answer({});
    QTRY_VERIFY(!dialog.progressWheel()->isAnimated());
    dialog.prefixCombo()->hidePopup();

    // With the prefix fixed nothing is listed.
    PrefixSource fixed;
    Advanced locked(fixed, true);
    locked.show();
    QVERIFY(!locked.prefixCombo()->isEnabled());
    QTest::mouseClick(locked.prefixCombo(), Qt::LeftButton);
    QCOMPARE(fixed.requests, 0);
    QVERIFY(!locked.prefixesRequested());
}

void TestAdvanced::shouldListOnceAndMergeTheComputerName()
{
    PrefixSource source;
    source.setPrefix(QStringLiteral("office"));
    Advanced dialog(source, false);
    dialog.show();
    QTest::mouseClick(dialog.prefixCombo(), Qt::LeftButton);
    QCOMPARE(source.requests, 1);
    QVERIFY(!ok(dialog)->isEnabled());
    source.answer({QStringLiteral("laptop"), QString(), QStringLiteral("nas")});
    QTRY_VERIFY(ok(dialog)->isEnabled());
    QStringList items;
    for (int i = 0; i < dialog.prefixCombo()->count(); ++i)
        items.append(dialog.prefixCombo()->itemText(i));
    items.sort();
    QStringList expected {QStringLiteral("laptop"), QStringLiteral("nas"), hostName()};
    expected.sort();
    QCOMPARE(items, expected);
    QCOMPARE(dialog.prefix(), QStringLiteral("office"));
    dialog.prefixCombo()->hidePopup();
    QTest::mouseClick(dialog.prefixCombo(), Qt::LeftButton);
    QCOMPARE(source.requests, 1);
}

void TestAdvanced::shouldListPrefixesOfLocalFolder()
{
    QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("NVB_alpha")));
    QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("NVB_beta")));
    QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("unrelated")));
    Local::Add dialog;
    dialog.pathEdit()->setText(folder.path());
    QVERIFY(dialog.canRequestPrefixes());
    Advanced advanced(dialog, !dialog.canRequestPrefixes());
    advanced.show();
    QTest::mouseClick(advanced.prefixCombo(), Qt::LeftButton);
    QVERIFY(advanced.prefixesRequested());
    QTRY_VERIFY_WITH_TIMEOUT(advanced.prefixCombo()->count() == 3, 10000);
    QVERIFY(advanced.prefixCombo()->findText(QStringLiteral("alpha")) >= 0);
    QVERIFY(advanced.prefixCombo()->findText(QStringLiteral("beta")) >= 0);
    QVERIFY(advanced.prefixCombo()->findText(hostName()) >= 0);
    QCOMPARE(advanced.prefix(), dialog.prefix());
    advanced.prefixCombo()->hidePopup();
    QVERIFY(NVL::Cloud::OperationManager::instance().waitForDone(10000));
    QTRY_COMPARE(NVL::Cloud::OperationManager::instance().count(), 0);

    // A folder that does not exist yet has nothing to list.
    dialog.pathEdit()->setText(folder.path() + QStringLiteral("/missing"));
    QVERIFY(!dialog.canRequestPrefixes());
}

void TestAdvanced::shouldTakeOverPrefixChosenInLocalDialog()
{
    Local::Add dialog;
    dialog.show();
    bool sslShown = true;
    QTimer::singleShot(0, [&sslShown] {
        auto* advanced = qobject_cast<AdvancedStorage*>(QApplication::activeModalWidget());
        QVERIFY(advanced);
        sslShown = advanced->sslBox()->isVisible();
        advanced->prefixCombo()->setCurrentText(QStringLiteral("  shared-nas  "));
        advanced->buttonBox()->button(QDialogButtonBox::Ok)->click();
    });
    QTest::mouseClick(dialog.advancedButton(), Qt::LeftButton);
    QVERIFY(!sslShown);
    QCOMPARE(dialog.prefix(), QStringLiteral("shared-nas"));
    dialog.pathEdit()->setText(QStringLiteral("/srv"));
    QCOMPARE(dialog.backupFolder(), QStringLiteral("/srv/NVB_shared-nas"));
}

void TestAdvanced::shouldMapSignatureChoice_data()
{
    QTest::addColumn<bool>("withChoice");
    QTest::addColumn<int>("signature");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("authType");
    QTest::newRow("no choice") << false << 0 << -1 << 1;
    QTest::newRow("V2") << true << 0 << 0 << 0;
    QTest::newRow("V4") << true << 1 << 1 << 1;
}

void TestAdvanced::shouldMapSignatureChoice()
{
    QFETCH(bool, withChoice);
    QFETCH(int, signature);
    QFETCH(int, index);
    QFETCH(int, authType);
    PrefixSource source;
    QScopedPointer<AmazonS3Compatible::AdvancedStorage> dialog(withChoice
            ? new AmazonS3Compatible::AdvancedStorage(
                true, false, source, NVL::Cloud::Info::AmazonS3Like::Signature(signature))
            : new AmazonS3Compatible::AdvancedStorage(true, false, source));
    QCOMPARE(dialog->authType(), authType);
    QCOMPARE(dialog->signatureCombo() != nullptr, withChoice);
    if (withChoice) {
        QCOMPARE(dialog->signatureCombo()->currentIndex(), index);
        dialog->signatureCombo()->setCurrentIndex(1 - index);
        QCOMPARE(dialog->authType(), 1 - index);
    }
}

NVB_TEST_MAIN(TestAdvanced)
#include "tst_advanced.moc"
