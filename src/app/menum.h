#pragma once

#include <QMetaEnum>
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

    enum PaperType { Transparent = 0, Colored = 1, Paper = 2 };
    Q_ENUM(PaperType)

    enum ResolutionUnit { PixelsPerInch = 0, PixelsPerCentimeter = 1 };
    Q_ENUM(ResolutionUnit)

    enum Edge { LeftEdge = 0, TopEdge = 1, RightEdge = 2, BottomEdge = 3 };
    Q_ENUM(Edge)

    // The meta-enum of that name, for editors built from names; invalid when unknown.
    static QMetaEnum metaEnum(const QString& name);
    // An enumeration value's name as the user sees it, in the interface language.
    static QString translatedKey(const char* key);
};
