#pragma once

#include <QObject>

// The enumerations shared across subsystems, registered with the meta-object
// system so that editors and files can name them.
class MEnum
{
    Q_GADGET

public:
    enum PathType { SystemPath = 0, UserPath = 1 };
    Q_ENUM(PathType)

    enum Directory {
        BrushDir = 0,
        CacheDir = 1,
        ModelDir = 2,
        PaperDir = 3,
        ShaderDir = 4,
        ShapeDir = 5,
        SnippetDir = 6,
        SwatchDir = 7,
        TemplateDir = 8,
        TextureDir = 9
    };
    Q_ENUM(Directory)
};
