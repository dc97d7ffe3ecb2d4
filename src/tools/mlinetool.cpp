#include "tools/mlinetool.h"

#include "tools/mtoolvalues.h"

MLineTool::MLineTool(QObject* parent) : MTool(LineTool, parent)
{
    set_pointId(MToolValues::LinePoints);
}
