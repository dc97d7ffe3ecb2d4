#include "support/logwatch.h"
#include "support/testenvironment.h"

#include "app/menum.h"
#include "app/mevent.h"
#include "brush/mbrush.h"
#include "brush/mbrushinputinfolist.h"
#include "brush/mbrushsettinginfolist.h"
#include "brush/mcurve.h"
#include "brush/msettingcategory.h"
#include "effects/mcurveowner.h"
#include "effects/mfieldpanel.h"
#include "effects/mvalues.h"

#include <QIcon>
#include <QSignalSpy>
#include <QToolButton>
#include <QUuid>

#include <cmath>

namespace {

enum Flag
{
    None = 0,
    Log = 1,
    Pct = 2,
    NoCurve = 4,
    Hidden = 8
};

struct SettingRow
{
    int value;
    const char* property;
    const char* label;
    const char* description;
    // "double", "bool", or the name of the enumeration of an int.
    const char* kind;
    double minimum;
    double defaultValue;
    double maximum;
    double step;
    const char* unit;
    int flags;
};

// The settings table as the brush documentation gives it; min, max and step of
// enumerations and booleans are blank there and read as 0 here.
const SettingRow settingTable[] = {
    {0, "radius", "Radius", "Brush radius in pixels", "double", 0.1, 30, 1000, 0.1, "pix", Log},
    {1, "spacing", "Spacing", "Brush spacing. The unit depend on spacing type.", "double", 0.01, 7, 500, 1,
     "", Log},
    {2, "spacingType", "Spacing type", "Spacing type.", "SpacingType", 0, 0, 0, 0, "", None},
    {3, "flow", "Flow", "Brush flow.", "double", 0, 1, 1, 0.1, "%", Pct},
    {4, "opacity", "Opacity", "Brush opacity.", "double", 0, 1, 1, 0.1, "%", Pct | NoCurve},
    {5, "hardness", "Hardness", "Brush hardness.", "double", 0, 0.8, 1, 0.1, "%", Pct},
    {6, "compositionMode", "Mode", "Composition mode.", "CompositionMode", 0, 0, 0, 0, "", None},
    {7, "antialiasing", "Antialiasing", "Brush Antialiasing.", "AntialiasingType", 0, 0, 0, 0, "", None},
    {8, "ratio", "Ratio", "Brush shape ratio width/height.", "double", 0.001, 1, 100, 0.1, "%", Pct},
    {9, "angle", "Angle", "Brush angle in degrees.", "double", -180, 0, 180, 5, "deg", None},
    {10, "angleType", "Angle type", "Angle of the brush: constant or follow direction of the stylus.",
     "AngleType", 0, 0, 0, 0, "", None},
    {11, "minDistance", "Minimal distance", "Minimal distance between two moves (in pixels).", "double", 0.2,
     0.2, 30, 0.1, "pix", None},
    {12, "smoothing", "Smoothing", "Brush smoothing rate.", "double", 0, 0.5, 0.7, 0.1, "%", Pct},
    {13, "shape", "Shape", "Brush shape.", "BrushShape", 0, 0, 0, 0, "", None},
    {14, "offsetX", "Offset x", "Offset x (% of the brush radius).", "double", 0, 0, 1, 0.1, "", None},
    {15, "offsetY", "Offset y", "Offset y (% of the brush radius).", "double", 0, 0, 1, 0.1, "", None},
    {16, "noise", "Opacity noise", "Opacity noise.", "double", 0, 0, 1, 0.1, "%", Pct},
    {17, "density", "Pixels density", "Pixels density.", "double", 0, 1, 1, 0.1, "%", Pct},
    {18, "accumulatorDistance", "Accumulator Distance", "Accumulator distance.", "double", 0, 0, 500, 1,
     "pix", Log},
    {19, "eraser", "Brush eraser mode", "Brush eraser mode.", "bool", 0, 0, 0, 0, "", None},
    {20, "inheritAlphaUnder", "Inherit transp. of layer under",
     "Brush alpha component is inherited from the layer under the current layer.", "bool", 0, 0, 0, 0, "",
     None},
    {21, "inheritAlphaCurrent", "Inherit transp. of current layer",
     "Brush alpha component is inherited from the current layer.", "bool", 0, 0, 0, 0, "", None},
    {22, "sourceRgbBlendMode", "Source rgb blend mode", "Source (foreground) rgb blend mode.", "OpenGLFactor",
     0, 1, 0, 0, "", Hidden},
    {23, "sourceAlphaBlendMode", "Source alpha blend mode", "Source (foreground) alpha blend mode.",
     "OpenGLFactor", 0, 771, 0, 0, "", Hidden},
    {24, "destinationRgbBlendMode", "Destination rgb blend mode", "Destination (background) rgb blend mode.",
     "OpenGLFactor", 0, 1, 0, 0, "", Hidden},
    {25, "destinationAlphaBlendMode", "Destination alpha blend mode",
     "Destination (foreground) alpha blend mode.", "OpenGLFactor", 0, 771, 0, 0, "", Hidden},
    {26, "rgbBlendEquation", "Rgb blend equation", "Rgb blend equation.", "OpenGLEquation", 0, 32774, 0, 0,
     "", Hidden},
    {27, "alphaBlendEquation", "Alpha blend equation", "Alpha blend equation.", "OpenGLEquation", 0, 32774, 0,
     0, "", Hidden},
    {28, "colorAbsorbtionRate", "Color absorbtion rate", "Color absorbtion rate", "double", 0, 0, 1, 0.1, "%",
     Pct},
    {29, "colorFlowingRate", "Color flow rate", "Color flow rate", "double", 0, 1, 1, 0.1, "%", Pct},
    {30, "preserveTextureColor", "Preserve texture color", "Preserve texture color", "bool", 0, 0, 0, 0, "",
     None},
    {31, "factor", "Factor", "Factor", "double", 0, 1, 1, 0.1, "%", Pct},
    {32, "useBorderColor", "Use border color", "Use border color", "bool", 0, 0, 0, 0, "", None},
    {33, "brushColorHue", "Hue", "Color hue", "double", -1, 0, 1, 0.1, "", None},
    {34, "brushColorSaturation", "Saturation", "Color saturation", "double", -1, 0, 1, 0.1, "", None},
    {35, "brushColorValue", "Value", "Color value", "double", -1, 0, 1, 0.1, "", None},
    {36, "borderColorHue", "Border hue", "Border color hue", "double", -1, 0, 1, 0.1, "", None},
    {37, "borderColorSaturation", "Border saturation", "Border color saturation", "double", -1, 0, 1, 0.1, "",
     None},
    {38, "borderColorValue", "Border value", "Border color value", "double", -1, 0, 1, 0.1, "", None},
};

struct InputRow
{
    int value;
    const char* enumKey;
    const char* key;
    const char* name;
    const char* description;
    double minimum;
    double defaultValue;
    double maximum;
};

const InputRow inputTable[] = {
    {0, "biPressure", "pressure", "Pressure", "Stylus pressure", 0, 1, 1},
    {1, "biTangentialPressure", "tangentialPressure", "Tangential pressure", "Stylus tangential pressure", 0,
     1, 1},
    {2, "biXTilt", "xTilt", "X tilt", "X tilt", -60, 0, 60},
    {3, "biYTilt", "yTilt", "Y tilt", "Y tilt", -60, 0, 60},
    {4, "biPositionX", "positionX", "Position x", "Position x", -100, 0, 100},
    {5, "biPositionY", "positionY", "Position y", "Position y", -100, 0, 100},
    {6, "biDirectionX", "directionX", "Direction x", "Direction x", -1, 0, 1},
    {7, "biDirectionY", "directionY", "Direction y", "Direction y", -1, 0, 1},
    {8, "biSpeed", "speed", "Speed", "Speed", 0, 0, 100},
    {9, "biTimeToPrevious", "timeToPrevious", "Time to previous",
     "Time elapsed between two inputs of a stroke (ms)", 0, 0, 100},
    {10, "biTotalTime", "totalTime", "Total time", "Time elapsed since the start of a stroke (ms)", 0, 0,
     10000},
    {11, "biDistanceToPrevious", "distanceToPrevious", "Distance to previous",
     "Distance travelled by the stylus or mouse between two inputs of a stroke (px)", 0, 0, 80},
    {12, "biTotalDistance", "totalDistance", "Total distance",
     "Distance travelled by the stylus or mouse since the start of stroke (px)", 0, 0, 1000},
    {13, "biRandom", "random", "Random number", "Random number generated at each stamp (between 0 and 1)", 0,
     0, 1},
};

QMetaProperty propertyOf(const QObject& object, const char* name)
{
    return object.metaObject()->property(object.metaObject()->indexOfProperty(name));
}

QByteArray signalSignature(const QMetaProperty& property)
{
    return QByteArray::number(QSIGNAL_CODE) + property.notifySignal().methodSignature();
}

} // namespace

