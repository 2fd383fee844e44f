// zvprobe's commands for hostile files, crash torture and writers killed mid-write.
//
//   longstrings:<n>         later reports show each string longer than <n> characters
//                           as "#<length>:<SHA-1 of its UTF-8, hex>"
//   peakmemory              the process's peak resident memory (VmHWM) and the
//                           sanitizer it was built with, if any
//   languagechoice          creates the language manager, which chooses and saves a language
//   cataloguesummary        load localconfig.json; the record count, first and last names
//   menusummary:<n>         a title menu view given <n> LanguageChange events: how many
//                           entries and actions it holds, the first and last keys
//   polish                  a styled label polished under the application's style sheet
//   torture:<how>           overflow-thread | overflow-qthread | overflow-raw |
//                           overflow-two | overflow-early | overflow-dlopen |
//                           two-threads-sync | double-free | double-free-large
//                           (overflow-early: the thread of "earlythread"; overflow-dlopen:
//                           a thread of a library loaded now)
//   earlythread             starts a thread that waits for torture:overflow-early
//   sigwaiter               blocks SIGRTMAX and starts a thread that waits for it with
//                           sigtimedwait; sigwaited: how many it received
//   threadstacks:<n>        the size of a new thread's alternate signal stack (0: none),
//                           and how many anonymous writable mappings of that size (256 KiB
//                           when none) /proc/self/maps lists before and after <n> threads
//                           were created and joined
//   crashallthreads:off     the application property "CrashHandleAllThreads" false (any
//                           other value: true), for a later crashhandle
//   langloop:<a>|<b>        CCommonModule::SetLanguage with <a>, <b>, <a>, ... until killed;
//                           a name "<text>*<n>" is <text> repeated <n> times
//   spoolloop:<tag>|<n>     CDataCollectionGA4::Send of "kill", <tag>, <i>, padding for
//                           i = 0, 1, ... until killed; the padding is (i % 7) * <n> "p"
//   spoolsend:<a>|<b>|...   CDataCollectionGA4::Send of the strings; reports the spool path
//   naiveloop:<a>|<b>       rewrites language/language in place (truncate, then write)
//                           with <a>, <b>, ... until killed: the writer the frame must not be
//
// The loops print "ready" once their first write is complete. One more loop runs before
// the application object exists, as the high-DPI decision does, and only as the first
// argument:
//
//   highdpiloop             EnableHighDPISupport with syncRatio and a window of 1100 x 760,
//                           then of 1300 x 1000, and so on until killed
#ifndef ZVCORE_TESTS_PROBE_HARDENING_H
#define ZVCORE_TESTS_PROBE_HARDENING_H

#include <QtCore/QJsonObject>
#include <QtCore/QString>

// \a object with long strings summarised, when longstrings asked for it.
QJsonObject summariseLongStrings(const QJsonObject& object);

// Runs the command when it is one of the above; false when it is not.
bool runHardeningCommand(const QString& verb, const QString& rest, bool* ok);

// Runs highdpiloop when it is the first argument (and then never returns).
void runHardeningLoopBeforeApplication(int argc, char** argv);

#endif // ZVCORE_TESTS_PROBE_HARDENING_H
