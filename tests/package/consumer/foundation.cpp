#include <ZVFoundation/CDataCollectionGA4>
#include <ZVFoundation/CSimpleCrypt>
#include <ZVFoundation/CZV_Base_File>

#include <QtCore/QCoreApplication>
#include <QtCore/QStandardPaths>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationVersion(QStringLiteral("4.3.2.1"));
    QStandardPaths::setTestModeEnabled(true); // keep the spool out of the real data folder
    CSimpleCrypt crypt(42);
    const QString cipher = crypt.encryptToString(QStringLiteral("https://example.org/"));
    if (crypt.decryptToString(cipher) != QStringLiteral("https://example.org/")
        || !CSimpleCrypt(43).decryptToString(cipher).isEmpty()) {
        std::fprintf(stderr, "consumer_foundation: CSimpleCrypt misbehaves\n");
        return 1;
    }
#ifndef Q_OS_WIN
    if (CZV_Base_File::GetFileVersion(QCoreApplication::applicationFilePath()) != QStringLiteral("4.3.2.1")) {
        std::fprintf(stderr, "consumer_foundation: GetFileVersion misbehaves\n");
        return 1;
    }
#endif
    if (!CDataCollectionGA4::GetInstance()) {
        std::fprintf(stderr, "consumer_foundation: no analytics sender\n");
        return 1;
    }
    std::printf("consumer_foundation: ZVFoundation works\n");
    return 0;
}
