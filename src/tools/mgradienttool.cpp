#include "tools/mgradienttool.h"

#include "tools/mtoolvalues.h"

MGradientTool::MGradientTool(QObject* parent) : MTool(GradientTool, parent)
{
    set_pointId(MToolValues::GradientPoints);
}
