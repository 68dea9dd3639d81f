#pragma once

#include <QMultiMap>
#include <QStringList>
#include <QUuid>

#include "models/filesystemcheckedmodel.h"

namespace NVB::GUI {

// The file tree where the licence limits how many network shares all backup
// plans together may use. It asks the engine which plan uses which share and
// refuses a mark that would bring one share too many into use.
class FileSystemCheckedShareControlModel : public FileSystemCheckedModel
{
    Q_OBJECT

public:
    explicit FileSystemCheckedShareControlModel(QObject* parent = nullptr);

    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

    // As the base, for the plan of that id, whose own shares don't count
    // against the limit.
    void initChecked(const QUuid& planId, const QStringList& include, const QStringList& exclude);
    using FileSystemCheckedModel::initChecked;

    // True if the real path is a share or lies on one.
    bool isShare(const QString& path) const;
    QStringList shares() const { return m_shares; }
    QMultiMap<QString, QUuid> usedShares() const { return m_usedShares; }

    // How many shares all plans may use together; negative for no limit. The
    // licence check sets it; one until then.
    int shareLimit() const { return m_shareLimit; }
    void setShareLimit(int limit) { m_shareLimit = limit; }

signals:
    void shareControlAttention();

private slots:
    void onGetUsedShareResult();

private:
    void requestUsedShares();
    QString shareOf(const QString& path) const;

    QStringList m_shares;
    QMultiMap<QString, QUuid> m_usedShares;
    QUuid m_planId;
    int m_shareLimit = 1;
};

} // namespace NVB::GUI
