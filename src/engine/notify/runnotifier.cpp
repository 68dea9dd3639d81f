#include "runnotifier.h"

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>
#include <QSysInfo>
#include <QUuid>

#include "core/nvldebug.h"
#include "mailsender.h"
#include "records/plan/base.h"
#include "records/plan/notification.h"
#include "records/plan/planresult.h"
#include "stores/defaultsettings.h"

namespace NVB::Engine {

using NVB::Info::Plan::Notification;
using NVB::Info::Plan::PlanResult;

namespace {

QByteArray encodedWord(const QString& text)
{
    return "=?UTF-8?B?" + text.toUtf8().toBase64() + "?=";
}

QByteArray wrapped(const QByteArray& base64)
{
    QByteArray lines;
    for (int at = 0; at < base64.size(); at += 76)
        lines += base64.mid(at, 76) + "\r\n";
    return lines;
}

QByteArray crlf(const QString& text)
{
    QByteArray bytes = text.toUtf8();
    bytes.replace("\r\n", "\n");
    bytes.replace('\n', "\r\n");
    return bytes;
}

QByteArray report(const RunOutcome& outcome)
{
    static const char* const operations[] = {"", "copied", "restored", "failed", "skipped"};
    QString text = QStringLiteral("Files: %1 scanned, %2 copied, %3 failed\n\n")
                       .arg(outcome.totals.scannedCount)
                       .arg(outcome.totals.copiedCount)
                       .arg(outcome.totals.failedCount);
    for (const RunFileRecord& file : outcome.files) {
        const int operation = file.operation >= 1 && file.operation <= 4 ? file.operation : 0;
        text += QStringLiteral("%1\t%2\t%3").arg(QLatin1String(operations[operation]), file.file).arg(file.size);
        if (!file.message.isEmpty())
            text += QLatin1Char('\t') + file.message;
        text += QLatin1Char('\n');
    }
    return text.toUtf8();
}

} // namespace

bool RunNotifier::wanted(int notificationType, int planResult)
{
    if (notificationType == Notification::Always)
        return true;
    return notificationType == Notification::OnFailure
        && (planResult == PlanResult::Failed || planResult == PlanResult::Interrupted);
}

QString RunNotifier::expand(const QString& text, const QString& planName, int planResult)
{
    QString result = text;
    result.replace(QLatin1String("%COMPUTER_NAME%"), QSysInfo::machineHostName());
    result.replace(QLatin1String("%RESULT%"), PlanResult(planResult).displayName());
    result.replace(QLatin1String("%PLAN_NAME%"), planName);
    return result;
}

QByteArray RunNotifier::compose(const QString& from, const QStringList& to, const QString& subject, const QString& body,
    const QByteArray& attachment)
{
    const QByteArray boundary = "nvb-" + QUuid::createUuid().toString(QUuid::Id128).toLatin1();
    QByteArray message;
    message += "From: <" + from.toUtf8() + ">\r\n";
    QStringList quoted;
    for (const QString& address : to)
        quoted << QLatin1Char('<') + address + QLatin1Char('>');
    message += "To: " + quoted.join(QStringLiteral(", ")).toUtf8() + "\r\n";
    // Folded onto one line: a subject typed with a line break must not add a header.
    message += "Subject: "
        + encodedWord(QString(subject).replace(QRegularExpression(QStringLiteral("[\r\n]+")), QStringLiteral(" ")))
        + "\r\n";
    message += "Date: "
        + QLocale::c().toString(QDateTime::currentDateTime(), QStringLiteral("ddd, dd MMM yyyy hh:mm:ss ")).toLatin1()
        + QDateTime::currentDateTime().toString(QStringLiteral("t")).toLatin1() + "\r\n";
    message += "Message-ID: <" + QUuid::createUuid().toString(QUuid::WithoutBraces).toLatin1() + "@nvbengine>\r\n";
    message += "MIME-Version: 1.0\r\n";
    message += "Content-Type: multipart/mixed; boundary=\"" + boundary + "\"\r\n\r\n";
    message
        += "--" + boundary + "\r\nContent-Type: text/plain; charset=UTF-8\r\nContent-Transfer-Encoding: base64\r\n\r\n";
    message += wrapped(crlf(body).toBase64());
    if (!attachment.isNull()) {
        message += "--" + boundary
            + "\r\nContent-Type: text/plain; charset=UTF-8; name=\"report.txt\"\r\n"
              "Content-Disposition: attachment; filename=\"report.txt\"\r\nContent-Transfer-Encoding: base64\r\n\r\n";
        message += wrapped(attachment.toBase64());
    }
    message += "--" + boundary + "--\r\n";
    return message;
}

RunNotifier::Work RunNotifier::around(const NVB::Info::Plan::Base& plan, Work work)
{
    const int type = int(plan.notification().type());
    if (type == Notification::Never)
        return work;
    const QString planName = plan.name();
    const QString subject = plan.notification().subject();
    const bool detailed = plan.notification().generateDetailedReport();
    return [=, work = std::move(work)](const std::atomic_bool& stop) {
        const QDateTime started = QDateTime::currentDateTime();
        RunOutcome outcome = work(stop);
        if (!wanted(type, outcome.planResult))
            return outcome;
        QString error;
        const SmtpSettings smtp = SmtpSettings::fromSettings(&error);
        const std::unique_ptr<NVB::DefaultSettings> settings = SmtpSettings::current();
        QStringList recipients;
        for (const QString& part :
            (settings ? settings->getNotifEmail() : QString()).split(QRegularExpression(QStringLiteral("[;,]")))) {
            if (!part.trimmed().isEmpty())
                recipients << part.trimmed();
        }
        if (error.isEmpty()) {
            const QString body
                = QStringLiteral("Plan: %1\nComputer: %2\nResult: %3\nStarted: %4\nFinished: %5\n%6")
                      .arg(planName, QSysInfo::machineHostName(), PlanResult(outcome.planResult).displayName(),
                          started.toString(Qt::ISODate), QDateTime::currentDateTime().toString(Qt::ISODate),
                          outcome.message.isEmpty() ? QString() : QStringLiteral("\n") + outcome.message);
            const QByteArray message = compose(smtp.senderAddress(), recipients,
                expand(subject, planName, outcome.planResult), body, detailed ? report(outcome) : QByteArray());
            error = MailSender::send(smtp, recipients, message);
        }
        if (!error.isEmpty()) {
            const QString note = QStringLiteral("The notification mail could not be sent: %1").arg(error);
            NVL::NvlDebug(QStringLiteral("NVB")).warning() << note;
            outcome.message = outcome.message.isEmpty() ? note : outcome.message + QLatin1Char('\n') + note;
        }
        return outcome;
    };
}

} // namespace NVB::Engine
