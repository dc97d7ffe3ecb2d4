#include "effects/mintspinbox.h"

#include <QWheelEvent>

MIntSpinBox::MIntSpinBox(QWidget* parent) : QSpinBox(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    // Typing "12" must not pass through 1 on its way.
    setKeyboardTracking(false);
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

void MIntSpinBox::wheelEvent(QWheelEvent* event)
{
    if (!hasFocus()) {
        // Left to the parent, which scrolls.
        event->ignore();
        return;
    }
    QSpinBox::wheelEvent(event);
}
