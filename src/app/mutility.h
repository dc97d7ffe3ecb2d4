#pragma once

#include "app/menum.h"

#include <QRgb>
#include <QString>

class QImage;

// Where every kind of file lives. Each directory handed out ends with "/" and
// is created when missing.
class MUtility
{
public:
    static QString applicationDir();
    // The folder that holds the shipped "datas": the executable's folder
    // unless another was set (an empty path sets it back).
    static QString systemDataRoot();
    static void setSystemDataRoot(const QString& path);
    static QString userDataDir();
    static QString directoryName(MEnum::Directory directory);
    static QString directory(MEnum::PathType pathType, MEnum::Directory directory);
    static QString tempDir();
    static QString tileFilePath(const QString& id);
    static QString translationsDir();
    static QString translationFile(const QString& langId);

    // Removes the entries of a directory; recursive walks subdirectories and
    // removes them too. The first failure stops the walk and gives false.
    static bool clearDirectory(const QString& path, bool removeDir, bool recursive);

    // Around a long operation: a wait cursor, and no user input reaches the
    // program until endWait().
    static void beginWait();
    static void endWait();
    static bool isWaiting();

    // Images kept inside JSON files: PNG bytes in base64, empty for a null
    // image.
    static QString imageToBase64Png(const QImage& image);
    // The PNG in bytes, or null when it isn't one or claims more than
    // maxSide on a side or maxPixels in all: the size is read from the header
    // before anything is allocated.
    static QImage imageFromPng(const QByteArray& bytes, int maxSide, qint64 maxPixels);

    // Turns the key colour into transparency, as far as each pixel's colour
    // lies from it: a pixel of the key colour goes, one of it mixed with
    // another keeps that other colour at the mix's opacity. The result is
    // premultiplied ARGB32.
    static QImage colorToAlpha(const QImage& image, QRgb keyColor);
};
