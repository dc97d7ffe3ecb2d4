#include "tools/mpantool.h"

MPanTool::MPanTool(QObject* parent) : MTool(PanTool, parent) {}
