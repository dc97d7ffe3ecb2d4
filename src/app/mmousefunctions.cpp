#include "app/mmousefunctions.h"

#include "app/msettings.h"

#include <QDebug>

#include <algorithm>

namespace {

// Keypad and group-switch bits are not part of a combination.
int modifierKey(Qt::KeyboardModifiers modifiers)
{
    return int(modifiers & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
}

bool readInt(const QVariant& value, int* result)
{
    bool ok = false;
    *result = value.toInt(&ok);
    return ok;
}

} // namespace

MMouseFunctions::MMouseFunctions()
{
    addDefaults();
    if (load(UserTable) == 0)
        resetToDefaults();
}

MMouseFunctions::~MMouseFunctions()
{
    if (MSettings::exists())
        save();
}

void MMouseFunctions::addDefaults()
{
    addFunction(DefaultTable, anyTool, 2, Qt::NoModifier, CanvasDrag);
    addFunction(DefaultTable, anyTool, noButton, Qt::ControlModifier, CanvasRotate);
    addFunction(DefaultTable, anyTool, noButton, Qt::NoModifier, CanvasScale);
    addFunction(DefaultTable, anyTool, noButton, Qt::ShiftModifier, CanvasTranslateVertical);
    addFunction(DefaultTable, anyTool, noButton, Qt::ShiftModifier | Qt::ControlModifier,
                CanvasTranslateHorizontal);
    addFunction(DefaultTable, 0, 1, Qt::NoModifier, BrushStroke);
    addFunction(DefaultTable, 0, noButton, Qt::AltModifier, BrushRadius);
    addFunction(DefaultTable, 0, 1, Qt::ControlModifier, BrushLine);
}

MMouseFunctions::FunctionTable& MMouseFunctions::tableRef(Table table)
{
    return table == DefaultTable ? m_defaultFunctions : m_userFunctions;
}

const MMouseFunctions::FunctionTable& MMouseFunctions::table(Table table) const
{
    return table == DefaultTable ? m_defaultFunctions : m_userFunctions;
}

bool MMouseFunctions::addFunction(Table table, int tool, int button, Qt::KeyboardModifiers modifiers,
                                  int function)
{
    ToolTable& toolTable = tableRef(table)[tool];
    const QPair<int, int> key(button, modifierKey(modifiers));
    if (toolTable.contains(key)) {
        qDebug() << "combinaison déjà attribuée";
        return false;
    }
    toolTable.insert(key, function);
    return true;
}

int MMouseFunctions::function(int tool, int button, Qt::KeyboardModifiers modifiers) const
{
    return function(UserTable, tool, button, modifiers);
}

int MMouseFunctions::function(Table table, int tool, int button, Qt::KeyboardModifiers modifiers) const
{
    const FunctionTable& functions = this->table(table);
    const QPair<int, int> key(button, modifierKey(modifiers));
    const auto own = functions.constFind(tool);
    if (own != functions.constEnd() && own->contains(key))
        return own->value(key);
    const auto any = functions.constFind(anyTool);
    if (any != functions.constEnd())
        return any->value(key, NoFunction);
    return NoFunction;
}

void MMouseFunctions::clear(Table table)
{
    tableRef(table).clear();
}

void MMouseFunctions::resetToDefaults()
{
    m_userFunctions = m_defaultFunctions;
}

int MMouseFunctions::load(Table table)
{
    FunctionTable& functions = tableRef(table);
    functions.clear();
    MSettings* settings = MSettings::instance();
    const int size =
        qMin(settings->beginReadArray(QLatin1String(MSettings::mouseFunctionsGroup)), maximumEntries);
    int count = 0;
    for (int i = 0; i < size; ++i) {
        settings->setArrayIndex(i);
        int tool = 0;
        int button = 0;
        int modifiers = 0;
        int function = 0;
        if (!readInt(settings->value(QStringLiteral("tool")), &tool) ||
            !readInt(settings->value(QStringLiteral("button")), &button) ||
            !readInt(settings->value(QStringLiteral("modifiers")), &modifiers) ||
            !readInt(settings->value(QStringLiteral("function")), &function))
            continue;
        if (function < NoFunction || function > BrushLine)
            continue;
        if (addFunction(table, tool, button, Qt::KeyboardModifiers(modifiers), function))
            ++count;
    }
    settings->endArray();
    return count;
}

void MMouseFunctions::save()
{
    struct Entry
    {
        int tool, button, modifiers, function;
    };
    QVector<Entry> entries;
    for (auto tool = m_userFunctions.constBegin(); tool != m_userFunctions.constEnd(); ++tool) {
        for (auto it = tool->constBegin(); it != tool->constEnd(); ++it)
            entries.append({tool.key(), it.key().first, it.key().second, it.value()});
    }
    // Hash order changes from run to run; the file shouldn't.
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
        if (a.tool != b.tool)
            return a.tool < b.tool;
        if (a.button != b.button)
            return a.button < b.button;
        return a.modifiers < b.modifiers;
    });

    MSettings* settings = MSettings::instance();
    const QString group = QLatin1String(MSettings::mouseFunctionsGroup);
    settings->remove(group);
    settings->beginWriteArray(group, entries.size());
    for (int i = 0; i < entries.size(); ++i) {
        settings->setArrayIndex(i);
        settings->setValue(QStringLiteral("tool"), entries.at(i).tool);
        settings->setValue(QStringLiteral("button"), entries.at(i).button);
        settings->setValue(QStringLiteral("modifiers"), entries.at(i).modifiers);
        settings->setValue(QStringLiteral("function"), entries.at(i).function);
    }
    settings->endArray();
}
