// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DataOfADay.h"
#include "DesktopSession.h"
#include "LapsaProcess.h"
#include "PathCalls.h"
#include "Settling.h"
#include "StackedWindows.h"

#include <QFile>
#include <QJsonArray>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <functional>
#include <optional>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 60'000;
const QByteArray dunstSettings = "[global]\n  mouse_left_click = do_action, close_current\n  origin = top-left\n"
                                 "  idle_threshold = 0\n  timeout = 0\n";

} // namespace

/// The thread that draws and answers waits for no disk of the user's: in a day of use, it makes no system call with a
/// path of the user's. Written down by a tracer.
class MainThreadDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void inADayOfUseTheMainThreadTouchesNoPathOfTheUsers()
    {
        m_desktop.startXfceTaskbar();
        const HelperProcess notifications(u"dunst"_s, {u"-conf"_s, home().makeFile(u"dunstrc"_s, dunstSettings)});
        QTRY_VERIFY_WITH_TIMEOUT(m_desktop.bus().hasOwner(u"org.freedesktop.Notifications"_s), patience);
        const QString trace = home().path(u"trace"_s);
        makeDataOfADay(home(), m_otherDisk);
        auto lapsa = LapsaProcess::startedBy(traceOfPaths(trace));
        const qint64 mainThread = lapsa.pid();

        useAll(lapsa);
        if (QTest::currentTestFailed()) {
            return;
        }

        QTRY_VERIFY_WITH_TIMEOUT(hasEnded(mainThread, linesOf(trace)), patience);
        QVERIFY(othersTouch(home().path(u"files/due.txt"_s), mainThread, linesOf(trace)));
        const QStringList touched = touchedBy(mainThread, linesOf(trace));
        for (const QString& call : touched) {
            qWarning("%s", qPrintable(call));
        }
        QVERIFY(touched.isEmpty());
    }

