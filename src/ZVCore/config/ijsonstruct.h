#ifndef ZVCORE_IJSONSTRUCT_H
#define ZVCORE_IJSONSTRUCT_H

#include <ZVCore/zvcore_export.h>

#include <rapidjson/allocators.h>
#include <rapidjson/document.h>

#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <unordered_set>

namespace ZVUIFramework {

/// The memory pool that every JSON value of one document lives in.
using JsonAllocator = rapidjson::MemoryPoolAllocator<rapidjson::CrtAllocator>;
/// A shared reference to a pool. The pool cannot be copied, so the document and every
/// structure built for it share one pool through this handle; the last holder frees it.
using JsonAllocatorHandle = std::shared_ptr<JsonAllocator>;

static_assert(std::is_same<rapidjson::Value::AllocatorType, JsonAllocator>::value,
    "rapidjson::Value must live in a JsonAllocator");

/// A new, empty pool.
ZVCORE_AUTOTEST_EXPORT JsonAllocatorHandle MakeJsonAllocator();

/*!
 * Base of the structures that map one shape of JSON object onto plain data. A derived
 * structure is bound to the data it fills (read) or serialises (write), and shares the
 * memory pool of the document it works on, so that the values it builds can be added to
 * that document without copying.
 *
 * \code
 * JsonAllocatorHandle pool = MakeJsonAllocator();
 * rapidjson::GenericDocument<rapidjson::UTF8<>, JsonAllocator> doc(pool.get(), 1024);
 * doc.Parse<rapidjson::kParseIterativeFlag>(text);
 *
 * MCLanguageInfo record;
 * MCLanguageInfoJSONStruct json(&record, pool);
 * if (!doc.HasParseError())
 *     json.read(doc);                          // fills record
 *
 * json.setFilter(1, {"Name", "Show"});        // write only these keys
 * rapidjson::Value object = json.write();     // {"Name":...,"Show":...} in pool
 * \endcode
 *
 * The key filter applies to writing only; reading always takes every key it knows.
 * Structures are created and destroyed by their exact type, never through a pointer to
 * this base, which is why the destructor is protected and not virtual.
 */
class ZVCORE_AUTOTEST_EXPORT IJSONStruct
{
public:
    /// Filter mode 0: keys in the filter set are left out.
    static constexpr std::int32_t FilterExclude = 0;
    /// Filter mode 1: only keys in the filter set are written.
    static constexpr std::int32_t FilterInclude = 1;

    /// Fills the bound data from \a value, the object this structure maps. Members that
    /// are missing or of another type leave the data as it was.
    virtual void read(const rapidjson::Value& value) = 0;
    /// An object built from the bound data, allocated from allocator().
    virtual rapidjson::Value write() = 0;

    /// Mode 0 leaves the keys of \a keys out of write(), mode 1 writes only those; any
    /// other mode writes every key.
    void setFilter(int mode, std::unordered_set<std::string> keys);
    std::int32_t filterMode() const;
    const std::unordered_set<std::string>& filterKeys() const;

    /// The pool this structure builds values in, shared with the document.
    const JsonAllocatorHandle& allocator() const;

protected:
    /// Shares \a allocator; a null handle gets a pool of its own.
    explicit IJSONStruct(JsonAllocatorHandle allocator);
    IJSONStruct(const IJSONStruct&) = default;
    IJSONStruct& operator=(const IJSONStruct&) = default;
    ~IJSONStruct();

    /// Whether write() adds the member \a key under the current filter.
    bool keyAllowed(const char* key) const;

private:
    std::int32_t m_filterMode = FilterExclude;
    std::unordered_set<std::string> m_filterKeys;
    JsonAllocatorHandle m_allocator;
};

} // namespace ZVUIFramework

#endif // ZVCORE_IJSONSTRUCT_H
