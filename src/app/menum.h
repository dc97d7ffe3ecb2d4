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

    // The stylus and stroke inputs, in the order of the doubles of MEvent.
    enum BrushInput {
        biPressure = 0,
        biTangentialPressure = 1,
        biXTilt = 2,
        biYTilt = 3,
        biPositionX = 4,
        biPositionY = 5,
        biDirectionX = 6,
        biDirectionY = 7,
        biSpeed = 8,
        biTimeToPrevious = 9,
        biTotalTime = 10,
        biDistanceToPrevious = 11,
        biTotalDistance = 12,
        biRandom = 13,
        biCount = 14
    };
    Q_ENUM(BrushInput)

    // A brush's settings. The key without "bs", first letter lowered, is the
    // brush's property name and the setting's key in files.
    enum BrushSetting {
        bsRadius = 0,
        bsSpacing = 1,
        bsSpacingType = 2,
        bsFlow = 3,
        bsOpacity = 4,
        bsHardness = 5,
        bsCompositionMode = 6,
        bsAntialiasing = 7,
        bsRatio = 8,
        bsAngle = 9,
        bsAngleType = 10,
        bsMinDistance = 11,
        bsSmoothing = 12,
        bsShape = 13,
        bsOffsetX = 14,
        bsOffsetY = 15,
        bsNoise = 16,
        bsDensity = 17,
        bsAccumulatorDistance = 18,
        bsEraser = 19,
        bsInheritAlphaUnder = 20,
        bsInheritAlphaCurrent = 21,
        bsSourceRgbBlendMode = 22,
        bsSourceAlphaBlendMode = 23,
        bsDestinationRgbBlendMode = 24,
        bsDestinationAlphaBlendMode = 25,
        bsRgbBlendEquation = 26,
        bsAlphaBlendEquation = 27,
        bsColorAbsorbtionRate = 28,
        bsColorFlowingRate = 29,
        bsPreserveTextureColor = 30,
        bsFactor = 31,
        bsUseBorderColor = 32,
        bsBrushColorHue = 33,
        bsBrushColorSaturation = 34,
        bsBrushColorValue = 35,
        bsBorderColorHue = 36,
        bsBorderColorSaturation = 37,
        bsBorderColorValue = 38,
        bsCount = 39
    };
    Q_ENUM(BrushSetting)

    enum BrushShape { EllipseShape = 0, RectangleShape = 1 };
    Q_ENUM(BrushShape)

    enum AngleType { ConstantAngle = 0, FollowDirectionAngle = 1 };
    Q_ENUM(AngleType)

    enum SpacingType { AutoSpacing = 0, RatioSpacing = 1, ConstantSpacing = 2 };
    Q_ENUM(SpacingType)

    enum AntialiasingType { Antialiasing = 0, NoAntialiasing = 1, Smoothing = 2 };
    Q_ENUM(AntialiasingType)

    // The OpenGL blend factors and equations, by their GL values.
    enum OpenGLFactor {
        glZero = 0,
        glOne = 1,
        glSrcColor = 0x0300,
        glOneMinusSrcColor = 0x0301,
        glSrcAlpha = 0x0302,
        glOneMinusSrcAlpha = 0x0303,
        glDstAlpha = 0x0304,
        glOneMinusDstAlpha = 0x0305,
        glDstColor = 0x0306,
        glOneMinusDstColor = 0x0307,
        glSrcAlphaSaturate = 0x0308,
        glConstantColor = 0x8001,
        glOneMinusConstantColor = 0x8002,
        glConstantAlpha = 0x8003,
        glOneMinusConstantAlpha = 0x8004
    };
    Q_ENUM(OpenGLFactor)

    enum OpenGLEquation {
        glAdd = 0x8006,
        glMin = 0x8007,
        glMax = 0x8008,
        glSubtract = 0x800A,
        glReverseSubtract = 0x800B
    };
    Q_ENUM(OpenGLEquation)

    // The meta-enum of that name, for editors built from names; invalid when unknown.
    static QMetaEnum metaEnum(const QString& name);
    // An enumeration value's name as the user sees it, in the interface language.
    static QString translatedKey(const char* key);
};
