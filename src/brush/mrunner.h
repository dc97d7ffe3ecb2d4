#pragma once

#include <QObject>

class MSharedData;

// One step of work on a canvas's tiles, built on the stack and run at once.
class MRunner : public QObject
{
    Q_OBJECT

public:
    explicit MRunner(MSharedData* sharedData, QObject* parent = nullptr);

    MSharedData* sharedData() const { return m_sharedData; }
    // Brings the shared data up when needed; a runner does nothing without it.
    bool isValid() const;

public Q_SLOTS:
    virtual void run() = 0;

Q_SIGNALS:
    void finished(MRunner* runner);

protected:
    MSharedData* m_sharedData;
};
