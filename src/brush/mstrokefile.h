#pragma once

#include <QString>
#include <QVector>

// Recorded pen samples, one list per stroke, as a JSON file:
// {"strokes": [[{"x": X, "y": Y, "p": PRESSURE, "t": MILLISECONDS, "xt": XTILT,
// "yt": YTILT}, ...], ...]}, in canvas coordinates, "t" counted from the
// stroke's press. The program appends what a person paints; replays read it.
class MStrokeFile
{
public:
    struct Sample
    {
        double x = 0.0;
        double y = 0.0;
        double pressure = 1.0;
        double time = 0.0;
        double xTilt = 0.0;
        double yTilt = 0.0;
    };
    using Stroke = QVector<Sample>;

    // Limits of what a file may hold: coordinates beyond them would have a
    // replay walk for ages between two samples.
    static constexpr double maximumCoordinate = 1e6;
    static constexpr double maximumTime = 1e9;
    static constexpr double maximumTilt = 90.0;
    static constexpr qint64 maximumFileSize = 256 * 1024 * 1024;

    // The strokes of the file; false with a message naming the place of the
    // first fault, and strokes untouched.
    static bool read(const QString& fileName, QVector<Stroke>& strokes, QString* error);
    static bool parse(const QByteArray& data, QVector<Stroke>& strokes, QString* error);
    // Adds stroke after those the file holds, creating it when missing. A file
    // that isn't a stroke file is left as it is, and false.
    static bool append(const QString& fileName, const Stroke& stroke, QString* error = nullptr);
};
