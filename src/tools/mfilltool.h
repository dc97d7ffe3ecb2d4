#pragma once

#include "tools/mtool.h"

// Flood fills the area under the click.
// For now the tool holds only its place in the framework, its id and its group;
// it reacts to no event yet.
class MFillTool : public MTool
{
    Q_OBJECT

public:
    explicit MFillTool(QObject* parent = nullptr);
};
