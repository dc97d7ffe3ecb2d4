#pragma once

#include "tools/mtool.h"

#include <QLineF>
#include <QPointF>

// A graduated line over the canvas that straight lines and strokes can follow.
// For now the tool holds only its place in the framework, its id, its group and where its control points are
// kept; it reacts to no event yet.
class MRullerTool : public MTool
{
    Q_OBJECT

public:
    explicit MRullerTool(QObject* parent = nullptr);

    // Where the line's end goes; for now the end unchanged.
    QPointF constrain(const QLineF& line) const;
};