private:
    [[nodiscard]] const TemporaryHome& home() const { return m_desktop.home(); }

    [[nodiscard]] QString otherDisk(const QString& name) const { return m_otherDisk.filePath(name); }

    void useAll(LapsaProcess& lapsa)
    {
        for (const auto step :
             {&MainThreadDesktopTest::pass, &MainThreadDesktopTest::keep, &MainThreadDesktopTest::putBack,
              &MainThreadDesktopTest::open, &MainThreadDesktopTest::removeByHand, &MainThreadDesktopTest::undo,
              &MainThreadDesktopTest::choose, &MainThreadDesktopTest::show, &MainThreadDesktopTest::addSelection}) {
            (this->*step)();
            if (QTest::currentTestFailed()) {
                return;
            }
        }
        action(u"quit"_s);
        QCOMPARE(lapsa.exitCode(), 0);
    }

    /// What is due goes, what is new in the watched folder comes, and the old copy is purged.
    void pass()
    {
        const QString added = home().path(u"watched/new.zip"_s);
        QTRY_VERIFY_WITH_TIMEOUT(storedPaths(home()).contains(added), patience);
        QTRY_COMPARE_WITH_TIMEOUT(home().names(u".local/share/Lapsa/Recovery"_s).size(), qsizetype{2}, patience);
        QVERIFY(!QFile::exists(home().path(u"files/due.txt"_s)));
        QVERIFY(!QFile::exists(otherDisk(u"due.iso"_s)));
    }

    /// The warning about the file that goes soon.
    void keep()
    {
        const auto kept = [this] {
            const QJsonArray items = storedList(home(), u"state.json"_s);
            return std::ranges::any_of(items, [](const QJsonValue& item) { return item[u"locked"_s].toBool(); });
        };
        QVERIFY(succeeds([&kept] {
            if (const std::optional<QRect> bubble = VirtualDisplay::windowOfClass(u"Dunst"_s); bubble && !kept()) {
                VirtualDisplay::click(bubble->center());
            }
            return kept();
        }));
    }

    /// All that is in Recovery, with the keys of its window.
    void putBack()
    {
        const auto isOpen = [] { return windowTitled(u"Recovery"_s).has_value(); };
        action(u"recovery"_s);
        QVERIFY(succeeds([&] {
            if (isOpen()) {
                VirtualDisplay::press(u"Down"_s);
                VirtualDisplay::press(u"ctrl+a"_s);
                VirtualDisplay::press(u"Return"_s);
                constexpr int moving = 1000;
                std::ignore = QTest::qWaitFor([this] { return isEmptyRecovery(); }, moving);
            }
            return isEmptyRecovery();
        }));
        QVERIFY(QFile::exists(home().path(u"files/due.txt"_s)));
        QVERIFY(QFile::exists(otherDisk(u"due.iso"_s)));
        pressUntil(u"Escape"_s, [&isOpen] { return !isOpen(); });
    }

    [[nodiscard]] bool isEmptyRecovery() const { return home().names(u".local/share/Lapsa/Recovery"_s).isEmpty(); }

    /// A second start with files.
    void open()
    {
        const QString file = home().makeFile(u"files/opened.txt"_s);
        LapsaProcess second({file, home().path(u"files/no such file"_s)});
        QCOMPARE(second.exitCode(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(storedPaths(home()).contains(file), patience);
    }

    void show()
    {
        QVERIFY(comesTrue([this] { return m_desktop.trayIcon(); }));
        action(u"open-lapsa"_s);
        QVERIFY(comesTrue(&DesktopSession::lapsaPanel));
        action(u"preferences"_s);
        const auto windows = [] { return VirtualDisplay::windowsOfClass(u"lapsa"_s).size(); };
        QVERIFY(succeeds([&windows] { return windows() >= 2; }));
        action(u"open-data-folder"_s);
    }

    /// A click on the drop zone opens the dialog for files; nothing is chosen.
    void choose()
    {
        static constexpr QPoint dropZone(215, 150);
        const auto chooser = [] { return windowTitled(u"Choose files or folders"_s).has_value(); };
        action(u"open-lapsa"_s);
        QVERIFY(comesTrue(&DesktopSession::lapsaPanel));
        QVERIFY(succeeds([&chooser] {
            if (!chooser()) {
                VirtualDisplay::click(DesktopSession::lapsaPanel()->topLeft() + dropZone);
            }
            return chooser();
        }));
        pressUntil(u"Escape"_s, [&chooser] { return !chooser(); });
    }

    /// With the keys, in the first row of the panel.
    void removeByHand()
    {
        const QStringList before = storedPaths(home());
        QVERIFY(succeeds([&] {
            action(u"open-lapsa"_s);
            VirtualDisplay::press(u"Down"_s);
            for (int stop = 0; stop < 4; ++stop) {
                VirtualDisplay::press(u"Tab"_s);
            }
            VirtualDisplay::press(u"Return"_s);
            constexpr int saving = 1000;
            std::ignore = QTest::qWaitFor([&] { return storedPaths(home()).size() < before.size(); }, saving);
            return storedPaths(home()).size() < before.size();
        }));
    }

    /// With the panel's key, after the removal by hand.
    void undo()
    {
        QVERIFY(succeeds([this] { return !isEmptyRecovery(); }));
        QVERIFY(succeeds([this] {
            if (!isEmptyRecovery()) {
                VirtualDisplay::press(u"ctrl+z"_s);
                constexpr int moving = 1000;
                std::ignore = QTest::qWaitFor([this] { return isEmptyRecovery(); }, moving);
            }
            return isEmptyRecovery();
        }));
    }

    void addSelection()
    {
        const HelperProcess fileManager(u"thunar"_s, {home().path(u"shown"_s)});
        const QString file = home().path(u"shown/chosen.txt"_s);
        QVERIFY(succeeds([&] {
            if (VirtualDisplay::windowOfClass(u"Thunar"_s)) {
                std::ignore = outputOf(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--class"_s, u"Thunar"_s,
                                                      u"windowactivate"_s, u"--sync"_s});
                VirtualDisplay::press(u"ctrl+a"_s);
                VirtualDisplay::press(u"super+shift+y"_s);
                constexpr int saving = 1000;
                std::ignore = QTest::qWaitFor([&] { return storedPaths(home()).contains(file); }, saving);
            }
            return storedPaths(home()).contains(file);
        }));
    }

    static void pressUntil(const QString& keys, const std::function<bool()>& seen)
    {
        QVERIFY(succeeds([&] {
            if (!seen()) {
                VirtualDisplay::press(keys);
            }
            return seen();
        }));
    }

    static void action(const QString& name)
    {
        std::ignore = outputOf(u"gdbus"_s, {u"call"_s, u"--session"_s, u"--dest"_s, u"org.lapsa.Lapsa"_s,
                                            u"--object-path"_s, u"/org/lapsa/Lapsa"_s, u"--method"_s,
                                            u"org.freedesktop.Application.ActivateAction"_s, name, u"[]"_s, u"{}"_s});
    }

    /// What the thread touched beside Lapsa's own files, the toolkit's and the desktop's, each once.
    [[nodiscard]] QStringList touchedBy(qint64 thread, const QStringList& lines) const
    {
        QStringList touched;
        for (const QString& line : lines) {
            const std::optional<PathCall> call = pathCallOf(line);
            if (!call || call->thread != thread) {
                continue;
            }
            for (const QString& path : call->paths) {
                const QString entry = call->name + u' ' + path;
                if (!isOwn(path) && !isOfOthers(path) && !touched.contains(entry)) {
                    touched.push_back(entry);
                }
            }
        }
        return touched;
    }

    /// Lapsa's own files, and the folders above them. Where those hang, Lapsa cannot work. The copies in Recovery are
    /// the user's.
    [[nodiscard]] bool isOwn(const QString& path) const
    {
        const QStringList own{home().dataPath(), home().path(u".local/state/Lapsa"_s), LapsaProcess::program()};
        const bool isAbove = std::ranges::any_of(
            own, [&path](const QString& folder) { return path == u"/" || isBelow(folder, {path}); });
        return isAbove || (isBelow(path, own) && !path.startsWith(home().dataPath(u"Recovery/"_s)));
    }

    /// The system; settings, caches and sockets of the session and the toolkit.
    [[nodiscard]] bool isOfOthers(const QString& path) const
    {
        static const QStringList ofSystem{u"/usr"_s,           u"/lib"_s,           u"/lib64"_s,
                                          u"/etc"_s,           u"/proc"_s,          u"/sys"_s,
                                          u"/run"_s,           u"/dev"_s,           u"/var/lib/dbus"_s,
                                          u"/tmp/.X11-unix"_s, u"/tmp/.ICE-unix"_s, u"/var/cache/fontconfig"_s};
        static const QStringList inHome{u".config"_s,
                                        u".cache"_s,
                                        u"run"_s,
                                        u".icons"_s,
                                        u".themes"_s,
                                        u".fonts"_s,
                                        u".Xauthority"_s,
                                        u".XCompose"_s,
                                        u".Xdefaults"_s,
                                        u".xkb"_s,
                                        u".fontconfig"_s,
                                        u".local/share/icons"_s,
                                        u".local/share/fonts"_s,
                                        u".local/share/mime"_s,
                                        u".local/share/applications"_s};
        // The toolkit looks for its plugins beside the program.
        if (path.startsWith(LapsaProcess::program().section(u'/', 0, -2)) || path == u"/..") {
            return true;
        }
        return (isBelow(path, ofSystem) && !isBelow(path, {m_otherDisk.path()})) ||
               std::ranges::any_of(inHome, [&](const QString& name) { return path.startsWith(home().path(name)); });
    }

    QTemporaryDir m_otherDisk{u"/dev/shm/lapsa-test-XXXXXX"_s};
    DesktopSession m_desktop;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::MainThreadDesktopTest)

#include "MainThread_desktop_test.moc"
