#include "brush/mbrushsettinginfolist.h"

#include "app/menum.h"
#include "brush/msettingcategory.h"

#include <QMetaEnum>

namespace {

enum Flag
{
    NoFlag = 0,
    Log = 1,
    Pct = 2,
    NoCurve = 4,
    Hidden = 8
};

struct SettingRow
{
    const char* label;
    const char* description;
    int type;
    // The meta-enum of an int setting.
    const char* enumName;
    double minimum;
    double defaultValue;
    double maximum;
    double step;
    const char* unit;
    int flags;
};

constexpr int KindDouble = QVariant::Double;
constexpr int KindBool = QVariant::Bool;
constexpr int KindInt = QVariant::Int;

#define TR(text) QT_TRANSLATE_NOOP("MBrushSettingInfoList", text)

// In MEnum::BrushSetting order. Ranges of enumerations come from their values.
const SettingRow settingRows[MEnum::bsCount] = {
    {TR("Radius"), TR("Brush radius in pixels"), KindDouble, "", 0.1, 30, 1000, 0.1, "pix", Log},
    {TR("Spacing"), TR("Brush spacing. The unit depend on spacing type."), KindDouble, "", 0.01, 7, 500, 1,
     "", Log},
    {TR("Spacing type"), TR("Spacing type."), KindInt, "SpacingType", 0, 0, 0, 1, "", NoFlag},
    {TR("Flow"), TR("Brush flow."), KindDouble, "", 0, 1, 1, 0.1, "%", Pct},
    {TR("Opacity"), TR("Brush opacity."), KindDouble, "", 0, 1, 1, 0.1, "%", Pct | NoCurve},
    {TR("Hardness"), TR("Brush hardness."), KindDouble, "", 0, 0.8, 1, 0.1, "%", Pct},
    {TR("Mode"), TR("Composition mode."), KindInt, "CompositionMode", 0, 0, 0, 1, "", NoFlag},
    {TR("Antialiasing"), TR("Brush Antialiasing."), KindInt, "AntialiasingType", 0, 0, 0, 1, "", NoFlag},
    {TR("Ratio"), TR("Brush shape ratio width/height."), KindDouble, "", 0.001, 1, 100, 0.1, "%", Pct},
    {TR("Angle"), TR("Brush angle in degrees."), KindDouble, "", -180, 0, 180, 5, "deg", NoFlag},
    {TR("Angle type"), TR("Angle of the brush: constant or follow direction of the stylus."), KindInt,
     "AngleType", 0, 0, 0, 1, "", NoFlag},
    {TR("Minimal distance"), TR("Minimal distance between two moves (in pixels)."), KindDouble, "", 0.2, 0.2,
     30, 0.1, "pix", NoFlag},
    {TR("Smoothing"), TR("Brush smoothing rate."), KindDouble, "", 0, 0.5, 0.7, 0.1, "%", Pct},
    {TR("Shape"), TR("Brush shape."), KindInt, "BrushShape", 0, 0, 0, 1, "", NoFlag},
    {TR("Offset x"), TR("Offset x (% of the brush radius)."), KindDouble, "", 0, 0, 1, 0.1, "", NoFlag},
    {TR("Offset y"), TR("Offset y (% of the brush radius)."), KindDouble, "", 0, 0, 1, 0.1, "", NoFlag},
    {TR("Opacity noise"), TR("Opacity noise."), KindDouble, "", 0, 0, 1, 0.1, "%", Pct},
    {TR("Pixels density"), TR("Pixels density."), KindDouble, "", 0, 1, 1, 0.1, "%", Pct},
    {TR("Accumulator Distance"), TR("Accumulator distance."), KindDouble, "", 0, 0, 500, 1, "pix", Log},
    {TR("Brush eraser mode"), TR("Brush eraser mode."), KindBool, "", 0, 0, 1, 1, "", NoFlag},
    {TR("Inherit transp. of layer under"),
     TR("Brush alpha component is inherited from the layer under the current layer."), KindBool, "", 0, 0, 1,
     1, "", NoFlag},
    {TR("Inherit transp. of current layer"), TR("Brush alpha component is inherited from the current layer."),
     KindBool, "", 0, 0, 1, 1, "", NoFlag},
    {TR("Source rgb blend mode"), TR("Source (foreground) rgb blend mode."), KindInt, "OpenGLFactor", 0,
     MEnum::glOne, 0, 1, "", Hidden},
    {TR("Source alpha blend mode"), TR("Source (foreground) alpha blend mode."), KindInt, "OpenGLFactor", 0,
     MEnum::glOneMinusSrcAlpha, 0, 1, "", Hidden},
    {TR("Destination rgb blend mode"), TR("Destination (background) rgb blend mode."), KindInt,
     "OpenGLFactor", 0, MEnum::glOne, 0, 1, "", Hidden},
    {TR("Destination alpha blend mode"), TR("Destination (foreground) alpha blend mode."), KindInt,
     "OpenGLFactor", 0, MEnum::glOneMinusSrcAlpha, 0, 1, "", Hidden},
    {TR("Rgb blend equation"), TR("Rgb blend equation."), KindInt, "OpenGLEquation", 0, MEnum::glAdd, 0, 1,
     "", Hidden},
    {TR("Alpha blend equation"), TR("Alpha blend equation."), KindInt, "OpenGLEquation", 0, MEnum::glAdd, 0,
     1, "", Hidden},
    {TR("Color absorbtion rate"), TR("Color absorbtion rate"), KindDouble, "", 0, 0, 1, 0.1, "%", Pct},
    {TR("Color flow rate"), TR("Color flow rate"), KindDouble, "", 0, 1, 1, 0.1, "%", Pct},
    {TR("Preserve texture color"), TR("Preserve texture color"), KindBool, "", 0, 0, 1, 1, "", NoFlag},
    {TR("Factor"), TR("Factor"), KindDouble, "", 0, 1, 1, 0.1, "%", Pct},
    {TR("Use border color"), TR("Use border color"), KindBool, "", 0, 0, 1, 1, "", NoFlag},
    {TR("Hue"), TR("Color hue"), KindDouble, "", -1, 0, 1, 0.1, "", NoFlag},
    {TR("Saturation"), TR("Color saturation"), KindDouble, "", -1, 0, 1, 0.1, "", NoFlag},
    {TR("Value"), TR("Color value"), KindDouble, "", -1, 0, 1, 0.1, "", NoFlag},
    {TR("Border hue"), TR("Border color hue"), KindDouble, "", -1, 0, 1, 0.1, "", NoFlag},
    {TR("Border saturation"), TR("Border color saturation"), KindDouble, "", -1, 0, 1, 0.1, "", NoFlag},
    {TR("Border value"), TR("Border color value"), KindDouble, "", -1, 0, 1, 0.1, "", NoFlag},
};

const char* const categoryLabels[] = {TR("Size"), TR("Opacity"), TR("Shape"), TR("Color"), TR("Composition")};

#undef TR

// The composition modes are a list of their own, numbered up to the user mode.
constexpr int lastCompositionMode = 1000;

} // namespace

