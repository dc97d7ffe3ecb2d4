#include "app/mpathvarlist.h"

#include "app/mpathvar.h"

#include <QCoreApplication>
#include <QStandardPaths>

MPathVarList::MPathVarList()
{
    m_items << new MPathVar(QStringLiteral("$DocumentsPath$"), tr("Documents path"),
                            QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation), this)
            << new MPathVar(QStringLiteral("$ImagesPath$"), tr("Images path"),
                            QStandardPaths::writableLocation(QStandardPaths::PicturesLocation), this)
            << new MPathVar(QStringLiteral("$InstallationPath$"), tr("Installation path"),
                            QCoreApplication::applicationDirPath(), this);
}

QString MPathVarList::expand(const QString& text) const
{
    QString result = text;
    for (const MPathVar* item : m_items)
        result.replace(item->variable(), item->replacement(), Qt::CaseSensitive);
    return result;
}
