#pragma once

#include "tools/mtool.h"

// Shows the grid that positions snap to.
// For now the tool holds only its place in the framework, its id and its group;
// it reacts to no event yet.
class MGridTool : public MTool
{
    Q_OBJECT

public:
    explicit MGridTool(QObject* parent = nullptr);
};
