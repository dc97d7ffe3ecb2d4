#pragma once

#include <QPointF>
#include <QRect>

#include <array>
#include <memory>

// A square of the quadtree. A leaf has no children; a leaf of a tile's size may
// hold the index of that tile in the tree's vector.
class MQuadNode
{
public:
    enum Child
    {
        TopLeft = 0,
        TopRight = 1,
        BottomLeft = 2,
        BottomRight = 3
    };

    explicit MQuadNode(const QRect& rect, MQuadNode* parent = nullptr);
    virtual ~MQuadNode();
    MQuadNode(const MQuadNode&) = delete;
    MQuadNode& operator=(const MQuadNode&) = delete;

    QRect rect() const { return m_rect; }
    void setRect(const QRect& rect) { m_rect = rect; }
    // Set when the node was made by splitting; a root that later gets a parent
    // during growth keeps null here, so nothing may walk upwards.
    MQuadNode* parent() const { return m_parent; }
    int tileIndex() const { return m_tileIndex; }
    void setTileIndex(int index) { m_tileIndex = index; }

    bool isLeaf() const;
    MQuadNode* child(int index) const;
    // Takes ownership of node and puts it in the given place, deleting any
    // node that was there.
    void setChild(int index, std::unique_ptr<MQuadNode> node);

    // Half-open on the left and top, and the last pixel row and column count
    // as outside: only cell centres are safe to test.
    bool contains(const QPointF& point) const;
    // The leaf under point, or null when point is outside this node.
    MQuadNode* leafAt(const QPointF& point);
    // Gives the node four children of half its size; existing children keep
    // their objects and only get their rectangle set.
    void split();

private:
    QRect m_rect;
    MQuadNode* m_parent;
    int m_tileIndex = -1;
    std::array<std::unique_ptr<MQuadNode>, 4> m_children;
};
