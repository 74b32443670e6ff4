// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DesktopSession.h"
#include "LapsaProcess.h"
#include "PathCalls.h"
#include "Settling.h"
#include "StackedWindows.h"

#include <QDateTime>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <optional>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 60'000;

QString inMinutes(int minutes)
{
    return QDateTime::currentDateTimeUtc().addSecs(qint64{minutes} * 60).toString(Qt::ISODate);
}

QJsonObject item(const QString& path, int minutes)
{
    static int count = 0;
    return {{u"addedAt"_s, inMinutes(-1000)},
            {u"displayName"_s, path.section(u'/', -1)},
            {u"expiresAt"_s, inMinutes(minutes)},
            {u"fiveMinuteWarningSent"_s, false},
            {u"id"_s, u"00000000-0000-4000-8000-%1"_s.arg(++count, 12, 10, QChar(u'0'))},
            {u"locked"_s, false},
            {u"path"_s, path}};
}

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
        const HelperProcess notifications(
            u"dunst"_s,
            {u"-conf"_s, home().makeFile(u"dunstrc"_s, "[global]\n  mouse_left_click = do_action, close_current\n"
                                                       "  origin = top-left\n  idle_threshold = 0\n"
                                                       "  timeout = 0\n")});
        QTRY_VERIFY_WITH_TIMEOUT(m_desktop.bus().hasOwner(u"org.freedesktop.Notifications"_s), patience);
        const QString trace = home().path(u"trace"_s);
        fillHome();
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

    /// Files that are due, nearly due and far from it, here and on another disk; a watched folder; a copy in Recovery
    /// whose time is over.
    void fillHome() const
    {
        const QString picture = home().makeFile(u"files/picture.png"_s);
        QVERIFY(QImage(300, 300, QImage::Format_RGB32).save(picture));
        QFile other(otherDisk(u"due.iso"_s));
        QVERIFY(other.open(QIODevice::WriteOnly) && other.write(QByteArray(100'000, 'x')) > 0);
        home().makeFile(u"files/folder/inside.txt"_s);
        home().makeFile(u"watched/new.zip"_s);
        home().makeFile(u"shown/chosen.txt"_s);
        writeList(u"state.json"_s,
                  {item(home().makeFile(u"files/due.txt"_s), -1), item(other.fileName(), -1),
                   item(home().makeFile(u"files/soon.txt"_s), 3), item(picture, 1000),
                   item(home().path(u"files/folder"_s), 2000), item(home().path(u"files/gone.txt"_s), 3000)});
        home().writeDataFile(u"Recovery/old.txt"_s, "old\n");
        writeList(u"recovery.json"_s, {QJsonObject{{u"deletedAt"_s, inMinutes(-2000)},
                                                   {u"displayName"_s, u"old.txt"_s},
                                                   {u"id"_s, u"00000000-0000-4000-8000-00000000abcd"_s},
                                                   {u"originalPath"_s, home().path(u"files/old.txt"_s)},
                                                   {u"purgeAfter"_s, inMinutes(-1)},
                                                   {u"recoveryPath"_s, home().dataPath(u"Recovery/old.txt"_s)}}});
        home().writeDataFile(u"settings.json"_s, QJsonDocument(settings()).toJson());
    }

    [[nodiscard]] QJsonObject settings() const
    {
        const QJsonObject rule{{u"applyFileTypeRules"_s, true},
                               {u"createdAt"_s, inMinutes(-2000)},
                               {u"enabled"_s, true},
                               {u"folderPath"_s, home().path(u"watched"_s)},
                               {u"id"_s, u"00000000-0000-4000-8000-000000000002"_s},
                               {u"includeExistingFiles"_s, true},
                               {u"lastScanAt"_s, u"0001-01-01T00:00:00Z"_s},
                               {u"lifespanMinutes"_s, 10080}};
        return {{u"autoCleanFolders"_s, QJsonArray{rule}},
                {u"defaultExpirationMinutes"_s, 120},
                {u"enableExpiryNotifications"_s, true},
                {u"fileTypeRules"_s, QJsonArray()},
                {u"keepPanelOpen"_s, true},
                {u"notifyBeforeMinutes"_s, 5},
                {u"pauseAllCountdowns"_s, false},
                {u"recoveryRetentionHours"_s, 24},
                {u"theme"_s, u"dark"_s},
                {u"useRecoveryWindow"_s, true},
                {u"useTrash"_s, false}};
    }

    void writeList(const QString& name, const QJsonArray& list) const
    {
        home().writeDataFile(name, QJsonDocument(list).toJson());
    }

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
        const auto isOpen = [] {
            constexpr QSize extent(520, 420);
            const QList<QRect> windows = VirtualDisplay::windowsOfClass(u"lapsa"_s);
            return std::ranges::find(windows, extent, &QRect::size) != windows.cend();
        };
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
        QVERIFY(succeeds([&isOpen] {
            if (isOpen()) {
                VirtualDisplay::press(u"Escape"_s);
            }
            return !isOpen();
        }));
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
        VirtualDisplay::press(u"Down"_s);
        VirtualDisplay::press(u"Up"_s);
        QVERIFY(succeeds([&chooser] {
            if (chooser()) {
                VirtualDisplay::press(u"Escape"_s);
            }
            return !chooser();
        }));
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
