#include <QCheckBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QRadioButton>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include "modaldialog.h"
#include "notify/emailaddressesconfirmed.h"
#include "records/plan/backupfile.h"
#include "stores/defaultsettings.h"
#include "testmain.h"
#include "wizards/common/emailvalidator.h"
#include "wizards/common/pagenotificationstandalone.h"

using NVB::GUI::EmailValidator;
using NVB::GUI::PlanWizardBase;
using namespace NVB::Info::Plan;

namespace {

// The address confirmation service on 127.0.0.1: answers every request with
// one status and body, and keeps the last request's body.
class ConfirmationServer : public QTcpServer
{
public:
    ConfirmationServer(int status, const QByteArray& body)
    {
        listen(QHostAddress::LocalHost, 0);
        connect(this, &QTcpServer::newConnection, this, [this, status, body] {
            QTcpSocket* socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [this, socket, status, body] {
                m_request += socket->readAll();
                const int head = m_request.indexOf("\r\n\r\n");
                if (head < 0)
                    return;
                const int length = m_request.mid(m_request.toLower().indexOf("content-length:") + 15)
                                       .split('\r')
                                       .first()
                                       .trimmed()
                                       .toInt();
                if (m_request.size() < head + 4 + length)
                    return;
                lastBody = m_request.mid(head + 4);
                socket->write("HTTP/1.1 " + QByteArray::number(status)
                    + " X\r\nContent-Type: application/json\r\nContent-Length: " + QByteArray::number(body.size())
                    + "\r\nConnection: close\r\n\r\n" + body);
                socket->disconnectFromHost();
            });
        });
    }
    QString url() const { return QStringLiteral("http://127.0.0.1:%1/confirm").arg(serverPort()); }
    QByteArray lastBody;

private:
    QByteArray m_request;
};

void setServiceUrl(const QString& url)
{
    NVB::DefaultSettings::instance()->setValue(QLatin1String(NVB::SOAP::EmailAddressesConfirmed::UrlKey), url);
}

} // namespace

class TestPageNotificationStandalone : public QObject
{
    Q_OBJECT

private slots:
    void shouldAcceptOnlyWholeAddressLists_data();
    void shouldAcceptOnlyWholeAddressLists();
    void shouldAnswerByConfirmationService_data();
    void shouldAnswerByConfirmationService();
    void shouldSaveNeverAndKeepDefaultSubjectWhenOff();
};

void TestPageNotificationStandalone::shouldAcceptOnlyWholeAddressLists_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("acceptable");
    QTest::newRow("one") << QStringLiteral("a@example.org") << true;
    QTest::newRow("mixed separators, blanks")
        << QStringLiteral(" a@example.org ; b.c@mail.example.net,d@x.io ") << true;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("only separators") << QStringLiteral(" ;, ") << false;
    QTest::newRow("no domain dot") << QStringLiteral("a@localhost") << false;
    QTest::newRow("one bad of two") << QStringLiteral("a@example.org; b@@example.org") << false;
    QTest::newRow("blank inside") << QStringLiteral("a b@example.org") << false;
}

void TestPageNotificationStandalone::shouldAcceptOnlyWholeAddressLists()
{
    QFETCH(QString, text);
    QFETCH(bool, acceptable);
    QCOMPARE(EmailValidator::isAcceptableList(text), acceptable);
    PlanWizardBase::PageNotificationStandalone page;
    page.enableBox()->setChecked(true);
    page.emailEdit()->setText(text);
    page.userNameEdit()->setText(QStringLiteral("Ann"));
    QCOMPARE(page.isComplete(), acceptable);
    page.userNameEdit()->clear();
    QVERIFY(!page.isComplete());
}

void TestPageNotificationStandalone::shouldAnswerByConfirmationService_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("boxText");
    QTest::addColumn<bool>("goesOn");
    QTest::newRow("confirmed") << 200 << QByteArray(R"({"confirmed": true})") << QString() << true;
    QTest::newRow("sent for confirmation")
        << 200 << QByteArray(R"({"confirmed": false})") << QStringLiteral("Confirmation email is sent to:") << true;
    QTest::newRow("service error") << 503 << QByteArray("{}") << QStringLiteral("Cannot reach") << false;
    QTest::newRow("garbled answer") << 200 << QByteArray("<html>") << QStringLiteral("Cannot reach") << false;
    QTest::newRow("unreachable") << 0 << QByteArray() << QStringLiteral("Cannot reach") << false;
}

void TestPageNotificationStandalone::shouldAnswerByConfirmationService()
{
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    QFETCH(QString, boxText);
    QFETCH(bool, goesOn);
    ConfirmationServer server(status, body);
    QString url = server.url();
    if (status == 0) {
        server.close(); // nothing listens on that port any more
    }
    setServiceUrl(url);
    NVB::DefaultSettings::instance()->setNotifEmail(QString());
    PlanWizardBase::PageNotificationStandalone page;
    page.enableBox()->setChecked(true);
    page.emailEdit()->setText(QStringLiteral("ann@example.org"));
    page.userNameEdit()->setText(QStringLiteral("Ann"));
    QString shown;
    NvbTest::whenModal<QMessageBox>([&shown](QMessageBox* box) {
        shown = box->text();
        box->accept();
    });
    QCOMPARE(page.validatePage(), goesOn);
    if (boxText.isEmpty())
        QVERIFY2(shown.isEmpty(), qPrintable(shown));
    else
        QVERIFY2(shown.contains(boxText), qPrintable(shown));
    QCOMPARE(NVB::DefaultSettings::instance()->getNotifEmail(), goesOn ? QStringLiteral("ann@example.org") : QString());
    if (status == 200)
        QVERIFY(server.lastBody.contains("\"email\":\"ann@example.org\""));
    setServiceUrl(QString());
}

void TestPageNotificationStandalone::shouldSaveNeverAndKeepDefaultSubjectWhenOff()
{
    PlanWizardBase::PageNotificationStandalone page;
    page.enableBox()->setChecked(false);
    page.subjectEdit()->setText(QStringLiteral("changed"));
    // Off: no service is asked, nothing is stored.
    setServiceUrl(QStringLiteral("http://127.0.0.1:1/never"));
    QVERIFY(page.validatePage());
    setServiceUrl(QString());
    BackupFile plan;
    const QString defaultSubject = plan.notification().subject();
    QVERIFY(page.initPlan(&plan));
    QCOMPARE(plan.notification().type(), Notification::Never);
    QCOMPARE(plan.notification().subject(), defaultSubject);

    plan.notification().setType(Notification::OnFailure);
    plan.notification().setSubject(QStringLiteral("%PLAN_NAME%: %RESULT%"));
    QVERIFY(page.fromPlan(&plan));
    QVERIFY(page.failsRadio()->isChecked());
    page.reportBox()->setChecked(true);
    BackupFile saved;
    QVERIFY(page.initPlan(&saved));
    QCOMPARE(saved.notification().type(), Notification::OnFailure);
    QCOMPARE(saved.notification().subject(), QStringLiteral("%PLAN_NAME%: %RESULT%"));
    QVERIFY(saved.notification().generateDetailedReport());
}

NVB_TEST_MAIN(TestPageNotificationStandalone)
#include "tst_pagenotificationstandalone.moc"
