#include "brush/msettingcategory.h"

MSettingCategory::MSettingCategory(const QString& description, QObject* parent)
    : QObject(parent), m_description(description)
{
}

void MSettingCategory::setDescription(const QString& description)
{
    if (description == m_description)
        return;
    m_description = description;
    Q_EMIT descriptionChanged(description);
}

void MSettingCategory::addSetting(int setting)
{
    if (m_settings.contains(setting))
        return;
    m_settings.append(setting);
    Q_EMIT settingsChanged(m_settings);
}
