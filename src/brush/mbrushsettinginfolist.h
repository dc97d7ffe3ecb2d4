#pragma once

#include "app/msingleton.h"
#include "effects/mfield.h"

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QVector>

#include <memory>
#include <vector>

class MSettingCategory;

// The dictionary of the brush settings: one field per setting, in the order in
// which panels show them, and the categories that group them.
class MBrushSettingInfoList : public QObject, public MSingleton<MBrushSettingInfoList>
{
    Q_OBJECT

public:
    MBrushSettingInfoList();
    ~MBrushSettingInfoList() override;

    // The field of a setting, or of a property name; a null field (id -1) when unknown.
    const MField& field(int setting) const;
    const MField& field(const QByteArray& name) const;
    // All fields in registration order.
    const QVector<MField*>& fields() const { return m_ordered; }
    const QVector<MSettingCategory*>& categories() const { return m_categories; }

    // The property name of a setting, empty when unknown.
    QByteArray propertyName(int setting) const;
    // The property name of an enum key: "bsSourceRgbBlendMode" gives "sourceRgbBlendMode".
    static QByteArray propertyNameOf(const char* enumKey);

private:
    void addField(int setting);
    void addCategory(const QString& description, const QVector<int>& settings);

    std::vector<std::unique_ptr<MField>> m_storage;
    QHash<int, MField*> m_byValue;
    QHash<QByteArray, MField*> m_byName;
    QVector<MField*> m_ordered;
    QVector<QByteArray> m_names;
    QVector<MSettingCategory*> m_categories;
    MField m_null;
};
