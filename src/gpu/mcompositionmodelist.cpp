#include "gpu/mcompositionmodelist.h"

#include "app/msettings.h"
#include "gpu/mcompositionmode.h"

#include <QComboBox>

#define TR(text) QT_TRANSLATE_NOOP("MCompositionModeList", text)

MCompositionModeList::MCompositionModeList()
{
    setItemClass(&MCompositionMode::staticMetaObject);
    // Modes without a formula of their own stay listed, so that their numbers
    // keep their meaning, but brushes don't offer them: the stamp programs
    // draw them as Normal.
    addMode(0, TR("Normal"), true);
    addMode(1, TR("Background over"), false);
    addMode(2, TR("Clear"), false);
    addMode(3, TR("Foreground"), false);
    addMode(4, TR("Background"), false);
    addMode(5, TR("Foreground in"), true);
    addMode(6, TR("Background in"), false);
    addMode(7, TR("Foreground out"), true);
    addMode(8, TR("Background out"), false);
    addMode(9, TR("Foreground at top"), false);
    addMode(10, TR("Background at top"), false);
    addMode(11, TR("Xor"), false);
    addMode(12, TR("Plus"), true);
    addMode(13, TR("Multiply"), true);
    addMode(14, TR("Screen"), true);
    addMode(15, TR("Overlay"), true);
    addMode(16, TR("Darken"), true);
    addMode(17, TR("Lighten"), true);
    addMode(18, TR("Color dodge"), true);
    addMode(19, TR("Color burn"), true);
    addMode(20, TR("Hard light"), true);
    addMode(21, TR("Soft light"), true);
    addMode(22, TR("Difference"), true);
    addMode(23, TR("Exclusion"), true);
    addMode(24, TR("Darker"), true);
    addMode(25, TR("Lighter"), true);
    addMode(26, TR("Vivid light"), true);
    addMode(27, TR("Pin light"), true);
    addMode(28, TR("HSL hue"), true);
    addMode(29, TR("HSL saturation"), true);
    addMode(30, TR("HSL color"), true);
    addMode(31, TR("HSL luminosity"), true);
    addMode(32, TR("Dodge highlight"), true);
    addMode(33, TR("Burn highlight"), true);
    addMode(34, TR("Dodge midtone"), true);
    addMode(35, TR("Burn midtone"), true);
    addMode(36, TR("Dodge shadow"), true);
    addMode(37, TR("Burn shadow"), true);
    addMode(userMode, TR("User"), false);
}

void MCompositionModeList::addMode(int mode, const char* description, bool usedByBrush)
{
    appendRaw(new MCompositionMode(mode, QString::fromLatin1(description), usedByBrush));
}

MCompositionMode* MCompositionModeList::modeAt(int row) const
{
    return qobject_cast<MCompositionMode*>(item(row));
}

MCompositionMode* MCompositionModeList::modeByNumber(int mode) const
{
    for (int row = 0; row < count(); ++row) {
        MCompositionMode* entry = modeAt(row);
        if (entry && entry->mode() == mode)
            return entry;
    }
    return nullptr;
}

QString MCompositionModeList::displayName(int mode) const
{
    const MCompositionMode* entry = modeByNumber(mode);
    if (!entry)
        return QString();
    if (!MSettings::instance()->translateCompositionModes())
        return entry->description();
    return tr(entry->description().toUtf8().constData());
}

void MCompositionModeList::fillComboBox(QComboBox* box, bool brushModesOnly) const
{
    if (!box)
        return;
    for (int row = 0; row < count(); ++row) {
        const MCompositionMode* entry = modeAt(row);
        if (!entry || (brushModesOnly && !entry->usedByBrush()))
            continue;
        box->addItem(displayName(entry->mode()), entry->mode());
    }
}
