// zvcrypt: enciphers and deciphers the web addresses of link files, and single values,
// with the key this build of ZVCore reads them with.

#include "linkfile.h"

#include <ZVCore/private/zvcoreconfig_p.h>
#include <ZVFoundation/CSimpleCrypt>

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>

#ifdef Q_OS_WIN
#include <fcntl.h>
#include <io.h>
#endif

namespace {

enum ExitCode { Success = 0, Failure = 1, UsageError = 2 };

const char Usage[] =
    "Usage:\n"
    "  zvcrypt encrypt [--key KEY] [TEXT...]      encipher each TEXT, or each line of standard input\n"
    "  zvcrypt decrypt [--key KEY] [TEXT...]      decipher each TEXT, or each line of standard input\n"
    "  zvcrypt encrypt-links [--key KEY] [FILE]   encipher the text of every <url> element of a plain link file\n"
    "  zvcrypt decrypt-links [--key KEY] [FILE]   the reverse\n"
    "\n"
    "KEY is a 64-bit number in decimal or 0x hex; without it the key built into this\n"
    "ZVCore is used. FILE \"-\" or no FILE reads standard input. Results go to standard\n"
    "output, one per line for encrypt and decrypt, and only when every value succeeds.\n"
    "Put -- before a TEXT that begins with a dash.\n"
    "Exit status: 0 on success, 1 when a value or file cannot be converted, 2 on a usage error.\n";

// Everything goes out as UTF-8 in a single write, so that a failure leaves standard
// output empty rather than half written.
void writeTo(FILE* stream, const QByteArray& bytes)
{
    if (!bytes.isEmpty())
        std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

void printError(const QString& message)
{
    writeTo(stderr, QByteArray("zvcrypt: ") + message.toUtf8() + '\n');
}

int usageError(const QString& message)
{
    printError(message);
    writeTo(stderr, QByteArray("\n") + Usage);
    return UsageError;
}

bool readAll(const QString& path, QByteArray* data, QString* error)
{
    if (path == QLatin1String("-")) {
        // The C library's own reading: on Windows the end of a pipe is a broken pipe,
        // which QFile over stdin reports as an error, while the C library takes it for
        // the end of the input it is.
        data->clear();
        char buffer[65536];
        for (;;) {
            const size_t got = std::fread(buffer, 1, sizeof buffer, stdin);
            data->append(buffer, int(got));
            if (got < sizeof buffer)
                break;
        }
        if (std::ferror(stdin)) {
            *error = QString::fromLocal8Bit(std::strerror(errno));
            return false;
        }
        return true;
    }

    const QFileInfo info(path);
    if (!info.exists()) {
        *error = QStringLiteral("no such file");
        return false;
    }
    if (info.isDir()) {
        *error = QStringLiteral("is a directory");
        return false;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = file.errorString();
        return false;
    }
    *data = file.readAll();
    if (file.error() != QFile::NoError) {
        *error = file.errorString();
        return false;
    }
    return true;
}

int runTexts(const QStringList& texts, const CSimpleCrypt& crypt, ZVCrypt::Direction direction)
{
    QStringList inputs = texts;
    bool fromLines = false;
    if (inputs.isEmpty()) {
        QByteArray data;
        QString error;
        if (!readAll(QStringLiteral("-"), &data, &error)) {
            printError(QStringLiteral("cannot read standard input: ") + error);
            return Failure;
        }
        QString text;
        if (!ZVCrypt::decodeUtf8(data, &text)) {
            printError(QStringLiteral("standard input is not UTF-8 text"));
            return Failure;
        }
        inputs = ZVCrypt::splitLines(text);
        fromLines = true;
    }

    const ZVCrypt::TextResult result = ZVCrypt::transformTexts(inputs, crypt, direction);
    if (!result.ok()) {
        const QString position = fromLines ? QStringLiteral("line %1") : QStringLiteral("argument %1");
        printError(position.arg(result.failedIndex + 1) + QLatin1Char(' ') + result.reason);
        return Failure;
    }

    QByteArray out;
    for (const QString& value : result.values)
        out += value.toUtf8() + '\n';
    writeTo(stdout, out);
    return Success;
}

int runLinkFile(const QString& path, const CSimpleCrypt& crypt, ZVCrypt::Direction direction)
{
    const QString name = path == QLatin1String("-") ? QStringLiteral("standard input") : path;
    QByteArray data;
    QString error;
    if (!readAll(path, &data, &error)) {
        printError(name + QStringLiteral(": ") + error);
        return Failure;
    }
    if (data.trimmed().isEmpty()) {
        printError(name + QStringLiteral(": empty, not a link file"));
        return Failure;
    }

    const ZVCrypt::LinkFileResult result = ZVCrypt::transformLinkFile(data, crypt, direction);
    if (!result.ok) {
        printError(name + QStringLiteral(": ") + result.error);
        return Failure;
    }
    writeTo(stdout, result.document);
    return Success;
}

} // namespace

int main(int argc, char* argv[])
{
#ifdef Q_OS_WIN
    // The bytes a link file or a value is read and written with are the same on every
    // platform: no CR is added before each line feed, nor taken away.
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
#endif
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("zvcrypt"));

