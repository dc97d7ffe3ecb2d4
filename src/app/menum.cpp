#include "app/menum.h"

#include <QCoreApplication>

namespace {

// Names shown in editors, so that the translation tools find them.
[[maybe_unused]] const char* const shownNames[] = {
    QT_TRANSLATE_NOOP("Enum", "Transparent"),   QT_TRANSLATE_NOOP("Enum", "Colored"),
    QT_TRANSLATE_NOOP("Enum", "Paper"),         QT_TRANSLATE_NOOP("Enum", "PixelsPerInch"),
    QT_TRANSLATE_NOOP("Enum", "PixelsPerCentimeter"), QT_TRANSLATE_NOOP("Enum", "LeftEdge"),
    QT_TRANSLATE_NOOP("Enum", "TopEdge"),       QT_TRANSLATE_NOOP("Enum", "RightEdge"),
    QT_TRANSLATE_NOOP("Enum", "BottomEdge"),
    // Layer masks, shown by the layer properties dialog.
    QT_TRANSLATE_NOOP("Enum", "NoMask"), QT_TRANSLATE_NOOP("Enum", "AlphaMask"),
    QT_TRANSLATE_NOOP("Enum", "OneMinusAlphaMask"),
    QT_TRANSLATE_NOOP("Enum", "EllipseShape"),  QT_TRANSLATE_NOOP("Enum", "RectangleShape"),
    QT_TRANSLATE_NOOP("Enum", "ConstantAngle"), QT_TRANSLATE_NOOP("Enum", "FollowDirectionAngle"),
    QT_TRANSLATE_NOOP("Enum", "AutoSpacing"),   QT_TRANSLATE_NOOP("Enum", "RatioSpacing"),
    QT_TRANSLATE_NOOP("Enum", "ConstantSpacing"), QT_TRANSLATE_NOOP("Enum", "Antialiasing"),
    QT_TRANSLATE_NOOP("Enum", "NoAntialiasing"), QT_TRANSLATE_NOOP("Enum", "Smoothing"),
};

} // namespace

QMetaEnum MEnum::metaEnum(const QString& name)
{
    const QMetaObject& meta = staticMetaObject;
    const int index = meta.indexOfEnumerator(name.toLatin1().constData());
    return index < 0 ? QMetaEnum() : meta.enumerator(index);
}

QString MEnum::translatedKey(const char* key)
{
    return QCoreApplication::translate("Enum", key);
}
