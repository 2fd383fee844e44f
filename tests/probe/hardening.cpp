#include "hardening.h"

#include <ZVCore/ZVApplicationInfo>
#include <ZVCore/private/CCommonModule>
#include <ZVCore/private/CCustomMenu>
#include <ZVCore/private/CLanguageStore>
#include <ZVCore/private/CMenuView>
#include <ZVCore/private/MenuItemInfo>
#include <ZVFoundation/CDataCollectionGA4>

#include <QtCore/QCryptographicHash>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QMap>
#include <QtCore/QVariant>
#include <QAction> // QtWidgets in Qt 5, QtGui in Qt 6
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenu>

#include <QtCore/QThread>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <vector>

#if !defined(_WIN32)
#include <dlfcn.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>
#endif

#ifdef Q_OS_WIN
#include <windows.h>
#include <psapi.h>
#endif

using namespace ZVUIFramework;

// Defined in zvprobe.cpp, where a debugger finds them by name.
extern "C" void crash_here();
extern "C" int overflow_here(int depth);

volatile int g_afterFree = 0;

// A block freed twice, out of line so that a debugger shows it. The pointer passes
// through a volatile so that the compiler cannot see the second free coming, and the
// store after it keeps that free from becoming a jump that would drop this frame.
extern "C" __attribute__((noinline)) void double_free_here(size_t size)
{
    void* volatile block = std::malloc(size);
    std::free(block);
    std::free(block);
    g_afterFree = 1;
}

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr const char* kSanitizer = "address";
#elif defined(__SANITIZE_THREAD__)
constexpr const char* kSanitizer = "thread";
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr const char* kSanitizer = "address";
#elif __has_feature(thread_sanitizer)
constexpr const char* kSanitizer = "thread";
#elif __has_feature(memory_sanitizer)
constexpr const char* kSanitizer = "memory";
#else
constexpr const char* kSanitizer = "";
#endif
#else
constexpr const char* kSanitizer = "";
#endif

int g_longStringLimit = 0;

QJsonValue summarise(const QJsonValue& value)
{
    if (value.isString()) {
        const QString s = value.toString();
        if (s.size() <= g_longStringLimit)
            return value;
        return QStringLiteral("#%1:%2").arg(s.size()).arg(QString::fromLatin1(
            QCryptographicHash::hash(s.toUtf8(), QCryptographicHash::Sha1).toHex()));
    }
    if (value.isArray()) {
        QJsonArray out;
        for (const QJsonValue& v : value.toArray())
            out.append(summarise(v));
        return out;
    }
    if (value.isObject())
        return summariseLongStrings(value.toObject());
    return value;
}

void report(const QString& cmd, QJsonObject object)
{
    object.insert(QStringLiteral("cmd"), cmd);
    const QByteArray line = QJsonDocument(summariseLongStrings(object)).toJson(QJsonDocument::Compact) + '\n';
    std::fwrite(line.constData(), 1, size_t(line.size()), stdout);
    std::fflush(stdout);
}

void ready(const QJsonObject& details = QJsonObject())
{
    report(QStringLiteral("ready"), details);
}

// VmHWM and VmRSS of /proc/self/status, in kB (on Windows the peak and the current
// working set); -1 where the system has no such file.
QJsonObject memory()
{
    QJsonObject o{{QStringLiteral("vmHwmKb"), -1}, {QStringLiteral("vmRssKb"), -1}};
#ifdef Q_OS_WIN
    PROCESS_MEMORY_COUNTERS counters = {};
    counters.cb = sizeof counters;
    if (::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof counters)) {
        o.insert(QStringLiteral("vmHwmKb"), double(counters.PeakWorkingSetSize / 1024));
        o.insert(QStringLiteral("vmRssKb"), double(counters.WorkingSetSize / 1024));
    }
    return o;
#endif
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return o;
    for (const QByteArray& line : status.readAll().split('\n')) {
        const auto value = [&line] { return line.mid(line.indexOf(':') + 1).trimmed().split(' ').value(0).toLongLong(); };
        if (line.startsWith("VmHWM:"))
            o.insert(QStringLiteral("vmHwmKb"), double(value()));
        else if (line.startsWith("VmRSS:"))
            o.insert(QStringLiteral("vmRssKb"), double(value()));
    }
    return o;
}

