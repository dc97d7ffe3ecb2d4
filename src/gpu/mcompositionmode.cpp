#include "gpu/mcompositionmode.h"

MCompositionMode::MCompositionMode(QObject* parent) : QObject(parent) {}

MCompositionMode::MCompositionMode(int mode, const QString& description, bool usedByBrush, QObject* parent)
    : QObject(parent), m_mode(mode), m_description(description), m_usedByBrush(usedByBrush)
{
}

void MCompositionMode::set_mode(int mode)
{
    if (mode == m_mode)
        return;
    m_mode = mode;
    Q_EMIT modeChanged(mode);
}

void MCompositionMode::set_description(const QString& description)
{
    if (description == m_description)
        return;
    m_description = description;
    Q_EMIT descriptionChanged(description);
}

void MCompositionMode::set_usedByBrush(bool usedByBrush)
{
    if (usedByBrush == m_usedByBrush)
        return;
    m_usedByBrush = usedByBrush;
    Q_EMIT usedByBrushChanged(usedByBrush);
}
