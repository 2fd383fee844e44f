// A language switch with the frame: set language (link file, the frame's and the host's
// translators, the saved choice, LanguageChange), the title menu rebuilt from its
// 50-entry link file, the open widgets retranslated and the old menu deleted. Against
// what a plain Qt program does: replace one QTranslator (remove the old one, load and
// install the new one) under the same host widgets, which retranslate likewise.
//
// The switch ends when every widget has its new texts; laying them out again and
// repainting them follows in the event loop, as after any change of text, and is not
// part of what is timed (the repaint benchmark measures painting).
#include "benchhost.h"
#include "hostform.h"
#include "zvbench.h"

#include <ZVCore/private/CCommonModule>
#include <ZVCore/private/CCustomMenu>
#include <ZVCore/private/CMenuView>
#include <ZVCore/private/CLanguageStore>
#include <ZVCore/private/ZVMainWindowTitle>

#include <QtCore/QDir>
#include <QtCore/QTranslator>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMainWindow>

#include <memory>

using ZVUIFramework::CCommonModule;
using ZVUIFramework::CLanguageStore;
using namespace ZVBench;

namespace {

const QString kLanguages[] = {QStringLiteral("German"), QStringLiteral("French")};

// What a switch leaves queued and belongs to it: the LanguageChange events for the
// top-level windows (the widgets retranslate on them), and the deferred deletion of
// the old menu.
void settle()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LanguageChange);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// The layout and the repaint the new texts cause, untimed.
void repaint()
{
    for (int i = 0; i < 3; ++i)
        QCoreApplication::processEvents();
}

bool waitExposed(QWidget* window)
{
    const qint64 deadline = monotonicNs() + 5000000000LL;
    while (!(window->windowHandle() && window->windowHandle()->isExposed())) {
        if (monotonicNs() > deadline)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    for (int i = 0; i < 5; ++i)
        QCoreApplication::processEvents();
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    prepareHostProcess();
    keepHeapWarm();
    QApplication app(argc, argv);
    initialiseFrame(app);
    const bool counting = underCallgrind();
    const QString name = QStringLiteral("language switch: translators, 50-entry title menu, widgets retranslated");
    progress(name);

    // The baseline first, before the frame's language manager exists: a plain window
    // with the same widgets, and one translator replaced per switch.
    const QString qmDir = CLanguageStore::GetInstance()->GetLanguageQmPath() + QDir::separator();
    Samples baseline;
    int next = 0;
    {
        QMainWindow plain;
        plain.setMenuWidget(new BareTitle);
        auto* form = new HostForm;
        plain.setCentralWidget(form);
        plain.resize(1000, 680);
        plain.show();
        waitExposed(&plain);
        std::unique_ptr<QTranslator> installed;
        const auto replaceTranslator = [&] {
            if (installed)
                QCoreApplication::removeTranslator(installed.get());
            auto translator = std::make_unique<QTranslator>();
            translator->load(qmDir + QStringLiteral("ZVCore") + QDir::separator() + QStringLiteral("ZVCore_")
                             + kLanguages[next++ % 2] + QStringLiteral(".qm"));
            QCoreApplication::installTranslator(translator.get());
            installed = std::move(translator);
            settle();
        };
        if (counting) {
            countInstructions(QStringLiteral("language.translator"), replaceTranslator, 3, repaint);
        } else {
            baseline = time(replaceTranslator, 41, 3, repaint);
            if (form->retranslations() < 40)
                progress(QStringLiteral("the plain window was not retranslated on every switch"));
        }
        if (installed)
            QCoreApplication::removeTranslator(installed.get());
    }
    settle();

    HostWindow window;
    window.show();
    waitExposed(&window);
    CCommonModule* languages = CCommonModule::GetInstance();
    auto* title = qobject_cast<ZVMainWindowTitle*>(window.GetTitleWidget());
    const auto switchLanguage = [&] {
        languages->SetLanguage(kLanguages[next++ % 2]);
        settle();
    };
    if (counting) {
        countInstructions(QStringLiteral("language.frame"), switchLanguage, 3, repaint);
        return 0;
    }
    const int before = window.form()->retranslations();
    const Samples frame = time(switchLanguage, 41, 3, repaint);
    const int entries = title && title->menuView() ? title->menuView()->entries().size() : 0;
    const int actions = title && title->menuView() && title->menuView()->menu()
        ? title->menuView()->menu()->actions().size()
        : 0;

    Row row;
    row.benchmark = name;
    row.value = frame.median();
    row.baseline = QStringLiteral("replacing one QTranslator, same widgets retranslated");
    row.baselineValue = baseline.median();
    row.goal = Goal::ValueAtMost;
    row.limit = 10.0;
    row.goalText = QStringLiteral("report; < 10 ms");
    row.runs = int(frame.ms.size());
    row.instructions = QStringLiteral("language.frame");
    row.baselineInstructions = QStringLiteral("language.translator");
    row.note = QStringLiteral("menu rebuilt with %1 entries (%2 actions incl. separators); host form retranslated %3 times in %4 switches")
                   .arg(entries)
                   .arg(actions)
                   .arg(window.form()->retranslations() - before)
                   .arg(frame.ms.size() + 3);
    emitRow(row);
    return 0;
}
