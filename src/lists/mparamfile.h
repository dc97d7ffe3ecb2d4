#pragma once

#include "app/menum.h"

#include <QString>

// Where the file of one list item lies: which of the two directories, the
// path, and the id the file name gives.
class MParamFile
{
public:
    MParamFile() = default;
    // The id is kept trimmed and upper-cased.
    MParamFile(MEnum::PathType pathType, const QString& fileName, const QString& id);

    MEnum::PathType pathType = MEnum::SystemPath;
    QString fileName;
    QString id;
};
