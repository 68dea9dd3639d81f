#include "storagesinfo.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QJsonObject>
#include <QLabel>
#include <QVBoxLayout>

#include "app/application.h"
#include "crypt/cryptns.h"
#include "models/models.h"
#include "selectmns.h"
#include "selectstandalon.h"
#include "storage/storageconnectionsmodel.h"
#include "widgets/elidedlabel.h"

namespace NVB::GUI::Settings {

namespace Column = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Column;

Storages::Info::Info(NVL::Cloud::Type type, QWidget* parent)
    : QWidget(parent)
    , m_type(type)
{
    auto* layout = new QVBoxLayout(this);
    auto* header = new QHBoxLayout;
    auto* icon = new QLabel(this);
    icon->setPixmap(StorageConnectionsModel::storageIcon(int(type)).pixmap(32, 32));
    icon->setFixedSize(32, 32);
    const bool standalone = Application::isStandalon() || type == NVL::Cloud::Type::FileSystem;
    auto* name = new QLabel(
        standalone ? Account::SelectStandalon::storageName(int(type)) : Account::SelectMns::storageName(int(type)),
        this);
    QFont large = name->font();
    large.setPointSizeF(large.pointSizeF() * 1.3);
    large.setBold(true);
    name->setFont(large);
    name->setStyleSheet(QStringLiteral("color: #404040;"));
    header->addWidget(icon);
    header->addWidget(name, 1);
    layout->addLayout(header);

    m_title = new QLabel(this);
    QFont titleFont = m_title->font();
    titleFont.setBold(true);
    m_title->setFont(titleFont);
    layout->addWidget(m_title);

    m_form = new QFormLayout;
    m_form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    layout->addLayout(m_form);
    layout->addStretch(1);
}

Storages::Info::~Info() = default;

void Storages::Info::addField(const QString& label, const QString& key, Formatter formatter)
{
    for (const Field& field : qAsConst(m_fields)) {
        if (field.key == key)
            return;
    }
    auto* name = new QLabel(label, this);
    auto* value = new ElidedLabel(this);
    // Paths and addresses say most at both ends.
    value->setElideMode(Qt::ElideMiddle);
    m_form->addRow(name, value);
    m_fields.append({key, name, value, formatter});
}

void Storages::Info::setItem(const QModelIndex& index)
{
    if (!index.isValid())
        return;
    updateItem(index);
}

void Storages::Info::updateItem(const QModelIndex& index)
{
    const QAbstractItemModel* model = index.model();
    const QString name = model->index(index.row(), Column::DisplayName, index.parent()).data().toString();
    m_title->setText(m_title->fontMetrics().elidedText(name, Qt::ElideMiddle, qMax(100, width() - 20)));
    m_title->setToolTip(name);
    // Every field, "BackupPrefix" included, comes from the record the engine
    // keeps; what it lacks is hidden, not made up from other columns.
    const QJsonObject record = model->index(index.row(), Column::DetailParams, index.parent()).data().toJsonObject();
    for (const Field& field : qAsConst(m_fields)) {
        const bool present = record.contains(field.key);
        field.label->setVisible(present);
        field.value->setVisible(present);
        if (!present)
            continue;
        const QVariant value = record.value(field.key).toVariant();
        const QString text = field.formatter ? field.formatter(value) : value.toString();
        field.value->setText(text);
    }
}

QString Storages::Info::title() const
{
    return m_title->toolTip();
}

QString Storages::Info::fieldText(const QString& key) const
{
    for (const Field& field : m_fields) {
        if (field.key == key)
            return field.value->isVisibleTo(this) ? field.value->text() : QString();
    }
    return QString();
}

bool Storages::Info::isFieldVisible(const QString& key) const
{
    for (const Field& field : m_fields) {
        if (field.key == key)
            return field.value->isVisibleTo(this);
    }
    return false;
}

QString Storages::Info::decryptDelegate(const QVariant& value)
{
    try {
        return SHARED::cryptNS::decrypt_local_password(value.toString());
    } catch (const QString&) {
        return QString();
    }
}

QString Storages::Info::trueFalseDelegate(const QVariant& value)
{
    bool ok = false;
    const int number = value.type() == QVariant::Bool ? int(value.toBool()) : value.toInt(&ok);
    if (value.type() != QVariant::Bool && !ok)
        return tr("N/A");
    if (number == 0)
        return tr("no");
    if (number == 1)
        return tr("yes");
    return tr("N/A");
}

} // namespace NVB::GUI::Settings
