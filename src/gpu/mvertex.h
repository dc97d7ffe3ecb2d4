#pragma once

#include <cstddef>

// The one vertex record of the program, interleaved 32-bit floats. The offsets
// are those the shaders' attributes are bound to.
struct MVertex
{
    float position[2] = {0.f, 0.f};
    float color[4] = {0.f, 0.f, 0.f, 0.f};
    float modelMatrix[16] = {1.f, 0.f, 0.f, 0.f, 0.f, 1.f, 0.f, 0.f, 0.f, 0.f, 1.f, 0.f, 0.f, 0.f, 0.f, 1.f};
    float textureCoordinates[3][2] = {{0.f, 0.f}, {0.f, 0.f}, {0.f, 0.f}};

    static constexpr int positionOffset = 0;
    static constexpr int colorOffset = 8;
    static constexpr int modelMatrixOffset = 24;
    static constexpr int textureCoordinatesOffset[3] = {88, 96, 104};
    static constexpr int stride = 112;

    void setColor(float r, float g, float b, float a)
    {
        color[0] = r;
        color[1] = g;
        color[2] = b;
        color[3] = a;
    }
};

static_assert(sizeof(MVertex) == MVertex::stride, "MVertex must stay 112 tightly packed bytes");
static_assert(offsetof(MVertex, color) == MVertex::colorOffset, "vertexColor offset");
static_assert(offsetof(MVertex, modelMatrix) == MVertex::modelMatrixOffset, "modelMatrix offset");
static_assert(offsetof(MVertex, textureCoordinates) == MVertex::textureCoordinatesOffset[0],
              "textureCoordinates0 offset");
