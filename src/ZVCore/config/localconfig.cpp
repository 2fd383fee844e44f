#include "localconfig.h"

#include <ZVCore/private/IJSONStruct>
#include <ZVCore/private/MCLocalConfigInfoJSONStruct>

#include <rapidjson/document.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <utility>

namespace ZVUIFramework {

namespace {

// The size RapidJSON's parse stack starts at; it grows on the heap as the text nests.
constexpr size_t ParseStackCapacity = 1024;

using JsonDocument = rapidjson::GenericDocument<rapidjson::UTF8<>, JsonAllocator>;

} // namespace

void LoadLocalConfigFile(const QString& path, std::vector<MCLanguageInfo>& catalogue)
{
    const QFileInfo info(path);
    if (path.isEmpty() || !info.exists())
        return;

    QByteArray bytes;
    // Only a regular file is opened: a FIFO would block the open until a writer comes,
    // and a device such as /dev/zero would never end. Anything else reads as nothing,
    // which does not parse.
    if (info.isFile()) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly)) {
            bytes = file.readAll();
            file.close();
        }
    }

    std::vector<MCLanguageInfo> records;
    {
        // The pool is declared first so that it outlives the document built on it.
        const JsonAllocatorHandle pool = MakeJsonAllocator();
        JsonDocument doc(pool.get(), ParseStackCapacity);
        // QByteArray data is always NUL-terminated, so parsing it as a C string takes
        // exactly the bytes before the first NUL. The iterative parser keeps its state
        // on the heap, so no nesting depth can exhaust the call stack; and values in a
        // pool are never freed one by one, so the tree is dropped without recursion too.
        doc.Parse<rapidjson::kParseIterativeFlag>(bytes.constData());
        if (!doc.HasParseError()) {
            MCLocalConfigInfoJSONStruct json(&records, pool);
            json.read(doc);
        }
    }
    catalogue = std::move(records);
}

std::string WriteLocalConfig(const std::vector<MCLanguageInfo>& catalogue, int filterMode,
                             std::unordered_set<std::string> filterKeys)
{
    const JsonAllocatorHandle pool = MakeJsonAllocator();
    // write() only reads the list it is bound to.
    MCLocalConfigInfoJSONStruct json(const_cast<std::vector<MCLanguageInfo>*>(&catalogue), pool);
    json.setFilter(filterMode, std::move(filterKeys));
    const rapidjson::Value root = json.write();

    // The tree is the three levels write() builds, never parsed input, so the
    // recursive writer is safe here.
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    root.Accept(writer);
    return std::string(buffer.GetString(), buffer.GetSize());
}

} // namespace ZVUIFramework
