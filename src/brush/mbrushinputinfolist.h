#pragma once

#include "app/msingleton.h"
#include "brush/mbrushinputinfo.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QHash>
#include <QVector>

// The dictionary of the brush inputs, in ascending MEnum::BrushInput order.
class MBrushInputInfoList : public MSingleton<MBrushInputInfoList>
{
    Q_DECLARE_TR_FUNCTIONS(MBrushInputInfoList)

public:
    MBrushInputInfoList();

    // The entry of an input, or of a file key; the null entry (input -1) when unknown.
    const MBrushInputInfo& info(int input) const;
    const MBrushInputInfo& info(const QByteArray& key) const;
    const QVector<MBrushInputInfo>& infos() const { return m_infos; }
    int count() const { return m_infos.size(); }

    // The file key of an enum key: "biXTilt" gives "xTilt".
    static QByteArray keyOf(const char* enumKey);

private:
    QVector<MBrushInputInfo> m_infos;
    QHash<QByteArray, int> m_byKey;
    MBrushInputInfo m_null;
};
