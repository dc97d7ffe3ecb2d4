#pragma once

#include "tools/mtool.h"

// Places a shape from the shape library in a frame and rasterises it.
// For now the tool holds only its place in the framework, its id, its group and where its control points are
// kept; it reacts to no event yet.
class MShapeTool : public MTool
{
    Q_OBJECT

public:
    explicit MShapeTool(QObject* parent = nullptr);
};
