#pragma once

#include <QByteArray>
#include <QString>

// The description of one brush input. Minimum and maximum are the x range of
// every new curve on that input.
struct MBrushInputInfo
{
    // -1 for the null entry that lookups of unknown inputs answer.
    int input = -1;
    // The input's key in brush files: the enum key without "bi", first letter lowered.
    QByteArray key;
    QString name;
    QString description;
    double minimum = 0.0;
    double defaultValue = 0.0;
    double maximum = 0.0;
};
