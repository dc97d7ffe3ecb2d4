#pragma once

#include "tools/mtool.h"

// Builds selections from rectangles, ellipses, polygons and free outlines.
// For now the tool holds only its place in the framework, its id, its group and where its control points are
// kept; it reacts to no event yet.
class MSelectionTool : public MTool
{
    Q_OBJECT

public:
    explicit MSelectionTool(QObject* parent = nullptr);
};
