#pragma once

#include <QJsonObject>
#include <QObject>
#include <QStringList>

#include "cloud/cloudtype.h"

class QWidget;

namespace NVB::Common::Communication {
class ICommand;
}

namespace NVL::Cloud {
class IOperation;
}

namespace NVB::GUI::Settings::Account {

// Makes an unknown server certificate trusted for an account dialog: fetches
// it through the engine when the failed connection could not keep it, asks
// the user, and has the engine keep the pin, which this process honours at
// once so that the next listing already trusts it.
class CertificateTrust : public QObject
{
    Q_OBJECT

public:
    explicit CertificateTrust(QWidget* dialog);

    // Starts the question for an operation refused with an untrusted
    // certificate (code 5) whose endpoint is known, the provider's usual one
    // when the account names none; false for any other failure.
    bool offer(const NVL::Cloud::IOperation& operation, NVL::Cloud::Type type);

    // Asks the engine for the certificate the endpoint shows, then the user.
    void fetchAndAsk(const QString& endpoint);
    // Asks the user about the certificate (PEM) the failed connection saw.
    void ask(const QString& pem, const QString& endpoint, const QStringList& reasons);

    // The engine's commands as every account dialog sends them: the request's
    // parameters, and the reply's data, or a thrown text for a failed reply.
    static void setParams(NVB::Common::Communication::ICommand* command, const QJsonObject& params);
    static QJsonObject replyData(NVB::Common::Communication::ICommand* command);

signals:
    // The engine answered the fetch, well or not.
    void fetched();
    // The pin is kept: list again.
    void trusted();
    void declined();
    void failed(const QString& text);

private slots:
    void onFetched();

private:
    QWidget* m_dialog;
};

} // namespace NVB::GUI::Settings::Account
