#include "app/msettingitem.h"

#include <QCoreApplication>

MSettingItem::MSettingItem(const QString& category_, const QString& key_, const char* label_, int type_,
                           const QString& enumName_, double minimum_, double maximum_)
    : category(category_), key(key_), sourceLabel(QString::fromUtf8(label_)), type(type_), enumName(enumName_),
      minimum(minimum_), maximum(maximum_)
{
}

QString MSettingItem::label() const
{
    return QCoreApplication::translate("MSettings", sourceLabel.toUtf8().constData());
}
