#pragma once

#include "tools/mtool.h"

// Zooms the view.
// For now the tool holds only its place in the framework, its id and its group;
// it reacts to no event yet.
class MZoomTool : public MTool
{
    Q_OBJECT

public:
    explicit MZoomTool(QObject* parent = nullptr);
};