class TestBrush : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void settingsTable();
    void registrationOrderAndCategories();
    void inputsTable();
    void aNewBrush();
    void settersEmitOnlyOnARealChangeAndNeverClamp();
    void baseValuesReRaiseTheTypedSignal();
    void curvesByKey();
    void assignClonesTheCurves();
    void resetRestoresDefaultsAndDropsCurves();
    void textureSetsTheRatio();
    void evaluationAppliesCurvesInInputOrder();
    void evaluationReducesByModulo();
    void randomCurvesDrawTheirOwnNumbers();
    void evaluationOfAllSettings();
    void fieldPanelOffersCurveButtons();
};

void TestBrush::settingsTable()
{
    const MBrushSettingInfoList* list = MBrushSettingInfoList::instance();
    const MBrush brush;
    QCOMPARE(int(sizeof(settingTable) / sizeof(settingTable[0])), int(MEnum::bsCount));
    QCOMPARE(list->fields().size(), int(MEnum::bsCount));
    const QMetaEnum settings = QMetaEnum::fromType<MEnum::BrushSetting>();
    for (const SettingRow& row : settingTable) {
        const QByteArray name(row.property);
        const MField& field = list->field(row.value);
        QCOMPARE(field.id, row.value);
        QCOMPARE(&list->field(name), &field);
        QCOMPARE(field.name, name);
        QCOMPARE(list->propertyName(row.value), name);
        QCOMPARE(MBrushSettingInfoList::propertyNameOf(settings.valueToKey(row.value)), name);
        QCOMPARE(field.label, QString::fromUtf8(row.label));
        QCOMPARE(field.description, QString::fromUtf8(row.description));
        QCOMPARE(field.unit, QString::fromUtf8(row.unit));
        QCOMPARE(field.isLogarithmic, (row.flags & Log) != 0);
        QCOMPARE(field.isPercentage, (row.flags & Pct) != 0);
        QCOMPARE(field.hasCurve, (row.flags & NoCurve) == 0);
        QCOMPARE(field.visible, (row.flags & Hidden) == 0);

        const QByteArray kind(row.kind);
        if (kind == "double") {
            QCOMPARE(field.type, int(QVariant::Double));
            QVERIFY(field.enumName.isEmpty());
            QCOMPARE(field.minimum(), row.minimum);
            QCOMPARE(field.maximum(), row.maximum);
            QCOMPARE(field.step, row.step);
            QCOMPARE(field.defaultValue, QVariant(row.defaultValue));
        } else if (kind == "bool") {
            QCOMPARE(field.type, int(QVariant::Bool));
            QCOMPARE(field.defaultValue, QVariant(row.defaultValue != 0.0));
        } else {
            QCOMPARE(field.type, int(QVariant::Int));
            QCOMPARE(field.enumName, kind);
            QCOMPARE(field.defaultValue, QVariant(int(row.defaultValue)));
            // Every value of the enumeration can be edited.
            const QMetaEnum meta = MEnum::metaEnum(QString::fromLatin1(kind));
            for (int i = 0; meta.isValid() && i < meta.keyCount(); ++i)
                QVERIFY(meta.value(i) >= field.minimum() && meta.value(i) <= field.maximum());
            QVERIFY(row.defaultValue >= field.minimum() && row.defaultValue <= field.maximum());
        }

        // The brush: a property of that name, its setter and signal, the default stored.
        const QMetaProperty property = propertyOf(brush, row.property);
        QVERIFY2(property.isValid(), row.property);
        QVERIFY(property.isWritable());
        QCOMPARE(property.notifySignal().name(), name + "Changed");
        const QByteArray setter = "set" + name.left(1).toUpper() + name.mid(1);
        QVERIFY2(brush.metaObject()->indexOfMethod(setter + "(" + property.typeName() + ")") >= 0,
                 setter.constData());
        // Two settings wider than bool keep a bool property.
        const bool boolProperty = kind == "bool" || name == "antialiasing" || name == "smoothing";
        const int expectedType = boolProperty       ? QMetaType::Bool
                                 : kind == "double" ? QMetaType::Double
                                                    : QMetaType::Int;
        QCOMPARE(property.userType(), expectedType);
        QCOMPARE(brush.baseValue(row.value), row.defaultValue);
        QCOMPARE(brush.values()->value(name).toDouble(), row.defaultValue);
        QCOMPARE(property.read(&brush).toDouble(),
                 boolProperty ? double(row.defaultValue != 0.0) : row.defaultValue);
    }
    QCOMPARE(brush.values()->count(), int(MEnum::bsCount));
}

