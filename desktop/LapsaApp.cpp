// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AppDelegate.h"
#include "AppPaths.h"
#include "DataFolderLock.h"
#include "DesktopFacilities.h"
#include "DisplayApplication.h"
#include "FileManagerSelection.h"
#include "FolderOwnership.h"
#include "FolderPicker.h"
#include "FreedesktopAppearance.h"
#include "FreedesktopMotionPreference.h"
#include "FreedesktopNotificationCentre.h"
#include "FreedesktopWorkspace.h"
#include "HangingMounts.h"
#include "HotKeys.h"
#include "IconThemes.h"
#include "LapsaInterface.h"
#include "LapsaStyle.h"
#include "LaunchArguments.h"
#include "ListService.h"
#include "Motion.h"
#include "PointerMonitor.h"
#include "PortalIdentity.h"
#include "ProgramIdentity.h"
#include "QtMainQueue.h"
#include "QtPasteboard.h"
#include "QuietMessages.h"
#include "SessionApplication.h"
#include "StatusItem.h"
#include "SystemClock.h"
#include "SystemLog.h"
#include "TerminationAtExit.h"
#include "TerminationSignals.h"
#include "ThemePalette.h"
#include "ThreadLanes.h"
#include "ToolkitTexts.h"
#include "WindowSystem.h"

#include <QApplication>
#include <QIcon>

#include <unistd.h>

#include <array>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <future>
#include <memory>
#include <optional>

