#pragma once

#include <QWidget>

namespace NVB::GUI::Settings {

class RetentionPolicy;
class SymlinkOptions;

// The "Backup" tab: symlink handling and the default retention.
class Backup : public QWidget
{
    Q_OBJECT
public:
    explicit Backup(QWidget* parent = nullptr);

    SymlinkOptions* symlinkOptions() const { return m_symlinks; }
    RetentionPolicy* retentionPolicy() const { return m_retention; }

public slots:
    void loadSettings();

private:
    SymlinkOptions* m_symlinks;
    RetentionPolicy* m_retention;
};

} // namespace NVB::GUI::Settings
