#pragma once

#include "tools/mtool.h"

// Straight lines, polylines and curves drawn through control points.
// For now the tool holds only its place in the framework, its id, its group and where its control points are
// kept; it reacts to no event yet.
class MLineTool : public MTool
{
    Q_OBJECT

public:
    explicit MLineTool(QObject* parent = nullptr);
};