namespace lapsa {

namespace {

using namespace Qt::StringLiterals;

const ProgramIdentity program{.id = u"org.lapsa.Lapsa"_s,
                              .name = u"Lapsa"_s,
                              .shortName = u"lapsa"_s,
                              .drawings = u":/lapsa"_s};

/// How long to wait for a previous process to end: it still has to save its files.
constexpr std::chrono::milliseconds predecessorPatience{2000};

constexpr std::chrono::milliseconds longestTelling{1000};

/// The arguments of the start, and the folder that relative paths are resolved against.
struct StartArguments
{
    QList<QByteArray> given;
    QByteArray workingFolder;
    /// The arguments as file URLs.
    QList<QUrl> files;
};

StartArguments startArguments(int argc, char** argv)
{
    StartArguments arguments;
    for (int i = 1; i < argc; ++i) {
        arguments.given.push_back(argv[i]);
    }
    std::array<char, PATH_MAX> folder{};
    if (::getcwd(folder.data(), folder.size()) != nullptr) {
        arguments.workingFolder = folder.data();
    }
    arguments.files = filesOfArguments(arguments.given, arguments.workingFolder);
    return arguments;
}

/// Tells a user who typed the command about the result. Starts by the desktop have no terminal and no reader.
std::future<void> tellWhatNamesNothing(const StartArguments& arguments)
{
    return ::isatty(STDERR_FILENO) == 0 ? std::future<void>()
                                        : logWhatNamesNothing(arguments.given, arguments.workingFolder);
}

/// How the process ends.
struct End
{
    int status = EXIT_SUCCESS;
    /// A disk may not respond to them. Then nothing that they use may be destroyed.
    bool threadsEnded = true;
};

/// The files are somebody else's now. The user still learns which arguments name nothing, if their disks respond.
End endAfterHandingOver(const StartArguments& arguments)
{
    const std::future<void> told = tellWhatNamesNothing(arguments);
    return {.threadsEnded = !told.valid() || told.wait_for(longestTelling) == std::future_status::ready};
}

/// Nothing can be shown without a display, but an application elsewhere in the session can take the files.
End handOverOnly(int argc, char** argv)
{
    const StartArguments given = startArguments(argc, argv);
    int arguments = 1;
    const QCoreApplication application(arguments, argv);
    SessionApplication session(program);
    if (session.handOver(given.files) == SessionApplication::Role::HandedOver) {
        return endAfterHandingOver(given);
    }
    systemLog(u"Lapsa cannot start: there is no display"_s);
    return {.status = EXIT_FAILURE};
}

/// What other programs of the session reach this one by.
struct SessionEnds
{
    SessionApplication& application;
    LapsaInterface& interface;
};

/// Runs the event loop until the program ends.
int runDelegate(const QApplication& application, AppDelegate& delegate, MainQueue& mainQueue,
                const SessionEnds& session, const QList<QUrl>& files)
{
    const TerminationSignals terminationSignals;
    QObject::connect(&terminationSignals, &TerminationSignals::received, &delegate, &AppDelegate::quit);
    QObject::connect(&application, &QApplication::commitDataRequest, &delegate, &AppDelegate::saveEverything,
                     Qt::DirectConnection);
    QObject::connect(&application, &QApplication::aboutToQuit, &delegate, &AppDelegate::applicationWillTerminate);

    delegate.applicationDidFinishLaunching();
    const TerminationAtExit terminationAtExit(delegate);
    if (!files.isEmpty()) {
        delegate.applicationOpen(files);
    }
    ListService listService(delegate.store(), mainQueue);
    session.interface.serve(listService);
    session.application.setHandlers(
        {.open = [&delegate](const QList<QUrl>& urls) { delegate.applicationOpen(urls); },
         .activate = [&delegate] { delegate.openPanel(); },
         .activateAction = [&delegate](const QString& name) { delegate.performAction(name); }});
    QuietMessages::startupDone();

    const int status = delegate.quitting() ? EXIT_SUCCESS : QApplication::exec();
    delegate.applicationWillTerminate();
    return status;
}

End runApplication(const QApplication& application, const SessionEnds& session, const QList<QUrl>& files)
{
    introduceToPortal(program.id);
    SystemClock clock;
    QtMainQueue mainQueue;
    HangingMounts hangingMounts(mainQueue);
    ThreadLanes lanes(mainQueue);
    lanes.onHanging([&hangingMounts](const QString& mountPoint) { hangingMounts.hangs(mountPoint); },
                    [&hangingMounts](const QString& mountPoint) { hangingMounts.isBack(mountPoint); });
    // The desktop's accent and scheme are read before our palette replaces the desktop's.
    FreedesktopAppearance appearance(
        [accent = accentOf(QApplication::palette())](ColorScheme scheme) { return themePalette(scheme, accent); },
        schemeOf(QApplication::palette()));
    const QString iconTheme = QIcon::themeName();
    useIconsFor(appearance.scheme(), iconTheme);
    QObject::connect(&appearance, &Appearance::schemeChanged, &application,
                     [iconTheme](ColorScheme scheme) { useIconsFor(scheme, iconTheme); });
    const FreedesktopMotionPreference motionPreference;
    motion::setAllowedByDesktop(motionPreference.animationsEnabled());
    QObject::connect(&motionPreference, &MotionPreference::animationsEnabledChanged, &application,
                     &motion::setAllowedByDesktop);
    FreedesktopWorkspace workspace;
    QtPasteboard pasteboard;
    FreedesktopNotificationCentre notificationCentre(program);
    ProgramIdentity inTray = program;
    inTray.iconThemes = ownIconThemes(program.id);
    const std::unique_ptr<StatusBar> statusBar = makeStatusBar(inTray);
    const std::unique_ptr<HotKeys> hotKeys = makeHotKeys();
    const std::unique_ptr<FileManagerSelection> fileManagerSelection = makeFileManagerSelection();
    const std::unique_ptr<FolderPicker> folderPicker = makeFolderPicker();
    const std::unique_ptr<WindowSystem> windowSystem = makeWindowSystem();
    const std::unique_ptr<PointerMonitor> pointer = makePointerMonitor();
    AppDelegate delegate({clock, mainQueue, lanes, appearance, workspace, pasteboard, notificationCentre, *statusBar,
                          *hotKeys, *fileManagerSelection, *folderPicker, *windowSystem, *pointer});

    const int status = runDelegate(application, delegate, mainQueue, session, files);
    return {.status = status, .threadsEnded = lanes.finish(std::chrono::milliseconds::zero())};
}

/// Why Lapsa cannot work in the data folder; empty if it can. Removes other users' access if they can only read it.
QString refusalOfDataFolder(const QString& folder)
{
    switch (fileSystem::ownershipOf(folder)) {
    case fileSystem::Ownership::SomebodyElses:
        return u"Lapsa cannot start: the data folder belongs to another user"_s;
    case fileSystem::Ownership::OthersMayWrite:
        return u"Lapsa cannot start: other users may write to the data folder"_s;
    case fileSystem::Ownership::Own:
        break;
    }
    fileSystem::makePrivate(folder);
    fileSystem::makePrivate(AppPaths::recoveryDirectory().toLocalFile());
    return {};
}

/// The exit status if another process is the application of this session; nothing if this one is.
std::optional<int> statusOfClaim(SessionApplication::Role role)
{
    switch (role) {
    case SessionApplication::Role::HandedOver:
        return EXIT_SUCCESS;
    case SessionApplication::Role::Unanswered:
        systemLog(u"Lapsa is running already, but does not answer"_s);
        return EXIT_FAILURE;
    case SessionApplication::Role::First:
    case SessionApplication::Role::NoBus:
        break;
    }
    return std::nullopt;
}

End runOnDataFolder(const QApplication& application, const SessionEnds& session, const StartArguments& given)
{
    const QString dataFolder = AppPaths::applicationSupportDirectory().toLocalFile();
    if (const QString refusal = refusalOfDataFolder(dataFolder); !refusal.isEmpty()) {
        systemLog(refusal);
        return {.status = EXIT_FAILURE};
    }
    const DataFolderLock lock(dataFolder, predecessorPatience);
    if (lock.takenByAnother()) {
        systemLog(u"Lapsa cannot start: another one works on the same data folder"_s);
        return {.status = EXIT_FAILURE};
    }
    const std::future<void> told = tellWhatNamesNothing(given); // nobody waits for it
    return runApplication(application, session, given.files);
}

End launch(int argc, char** argv)
{
    TerminationSignals::hold();
    QuietMessages::install();
    QCoreApplication::setApplicationName(program.name);
    if (!hasDisplay()) {
        return handOverOnly(argc, argv);
    }

    const StartArguments given = startArguments(argc, argv);
    // The toolkit has command-line options of its own; here every argument is a file.
    int arguments = 1;
    QGuiApplication::setDesktopFileName(program.id);
    QApplication::setStyle(new LapsaStyle);
    const auto application = makeDisplayApplication(arguments, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    ToolkitTexts toolkitTexts;
    QCoreApplication::installTranslator(&toolkitTexts);
    // Our own drawing if Lapsa runs without being installed, or the theme has none.
    QGuiApplication::setWindowIcon(
        QIcon::fromTheme(program.id, QIcon(u"%1/%2.svg"_s.arg(program.drawings, program.id))));

    SessionApplication session(program);
    LapsaInterface interface(session.busObject());
    if (const std::optional<int> status = statusOfClaim(session.claim(given.files))) {
        return *status == EXIT_SUCCESS ? endAfterHandingOver(given) : End{.status = *status};
    }
    return runOnDataFolder(*application, {session, interface}, given);
}

} // namespace

} // namespace lapsa

int main(int argc, char** argv)
{
    const lapsa::End end = lapsa::launch(argc, argv);
    if (!end.threadsEnded) {
        // Everything that others wait for has been released: the lock, the name on the bus, the display.
        std::_Exit(end.status);
    }
    return end.status;
}
