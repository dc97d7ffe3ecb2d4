#pragma once

#include <QString>

// A process marker that outside tools can watch: a lock file in the user's
// runtime directory, held with a shared lock for the life of the process. Any
// tool that fails to take an exclusive lock on it knows the program runs. It
// plays no part in deciding whether this instance may start.
class MNamedMutex
{
public:
    // Creates (or reuses) the marker of that name. Calling it again in the same
    // process, as a restart does, keeps the one lock already held.
    static bool create(const QString& name);

    static QString path(const QString& name);
};
