#include "cmenuview.h"

#include "ccustommenu.h"

#include <ZVCore/ZVCustomEventSendObj>
#include <ZVCore/private/CCommonModule>
#include <ZVCore/private/XmlGuard>
#include <ZVFoundation/CSimpleCrypt>

#include <QtCore/QDebug>
#include <QtCore/QEvent>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QUrl>
#include <QtCore/QVariant>
#include <QtGui/QDesktopServices>
#include <QAction> // QtWidgets in Qt 5, QtGui in Qt 6
#include <QtXml/QDomDocument>
#include <QtXml/QDomElement>

#include <algorithm>

using ZVUIFramework::CCommonModule;

namespace {

// Bus id sent by the "CheckNewVersion" entry; the update check listens for it.
constexpr int kCheckNewVersionEvent = 1001;

bool isNamed(const QString& name, const char* builtIn)
{
    return name.compare(QLatin1String(builtIn), Qt::CaseInsensitive) == 0;
}

// A field of an entry: the first child element of exactly that name.
QDomElement field(const QDomElement& entry, const char* name)
{
    return entry.firstChildElement(QLatin1String(name));
}

// Base 10; text that is no number counts as 0, like the rest of the link file.
int number(const QDomElement& element)
{
    return element.text().toInt(nullptr, 10);
}

} // namespace

CMenuView::CMenuView(QWidget* parent)
    : QWidget(parent)
{
}

CMenuView::~CMenuView()
{
    // The menu and the actions are children and go with the widget.
    qDeleteAll(m_entries);
    m_entries.clear();
}

CCustomMenu* CMenuView::menu() const
{
    return m_menu.data();
}

const QList<MenuItemInfo*>& CMenuView::entries() const
{
    return m_entries;
}

void CMenuView::loadMenu()
{
    if (!m_menu) {
        m_menu = new CCustomMenu(this);
        m_menu->setObjectName(QStringLiteral("titleMenu"));
    }

    qDeleteAll(m_entries);
    m_entries.clear();

    CCommonModule* module = CCommonModule::GetInstance();
    const QString path = module->GetCurrentLinkFilePath();
    QFile file(path);
    const QFileInfo info(path);
    // Opening a FIFO or a device would wait for a writer, so only regular files are
    // read; a folder or a missing file is left to QFile, whose error text says which.
    if (info.exists() && !info.isFile() && !info.isDir()) {
        qDebug().noquote().nospace() << "ZVCore: URL xml read error, " << path << "->"
                                     << QStringLiteral("not a regular file");
        return;
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qDebug().noquote().nospace() << "ZVCore: URL xml read error, " << path << "->" << file.errorString();
        return;
    }

    const QByteArray bytes = file.readAll();
    file.close();
    QDomDocument document;
    if (!ZVUIFramework::XmlGuard::Parse(document, bytes))
        return;

    const CSimpleCrypt* cipher = module->GetCipher();
    const QDomElement root = document.documentElement();
    for (QDomNode menuNode = root.firstChild(); !menuNode.isNull(); menuNode = menuNode.nextSibling()) {
        if (!menuNode.isElement()
            || menuNode.toElement().tagName().compare(QLatin1String("menu"), Qt::CaseInsensitive) != 0)
            continue;
        for (QDomNode node = menuNode.firstChild(); !node.isNull(); node = node.nextSibling()) {
            if (!node.isElement()
                || node.toElement().tagName().compare(QLatin1String("childMenu"), Qt::CaseInsensitive) != 0)
                continue;
            const QDomElement element = node.toElement();

            const QDomElement shown = field(element, "isShow");
            if (shown.isNull() || number(shown) != 1)
                continue;

            const QDomElement nameElement = field(element, "menuName");
            const QString name = nameElement.isNull() ? QString() : nameElement.text();
            // The installer entry belongs to the product's other menus, never to this one.
            if (isNamed(name, "Install"))
                continue;

            auto* entry = new MenuItemInfo;
            entry->name = name;

            const QDomElement url = field(element, "url");
            if (!url.isNull() && !url.text().isEmpty() && cipher) {
                entry->url = cipher->decryptToString(url.text());
                entry->hasUrl = !entry->url.isEmpty();
            }

            const QDomElement displayName = field(element, "displayName");
            if (!displayName.isNull())
                entry->displayName = displayName.text();
            const QDomElement order = field(element, "order");
            if (!order.isNull())
                entry->order = number(order);
            const QDomElement separator = field(element, "addSeparator");
            if (!separator.isNull())
                entry->addSeparator = number(separator) == 1;
            const QDomElement event = field(element, "event");
            if (!event.isNull())
                entry->event = number(event);

            auto* action = new QAction(entry->displayName, m_menu);
            action->setProperty("key", entry->name);
            // The entry is looked up again when the action fires rather than captured,
            // so an action that outlives its entry (loadMenu() without clearMenu())
            // does nothing instead of reaching freed memory.
            connect(action, &QAction::triggered, this, [this, action]() {
                for (MenuItemInfo* candidate : qAsConst(m_entries)) {
                    if (candidate->action == action) {
                        onMenuItemTriggered(candidate);
                        return;
                    }
                }
            });
            entry->action = action;
            m_entries.append(entry);
        }
    }
}

