#include "effects/mshaderlist.h"

#include "effects/mshader.h"

#include <algorithm>

MShaderList::MShaderList() = default;

MShaderList::~MShaderList() = default;

MShader* MShaderList::at(int index) const
{
    return index >= 0 && index < count() ? m_shaders[size_t(index)].get() : nullptr;
}

MShader* MShaderList::shader(const QString& id) const
{
    const QString wanted = normalizedId(id);
    if (wanted.isEmpty())
        return nullptr;
    for (const auto& entry : m_shaders)
        if (normalizedId(entry->id()) == wanted)
            return entry.get();
    return nullptr;
}

MShader* MShaderList::addShader(std::unique_ptr<MShader> shader)
{
    if (!shader)
        return nullptr;
    removeShader(shader->id());
    m_shaders.push_back(std::move(shader));
    return m_shaders.back().get();
}

bool MShaderList::removeShader(const QString& id)
{
    const QString wanted = normalizedId(id);
    const auto found = std::find_if(m_shaders.begin(), m_shaders.end(),
                                    [&](const auto& entry) { return normalizedId(entry->id()) == wanted; });
    if (found == m_shaders.end())
        return false;
    m_shaders.erase(found);
    return true;
}
