#include "tools/mrotatetool.h"

MRotateTool::MRotateTool(QObject* parent) : MTool(RotateTool, parent) {}