void TestBrush::registrationOrderAndCategories()
{
    const MBrushSettingInfoList* list = MBrushSettingInfoList::instance();
    QVector<int> order;
    for (const MField* field : list->fields())
        order.append(field->id);
    QCOMPARE(order,
             (QVector<int>{0,  1,  2,  3,  4,  5,  6,  7,  8,  13, 9,  10, 11, 12, 14, 15, 16, 17, 18, 19,
                           21, 20, 22, 23, 24, 25, 26, 27, 30, 28, 29, 31, 32, 33, 34, 35, 36, 37, 38}));

    const QVector<MSettingCategory*>& categories = list->categories();
    QCOMPARE(categories.size(), 5);
    const QStringList labels{"Size", "Opacity", "Shape", "Color", "Composition"};
    const QVector<QVector<int>> members{{0, 1, 2, 11, 18, 14, 15},
                                        {3, 4, 5, 17, 7, 19},
                                        {13, 8, 9, 10},
                                        {28, 29, 30, 32, 33, 34, 35, 36, 37, 38},
                                        {6, 21, 20, 22, 23, 24, 25, 26, 27, 31}};
    for (int i = 0; i < categories.size(); ++i) {
        QCOMPARE(categories.at(i)->description(), labels.at(i));
        QCOMPARE(categories.at(i)->settings(), members.at(i));
        QVERIFY(!categories.at(i)->settings().contains(MEnum::bsSmoothing));
        QVERIFY(!categories.at(i)->settings().contains(MEnum::bsNoise));
    }

    MSettingCategory category;
    QSignalSpy settingsSpy(&category, &MSettingCategory::settingsChanged);
    QSignalSpy descriptionSpy(&category, &MSettingCategory::descriptionChanged);
    category.addSetting(5);
    category.addSetting(5);
    category.setDescription(QStringLiteral("Mine"));
    category.setDescription(QStringLiteral("Mine"));
    QCOMPARE(category.settings(), QVector<int>{5});
    QCOMPARE(settingsSpy.count(), 1);
    QCOMPARE(descriptionSpy.count(), 1);

    // Unknown names and values answer the null field.
    QCOMPARE(list->field(QByteArray("colorAbsorptionRate")).id, -1);
    QVERIFY(list->field(QByteArray("Radius")).isNull());
    QVERIFY(list->field(QByteArray()).isNull());
    QVERIFY(list->field(39).isNull());
    QVERIFY(list->field(-1).isNull());
    QVERIFY(list->propertyName(39).isEmpty());
}

