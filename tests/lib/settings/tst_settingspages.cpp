#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTcpServer>
#include <QTest>

#include "crypt/cryptns.h"
#include "modaldialog.h"
#include "settings/advanced.h"
#include "settings/application.h"
#include "settings/bandwidth.h"
#include "settings/proxydialog.h"
#include "settings/setmasterpassworddialog.h"
#include "settings/symlinkoptions.h"
#include "stores/defaultsettings.h"
#include "stores/proxydefines.h"
#include "testmain.h"

using namespace NVB::GUI::Settings;
using NVB::DefaultSettings;
using NvbTest::whenModal;

// Edge cases of the settings tabs, each written straight to the store.
class TestSettingsPages : public QObject
{
    Q_OBJECT

private:
    static DefaultSettings* store() { return DefaultSettings::instance(); }

private slots:
    void shouldRefusePortOutOfRangeOrBusy()
    {
        QTcpServer busy;
        QVERIFY(busy.listen(QHostAddress::LocalHost));
        const int port = busy.serverPort();
        QCOMPARE(Application::checkTcpPort(0).second, QStringLiteral("The port number must be between 0 and 65536"));
        QVERIFY(!Application::checkTcpPort(65536).first);
        const auto taken = Application::checkTcpPort(port);
        QVERIFY(!taken.first);
        QCOMPARE(taken.second, QStringLiteral("The port number %1 is already in use").arg(port));
        busy.close();
        QVERIFY(Application::checkTcpPort(port).first);
    }

    void shouldRefuseEnablingBusyPortAndSwitchOffWithoutCheck()
    {
        QTcpServer engine;
        QVERIFY(engine.listen(QHostAddress::LocalHost));
        const QString port = QString::number(engine.serverPort());
        store()->setWebAccessUseHttp(QStringLiteral("false"));
        store()->setWebAccessHttpPort(port);
        Application page;
        QSignalSpy refused(&page, &Application::webAccessRefused);
        whenModal<QMessageBox>([](QMessageBox* box) { box->accept(); });
        QTest::mouseClick(page.httpBox(), Qt::LeftButton);
        QCOMPARE(refused.size(), 1);
        QVERIFY(refused.first().first().toString().contains(QStringLiteral("already in use")));
        QCOMPARE(store()->getWebAccessUseHttp(), QStringLiteral("false"));
        QVERIFY(!page.httpBox()->isChecked());

        // Stored as on while the "engine" holds the port: switching off is
        // never checked, and the page waits until the port is let go.
        store()->setWebAccessUseHttp(QStringLiteral("true"));
        page.loadSettings();
        QTest::mouseClick(page.httpBox(), Qt::LeftButton);
        QCOMPARE(refused.size(), 1);
        QCOMPARE(store()->getWebAccessUseHttp(), QStringLiteral("false"));
        QVERIFY(page.isWaitingForEngine());
        QVERIFY(!page.httpBox()->isEnabled());
        QTest::qWait(1200);
        QVERIFY(page.isWaitingForEngine());
        engine.close();
        QTRY_VERIFY_WITH_TIMEOUT(!page.isWaitingForEngine(), 3000);
        QVERIFY(page.httpBox()->isEnabled());
    }

    void shouldSendOnePortUpdateSecondAfterLastEdit()
    {
        store()->setWebAccessUseHttps(QStringLiteral("false"));
        store()->setWebAccessHttpsPort(QStringLiteral("40001"));
        Application page;
        for (int port : {40002, 40003, 40004}) {
            page.httpsPortBox()->setValue(port);
            QTest::qWait(400);
        }
        // The first edit is 1.2 s old: a timer that was not restarted would
        // have written by now.
        QCOMPARE(store()->getWebAccessHttpsPort(), QStringLiteral("40001"));
        QTRY_COMPARE_WITH_TIMEOUT(store()->getWebAccessHttpsPort(), QStringLiteral("40004"), 2000);
    }

    void shouldNeverShowOrLoseMaskedProxyPassword()
    {
        NVB::defines::ProxyDefines::ProxySettings stored;
        stored.enabled = true;
        stored.host = QStringLiteral("proxy.example");
        stored.port = 3128;
        stored.useAuthentication = true;
        stored.user = QStringLiteral("alice");
        stored.password = SHARED::cryptNS::encrypt_local_password(QStringLiteral("secret"));
        QVERIFY(NVB::defines::ProxyDefines::setProxySettings(stored));

        ProxyDialog untouched(true);
        QCOMPARE(untouched.passwordEdit()->text(), ProxyDialog::PasswordMask);
        untouched.onAccept();
        QCOMPARE(untouched.result(), int(QDialog::Accepted));
        QCOMPARE(NVB::defines::ProxyDefines::proxySettings().password, stored.password);

        ProxyDialog badPort(true);
        badPort.portEdit()->setText(QStringLiteral("0"));
        whenModal<QMessageBox>([](QMessageBox* box) {
            QCOMPARE(box->text(), QStringLiteral("Port must be in the range from 1 to 65535."));
            box->accept();
        });
        badPort.onAccept();
        QCOMPARE(badPort.result(), int(QDialog::Rejected));
        QCOMPARE(NVB::defines::ProxyDefines::proxySettings().port, 3128);

        ProxyDialog cleared(true);
        cleared.show();
        QVERIFY(QTest::qWaitForWindowActive(&cleared));
        cleared.passwordEdit()->setFocus();
        QTRY_VERIFY(cleared.passwordEdit()->text().isEmpty());
        cleared.onAccept();
        const auto after = NVB::defines::ProxyDefines::proxySettings();
        QVERIFY(after.passwordChanged);
        QCOMPARE(SHARED::cryptNS::decrypt_local_password(after.password), QString());
    }

