#include "app/mrecentfiles.h"

#include "app/msettings.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QMenu>

namespace {

// Paths compare by their absolute, clean form, so that "a/../b.qmd" and
// "b.qmd" are one entry.
QString canonical(const QString& fileName)
{
    return QDir::cleanPath(QFileInfo(fileName).absoluteFilePath());
}

} // namespace

MRecentFiles::MRecentFiles(QMenu* menu, int maximum, QObject* parent)
    : QObject(parent), m_menu(menu), m_maximum(qMax(1, maximum))
{
    for (const QString& fileName : MSettings::instance()->recentFiles()) {
        if (fileName.isEmpty())
            continue;
        const QString path = canonical(fileName);
        if (!m_files.contains(path) && m_files.size() < m_maximum)
            m_files.append(path);
    }
    rebuildMenu();
}

void MRecentFiles::addFile(const QString& fileName)
{
    if (fileName.isEmpty())
        return;
    const QString path = canonical(fileName);
    m_files.removeAll(path);
    m_files.prepend(path);
    while (m_files.size() > m_maximum)
        m_files.removeLast();
    store();
}

void MRecentFiles::removeFile(const QString& fileName)
{
    if (m_files.removeAll(canonical(fileName)) > 0)
        store();
}

void MRecentFiles::clear()
{
    if (m_files.isEmpty())
        return;
    m_files.clear();
    store();
}

void MRecentFiles::store()
{
    MSettings::instance()->set_recentFiles(m_files);
    rebuildMenu();
}

void MRecentFiles::rebuildMenu()
{
    if (!m_menu)
        return;
    m_menu->clear();
    for (int i = 0; i < m_files.size(); ++i) {
        const QString path = m_files.at(i);
        // The number is the mnemonic; the full path is in the tool tip.
        QAction* action =
            m_menu->addAction(QStringLiteral("&%1 %2").arg(i + 1).arg(QFileInfo(path).fileName()));
        action->setToolTip(QDir::toNativeSeparators(path));
        action->setStatusTip(QDir::toNativeSeparators(path));
        action->setData(path);
        connect(action, &QAction::triggered, this, [this, path]() { Q_EMIT openRecentFile(path); });
    }
    m_menu->setEnabled(!m_files.isEmpty());
}
