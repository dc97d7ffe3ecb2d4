#include "app/mpathvar.h"

MPathVar::MPathVar(const QString& variable, const QString& description, const QString& replacement,
                   QObject* parent)
    : QObject(parent), m_variable(variable), m_description(description), m_replacement(replacement)
{
}
