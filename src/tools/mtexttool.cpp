#include "tools/mtexttool.h"

#include "tools/mtoolvalues.h"

MTextTool::MTextTool(QObject* parent) : MTool(TextTool, parent)
{
    set_pointId(MToolValues::TextPoints);
}
