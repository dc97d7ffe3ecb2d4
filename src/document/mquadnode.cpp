#include "document/mquadnode.h"

MQuadNode::MQuadNode(const QRect& rect, MQuadNode* parent) : m_rect(rect), m_parent(parent) {}

MQuadNode::~MQuadNode() = default;

bool MQuadNode::isLeaf() const
{
    return !m_children[0] && !m_children[1] && !m_children[2] && !m_children[3];
}

MQuadNode* MQuadNode::child(int index) const
{
    return index >= 0 && index < 4 ? m_children[size_t(index)].get() : nullptr;
}

void MQuadNode::setChild(int index, std::unique_ptr<MQuadNode> node)
{
    if (index >= 0 && index < 4)
        m_children[size_t(index)] = std::move(node);
}

bool MQuadNode::contains(const QPointF& point) const
{
    return point.x() >= m_rect.left() && point.x() < m_rect.right() && point.y() >= m_rect.top() &&
           point.y() < m_rect.bottom();
}

MQuadNode* MQuadNode::leafAt(const QPointF& point)
{
    // The children don't overlap, so at most one of them contains the point
    // and the descent needs no backtracking.
    MQuadNode* node = this;
    while (node && node->contains(point)) {
        if (node->isLeaf())
            return node;
        MQuadNode* next = nullptr;
        for (const auto& child : node->m_children) {
            if (child && child->contains(point)) {
                next = child.get();
                break;
            }
        }
        node = next;
    }
    return nullptr;
}

void MQuadNode::split()
{
    const int half = m_rect.width() / 2;
    const QRect rects[4] = {QRect(m_rect.left(), m_rect.top(), half, half),
                            QRect(m_rect.left() + half, m_rect.top(), half, half),
                            QRect(m_rect.left(), m_rect.top() + half, half, half),
                            QRect(m_rect.left() + half, m_rect.top() + half, half, half)};
    for (size_t i = 0; i < 4; ++i) {
        if (m_children[i])
            m_children[i]->setRect(rects[i]);
        else
            m_children[i] = std::make_unique<MQuadNode>(rects[i], this);
    }
}
