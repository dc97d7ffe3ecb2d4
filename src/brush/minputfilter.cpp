#include "brush/minputfilter.h"

#include "app/menum.h"
#include "app/mevent.h"

#include <algorithm>

MInputFilter::MInputFilter()
{
    setFilter(MEnum::biPositionX, 0.5);
    setFilter(MEnum::biPositionY, 0.5);
    setFilter(MEnum::biDirectionX, 0.15);
    setFilter(MEnum::biDirectionY, 0.15);
    setFilter(MEnum::biPressure, 0.15);
}

bool MInputFilter::setFilter(int brushInput, double alpha)
{
    if (brushInput < 0 || brushInput >= MEnum::biCount || !(alpha > 0.0 && alpha <= 1.0))
        return false;
    auto it = m_filters.find(brushInput);
    if (it == m_filters.end())
        m_filters.insert(brushInput, MLowPass(alpha));
    else
        it->setAlpha(alpha);
    return true;
}

void MInputFilter::removeFilter(int brushInput)
{
    m_filters.remove(brushInput);
}

void MInputFilter::clear()
{
    m_filters.clear();
}

double MInputFilter::alpha(int brushInput) const
{
    const auto it = m_filters.constFind(brushInput);
    return it == m_filters.constEnd() ? 0.0 : it->alpha;
}

QList<int> MInputFilter::inputs() const
{
    QList<int> keys = m_filters.keys();
    std::sort(keys.begin(), keys.end());
    return keys;
}

void MInputFilter::filter(MEvent* event)
{
    if (!event)
        return;
    for (auto it = m_filters.begin(); it != m_filters.end(); ++it)
        event->setInput(it.key(), it->filter(event->input(it.key())));
}

void MInputFilter::reset()
{
    for (MLowPass& lowPass : m_filters)
        lowPass.reset();
}
