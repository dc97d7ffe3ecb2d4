#pragma once

#include <QSpinBox>

// The integer editor of parameter panels: a spin box that takes wheel turns
// only when it has the focus, so that scrolling a panel leaves it alone.
class MIntSpinBox : public QSpinBox
{
    Q_OBJECT

public:
    explicit MIntSpinBox(QWidget* parent = nullptr);

protected:
    void wheelEvent(QWheelEvent* event) override;
};
