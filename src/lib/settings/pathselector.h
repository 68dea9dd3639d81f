#pragma once

#include <QWidget>

class QComboBox;

namespace NVB::GUI::Settings {

// "Default" or one folder of the user's choice, in a combo box.
class PathSelector : public QWidget
{
    Q_OBJECT
public:
    explicit PathSelector(QWidget* parent = nullptr);

    void setDefaultPath(const QString& path);
    void selectDefaultPath();
    void setCurrentPath(const QString& path);
    QString currentPath() const;
    bool isCustomPathSetted() const;

    QComboBox* comboBox() const { return m_combo; }

signals:
    void currentPathChanged(const QString& path);

private slots:
    void onActivated(int index);

private:
    int otherIndex() const;

    QComboBox* m_combo;
    QString m_defaultPath;
    QString m_customPath;
    int m_lastIndex = 0;
};

} // namespace NVB::GUI::Settings
