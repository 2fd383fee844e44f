#ifndef ZVCORE_SHADOWREGISTRY_H
#define ZVCORE_SHADOWREGISTRY_H

//
//  W A R N I N G
//  -------------
//
// This file is not part of the ZVCore API. It exists for the convenience of the
// implementation and may change from version to version without notice.
//

// Who owns the layered shadows of a process's core windows. Written without Qt, so that
// the Windows lane runs it with the Windows shadow.
//
// The shadow is process-wide for a process with one core window: the window builds it,
// forwards its messages to it and deletes it when it goes. With several windows, each
// window owns the shadow it built and forwards to that one only, and a window that goes
// deletes its own shadow and no other; the process-wide shadow is the newest remaining
// window's. So no window ever reaches a deleted shadow, whatever the order in which the
// windows open and close, and a window without a layered shadow deletes nothing.

#include <algorithm>
#include <utility>
#include <vector>

namespace ZVUIFramework {

template <typename Shadow>
class ShadowRegistry
{
public:
    // \a shadow, built by \a window, becomes the process-wide shadow.
    void Add(const void* window, Shadow* shadow)
    {
        if (!window || !shadow)
            return;
        m_entries.emplace_back(window, shadow);
    }

    // The shadow of the newest window that has one; null when none has.
    Shadow* Current() const { return m_entries.empty() ? nullptr : m_entries.back().second; }

    // The shadow \a window built; null when it built none.
    Shadow* Of(const void* window) const
    {
        const auto it = find(window);
        return it == m_entries.end() ? nullptr : it->second;
    }

    // \a window is going: its own shadow, for the caller to delete, taken off the
    // registry; null when it built none.
    Shadow* Remove(const void* window)
    {
        const auto it = find(window);
        if (it == m_entries.end())
            return nullptr;
        Shadow* shadow = it->second;
        m_entries.erase(it);
        return shadow;
    }

    std::size_t Count() const { return m_entries.size(); }

private:
    using Entries = std::vector<std::pair<const void*, Shadow*>>;

    typename Entries::const_iterator find(const void* window) const
    {
        return std::find_if(m_entries.begin(), m_entries.end(),
                            [window](const typename Entries::value_type& e) { return e.first == window; });
    }

    Entries m_entries;
};

} // namespace ZVUIFramework

#endif // ZVCORE_SHADOWREGISTRY_H
