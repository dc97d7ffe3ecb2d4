#pragma once

#include "effects/mpickitem.h"

#include <QVector>

// The choices of a pick-list field, in the order they were added.
class MPickList : public QVector<MPickItem>
{
public:
    void add(const QString& text, const QVariant& value) { append(MPickItem{text, value}); }
    // The index of the item holding that value, -1 when none does.
    int indexOfValue(const QVariant& value) const;
};
