#pragma once

#include <QString>
#include <QVariant>

// One entry of a pick list: the text shown and the value written.
struct MPickItem
{
    QString text;
    QVariant value;

    bool operator==(const MPickItem& other) const { return text == other.text && value == other.value; }
};
