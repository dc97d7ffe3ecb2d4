#include "brush/mbrushinputinfolist.h"

#include "app/menum.h"

#include <QMetaEnum>

namespace {

struct InputRow
{
    const char* name;
    const char* description;
    double minimum;
    double defaultValue;
    double maximum;
};

// In MEnum::BrushInput order.
const InputRow inputRows[MEnum::biCount] = {
    {QT_TRANSLATE_NOOP("MBrushInputInfoList", "Pressure"),
     QT_TRANSLATE_NOOP("MBrushInputInfoList", "Stylus pressure"), 0, 1, 1},
    {QT_TRANSLATE_NOOP("MBrushInputInfoList", "Tangential pressure"),
     QT_TRANSLATE_NOOP("MBrushInputInfoList", "Stylus tangential pressure"), 0, 1, 1},
    {QT_TRANSLATE_NOOP("MBrushInputInfoList", "X tilt"), QT_TRANSLATE_NOOP("MBrushInputInfoList", "X tilt"),
     -60, 0, 60},
    {QT_TRANSLATE_NOOP("MBrushInputInfoList", "Y tilt"), QT_TRANSLATE_NOOP("MBrushInputInfoList", "Y tilt"),
     -60, 0, 60},
    {QT_TRANSLATE_NOOP("MBrushInputInfoList", "Position x"),
     QT_TRANSLATE_NOOP("MBrushInputInfoList", "Position x"), -100, 0, 100},
    {QT_TRANSLATE_NOOP("MBrushInputInfoList", "Position y"),
     QT_TRANSLATE_NOOP("MBrushInputInfoList", "Position y"), -100, 0, 100},
    {QT_TRANSLATE_NOOP("MBrushInputInfoList", "Direction x"),
     QT_TRANSLATE_NOOP("MBrushInputInfoList", "Direction x"), -1, 0, 1},
    {QT_TRANSLATE_NOOP("MBrushInputInfoList", "Direction y"),
     QT_TRANSLATE_NOOP("MBrushInputInfoList", "Direction y"), -1, 0, 1},
    {QT_TRANSLATE_NOOP("MBrushInputInfoList", "Speed"), QT_TRANSLATE_NOOP("MBrushInputInfoList", "Speed"), 0,
     0, 100},
    {QT_TRANSLATE_NOOP("MBrushInputInfoList", "Time to previous"),
     QT_TRANSLATE_NOOP("MBrushInputInfoList", "Time elapsed between two inputs of a stroke (ms)"), 0, 0, 100},
    {QT_TRANSLATE_NOOP("MBrushInputInfoList", "Total time"),
     QT_TRANSLATE_NOOP("MBrushInputInfoList", "Time elapsed since the start of a stroke (ms)"), 0, 0, 10000},
    {QT_TRANSLATE_NOOP("MBrushInputInfoList", "Distance to previous"),
     QT_TRANSLATE_NOOP("MBrushInputInfoList",
                       "Distance travelled by the stylus or mouse between two inputs of a stroke (px)"),
     0, 0, 80},
    {QT_TRANSLATE_NOOP("MBrushInputInfoList", "Total distance"),
     QT_TRANSLATE_NOOP("MBrushInputInfoList",
                       "Distance travelled by the stylus or mouse since the start of stroke (px)"),
     0, 0, 1000},
    {QT_TRANSLATE_NOOP("MBrushInputInfoList", "Random number"),
     QT_TRANSLATE_NOOP("MBrushInputInfoList", "Random number generated at each stamp (between 0 and 1)"), 0,
     0, 1},
};

} // namespace

MBrushInputInfoList::MBrushInputInfoList()
{
    const QMetaEnum inputs = QMetaEnum::fromType<MEnum::BrushInput>();
    m_infos.reserve(MEnum::biCount);
    for (int input = 0; input < MEnum::biCount; ++input) {
        const InputRow& row = inputRows[input];
        MBrushInputInfo info;
        info.input = input;
        info.key = keyOf(inputs.valueToKey(input));
        info.name = tr(row.name);
        info.description = tr(row.description);
        info.minimum = row.minimum;
        info.defaultValue = row.defaultValue;
        info.maximum = row.maximum;
        m_byKey.insert(info.key, input);
        m_infos.append(info);
    }
}

const MBrushInputInfo& MBrushInputInfoList::info(int input) const
{
    return input >= 0 && input < m_infos.size() ? m_infos.at(input) : m_null;
}

const MBrushInputInfo& MBrushInputInfoList::info(const QByteArray& key) const
{
    const int input = m_byKey.value(key, -1);
    return input >= 0 ? m_infos.at(input) : m_null;
}

QByteArray MBrushInputInfoList::keyOf(const char* enumKey)
{
    QByteArray key(enumKey ? enumKey : "");
    if (key.startsWith("bi"))
        key.remove(0, 2);
    if (!key.isEmpty())
        key[0] = key.left(1).toLower().at(0);
    return key;
}