void TestBrush::inputsTable()
{
    const MBrushInputInfoList* list = MBrushInputInfoList::instance();
    QCOMPARE(list->count(), int(MEnum::biCount));
    const QMetaEnum inputs = QMetaEnum::fromType<MEnum::BrushInput>();
    for (const InputRow& row : inputTable) {
        QCOMPARE(inputs.keyToValue(row.enumKey), row.value);
        const MBrushInputInfo& info = list->info(row.value);
        QCOMPARE(info.input, row.value);
        QCOMPARE(&list->info(QByteArray(row.key)), &info);
        QCOMPARE(&list->infos().at(row.value), &info);
        QCOMPARE(info.key, QByteArray(row.key));
        QCOMPARE(info.name, QString::fromUtf8(row.name));
        QCOMPARE(info.description, QString::fromUtf8(row.description));
        QCOMPARE(info.minimum, row.minimum);
        QCOMPARE(info.defaultValue, row.defaultValue);
        QCOMPARE(info.maximum, row.maximum);
    }
    QCOMPARE(list->info(14).input, -1);
    QCOMPARE(list->info(-1).input, -1);
    QCOMPARE(list->info(QByteArray("Pressure")).input, -1);
}

void TestBrush::aNewBrush()
{
    const MBrush brush;
    QCOMPARE(brush.version(), 1);
    QCOMPARE(brush.group(), QStringLiteral("system"));
    QCOMPARE(brush.description(), QStringLiteral("New brush"));
    QVERIFY(!QUuid(brush.id()).isNull());
    QCOMPARE(brush.id(), brush.id().toUpper());
    QVERIFY(brush.id() != MBrush().id());
    QCOMPARE(brush.borderColor(), QColor(Qt::white));
    QCOMPARE(brush.quickSettings(),
             (QVector<int>{MEnum::bsRadius, MEnum::bsHardness, MEnum::bsFlow, MEnum::bsOpacity}));
    QVERIFY(brush.allCurves().isEmpty());
    QVERIFY(brush.texture().isNull());

    // Automatic spacing, in pixels, through its six points.
    const MCurve* spacing = brush.autoSpacingCurve();
    QCOMPARE(spacing->xMin(), 0.0);
    QCOMPARE(spacing->xMax(), 500.0);
    QCOMPARE(spacing->yMin(), 0.0);
    QCOMPARE(spacing->yMax(), 50.0);
    const QVector<QPointF> pixels{{0, 0}, {1, 1}, {2, 1.5}, {10, 2}, {30, 3}, {500, 50}};
    QCOMPARE(spacing->pointCount(), pixels.size());
    for (int i = 0; i < pixels.size(); ++i) {
        QCOMPARE(spacing->pointAt(i), QPointF(pixels.at(i).x() / 500.0, pixels.at(i).y() / 50.0));
        QVERIFY(std::abs(brush.autoSpacing(pixels.at(i).x()) - pixels.at(i).y()) < 1e-9);
    }
    const double between = brush.autoSpacing(20.0);
    QVERIFY(between > 2.0 && between < 3.0);
    QCOMPARE(brush.autoSpacing(900.0), 50.0);
}

void TestBrush::settersEmitOnlyOnARealChangeAndNeverClamp()
{
    MBrush brush;
    for (const SettingRow& row : settingTable) {
        const QMetaProperty property = propertyOf(brush, row.property);
        QSignalSpy spy(&brush, signalSignature(property).constData());
        QVERIFY(spy.isValid());
        QVariant changed;
        switch (property.userType()) {
        case QMetaType::Double:
            // Far outside the range of the interface.
            changed = row.maximum * 10.0 + 3.25;
            break;
        case QMetaType::Int:
            changed = int(row.defaultValue) + 5000;
            break;
        default:
            changed = row.defaultValue == 0.0;
            break;
        }
        QVERIFY(property.write(&brush, changed));
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0), changed);
        QCOMPARE(property.read(&brush), changed);
        QCOMPARE(brush.baseValue(row.value), changed.toDouble());
        QVERIFY(property.write(&brush, changed));
        QCOMPARE(spy.count(), 1);
    }

    // A bool property over a wider value: true differs from 0.5 and is stored as 1.
    brush.reset();
    QSignalSpy smoothing(&brush, &MBrush::smoothingChanged);
    QVERIFY(brush.smoothing());
    brush.setSmoothing(true);
    QCOMPARE(smoothing.count(), 1);
    QCOMPARE(brush.baseValue(MEnum::bsSmoothing), 1.0);
    brush.setSmoothing(true);
    QCOMPARE(smoothing.count(), 1);

    // The other properties emit on change too.
    QSignalSpy description(&brush, &MBrush::descriptionChanged);
    QSignalSpy border(&brush, &MBrush::borderColorChanged);
    brush.set_description(QStringLiteral("Ink"));
    brush.set_description(QStringLiteral("Ink"));
    brush.set_borderColor(Qt::red);
    brush.set_borderColor(Qt::red);
    QCOMPARE(description.count(), 1);
    QCOMPARE(border.count(), 1);
}

