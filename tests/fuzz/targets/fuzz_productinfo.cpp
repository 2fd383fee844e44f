// productInfo.xml, as the first GetInstance() reads it from the executable's folder.
#include "fuzzsupport.h"
#include "zvapplicationinfo_p.h"

#include "xmlguard.h"

#include <ZVCore/private/CLanguageStore>

#include <QtXml/QDomDocument>

#include <algorithm>

using namespace ZVUIFramework;

namespace {

// How deep the elements of a parsed document nest, counted without recursion.
int depthOf(const QDomDocument& document)
{
    int deepest = 0;
    int depth = 0;
    QDomNode node = document.documentElement();
    while (!node.isNull()) {
        if (node.isElement())
            deepest = std::max(deepest, ++depth);
        else
            ++depth;
        if (!node.firstChild().isNull()) {
            node = node.firstChild();
            continue;
        }
        while (!node.isNull() && node.nextSibling().isNull()) {
            node = node.parentNode();
            --depth;
            if (node == document)
                node.clear();
        }
        if (!node.isNull()) {
            node = node.nextSibling();
            --depth;
        }
    }
    return deepest;
}

// A document the guard lets through is one the DOM parser handles safely: as deep as
// the guard says at most, with no entities to expand.
void checkGuard(const QByteArray& bytes)
{
    if (!XmlGuard::IsWithinLimits(bytes))
        return;
    QDomDocument document;
    if (!document.setContent(bytes, false))
        return;
    ZVFUZZ_CHECK(depthOf(document) <= XmlGuard::MaxDepth);
    ZVFUZZ_CHECK(document.doctype().entities().isEmpty());
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    ZVFuzz::RunFromPrivateFolder(argc, argv);
    ZVFuzz::StartApplication(argc, argv, true);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    ZVFuzz::WriteProductFile(QStringLiteral("productInfo.xml"), ZVFuzz::Bytes(data, size));

    ZVApplicationInfoPrivate context;
    context.readProductInfo(CLanguageStore::GetInstance()->GetProductInfoPath());

    // The file names the product; the host's own settings stay as they were.
    ZVFUZZ_CHECK(context.sendEmailAccount.isEmpty());
    ZVFUZZ_CHECK(context.sendEmailPwd.isEmpty());
    ZVFUZZ_CHECK(context.userEmailInfo.isEmpty());
    ZVFUZZ_CHECK(context.updaterArguments.isEmpty());
    ZVFUZZ_CHECK(context.qssFiles.isEmpty());
    ZVFUZZ_CHECK(!context.crashCallback);

    checkGuard(ZVFuzz::Bytes(data, size));
    return 0;
}
