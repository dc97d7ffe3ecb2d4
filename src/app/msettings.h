#pragma once

#include "app/msingleton.h"

#include <QSettings>

// The store of user preferences. Getters read the store with their default;
// setters write and emit only when the value really changes.
class MSettings : public QSettings, public MSingleton<MSettings>
{
    Q_OBJECT
    Q_PROPERTY(bool generateMipmaps READ generateMipmaps WRITE set_generateMipmaps NOTIFY generateMipmapsChanged)
    Q_PROPERTY(QString userLangId READ userLangId WRITE set_userLangId NOTIFY userLangIdChanged)
    Q_PROPERTY(QString startupFile READ startupFile WRITE set_startupFile NOTIFY startupFileChanged)

public:
    MSettings();

    bool generateMipmaps() const { return value(QStringLiteral("generateMipmaps"), true).toBool(); }
    QString userLangId() const { return value(QStringLiteral("userLangId"), QStringLiteral("en")).toString(); }
    QString startupFile() const { return value(QStringLiteral("startupFile"), QString()).toString(); }

public Q_SLOTS:
    void set_generateMipmaps(bool generate);
    void set_userLangId(const QString& langId);
    void set_startupFile(const QString& path);

Q_SIGNALS:
    void generateMipmapsChanged(bool generate);
    void userLangIdChanged(const QString& langId);
    void startupFileChanged(const QString& path);
};
