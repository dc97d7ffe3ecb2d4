#include "tools/mimagetool.h"

#include "tools/mtoolvalues.h"

MImageTool::MImageTool(QObject* parent) : MTool(ImageTool, parent)
{
    set_pointId(MToolValues::ImagePoints);
}