MBrushSettingInfoList::MBrushSettingInfoList()
{
    m_names.resize(MEnum::bsCount);
    const QMetaEnum settings = QMetaEnum::fromType<MEnum::BrushSetting>();
    for (int setting = 0; setting < MEnum::bsCount; ++setting)
        m_names[setting] = propertyNameOf(settings.valueToKey(setting));

    // The order in which panels show the settings.
    const int order[] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  13, 9,  10, 11, 12, 14, 15, 16, 17, 18, 19,
                         21, 20, 22, 23, 24, 25, 26, 27, 30, 28, 29, 31, 32, 33, 34, 35, 36, 37, 38};
    static_assert(sizeof(order) / sizeof(order[0]) == MEnum::bsCount, "every setting once");
    for (int setting : order)
        addField(setting);

    // Smoothing and noise are reached only through the quick settings and files.
    addCategory(tr(categoryLabels[0]), {0, 1, 2, 11, 18, 14, 15});
    addCategory(tr(categoryLabels[1]), {3, 4, 5, 17, 7, 19});
    addCategory(tr(categoryLabels[2]), {13, 8, 9, 10});
    addCategory(tr(categoryLabels[3]), {28, 29, 30, 32, 33, 34, 35, 36, 37, 38});
    addCategory(tr(categoryLabels[4]), {6, 21, 20, 22, 23, 24, 25, 26, 27, 31});
}

MBrushSettingInfoList::~MBrushSettingInfoList() = default;

void MBrushSettingInfoList::addField(int setting)
{
    const SettingRow& row = settingRows[setting];
    auto field = std::make_unique<MField>();
    field->id = setting;
    field->name = m_names.at(setting);
    field->label = tr(row.label);
    field->description = tr(row.description);
    field->type = row.type;
    field->enumName = QByteArray(row.enumName);
    field->step = row.step;
    field->unit = QString::fromLatin1(row.unit);
    field->isLogarithmic = (row.flags & Log) != 0;
    field->isPercentage = (row.flags & Pct) != 0;
    field->hasCurve = (row.flags & NoCurve) == 0;
    field->visible = (row.flags & Hidden) == 0;

    double minimum = row.minimum;
    double maximum = row.maximum;
    if (row.type == KindInt) {
        const QMetaEnum meta = MEnum::metaEnum(QString::fromLatin1(row.enumName));
        if (meta.isValid()) {
            minimum = meta.value(0);
            maximum = meta.value(0);
            for (int i = 1; i < meta.keyCount(); ++i) {
                minimum = std::min(minimum, double(meta.value(i)));
                maximum = std::max(maximum, double(meta.value(i)));
            }
        } else {
            maximum = lastCompositionMode;
        }
    }
    // Maximum first: each bound set alone must not cross the other.
    field->setMaximum(maximum);
    field->setMinimum(minimum);

    switch (row.type) {
    case KindBool:
        field->defaultValue = row.defaultValue != 0.0;
        break;
    case KindInt:
        field->defaultValue = int(row.defaultValue);
        break;
    default:
        field->defaultValue = row.defaultValue;
        break;
    }

    MField* pointer = field.get();
    m_storage.push_back(std::move(field));
    m_byValue.insert(setting, pointer);
    m_byName.insert(pointer->name, pointer);
    m_ordered.append(pointer);
}

void MBrushSettingInfoList::addCategory(const QString& description, const QVector<int>& settings)
{
    auto* category = new MSettingCategory(description, this);
    for (int setting : settings)
        category->addSetting(setting);
    m_categories.append(category);
}

const MField& MBrushSettingInfoList::field(int setting) const
{
    MField* found = m_byValue.value(setting, nullptr);
    return found ? *found : m_null;
}

const MField& MBrushSettingInfoList::field(const QByteArray& name) const
{
    MField* found = m_byName.value(name, nullptr);
    return found ? *found : m_null;
}

QByteArray MBrushSettingInfoList::propertyName(int setting) const
{
    return setting >= 0 && setting < m_names.size() ? m_names.at(setting) : QByteArray();
}

QByteArray MBrushSettingInfoList::propertyNameOf(const char* enumKey)
{
    QByteArray name(enumKey ? enumKey : "");
    if (name.startsWith("bs"))
        name.remove(0, 2);
    if (!name.isEmpty())
        name[0] = name.left(1).toLower().at(0);
    return name;
}
