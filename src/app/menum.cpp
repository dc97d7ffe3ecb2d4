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