void TestBrush::baseValuesReRaiseTheTypedSignal()
{
    MBrush brush;
    QSignalSpy radius(&brush, &MBrush::radiusChanged);
    QSignalSpy spacingType(&brush, &MBrush::spacingTypeChanged);
    QSignalSpy eraser(&brush, &MBrush::eraserChanged);
    QSignalSpy antialiasing(&brush, &MBrush::antialiasingChanged);
    QSignalSpy values(brush.values(), &MValues::valueChanged);
    const QuillmereTest::LogWatch log;

    brush.setBaseValue(MEnum::bsRadius, 12.5);
    brush.setBaseValue(MEnum::bsRadius, 12.5);
    QCOMPARE(radius.count(), 1);
    QCOMPARE(radius.at(0).at(0).toDouble(), 12.5);

    // Ints are truncated in the signal, the value is stored as given.
    brush.setBaseValue(MEnum::bsSpacingType, 1.9);
    QCOMPARE(spacingType.count(), 1);
    QCOMPARE(spacingType.at(0).at(0).toInt(), 1);
    QCOMPARE(brush.baseValue(MEnum::bsSpacingType), 1.9);
    brush.setBaseValue(MEnum::bsSpacingType, -2.7);
    QCOMPARE(spacingType.at(1).at(0).toInt(), -2);

    brush.setBaseValue(MEnum::bsEraser, 0.25);
    QCOMPARE(eraser.count(), 1);
    QCOMPARE(eraser.at(0).at(0).toBool(), true);
    QCOMPARE(brush.baseValue(MEnum::bsEraser), 0.25);
    brush.setBaseValue(MEnum::bsAntialiasing, MEnum::Smoothing);
    QCOMPARE(antialiasing.count(), 1);
    QCOMPARE(antialiasing.at(0).at(0).toBool(), true);
    QCOMPARE(brush.baseValue(MEnum::bsAntialiasing), 2.0);
    brush.setBaseValue(MEnum::bsAntialiasing, 0.0);
    QCOMPARE(antialiasing.at(1).at(0).toBool(), false);

    // Unknown settings change nothing.
    const int stored = values.count();
    brush.setBaseValue(MEnum::bsCount, 4.0);
    brush.setBaseValue(-1, 4.0);
    brush.emitNotification(99, 1.0);
    QCOMPARE(values.count(), stored);
    QCOMPARE(brush.baseValue(MEnum::bsCount), 0.0);
    QCOMPARE(brush.intValue(-1), 0);
    QCOMPARE(brush.boolValue(77), false);

    // A notification alone stores nothing.
    brush.emitNotification(MEnum::bsRadius, 99.0);
    QCOMPARE(radius.count(), 2);
    QCOMPARE(radius.at(1).at(0).toDouble(), 99.0);
    QCOMPARE(brush.radius(), 12.5);
    QVERIFY(log.added().isEmpty());
}

void TestBrush::curvesByKey()
{
    MBrush brush;
    const MCurveOwner* owner = &brush;
    QVERIFY(!owner->hasCurve(MEnum::bsRadius));
    QVERIFY(!brush.curveOrNull(MEnum::bsRadius, MEnum::biSpeed));

    MCurve* speed = brush.curve(MEnum::bsRadius, MEnum::biSpeed);
    QVERIFY(speed);
    QCOMPARE(speed->parent(), &brush);
    QCOMPARE(brush.curve(MEnum::bsRadius, MEnum::biSpeed), speed);
    QCOMPARE(speed->setting(), int(MEnum::bsRadius));
    QCOMPARE(speed->input(), int(MEnum::biSpeed));
    QCOMPARE(speed->xMax(), 100.0);
    QCOMPARE(speed->interpolationType(), int(MCurve::Multiply));
    MCurve* pressure = brush.curve(MEnum::bsRadius, MEnum::biPressure);
    MCurve* tilt = brush.curve(MEnum::bsOffsetY, MEnum::biXTilt);
    QCOMPARE(tilt->interpolationType(), int(MCurve::Add));
    QCOMPARE(tilt->xMin(), -60.0);

    QVERIFY(owner->hasCurve(MEnum::bsRadius));
    QVERIFY(brush.hasCurve(MEnum::bsRadius, MEnum::biPressure));
    QVERIFY(!brush.hasCurve(MEnum::bsRadius, MEnum::biXTilt));
    QCOMPARE(brush.curves(MEnum::bsRadius), (QVector<MCurve*>{pressure, speed}));
    QCOMPARE(brush.allCurves(), (QVector<MCurve*>{pressure, speed, tilt}));

    QVERIFY(!brush.curve(MEnum::bsCount, 0));
    QVERIFY(!brush.curve(0, MEnum::biCount));
    QVERIFY(!brush.curve(-1, 0));
    QVERIFY(!owner->hasCurve(-1));
    QVERIFY(brush.curves(40).isEmpty());

    QPointer<MCurve> removed(pressure);
    brush.removeCurve(MEnum::bsRadius, MEnum::biPressure);
    QVERIFY(removed.isNull());
    QCOMPARE(brush.curves(MEnum::bsRadius), QVector<MCurve*>{speed});
    brush.removeCurve(MEnum::bsRadius, MEnum::biSpeed);
    QVERIFY(!owner->hasCurve(MEnum::bsRadius));
    brush.removeCurve(MEnum::bsRadius, MEnum::biSpeed);
    QVERIFY(owner->hasCurve(MEnum::bsOffsetY));
}

