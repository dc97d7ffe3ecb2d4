#include "colour/mcolorlist.h"

#include "app/msettings.h"

#include <algorithm>

MColorList::MColorList()
{
    MSettings* settings = MSettings::instance();
    setCapacity(settings->colorListLength());
    connect(settings, &MSettings::colorListLengthChanged, this, &MColorList::setCapacity);
}

MColorList::~MColorList() = default;

QColor MColorList::color(int index) const
{
    if (index < 0 || index >= count())
        return Qt::black;
    return *m_colors[size_t(index)];
}

void MColorList::clear()
{
    m_colors.clear();
    if (m_foregroundColor != QColor(Qt::black)) {
        m_foregroundColor = Qt::black;
        Q_EMIT colorChanged(m_foregroundColor, Qt::NoModifier);
    }
}

void MColorList::updateColorList(const QColor& color)
{
    if (!color.isValid())
        return;
    auto found = std::find_if(m_colors.begin(), m_colors.end(),
                              [&](const std::unique_ptr<QColor>& entry) { return *entry == color; });
    if (found != m_colors.end()) {
        std::rotate(m_colors.begin(), found, found + 1);
    } else {
        m_colors.insert(m_colors.begin(), std::make_unique<QColor>(color));
    }
    while (count() > m_capacity)
        m_colors.pop_back();
    Q_EMIT colorAdded(color);
}

void MColorList::setColor(const QColor& color, Qt::KeyboardModifiers modifiers)
{
    if (!color.isValid())
        return;
    QColor& target = modifiers.testFlag(Qt::ControlModifier) ? m_backgroundColor : m_foregroundColor;
    if (target == color)
        return;
    target = color;
    Q_EMIT colorChanged(color, modifiers);
}

void MColorList::setColor(const QColor& color)
{
    setColor(color, Qt::NoModifier);
}

void MColorList::setCapacity(int capacity)
{
    m_capacity = qMax(1, capacity);
    while (count() > m_capacity)
        m_colors.pop_back();
}
