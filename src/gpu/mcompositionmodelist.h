#pragma once

#include "app/msingleton.h"
#include "lists/mtablemodel.h"

#include <QString>

class MCompositionMode;
class QComboBox;

// Every composition mode, one row each in the order of their numbers, with
// the user mode last. The numbers are those of the brush setting and of the
// M_ constants at the head of the stamp programs, where the formulas live.
class MCompositionModeList : public MTableModel, public MSingleton<MCompositionModeList>
{
    Q_OBJECT

public:
    // The mode whose colour is the brush's own, and the mode of brush engines
    // that compose by their own code.
    static constexpr int normalMode = 0;
    static constexpr int userMode = 1000;

    MCompositionModeList();

    MCompositionMode* modeAt(int row) const;
    // The row of that mode number; null when there is none.
    MCompositionMode* modeByNumber(int mode) const;

    // One item per mode, with its number as item data; brush modes only when
    // asked. Names are translated unless the user turned that off.
    void fillComboBox(QComboBox* box, bool brushModesOnly) const;
    // A mode's name as fillComboBox shows it; empty for an unknown number.
    QString displayName(int mode) const;

private:
    void addMode(int mode, const char* description, bool usedByBrush);
};