void TestBrush::assignClonesTheCurves()
{
    MBrush source;
    source.set_description(QStringLiteral("Charcoal"));
    source.set_group(QStringLiteral("dry"));
    source.set_version(3);
    source.set_borderColor(Qt::blue);
    source.setQuickSettings({MEnum::bsAngle, MEnum::bsNoise});
    QImage texture(8, 4, QImage::Format_ARGB32);
    texture.fill(Qt::green);
    source.setTexture(texture);
    source.setRadius(44.0);
    source.setSpacingType(MEnum::ConstantSpacing);
    source.set_isShaderActive(false);
    MCurve* curve = source.curve(MEnum::bsHardness, MEnum::biTotalTime);
    curve->setInitType(MCurve::GaussianCurve);
    curve->setYMax(3.0);
    curve->setModulo(250.0);
    source.curve(MEnum::bsFlow, MEnum::biPressure)->setInterpolationType(MCurve::Sinus);

    MBrush copy;
    MCurve* old = copy.curve(MEnum::bsRadius, MEnum::biRandom);
    QPointer<MCurve> oldGuard(old);
    const QString copyId = copy.id();
    copy.assign(source);
    QVERIFY(oldGuard.isNull());
    QCOMPARE(copy.id(), copyId);
    QCOMPARE(copy.description(), QStringLiteral("Charcoal"));
    QCOMPARE(copy.group(), QStringLiteral("dry"));
    QCOMPARE(copy.version(), 3);
    QCOMPARE(copy.borderColor(), QColor(Qt::blue));
    QCOMPARE(copy.quickSettings(), (QVector<int>{MEnum::bsAngle, MEnum::bsNoise}));
    QCOMPARE(copy.texture(), source.texture());
    QCOMPARE(copy.isShaderActive(), false);
    QCOMPARE(copy.values()->values(), source.values()->values());
    QCOMPARE(copy.radius(), 44.0);
    QVERIFY(!copy.hasCurve(MEnum::bsRadius));

    MCurve* cloned = copy.curveOrNull(MEnum::bsHardness, MEnum::biTotalTime);
    QVERIFY(cloned);
    QVERIFY(cloned != curve);
    QCOMPARE(cloned->parent(), &copy);
    QCOMPARE(cloned->points(), curve->points());
    QCOMPARE(cloned->yMax(), 3.0);
    QCOMPARE(cloned->modulo(), 250.0);
    QCOMPARE(cloned->xMax(), 10000.0);
    QCOMPARE(cloned->setting(), int(MEnum::bsHardness));
    QCOMPARE(cloned->input(), int(MEnum::biTotalTime));
    QCOMPARE(copy.curveOrNull(MEnum::bsFlow, MEnum::biPressure)->interpolationType(), int(MCurve::Sinus));
    QCOMPARE(copy.allCurves().size(), 2);

    // The copy goes its own way.
    cloned->setInitType(MCurve::LineDescending2);
    cloned->setYMax(9.0);
    copy.removeCurve(MEnum::bsFlow, MEnum::biPressure);
    copy.setRadius(1.0);
    QCOMPARE(curve->points().size(), 5);
    QCOMPARE(curve->yMax(), 3.0);
    QVERIFY(source.hasCurve(MEnum::bsFlow, MEnum::biPressure));
    QCOMPARE(source.radius(), 44.0);
    MEvent event;
    event.totalTime = 1250.0;
    QVERIFY(source.evaluate(MEnum::bsHardness, 1.0, event) != copy.evaluate(MEnum::bsHardness, 1.0, event));
}