    const QStringList args = QCoreApplication::arguments().mid(1);
    if (args.isEmpty())
        return usageError(QStringLiteral("no command given"));

    const QString command = args.first();
    if (command == QLatin1String("--help") || command == QLatin1String("-h")
        || command == QLatin1String("help")) {
        writeTo(stdout, Usage);
        return Success;
    }

    const bool textCommand = command == QLatin1String("encrypt") || command == QLatin1String("decrypt");
    const bool linkCommand = command == QLatin1String("encrypt-links") || command == QLatin1String("decrypt-links");
    if (!textCommand && !linkCommand)
        return usageError(QStringLiteral("unknown command \"%1\"").arg(command));
    const ZVCrypt::Direction direction = command.startsWith(QLatin1String("encrypt"))
        ? ZVCrypt::Direction::Encipher
        : ZVCrypt::Direction::Decipher;

    QString keyText;
    bool keyGiven = false;
    QStringList operands;
    bool optionsEnded = false;
    for (int i = 1; i < args.size(); ++i) {
        const QString& arg = args.at(i);
        if (optionsEnded || arg == QLatin1String("-") || !arg.startsWith(QLatin1Char('-'))) {
            operands.append(arg);
            continue;
        }
        if (arg == QLatin1String("--")) {
            optionsEnded = true;
        } else if (arg == QLatin1String("--help") || arg == QLatin1String("-h")) {
            writeTo(stdout, Usage);
            return Success;
        } else if (arg == QLatin1String("--key") || arg.startsWith(QLatin1String("--key="))) {
            // Two keys on one command line are more likely a mistake than an override.
            if (keyGiven)
                return usageError(QStringLiteral("--key given more than once"));
            if (arg == QLatin1String("--key")) {
                if (i + 1 >= args.size())
                    return usageError(QStringLiteral("--key needs a value"));
                keyText = args.at(++i);
            } else {
                keyText = arg.mid(int(qstrlen("--key=")));
            }
            keyGiven = true;
        } else {
            return usageError(QStringLiteral("unknown option \"%1\"").arg(arg));
        }
    }

    quint64 key = ZVCORE_LINK_CIPHER_KEY;
    if (keyGiven && !ZVCrypt::parseKey(keyText, &key)) {
        return usageError(QStringLiteral("invalid key \"%1\": expected a decimal number or 0x "
                                         "and at most 16 hex digits, within 64 bits")
                              .arg(keyText));
    }
    const CSimpleCrypt crypt(key);

    if (textCommand)
        return runTexts(operands, crypt, direction);

    if (operands.size() > 1)
        return usageError(QStringLiteral("%1 takes at most one FILE").arg(command));
    return runLinkFile(operands.isEmpty() ? QStringLiteral("-") : operands.first(), crypt, direction);
}