    void shouldStoreBandwidthAndNeverShowNoLimitMarker()
    {
        store()->setCloudBandwidth(QStringLiteral("-1"));
        store()->setLocalBandwidth(QStringLiteral("512"));
        Bandwidth page;
        QVERIFY(!page.cloudBox()->isChecked());
        QVERIFY(page.cloudSpeed()->currentText() != QStringLiteral("-1"));
        QCOMPARE(page.localSpeed()->currentText(), QStringLiteral("512"));
        QString zero = QStringLiteral("0");
        int pos = 0;
        QCOMPARE(page.cloudSpeed()->validator()->validate(zero, pos), QValidator::Invalid);
        page.cloudBox()->setChecked(true);
        page.cloudSpeed()->setEditText(QStringLiteral("2048"));
        QCOMPARE(store()->getCloudBandwidth(), QStringLiteral("2048"));
        page.localBox()->setChecked(false);
        QCOMPARE(store()->getLocalBandwidth(), QStringLiteral("-1"));
    }

    void shouldStoreMegabytesAsBytes()
    {
        store()->setChunkSize(QStringLiteral("10485760"));
        Advanced page;
        QCOMPARE(page.chunkBox()->value(), 10);
        page.chunkBox()->setValue(5120);
        QCOMPARE(store()->getChunkSize(), QStringLiteral("5368709120"));
        page.memoryBox()->setValue(4096);
        QCOMPARE(store()->getMemoryMaxUsage(), QStringLiteral("4294967296"));
        page.loadSettings();
        QCOMPARE(page.chunkBox()->value(), 5120);
    }

    void shouldKeepMasterPasswordOnWrongCurrent()
    {
        store()->setMasterPassword(QString());
        SetMasterPasswordDialog set(SetMasterPasswordDialog::Set);
        QPushButton* ok = set.buttonBox()->button(QDialogButtonBox::Ok);
        set.passwordEdit()->setText(QStringLiteral("first"));
        set.confirmEdit()->setText(QStringLiteral("firsT"));
        QVERIFY(!ok->isEnabled());
        set.confirmEdit()->setText(QStringLiteral("first"));
        ok->click();
        const QString stored = store()->getMasterPassword();
        QCOMPARE(stored, SHARED::cryptNS::encrypt_local_password(QStringLiteral("first")));

        SetMasterPasswordDialog change(SetMasterPasswordDialog::Change);
        change.currentEdit()->setText(QStringLiteral("wrong"));
        change.passwordEdit()->setText(QStringLiteral("second"));
        change.confirmEdit()->setText(QStringLiteral("second"));
        whenModal<QMessageBox>([](QMessageBox* box) {
            QCOMPARE(box->text(), QStringLiteral("Specified current password is invalid!"));
            box->accept();
        });
        change.buttonBox()->button(QDialogButtonBox::Ok)->click();
        QCOMPARE(change.result(), int(QDialog::Rejected));
        QCOMPARE(store()->getMasterPassword(), stored);
        store()->setMasterPassword(QString());
    }

    void shouldCheckOnlyKnownSymlinkChoice_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<int>("checked");
        QTest::newRow("last") << "4" << 4;
        QTest::newRow("beyond") << "5" << -1;
        QTest::newRow("no number") << "false" << -1;
    }

    void shouldCheckOnlyKnownSymlinkChoice()
    {
        QFETCH(QString, stored);
        QFETCH(int, checked);
        store()->setBackupSymlink(stored);
        SymlinkOptions page;
        for (int i = 0; i < page.buttons().size(); ++i)
            QCOMPARE(page.buttons().at(i)->isChecked(), i == checked);
        page.buttons().at(1)->click();
        QCOMPARE(store()->getBackupSymlink(), QStringLiteral("1"));
        page.buttons().at(1)->click();
        QCOMPARE(store()->getBackupSymlink(), QStringLiteral("1"));
        QVERIFY(page.buttons().at(1)->isChecked());
    }
};

NVB_TEST_MAIN(TestSettingsPages)
#include "tst_settingspages.moc"