void TestBrush::resetRestoresDefaultsAndDropsCurves()
{
    MBrush brush;
    for (const SettingRow& row : settingTable)
        brush.setBaseValue(row.value, row.defaultValue + 17.0);
    brush.curve(MEnum::bsAngle, MEnum::biDirectionX);
    brush.setQuickSettings({MEnum::bsFactor});
    brush.reset();
    for (const SettingRow& row : settingTable)
        QCOMPARE(brush.baseValue(row.value), row.defaultValue);
    QVERIFY(brush.allCurves().isEmpty());
    QVERIFY(!brush.hasCurve(MEnum::bsAngle));
    // Quick settings have a reset of their own.
    QCOMPARE(brush.quickSettings(), QVector<int>{MEnum::bsFactor});
    brush.resetQuickSettings();
    QCOMPARE(brush.quickSettings().size(), 4);
}

void TestBrush::textureSetsTheRatio()
{
    MBrush brush;
    QSignalSpy ratio(&brush, &MBrush::ratioChanged);
    QImage image(40, 10, QImage::Format_ARGB32);
    image.fill(QColor(255, 0, 0, 128));
    brush.setTexture(image);
    QCOMPARE(brush.texture().format(), QImage::Format_RGBA8888_Premultiplied);
    QCOMPARE(brush.texture().pixelColor(3, 3), image.pixelColor(3, 3));
    QCOMPARE(brush.ratio(), 0.25);
    QCOMPARE(ratio.count(), 1);
    brush.setTexture(QImage());
    QVERIFY(brush.texture().isNull());
    QCOMPARE(brush.ratio(), 0.25);
}

void TestBrush::evaluationAppliesCurvesInInputOrder()
{
    MBrush brush;
    // Created in the reverse order of the inputs: evaluation goes by input.
    MCurve* distance = brush.curve(MEnum::bsRadius, MEnum::biTotalDistance);
    distance->setInterpolationType(MCurve::Add);
    distance->setRange(0.0, 1000.0, 0.0, 8.0);
    distance->addPoint(QPointF(0, 0));
    distance->addPoint(QPointF(0.5, 0.25));
    distance->addPoint(QPointF(1, 1));
    MCurve* pressure = brush.curve(MEnum::bsRadius, MEnum::biPressure);
    pressure->setInitType(MCurve::LineAscending2);
    pressure->addPoint(QPointF(0.5, 0.4));

    MEvent event;
    event.pressure = 0.5;
    event.totalDistance = 500.0;
    // (10 * 0.4) + 8 * 0.25; the other order would give (10 + 2) * 0.4.
    QVERIFY(std::abs(brush.evaluate(MEnum::bsRadius, 10.0, event) - 6.0) < 1e-9);

    // The opacity takes no curve in the panels, but one read from a file counts.
    MCurve* opacity = brush.curve(MEnum::bsOpacity, MEnum::biSpeed);
    opacity->setInitType(MCurve::LineAscending2);
    opacity->addPoint(QPointF(0.3, 0.6));
    event.speed = 30.0;
    QVERIFY(std::abs(brush.evaluate(MEnum::bsOpacity, 0.5, event) - 0.3) < 1e-9);

    // A setting without curves is its base value; nothing is clamped.
    QCOMPARE(brush.evaluate(MEnum::bsHardness, 7.5, event), 7.5);
    pressure->setYMax(400.0);
    QVERIFY(std::abs(brush.evaluate(MEnum::bsRadius, 10.0, event) - (10.0 * 160.0 + 2.0)) < 1e-6);
    QCOMPARE(brush.evaluate(MEnum::bsCount, 3.0, event), 3.0);
}

void TestBrush::evaluationReducesByModulo()
{
    MBrush brush;
    MCurve* curve = brush.curve(MEnum::bsOffsetX, MEnum::biPositionX);
    QCOMPARE(curve->interpolationType(), int(MCurve::Add));
    // Knots at x = -25, -5, 5 and 25 of the range -100..100.
    curve->setRange(-100.0, 100.0, 0.0, 1.0);
    const QVector<QPointF> knots{{0, 0}, {0.375, 0.1}, {0.475, 0.2}, {0.525, 0.3}, {0.625, 0.4}, {1, 1}};
    for (const QPointF& p : knots)
        curve->addPoint(p);

    MEvent event;
    auto at = [&](double x) {
        event.positionX = x;
        return brush.evaluate(MEnum::bsOffsetX, 0.0, event);
    };
    QVERIFY(std::abs(at(25.0) - 0.4) < 1e-9);
    QVERIFY(std::abs(at(-25.0) - 0.1) < 1e-9);
    curve->setModulo(10.0);
    QVERIFY(std::abs(at(25.0) - 0.3) < 1e-9);
    // The remainder keeps the sign of x.
    QVERIFY(std::abs(at(-25.0) - 0.2) < 1e-9);
    QVERIFY(std::abs(at(5.0) - 0.3) < 1e-9);
}

