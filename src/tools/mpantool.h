#pragma once

#include "tools/mtool.h"

// Drags the view.
// For now the tool holds only its place in the framework, its id and its group;
// it reacts to no event yet.
class MPanTool : public MTool
{
    Q_OBJECT

public:
    explicit MPanTool(QObject* parent = nullptr);
};
