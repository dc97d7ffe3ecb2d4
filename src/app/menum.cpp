#include "app/menum.h"

#include <QCoreApplication>

namespace {

// Names shown in editors, so that the translation tools find them.
[[maybe_unused]] const char* const shownNames[] = {
    QT_TRANSLATE_NOOP("MEnum", "Transparent"),   QT_TRANSLATE_NOOP("MEnum", "Colored"),
    QT_TRANSLATE_NOOP("MEnum", "Paper"),         QT_TRANSLATE_NOOP("MEnum", "PixelsPerInch"),
    QT_TRANSLATE_NOOP("MEnum", "PixelsPerCentimeter"), QT_TRANSLATE_NOOP("MEnum", "LeftEdge"),
    QT_TRANSLATE_NOOP("MEnum", "TopEdge"),       QT_TRANSLATE_NOOP("MEnum", "RightEdge"),
    QT_TRANSLATE_NOOP("MEnum", "BottomEdge"),
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
    return QCoreApplication::translate("MEnum", key);
}
