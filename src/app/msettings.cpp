#include "app/msettings.h"

#include "app/mlogger.h"

MSettings::MSettings()
{
    MLogger::instance()->write(QStringLiteral("Settings loaded"));
    // Mipmaps can be switched off for a session only; every start turns them on.
    setValue(QStringLiteral("generateMipmaps"), true);
}

void MSettings::set_generateMipmaps(bool generate)
{
    if (generate == generateMipmaps())
        return;
    setValue(QStringLiteral("generateMipmaps"), generate);
    Q_EMIT generateMipmapsChanged(generate);
}

void MSettings::set_userLangId(const QString& langId)
{
    if (langId == userLangId())
        return;
    setValue(QStringLiteral("userLangId"), langId);
    Q_EMIT userLangIdChanged(langId);
}

void MSettings::set_startupFile(const QString& path)
{
    if (path == startupFile())
        return;
    setValue(QStringLiteral("startupFile"), path);
    Q_EMIT startupFileChanged(path);
}
