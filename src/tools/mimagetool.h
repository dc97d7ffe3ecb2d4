#pragma once

#include "tools/mtool.h"

// Places an image on the canvas in a frame that moves, resizes and turns.
// For now the tool holds only its place in the framework, its id, its group and where its control points are
// kept; it reacts to no event yet.
class MImageTool : public MTool
{
    Q_OBJECT

public:
    explicit MImageTool(QObject* parent = nullptr);
};
