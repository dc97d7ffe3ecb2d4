#pragma once

#include "tools/mtool.h"

// Fills with a gradient between control points.
// For now the tool holds only its place in the framework, its id, its group and where its control points are
// kept; it reacts to no event yet.
class MGradientTool : public MTool
{
    Q_OBJECT

public:
    explicit MGradientTool(QObject* parent = nullptr);
};
