#pragma once

#include <QDialog>

#include "googleadd.h"

class QDialogButtonBox;
class QLineEdit;

namespace NVB::GUI::Settings::Account {

// The HMAC key pair of Google's interoperability mode.
class Google::Add::AuthenticationAccessKey : public QDialog
{
    Q_OBJECT

public:
    AuthenticationAccessKey(QString* accessKey, QString* secretKey, QWidget* parent = nullptr);

    QLineEdit* accessKeyEdit() const { return m_accessKeyEdit; }
    QLineEdit* secretKeyEdit() const { return m_secretKeyEdit; }
    QDialogButtonBox* buttonBox() const { return m_buttons; }

private slots:
    void onDataChanged();
    void onAccept();

private:
    QString* m_accessKey;
    QString* m_secretKey;
    QLineEdit* m_accessKeyEdit;
    QLineEdit* m_secretKeyEdit;
    QDialogButtonBox* m_buttons;
};

} // namespace NVB::GUI::Settings::Account
