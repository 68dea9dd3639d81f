#pragma once

#include <QMap>
#include <QPair>
#include <QVector>

#include "accounts/storagesadd.h"
#include "openstack.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QGroupBox;
class QLineEdit;
class QToolButton;

namespace NVB::GUI::Settings::Account {

// The dialog every provider of the OpenStack family shares: a Swift account
// with user name and API key, an endpoint whose last path segment names the
// authentication (/v1.0, /v2.0 for Keystone v2, /v3 for Keystone v3), and
// the Keystone scope. Listing the containers is the test; with Keystone they
// come with their region, which the choice of container sets.
class OpenStack::Add : public Storages::Add
{
    Q_OBJECT

public:
    using Presets = QVector<QPair<QString, QString>>;

    Add(NVL::Cloud::Type type, const Presets& presets, bool keystoneV2, bool keystoneV3, bool internalUrl,
        QWidget* parent = nullptr);

    bool canRequestPrefixes() const override;
    QMap<QString, QVariant> cloudConfig() const override;
    bool loadContainersFinished(NVL::Cloud::Operation::ListContainers* operation) override;
    void lockWidgetsAfterError(bool locked) override;
    void lockWidgetsAfterSslOperation(bool locked) override;

    QLineEdit* displayNameEdit() const { return m_displayName; }
    QLineEdit* userEdit() const { return m_user; }
    QLineEdit* apiKeyEdit() const { return m_apiKey; }
    QLineEdit* endpointEdit() const { return m_endpoint; }
    QToolButton* presetButton() const { return m_presets; }
    QComboBox* containerCombo() const { return m_container; }
    QToolButton* addContainerButton() const { return m_addContainer; }
    QCheckBox* internalUrlBox() const { return m_internalUrl; }
    QGroupBox* keystoneV2Box() const { return m_v2; }
    QGroupBox* keystoneV3Box() const { return m_v3; }
    QComboBox* tenantKindCombo() const { return m_tenantKind; }
    QLineEdit* tenantEdit() const { return m_tenant; }
    QComboBox* domainKindCombo() const { return m_domainKind; }
    QLineEdit* domainEdit() const { return m_domain; }
    QGroupBox* scopeBox() const { return m_scope; }
    QComboBox* projectKindCombo() const { return m_projectKind; }
    QLineEdit* projectEdit() const { return m_project; }
    bool containersLoaded() const { return m_containersLoaded; }

public slots:
    void setKeystoneSufix();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

protected slots:
    void onAccept() override;
    void onSetItem(const QModelIndex& index) override;
    void onAdvancedClicked() override;

private slots:
    void onDataChanged();
    void onCredsReset();
    void onEditinfFinished();
    void onLocationTriggered();
    void onUseKeystoneChecked(bool checked);
    void onAddContainerClicked();

private:
    void saveConfig();
    // The container chosen, and its region (empty for auth v1.0).
    QPair<QString, QString> chosen() const;
    void fillContainers();

    QLineEdit* m_displayName;
    QLineEdit* m_user;
    QLineEdit* m_apiKey;
    QLineEdit* m_endpoint;
    QToolButton* m_presets;
    QComboBox* m_container;
    QToolButton* m_addContainer;
    QCheckBox* m_internalUrl = nullptr;
    QGroupBox* m_v2 = nullptr;
    QComboBox* m_tenantKind = nullptr;
    QLineEdit* m_tenant = nullptr;
    QLineEdit* m_v2Region = nullptr;
    QGroupBox* m_v3 = nullptr;
    QComboBox* m_domainKind = nullptr;
    QLineEdit* m_domain = nullptr;
    QLineEdit* m_v3Region = nullptr;
    QGroupBox* m_scope = nullptr;
    QComboBox* m_projectKind = nullptr;
    QLineEdit* m_project = nullptr;
    // Shown text -> (name, region), from the last listing.
    QMap<QString, QPair<QString, QString>> m_containers;
    QStringList m_order;
    QPair<QString, QString> m_saved;
    bool m_containersLoaded = false;
    bool m_useSsl = true;
};

} // namespace NVB::GUI::Settings::Account
