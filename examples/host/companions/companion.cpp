// The demo's two companion programs, built from this one file: "Feedback" (user feedback
// and crash reports) and "appAutoUpdate" (the updater). They send nothing and update
// nothing; they show what the frame started them with, so that a developer can watch the
// command lines the frame builds.
//
// Every start is also written:
//   - as one line on standard error: "<program>: started with <arguments>";
//   - when FOLDERLENS_COMPANION_LOG names a file, as one JSON line appended to it:
//     {"program":"Feedback","arguments":[...],"pid":1234}
//
// The updater's silent check ("--silent=true") shows no window, as a real silent check
// would show none when there is nothing new; neither program shows one on a platform
// nobody can see (offscreen).
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTextStream>
#include <QtGui/QGuiApplication>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>
#include <QtWidgets/QWidget>

#ifndef FOLDERLENS_COMPANION_NAME
#error "FOLDERLENS_COMPANION_NAME must name the program"
#endif

namespace {

const QString kProgram = QStringLiteral(FOLDERLENS_COMPANION_NAME);

void record(const QStringList& arguments)
{
    QTextStream(stderr) << kProgram << ": started with "
                        << (arguments.isEmpty() ? QStringLiteral("no arguments")
                                                : QLatin1Char('"') + arguments.join(QStringLiteral("\" \"")) + QLatin1Char('"'))
                        << "\n";

    const QByteArray log = qgetenv("FOLDERLENS_COMPANION_LOG");
    if (log.isEmpty())
        return;
    QJsonObject line;
    line.insert(QStringLiteral("program"), kProgram);
    line.insert(QStringLiteral("arguments"), QJsonArray::fromStringList(arguments));
    line.insert(QStringLiteral("pid"), qint64(QCoreApplication::applicationPid()));
    const QByteArray bytes = QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
    // One unbuffered append: lines of programs started at the same time never interleave.
    QFile file(QFile::decodeName(log));
    if (file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
        file.write(bytes);
}

QLineEdit* field(const QString& text, bool secret = false)
{
    auto* edit = new QLineEdit(text);
    edit->setReadOnly(true);
    if (secret)
        edit->setEchoMode(QLineEdit::Password);
    if (text.isEmpty())
        edit->setPlaceholderText(QStringLiteral("(empty)"));
    edit->setMinimumWidth(380);
    return edit;
}

// The feedback program: receiving address, host program, user's address, sending account,
// its password, and "0" for a crash report or "1" for user feedback.
QWidget* feedbackWindow(const QStringList& arguments)
{
    const auto at = [&arguments](int i) { return i < arguments.size() ? arguments.at(i) : QString(); };
    const bool crash = at(5) == QLatin1String("0");

    auto* window = new QWidget;
    window->setWindowTitle(crash ? QStringLiteral("Feedback - crash report") : QStringLiteral("Feedback"));
    auto* layout = new QVBoxLayout(window);
    auto* heading = new QLabel(crash ? QStringLiteral("The program stopped unexpectedly. A report would be sent to:")
                                     : QStringLiteral("Tell us what you think. Your message would be sent to:"));
    heading->setWordWrap(true);
    layout->addWidget(heading);

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Receiving address"), field(at(0)));
    form->addRow(QStringLiteral("Program"), field(at(1)));
    form->addRow(QStringLiteral("Your address"), field(at(2)));
    form->addRow(QStringLiteral("Sending account"), field(at(3)));
    form->addRow(QStringLiteral("Its password"), field(at(4), true));
    form->addRow(QStringLiteral("Kind"), field(crash ? QStringLiteral("crash report (\"0\")")
                                                      : QStringLiteral("user feedback (\"1\")")));
    layout->addLayout(form);

    auto* message = new QPlainTextEdit;
    message->setPlaceholderText(QStringLiteral("Your message"));
    layout->addWidget(message);

    auto* note = new QLabel(QStringLiteral("This sample sends nothing: it shows the %1 arguments it was started with.")
                                .arg(arguments.size()));
    note->setWordWrap(true);
    layout->addWidget(note);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    QObject::connect(buttons, &QDialogButtonBox::rejected, window, &QWidget::close);
    layout->addWidget(buttons);
    return window;
}

// The updater: the host's own arguments, then the server from "--updateURL=".
QWidget* updaterWindow(const QStringList& arguments)
{
    QString server;
    QStringList own;
    for (const QString& argument : arguments) {
        if (argument.startsWith(QLatin1String("--updateURL=")))
            server = argument.mid(int(qstrlen("--updateURL=")));
        else
            own << argument;
    }

    auto* window = new QWidget;
    window->setWindowTitle(QStringLiteral("Check for updates"));
    auto* layout = new QVBoxLayout(window);
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Update server"), field(server));
    form->addRow(QStringLiteral("Product arguments"), field(own.join(QLatin1Char(' '))));
    layout->addLayout(form);
    auto* note = new QLabel(QStringLiteral("This sample checks nothing: it shows the %1 arguments it was started with.")
                                .arg(arguments.size()));
    note->setWordWrap(true);
    layout->addWidget(note);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    QObject::connect(buttons, &QDialogButtonBox::rejected, window, &QWidget::close);
    layout->addWidget(buttons);
    return window;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(kProgram);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    record(arguments);

    const bool silent = arguments.contains(QStringLiteral("--silent=true"));
    if (silent || QGuiApplication::platformName() == QLatin1String("offscreen"))
        return 0;

    QWidget* window = kProgram == QLatin1String("Feedback") ? feedbackWindow(arguments) : updaterWindow(arguments);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->show();
    return app.exec();
}
