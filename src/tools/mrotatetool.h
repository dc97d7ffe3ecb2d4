#pragma once

#include "tools/mtool.h"

// Turns the view.
// For now the tool holds only its place in the framework, its id and its group;
// it reacts to no event yet.
class MRotateTool : public MTool
{
    Q_OBJECT

public:
    explicit MRotateTool(QObject* parent = nullptr);
};
