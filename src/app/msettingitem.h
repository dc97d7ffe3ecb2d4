#pragma once

#include <QString>
#include <QVariant>

// One row of the settings dialog: where a setting is shown and how it is edited.
// The label is kept untranslated and translated when shown, because the store
// exists before the translations are loaded.
class MSettingItem
{
public:
    MSettingItem() = default;
    MSettingItem(const QString& category, const QString& key, const char* label, int type,
                 const QString& enumName, double minimum, double maximum);
    virtual ~MSettingItem() = default;

    QString category;
    QString key;
    QString sourceLabel;
    int type = QVariant::Invalid;
    QString enumName;
    bool isVisible = true;
    double minimum = -1;
    double maximum = -1;

    QString label() const;
    bool hasMinimum() const { return minimum != -1; }
    bool hasMaximum() const { return maximum != -1; }
};
