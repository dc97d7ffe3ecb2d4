#include "tools/maction.h"

#include <QAction>

MAction::MAction(QObject* parent) : QObject(parent) {}

void MAction::set_description(const QString& value)
{
    if (value == m_description)
        return;
    m_description = value;
    Q_EMIT descriptionChanged(value);
}

void MAction::set_shortCut(const QString& value)
{
    if (value == m_shortCut)
        return;
    m_shortCut = value;
    Q_EMIT shortCutChanged(value);
}

void MAction::set_action(QAction* value)
{
    if (value == m_action)
        return;
    m_action = value;
    Q_EMIT actionChanged(value);
}