QJsonArray keysOf(const QList<MenuItemInfo*>& entries, int from, int count)
{
    QJsonArray keys;
    for (int i = qMax(0, from); i < qMin(entries.size(), from + count); ++i)
        keys.append(entries.at(i)->name);
    return keys;
}

// Both threads fault at the same moment: each waits until the other is ready.
// Threads whose stacks overflow, each in overflow_here.
void overflowOnThreads(int count)
{
    std::atomic<int> arrived{0};
    const auto body = [&arrived, count] {
        arrived.fetch_add(1);
        while (arrived.load() < count) {
        }
        overflow_here(0);
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i)
        threads.emplace_back(body);
    for (std::thread& thread : threads)
        thread.join();
}

class OverflowingThread : public QThread
{
protected:
    void run() override { overflow_here(0); }
};

#if !defined(_WIN32)
void* overflowRoutine(void*)
{
    overflow_here(0);
    return nullptr;
}

// A thread started before the crash handler is installed, waiting to be told to recurse.
std::atomic<bool> g_earlyGo{false};
pthread_t g_early;
bool g_earlyStarted = false;

// A thread that waits for SIGRTMAX with sigtimedwait, as a host's signal thread does.
std::atomic<bool> g_waiterStop{false};
std::atomic<int> g_waiterReceived{0};
pthread_t g_waiter;
bool g_waiterStarted = false;

void* waiterRoutine(void*)
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGRTMAX);
    while (!g_waiterStop.load()) {
        const timespec slice{0, 20000000};
        if (::sigtimedwait(&set, nullptr, &slice) == SIGRTMAX)
            g_waiterReceived.fetch_add(1);
    }
    return nullptr;
}

void* earlyRoutine(void*)
{
    while (!g_earlyGo.load())
        ::usleep(1000);
    overflow_here(0);
    return nullptr;
}
#endif

void twoThreadsAtOnce()
{
    std::atomic<int> arrived{0};
    const auto body = [&arrived] {
        arrived.fetch_add(1);
        while (arrived.load() < 2) {
        }
        crash_here();
    };
    std::thread a(body);
    std::thread b(body);
    a.join();
    b.join();
}

// "<a>|<b>|...", where "<text>*<n>" stands for <text> repeated <n> times: a command line
// cannot carry a long argument.
QStringList names(const QString& list)
{
    QStringList out;
    for (const QString& item : list.split(QLatin1Char('|'))) {
        const int star = item.lastIndexOf(QLatin1Char('*'));
        bool number = false;
        const int count = star > 0 ? item.mid(star + 1).toInt(&number) : 0;
        out.append(number ? item.left(star).repeated(count) : item);
    }
    return out;
}

} // namespace

QJsonObject summariseLongStrings(const QJsonObject& object)
{
    if (g_longStringLimit <= 0)
        return object;
    QJsonObject out;
    for (auto it = object.begin(); it != object.end(); ++it)
        out.insert(it.key(), summarise(it.value()));
    return out;
}

bool runHardeningCommand(const QString& verb, const QString& rest, bool* ok)
{
    *ok = true;
    if (verb == QLatin1String("longstrings")) {
        g_longStringLimit = rest.toInt();
        return true;
    }
    if (verb == QLatin1String("peakmemory")) {
        QJsonObject o = memory();
        o.insert(QStringLiteral("sanitizer"), QString::fromLatin1(kSanitizer));
        report(verb, o);
        return true;
    }
    if (verb == QLatin1String("languagechoice")) {
        CCommonModule::GetInstance();
        return true;
    }
    if (verb == QLatin1String("cataloguesummary")) {
        CLanguageStore* store = CLanguageStore::GetInstance();
        QElapsedTimer timer;
        timer.start();
        store->LoadLocalConfig();
        const qint64 elapsed = timer.elapsed();
        const auto& list = store->GetLanguageList();
        const auto name = [](const std::string& s) { return QString::fromUtf8(s.data(), int(s.size())); };
        report(verb, {
            {QStringLiteral("count"), double(list.size())},
            {QStringLiteral("first"), list.empty() ? QString() : name(list.front().name)},
            {QStringLiteral("last"), list.empty() ? QString() : name(list.back().name)},
            {QStringLiteral("elapsedMs"), elapsed},
        });
        return true;
    }
    if (verb == QLatin1String("menusummary")) {
        // As the title bar meets it: the language manager has set its language before
        // the view exists.
        CCommonModule::GetInstance();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LanguageChange);
        auto* window = new QWidget;
        auto* view = new CMenuView(window);
        view->hide();
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < rest.toInt(); ++i) {
            QEvent change(QEvent::LanguageChange);
            QCoreApplication::sendEvent(view, &change);
        }
        const qint64 elapsed = timer.elapsed();
        int actions = 0;
        if (QMenu* menu = view->menu()) {
            for (const QAction* a : menu->actions())
                actions += a->isSeparator() ? 0 : 1;
        }
        const QList<MenuItemInfo*>& entries = view->entries();
        report(verb, {
            {QStringLiteral("entries"), entries.size()},
            {QStringLiteral("actions"), actions},
            {QStringLiteral("firstKeys"), keysOf(entries, 0, 3)},
            {QStringLiteral("lastKeys"), keysOf(entries, entries.size() - 3, 3)},
            {QStringLiteral("elapsedMs"), elapsed},
        });
        delete window;
        return true;
    }
    if (verb == QLatin1String("polish")) {
        QElapsedTimer timer;
        timer.start();
        QLabel label;
        label.setObjectName(QStringLiteral("separator_line"));
        label.ensurePolished();
        report(verb, {{QStringLiteral("elapsedMs"), timer.elapsed()},
                      {QStringLiteral("sheetLength"), qApp->styleSheet().size()}});
        return true;
    }
