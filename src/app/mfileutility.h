#pragma once

#include <QStringList>

// File filters for the dialogs, and the first-run installation of the shipped data.
class MFileUtility
{
public:
    static QStringList documentFilters();
    static QStringList modelFilters();
    // The formats Qt can read, lower-cased, each once.
    static QStringList imageFormats();
    // With extensionsOnly, "*.ext" per format; otherwise "All image files (...)"
    // followed by one described entry per format.
    static QStringList imageFilters(bool extensionsOnly = false);
    static QString formatDescription(const QString& format);

    // Copies each shipped data directory into the user's when the user's is
    // empty; runs at every start.
    static void installData();
};
