#pragma once

#include <QObject>
#include <QString>

namespace NVB::GUI {

// A node of the lazy file tree. The models read and write a node's values by
// the property names BaseFilesModel exports ("name", "real_path", ...), as
// on any QObject; declaring
// them here keeps them in plain members instead of Qt's per-object list of
// dynamic properties, which costs an allocation for every name and value and
// dominated the memory of a large tree. A node made as a plain QObject with
// dynamic properties of the same names works just as well.
class FileNode : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString name MEMBER m_name)
    Q_PROPERTY(QString path MEMBER m_path)
    Q_PROPERTY(QString real_path MEMBER m_realPath)
    Q_PROPERTY(bool is_changeable MEMBER m_isChangeable)
    Q_PROPERTY(bool is_expandable MEMBER m_isExpandable)
    Q_PROPERTY(int type MEMBER m_type)
    Q_PROPERTY(bool is_hidden MEMBER m_isHidden)
    Q_PROPERTY(bool is_symlink MEMBER m_isSymlink)
    Q_PROPERTY(int checked MEMBER m_checked)
    Q_PROPERTY(int row MEMBER m_row)
    Q_PROPERTY(int loaded MEMBER m_load)

public:
    explicit FileNode(QObject* parent = nullptr);
    ~FileNode() override;

private:
    QString m_name;
    QString m_path;
    QString m_realPath;
    int m_type = 0;
    int m_checked = 0;
    int m_row = 0;
    int m_load = 0;
    bool m_isChangeable = false;
    bool m_isExpandable = false;
    bool m_isHidden = false;
    bool m_isSymlink = false;
};

} // namespace NVB::GUI
