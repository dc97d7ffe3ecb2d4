#pragma once

#include "tools/mtool.h"

#include <QLineF>
#include <QPointF>

// Shows vanishing points and the lines that run to them, and brings the end of
// a straight line onto the nearest of those lines.
// For now the tool holds only its place in the framework, its id, its group and where its control points are
// kept; it reacts to no event yet.
class MPerspectiveTool : public MTool
{
    Q_OBJECT

public:
    explicit MPerspectiveTool(QObject* parent = nullptr);

    // Where the line's end goes; for now the end unchanged.
    QPointF constrain(const QLineF& line) const;
};
