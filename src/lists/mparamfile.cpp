#include "lists/mparamfile.h"

MParamFile::MParamFile(MEnum::PathType type, const QString& path, const QString& fileId)
    : pathType(type), fileName(path), id(fileId.trimmed().toUpper())
{
}