#if !defined(_WIN32)
    if (verb == QLatin1String("sigwaiter")) {
        // The signal is blocked everywhere, so that only the waiter takes it.
        sigset_t set;
        sigemptyset(&set);
        sigaddset(&set, SIGRTMAX);
        ::pthread_sigmask(SIG_BLOCK, &set, nullptr);
        g_waiterStarted = ::pthread_create(&g_waiter, nullptr, waiterRoutine, nullptr) == 0;
        report(verb, {{QStringLiteral("started"), g_waiterStarted}});
        return true;
    }
    if (verb == QLatin1String("sigwaited")) {
        ::usleep(200000);
        g_waiterStop.store(true);
        if (g_waiterStarted)
            ::pthread_join(g_waiter, nullptr);
        report(verb, {{QStringLiteral("received"), g_waiterReceived.load()}});
        return true;
    }
    if (verb == QLatin1String("earlythread")) {
        g_earlyStarted = ::pthread_create(&g_early, nullptr, earlyRoutine, nullptr) == 0;
        report(verb, {{QStringLiteral("started"), g_earlyStarted}});
        return true;
    }
    if (verb == QLatin1String("threadstacks")) {
        // Whether a thread created now has an alternate signal stack, and how large.
        long altStack = 0;
        std::thread([&altStack] {
            stack_t current;
            if (::sigaltstack(nullptr, &current) == 0 && !(current.ss_flags & SS_DISABLE))
                altStack = long(current.ss_size);
        }).join();
        // The anonymous writable mappings of exactly that size (256 KiB when none), before
        // and after <n> threads were created and joined, 100 at a time.
        const qint64 size = altStack > 0 ? altStack : 256 * 1024;
        const auto mappings = [size] {
            QFile maps(QStringLiteral("/proc/self/maps"));
            if (!maps.open(QIODevice::ReadOnly))
                return -1;
            int count = 0;
            for (const QByteArray& line : maps.readAll().split('\n')) {
                const QList<QByteArray> fields = line.simplified().split(' ');
                if (fields.size() != 5 || !fields.at(1).startsWith("rw"))
                    continue;
                const QList<QByteArray> range = fields.at(0).split('-');
                if (range.size() == 2 && range.at(1).toULongLong(nullptr, 16) - range.at(0).toULongLong(nullptr, 16) == quint64(size))
                    ++count;
            }
            return count;
        };
        const int count = rest.toInt();
        const int before = mappings();
        for (int done = 0; done < count; done += 100) {
            std::vector<std::thread> batch;
            for (int i = done; i < count && i < done + 100; ++i)
                batch.emplace_back([] {});
            for (std::thread& thread : batch)
                thread.join();
        }
        report(verb, {{QStringLiteral("before"), before}, {QStringLiteral("after"), mappings()},
                      {QStringLiteral("threads"), count}, {QStringLiteral("altStackInThread"), qint64(altStack)}});
        return true;
    }
