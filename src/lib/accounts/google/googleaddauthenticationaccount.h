#pragma once

#include <QDialog>

#include "googleadd.h"

class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace NVB::GUI::Settings::Account {

// A service account: its project, e-mail and private key. The key is the
// provider's PKCS #12 file or its JSON key file; a JSON file names the
// project and the e-mail as well, which then fill empty fields.
class Google::Add::AuthenticationAccount : public QDialog
{
    Q_OBJECT

public:
    AuthenticationAccount(
        QString* projectId, QString* serviceAccount, QByteArray* privateKey, QWidget* parent = nullptr);

    // Reads the key file; false with the reason shown when it cannot be read.
    bool importFile(const QString& path);

    QLineEdit* projectIdEdit() const { return m_projectIdEdit; }
    QLineEdit* serviceAccountEdit() const { return m_serviceAccountEdit; }
    QLabel* keyLabel() const { return m_keyLabel; }
    QDialogButtonBox* buttonBox() const { return m_buttons; }

private slots:
    void onImport();
    void onDataChanged();
    void onAccept();

private:
    QString* m_projectId;
    QString* m_serviceAccount;
    QByteArray* m_privateKey;
    QByteArray m_key;
    QLineEdit* m_projectIdEdit;
    QLineEdit* m_serviceAccountEdit;
    QLabel* m_keyLabel;
    QPushButton* m_import;
    QDialogButtonBox* m_buttons;
};

} // namespace NVB::GUI::Settings::Account
