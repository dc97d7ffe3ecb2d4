#pragma once

#include "tools/mtool.h"

// Lays out the panels of a comic strip page.
// For now the tool holds only its place in the framework, its id and its group;
// it reacts to no event yet.
class MComicStripTool : public MTool
{
    Q_OBJECT

public:
    explicit MComicStripTool(QObject* parent = nullptr);
};
