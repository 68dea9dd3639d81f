#pragma once

#include <QPointer>
#include <QStringList>

#include "accounts/storages.h"
#include "widgets/processdialog.h"

class QComboBox;
class QDialogButtonBox;
class QHBoxLayout;
class QVBoxLayout;

namespace NVB::GUI::Settings::Account {

// "Advanced settings" of an account: the backup prefix, with the prefixes the
// destination already holds offered on the first click into the list.
class Advanced : public ProcessDialog
{
    Q_OBJECT

public:
    Advanced(Storages::Add& dialog, bool prefixDisabled, QWidget* parent = nullptr);
    Advanced(const QStringList& items, bool prefixDisabled, QWidget* parent = nullptr);
    Advanced(const QString& prefix, const QStringList& items, bool prefixDisabled, QWidget* parent = nullptr);
    ~Advanced() override;

    QString prefix() const;
    void setDisablePrefix(bool disable);
    static QString defaultPrefix();

    QComboBox* prefixCombo() const { return m_prefix; }
    QDialogButtonBox* buttonBox() const { return m_buttons; }
    bool prefixesRequested() const { return m_prefixesRequested; }

protected:
    void appendLayout(QHBoxLayout* layout);
    void appendWidget(QWidget* widget);
    void process(bool on);
    bool eventFilter(QObject* watched, QEvent* event) override;

protected slots:
    virtual void onAccept();
    virtual void onReject();
    virtual void onDataChanged();
    void onLoadPrefixes(const QStringList& prefixes);
    void wrapperOnLoadPrefixes(const QStringList& prefixes);
    void onLoadPrefixesOneShotTimeout();

private:
    void build(const QString& prefix, const QStringList& items, bool prefixDisabled);
    void repairPrefix();
    void disconnectDialog();

    QString m_givenPrefix;
    QComboBox* m_prefix = nullptr;
    QDialogButtonBox* m_buttons = nullptr;
    QVBoxLayout* m_layout = nullptr;
    QPointer<Storages::Add> m_dialog;
    QStringList m_loaded;
    bool m_prefixesRequested = false;
};

} // namespace NVB::GUI::Settings::Account
