#pragma once

#include <QObject>
#include <QStringList>

class QMenu;

// The most recently opened documents, newest first, kept in the setting
// "recentFiles" and shown as one entry per path in a menu.
class MRecentFiles : public QObject
{
    Q_OBJECT

public:
    MRecentFiles(QMenu* menu, int maximum, QObject* parent = nullptr);

    QStringList files() const { return m_files; }
    int maximum() const { return m_maximum; }

public Q_SLOTS:
    // Puts the path first, dropping an older entry of it and the entries past
    // the maximum.
    void addFile(const QString& fileName);
    void removeFile(const QString& fileName);
    void clear();

Q_SIGNALS:
    void openRecentFile(const QString& fileName);

private:
    void store();
    void rebuildMenu();

    QMenu* m_menu;
    int m_maximum;
    QStringList m_files;
};
