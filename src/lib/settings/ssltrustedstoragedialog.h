#pragma once

#include <QDialog>

class QJsonDocument;
class QLabel;
class QPushButton;
class QTreeWidget;

namespace NVB::GUI {

// The certificates the engine was told to trust for endpoints whose own
// chain does not check. The list is the engine's; this dialog reads it and
// asks the engine to forget a certificate.
class SslTrustedStorageDialog : public QDialog
{
    Q_OBJECT
public:
    explicit SslTrustedStorageDialog(QWidget* parent = nullptr);

    QTreeWidget* list() const { return m_list; }
    QPushButton* removeButton() const { return m_remove; }
    QLabel* errorLabel() const { return m_error; }

public slots:
    void reload();
    void onRemoveClicked();

private slots:
    void onReadFinished();
    void onRemoveFinished();
    void onNotification(const QJsonDocument& document);

private:
    void showError(const QString& text);

    QTreeWidget* m_list;
    QPushButton* m_remove;
    QLabel* m_error;
};

} // namespace NVB::GUI
