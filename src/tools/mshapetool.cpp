#include "tools/mshapetool.h"

#include "tools/mtoolvalues.h"

MShapeTool::MShapeTool(QObject* parent) : MTool(ShapeTool, parent)
{
    set_pointId(MToolValues::ShapePoints);
}