void CMenuView::buildMenu()
{
    if (m_entries.isEmpty() || !m_menu)
        return;

    std::sort(m_entries.begin(), m_entries.end(),
              [](const MenuItemInfo* a, const MenuItemInfo* b) { return a->order < b->order; });

    for (MenuItemInfo* entry : qAsConst(m_entries)) {
        m_menu->addAction(entry->action);
        if (entry->addSeparator)
            m_menu->addSeparator();
    }
}

void CMenuView::clearMenu()
{
    if (m_menu) {
        // Deferred: the menu may be the very popup whose action led here.
        CCustomMenu* menu = m_menu.data();
        m_menu = nullptr;
        menu->setParent(nullptr);
        menu->deleteLater();
    }
    qDeleteAll(m_entries);
    m_entries.clear();
}

void CMenuView::changeEvent(QEvent* event)
{
    if (event->type() != QEvent::LanguageChange)
        return;
    // Captions, order and the entries themselves all depend on the language's link
    // file, so the menu is rebuilt rather than retranslated.
    clearMenu();
    loadMenu();
    buildMenu();
    emit signalMenuItemInited();
}

void CMenuView::onMenuItemTriggered(MenuItemInfo* entry)
{
    if (!entry)
        return;

    // Copies: a receiver may change the language, which rebuilds the menu and deletes
    // the entry before the handlers below return.
    const QString name = entry->name;
    const bool hasUrl = entry->hasUrl;
    const QString url = entry->url;
    const int id = entry->event;

    if (isNamed(name, "Feedback")) {
        emit signalShowFeedback();
    } else if (isNamed(name, "About")) {
        emit signalShowAboutDlg();
    } else if (isNamed(name, "CheckNewVersion")) {
        ZVCustomEventSendObj::GetInstance()->SendEvent(kCheckNewVersionEvent, 1);
    } else if (isNamed(name, "Exit")) {
        emit signalExit();
    } else if (isNamed(name, "MultiLanguage")) {
        emit signalShowLanguagePopDlg();
    } else if (hasUrl) {
        QDesktopServices::openUrl(QUrl(url, QUrl::TolerantMode));
    } else {
        // Announced first, so the host can attach a receiver before the event goes out.
        emit signalAttachEvent(id);
        ZVCustomEventSendObj::GetInstance()->SendEvent(id, 1);
    }
}

void CMenuView::slotShowMenu()
{
    auto* anchor = qobject_cast<QWidget*>(sender());
    if (!anchor || !m_menu)
        return;
    const QPointer<CCustomMenu> menu = m_menu;
    menu->execMenuAtWidget(anchor, QPoint(0, 0));
}