#endif
    if (verb == QLatin1String("crashallthreads")) {
        qApp->setProperty("CrashHandleAllThreads", rest != QLatin1String("off"));
        report(verb, {});
        return true;
    }
    if (verb == QLatin1String("torture")) {
        std::fflush(stdout);
        if (rest == QLatin1String("overflow-thread")) {
            std::thread([] { overflow_here(0); }).join();
        } else if (rest == QLatin1String("overflow-qthread")) {
            OverflowingThread thread;
            thread.start();
            thread.wait();
        } else if (rest == QLatin1String("overflow-two")) {
            overflowOnThreads(2);
#if !defined(_WIN32)
        } else if (rest == QLatin1String("overflow-raw")) {
            pthread_t thread;
            if (::pthread_create(&thread, nullptr, overflowRoutine, nullptr) == 0)
                ::pthread_join(thread, nullptr);
        } else if (rest == QLatin1String("overflow-early")) {
            if (g_earlyStarted) {
                g_earlyGo.store(true);
                ::pthread_join(g_early, nullptr);
            }
        } else if (rest == QLatin1String("overflow-dlopen")) {
            void* library = ::dlopen(ZV_OVERFLOW_LIBRARY, RTLD_NOW | RTLD_LOCAL);
            using Start = int (*)();
            if (auto start = library ? reinterpret_cast<Start>(::dlsym(library, "zv_overflow_in_library_thread")) : nullptr)
                start();
#endif
        } else if (rest == QLatin1String("two-threads-sync")) {
            twoThreadsAtOnce();
        } else if (rest == QLatin1String("double-free")) {
            double_free_here(64);
        } else if (rest == QLatin1String("double-free-large")) {
            // Beyond the per-thread cache and below the size served by mmap, after a
            // thread has existed, so that the allocator's checks run under its lock.
            std::thread([] {}).join();
            double_free_here(4000);
        }
        *ok = false;
        return true;
    }
    if (verb == QLatin1String("langloop")) {
        const QStringList names = ::names(rest);
        CCommonModule* module = CCommonModule::GetInstance();
        ready();
        for (int i = 1;; ++i)
            module->SetLanguage(names.at(i % names.size()));
    }
    if (verb == QLatin1String("spoolpath")) {
        report(verb, {{QStringLiteral("spool"), CDataCollectionGA4::GetInstance()->SpoolPath()}});
        return true;
    }
    if (verb == QLatin1String("spoolsend")) {
        CDataCollectionGA4* spool = CDataCollectionGA4::GetInstance();
        spool->Send(rest.split(QLatin1Char('|')));
        report(verb, {{QStringLiteral("spool"), spool->SpoolPath()}});
        return true;
    }
    if (verb == QLatin1String("spoolloop")) {
        CDataCollectionGA4* spool = CDataCollectionGA4::GetInstance();
        const QString tag = rest.section(QLatin1Char('|'), 0, 0);
        const int padding = rest.section(QLatin1Char('|'), 1).toInt();
        for (int i = 0;; ++i) {
            spool->Send({QStringLiteral("kill"), tag, QString::number(i), QString(padding * (i % 7), QLatin1Char('p'))});
            if (i == 0)
                ready({{QStringLiteral("spool"), spool->SpoolPath()}});
        }
    }
    if (verb == QLatin1String("naiveloop")) {
        const QStringList names = ::names(rest);
        const QString path = CLanguageStore::GetInstance()->GetSavedLanguagePath();
        for (int i = 0;; ++i) {
            QFile file(path);
            if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
                file.write(names.at(i % names.size()).toUtf8());
            file.close();
            if (i == 0)
                ready();
        }
    }
    return false;
}

void runHardeningLoopBeforeApplication(int argc, char** argv)
{
    if (argc < 2 || std::strcmp(argv[1], "highdpiloop") != 0)
        return;
    const QMap<QString, QVariant> options[2] = {
        {{QStringLiteral("windowWidth"), 1100}, {QStringLiteral("windowHeight"), 760}, {QStringLiteral("syncRatio"), true}},
        {{QStringLiteral("windowWidth"), 1300}, {QStringLiteral("windowHeight"), 1000}, {QStringLiteral("syncRatio"), true}},
    };
    for (int i = 0;; ++i) {
        ZVApplicationInfo::EnableHighDPISupport(options[i % 2]);
        if (i == 1) {
            std::fputs("{\"cmd\":\"ready\"}\n", stdout);
            std::fflush(stdout);
        }
    }
}