void TestBrush::randomCurvesDrawTheirOwnNumbers()
{
    MBrush brush;
    for (int setting : {MEnum::bsHardness, MEnum::bsFlow}) {
        MCurve* curve = brush.curve(setting, MEnum::biRandom);
        curve->setInterpolationType(MCurve::Add);
        curve->setInitType(MCurve::LineAscending2);
    }
    MCurve* pressure = brush.curve(MEnum::bsRadius, MEnum::biPressure);
    pressure->setInitType(MCurve::LineAscending2);
    MCurve* random = brush.curve(MEnum::bsRadius, MEnum::biRandom);
    random->setInitType(MCurve::LineAscending2);
    random->setYMin(1.0);
    random->setYMax(2.0);

    MEvent::seedRandom(20240611);
    MEvent event;
    event.random = 0.5;
    event.pressure = 1.0;
    const double fromEvent = brush.evaluate(MEnum::bsHardness, 0.0, event);
    QVector<double> hardness;
    QVector<double> flow;
    QVector<double> radius;
    for (int stamp = 0; stamp < 200; ++stamp) {
        MBrush::SettingValues result{};
        brush.evaluate(brush.baseValues(), event, result);
        hardness.append(result[MEnum::bsHardness] - 0.8);
        flow.append(result[MEnum::bsFlow] - 1.0);
        radius.append(result[MEnum::bsRadius]);
    }
    int differentPairs = 0;
    int differentFromEvent = 0;
    for (int i = 0; i < hardness.size(); ++i) {
        QVERIFY(hardness.at(i) >= 0.0 && hardness.at(i) <= 1.0);
        QVERIFY(radius.at(i) >= 30.0 && radius.at(i) <= 60.0);
        differentPairs += hardness.at(i) != flow.at(i) ? 1 : 0;
        differentFromEvent += std::abs(hardness.at(i) + 0.8 - fromEvent) > 1e-6 ? 1 : 0;
    }
    QVERIFY(differentPairs >= 195);
    QVERIFY(differentFromEvent >= 195);
    std::sort(hardness.begin(), hardness.end());
    QVERIFY(hardness.first() < 0.1);
    QVERIFY(hardness.last() > 0.9);
    std::sort(radius.begin(), radius.end());
    QVERIFY(std::unique(radius.begin(), radius.end()) - radius.begin() > 150);
}

void TestBrush::evaluationOfAllSettings()
{
    MBrush brush;
    brush.setRadius(20.0);
    brush.setSpacingType(MEnum::RatioSpacing);
    brush.setEraser(true);
    MCurve* angle = brush.curve(MEnum::bsAngle, MEnum::biDirectionX);
    angle->setRange(-1.0, 1.0, 0.0, 90.0);
    angle->addPoint(QPointF(0, 0));
    angle->addPoint(QPointF(0.5, 0.5));
    angle->addPoint(QPointF(1, 1));

    const MBrush::SettingValues base = brush.baseValues();
    for (const SettingRow& row : settingTable) {
        const double expected = row.value == MEnum::bsRadius        ? 20.0
                                : row.value == MEnum::bsSpacingType ? 1.0
                                : row.value == MEnum::bsEraser      ? 1.0
                                                                    : row.defaultValue;
        QCOMPARE(base[size_t(row.value)], expected);
    }
    MEvent event;
    event.directionX = 1.0;
    MBrush::SettingValues result{};
    result.fill(-1.0);
    brush.evaluate(base, event, result);
    for (int setting = 0; setting < MEnum::bsCount; ++setting) {
        if (setting == MEnum::bsAngle)
            QVERIFY(std::abs(result[size_t(setting)] - 90.0) < 1e-9);
        else
            QCOMPARE(result[size_t(setting)], base[size_t(setting)]);
    }
    // The snapshot is what counts, not the brush's current values.
    MBrush::SettingValues other = base;
    other[MEnum::bsAngle] = 10.0;
    event.directionX = 0.0;
    brush.evaluate(other, event, result);
    QVERIFY(std::abs(result[MEnum::bsAngle] - 55.0) < 1e-9);
}

void TestBrush::fieldPanelOffersCurveButtons()
{
    MBrush brush;
    MFieldPanel panel;
    panel.set_showCurveButtons(true);
    panel.setFields(MBrushSettingInfoList::instance()->fields());
    panel.setObject(&brush);
    QVERIFY(panel.curveButton("radius"));
    QVERIFY(!panel.curveButton("opacity"));
    QVERIFY(!panel.curveButton("eraser"));
    QVERIFY(!panel.editor("sourceRgbBlendMode"));
    const auto shows = [&panel](const char* setting, const char* icon) {
        const QImage expected = QIcon(QString::fromLatin1(icon)).pixmap(16).toImage();
        return !expected.isNull() && panel.curveButton(setting)->icon().pixmap(16).toImage() == expected;
    };
    QVERIFY(shows("radius", ":/icons/plus.ico"));
    brush.curve(MEnum::bsRadius, MEnum::biPressure);
    panel.valuesToWidgets();
    QVERIFY(shows("radius", ":/icons/check.ico"));
    QVERIFY(shows("hardness", ":/icons/plus.ico"));

    // Editing in the panel writes the brush's property.
    QSignalSpy radius(&brush, &MBrush::radiusChanged);
    panel.setValue("radius", 75.0);
    QCOMPARE(brush.radius(), 75.0);
    QCOMPARE(radius.count(), 1);
}

QUILLMERE_TEST_MAIN(TestBrush)
#include "tst_mbrush.moc"
