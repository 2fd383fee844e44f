#include "ijsonstruct.h"

#include <utility>

namespace ZVUIFramework {

JsonAllocatorHandle MakeJsonAllocator()
{
    return std::make_shared<JsonAllocator>();
}

IJSONStruct::IJSONStruct(JsonAllocatorHandle allocator)
    : m_allocator(allocator ? std::move(allocator) : MakeJsonAllocator())
{
}

IJSONStruct::~IJSONStruct() = default;

void IJSONStruct::setFilter(int mode, std::unordered_set<std::string> keys)
{
    m_filterMode = mode;
    m_filterKeys = std::move(keys);
}

std::int32_t IJSONStruct::filterMode() const
{
    return m_filterMode;
}

const std::unordered_set<std::string>& IJSONStruct::filterKeys() const
{
    return m_filterKeys;
}

const JsonAllocatorHandle& IJSONStruct::allocator() const
{
    return m_allocator;
}

bool IJSONStruct::keyAllowed(const char* key) const
{
    if (!key)
        return false;
    switch (m_filterMode) {
    case FilterExclude:
        return m_filterKeys.find(key) == m_filterKeys.end();
    case FilterInclude:
        return m_filterKeys.find(key) != m_filterKeys.end();
    default:
        return true;
    }
}

} // namespace ZVUIFramework
