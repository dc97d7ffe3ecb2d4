#pragma once

#include "tools/mtool.h"

// Places one line of text as an outline and rasterises it.
// For now the tool holds only its place in the framework, its id, its group and where its control points are
// kept; it reacts to no event yet.
class MTextTool : public MTool
{
    Q_OBJECT

public:
    explicit MTextTool(QObject* parent = nullptr);
};
