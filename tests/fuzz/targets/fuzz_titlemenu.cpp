// The title menu, built from the current language's link file as on every language
// change.
#include "fuzzsupport.h"

#include <ZVCore/private/CCommonModule>
#include <ZVCore/private/CCustomMenu>
#include <ZVCore/private/CMenuView>

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QVariant>
#include <QAction> // QtWidgets in Qt 5, QtGui in Qt 6

#include <algorithm>

using namespace ZVUIFramework;

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    ZVFuzz::RunFromPrivateFolder(argc, argv);
    ZVFuzz::StartApplication(argc, argv, true);
    CCommonModule::GetInstance();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    ZVFuzz::WriteProductFile(QStringLiteral("language/main/English_URL.xml"), ZVFuzz::Bytes(data, size));

    static CMenuView* view = new CMenuView;
    view->clearMenu();
    view->loadMenu();
    view->buildMenu();

    const QList<MenuItemInfo*>& entries = view->entries();
    ZVFUZZ_CHECK(view->menu() != nullptr);
    ZVFUZZ_CHECK(std::is_sorted(entries.cbegin(), entries.cend(),
                                [](const MenuItemInfo* a, const MenuItemInfo* b) { return a->order < b->order; }));
    int separators = 0;
    for (const MenuItemInfo* entry : entries) {
        // Installer entries never reach the title menu.
        ZVFUZZ_CHECK(entry->name.compare(QLatin1String("Install"), Qt::CaseInsensitive) != 0);
        ZVFUZZ_CHECK(entry->hasUrl == !entry->url.isEmpty());
        ZVFUZZ_CHECK(entry->action && entry->action->parent() == view->menu());
        ZVFUZZ_CHECK(entry->action->text() == entry->displayName);
        ZVFUZZ_CHECK(entry->action->property("key").toString() == entry->name);
        separators += entry->addSeparator ? 1 : 0;
    }
    ZVFUZZ_CHECK(view->menu()->actions().size() == entries.size() + separators);

    // The old menu goes later, as after a language change; here, before the next input.
    view->clearMenu();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return 0;
}
