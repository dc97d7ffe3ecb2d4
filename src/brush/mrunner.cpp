#include "brush/mrunner.h"

#include "gpu/mshareddata.h"

MRunner::MRunner(MSharedData* sharedData, QObject* parent) : QObject(parent), m_sharedData(sharedData) {}

bool MRunner::isValid() const
{
    if (!m_sharedData)
        return false;
    m_sharedData->initializeGL();
    return m_sharedData->isValid();
}
