// Prints the library's version and the product files that the frame looks for beside
// the running executable, marking which of them exist.
#include <ZVCore/ZVCoreVersion>
#include <ZVCore/ZVCustomEvent>
#include <ZVCore/ZVCustomEventSendObj>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QTextStream>

namespace {

struct Entry
{
    const char* path;  // relative to the executable's folder, '/'-separated
    const char* role;
};

// What a product ships (read) and what the frame leaves behind (written).
const Entry kRead[] = {
    {"productInfo.xml", "product identity (ZV_PID, ZV_APP_NAME, ...)"},
    {"language/main/localconfig.json", "language catalogue"},
    {"language/main/English_URL.xml", "default link file and title menu"},
    {"language/qm/ZVCore", "framework translations ZVCore_<Name>.qm"},
    {"language/qm", "host translations <Name>.qm"},
    {"custom", "channel marker"},
    {"domain", "channel marker"},
    {"skin/qss/ZVUIFramework.qss", "framework style sheet (default skin)"},
    {"skin/PictureNormal", "pictures for ordinary screens"},
    {"skin/Picture4K", "pictures for screens wider than 2500 pixels"},
};
const Entry kWritten[] = {
    {"language/language", "saved language choice"},
    {"factor.tmp", "scale factor chosen at start-up"},
    {"crashcore.dmp", "crash dump"},
};

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);

    const QString dir = QDir::toNativeSeparators(QCoreApplication::applicationDirPath()) + QDir::separator();
    out << "ZVCore " << ZVUIFramework::ZVCoreVersion() << " (compiled against " << ZVCORE_VERSION_STRING
        << ")\n";
    out << "Executable folder: " << dir << "\n\n";

    const auto print = [&out, &dir](const char* heading, const Entry* begin, const Entry* end) {
        out << heading << "\n";
        for (const Entry* e = begin; e != end; ++e) {
            const QString path = dir + QDir::toNativeSeparators(QString::fromLatin1(e->path));
            const bool present = QFileInfo::exists(path);
            out << "  [" << (present ? "found  " : "missing") << "] " << path << "\n"
                << "            " << e->role << "\n";
        }
        out << "\n";
    };
    print("Reads:", std::begin(kRead), std::end(kRead));
    print("Writes:", std::begin(kWritten), std::end(kWritten));

    // One round trip on the event bus, as a host's window would see it.
    class Receiver : public QObject
    {
    public:
        int value = -1;

    protected:
        void customEvent(QEvent* e) override { value = static_cast<ZVCustomEvent*>(e)->value; }
    } receiver;
    ZVCustomEventSendObj::GetInstance()->Attach(1002, &receiver);
    ZVCustomEventSendObj::GetInstance()->PostEvent(1002, 1);
    QCoreApplication::processEvents();
    out << "Event bus: event 1002 " << (receiver.value == 1 ? "delivered" : "NOT delivered") << "\n";
    return receiver.value == 1 ? 0 : 1;
}
