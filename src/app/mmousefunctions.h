#pragma once

#include "app/msingleton.h"

#include <QHash>
#include <QObject>
#include <QPair>

// Which function a tool gives to a mouse button (or the wheel) with a set of
// keyboard modifiers. Two tables: the built-in defaults, and the user's, which
// is the one looked up and is kept in the settings array "mouseFunctions".
class MMouseFunctions : public QObject, public MSingleton<MMouseFunctions>
{
    Q_OBJECT

public:
    enum Functions
    {
        NoFunction = 0,
        CanvasDrag = 1,
        CanvasRotate = 2,
        CanvasScale = 3,
        CanvasTranslateVertical = 4,
        CanvasTranslateHorizontal = 5,
        BrushStroke = 6,
        BrushRadius = 7,
        BrushLine = 8
    };
    Q_ENUM(Functions)

    enum Table
    {
        DefaultTable = 0,
        UserTable = 1
    };

    // Tool -1 stands for any tool; button -1 for no button (the wheel, a plain move).
    static constexpr int anyTool = -1;
    static constexpr int noButton = -1;
    // More entries than any set of tools, buttons and modifiers could use: a
    // larger stored size is not believed.
    static constexpr int maximumEntries = 1024;

    // (button, modifiers) to function, for one tool.
    using ToolTable = QHash<QPair<int, int>, int>;
    // Tool to its table.
    using FunctionTable = QHash<int, ToolTable>;

    // The defaults, then the user's table from the settings, or the defaults
    // again where the settings hold none.
    MMouseFunctions();
    // Writes the user's table back.
    ~MMouseFunctions() override;

    // Adds a combination; one that is already taken keeps its function and
    // the answer is false.
    bool addFunction(Table table, int tool, int button, Qt::KeyboardModifiers modifiers, int function);
    // The user's function for the combination: the tool's own entry, else the
    // entry for any tool, else NoFunction.
    int function(int tool, int button, Qt::KeyboardModifiers modifiers) const;
    int function(Table table, int tool, int button, Qt::KeyboardModifiers modifiers) const;

    const FunctionTable& table(Table table) const;
    void clear(Table table);
    // The user's table becomes a copy of the defaults.
    void resetToDefaults();

    // Replaces the table by the settings array; entries that don't read as
    // numbers, or name an unknown function, are left out. Answers the count read.
    int load(Table table);
    // Writes the user's table, replacing the array.
    void save();

private:
    FunctionTable& tableRef(Table table);
    void addDefaults();

    FunctionTable m_defaultFunctions;
    FunctionTable m_userFunctions;
};
