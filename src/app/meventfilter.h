#pragma once

#include <QObject>

// Swallows mouse, key and tablet presses and releases while a long operation
// runs, so that no input reaches the program meanwhile.
class MEventFilter : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    static bool isSwallowed(int eventType);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};
