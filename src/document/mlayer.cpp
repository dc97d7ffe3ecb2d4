#include "document/mlayer.h"

MLayer::MLayer(QObject* parent) : QObject(parent) {}

MLayer::~MLayer() = default;

void MLayer::clear() {}

bool MLayer::isEmpty() const
{
    return false;
}
