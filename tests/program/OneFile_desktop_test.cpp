// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DesktopSession.h"
#include "LapsaProcess.h"
#include "Settling.h"

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <optional>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 60'000;
/// From the corner of the panel to the middle of the first row's lock.
constexpr QPoint lockOfFirstRow(307, 299);

QString inMinutes(int minutes)
{
    return QDateTime::currentDateTimeUtc().addSecs(qint64{minutes} * 60).toString(Qt::ISODate);
}

} // namespace

/// The road of one file through the whole program, on a desktop of real parts: a panel with a tray, a window manager, a
/// file manager and a notification daemon. The time is turned forward by editing the files between two starts.
class OneFileDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void init() { m_desktop.emplace(); }

    void cleanup() { m_desktop.reset(); }

    void fromTheFileManagerToItsEnd()
    {
        desktop().startXfceTaskbar();
        const HelperProcess daemon = notificationDaemon(desktop());
        const QString file = desktop().home().makeFile(u"shown/report.zip"_s, "the report\n");

        for (const auto step :
             {&OneFileDesktopTest::selectedItIsAddedByTheHotKey, &OneFileDesktopTest::nearlyOverItIsLockedByItsWarning,
              &OneFileDesktopTest::overButLockedItStaysUntilUnlocked, &OneFileDesktopTest::overItIsParked,
              &OneFileDesktopTest::parkedItGoesAfterItsTime}) {
            (this->*step)(file);
            if (QTest::currentTestFailed()) {
                return;
            }
        }
    }

private:
    [[nodiscard]] DesktopSession& desktop() { return *m_desktop; }

    [[nodiscard]] QString parked() { return desktop().home().dataPath(u"Recovery/report.zip"_s); }

    /// Selected in the file manager, and put on countdown by the hot key.
    void selectedItIsAddedByTheHotKey(const QString& file)
    {
        LapsaProcess lapsa;
        QVERIFY(comesTrue([&] { return desktop().trayIcon(); }));
        const HelperProcess fileManager(u"thunar"_s, {desktop().home().path(u"shown"_s)});
        QVERIFY(succeeds([&] { return addedFromFileManager(desktop(), file); }));
        QVERIFY(comesTrue(&DesktopSession::lapsaPanel));
        QCOMPARE(lifespan(desktop()), 7 * 24 * 3600);
        QCOMPARE(lapsa.terminate(), 0);
        QCOMPARE(lapsa.standardError(), QByteArray());
    }

    /// Nearly over: the warning comes, and a click on it keeps the file.
    void nearlyOverItIsLockedByItsWarning(const QString& /*file*/)
    {
        editItem(desktop(), u"expiresAt"_s, inMinutes(3));
        LapsaProcess lapsa;
        QVERIFY(succeeds([&] { return lockedByTheWarning(desktop()); }));
        QVERIFY(comesTrue(&DesktopSession::lapsaPanel));
        QCOMPARE(lapsa.terminate(), 0);
    }

    /// Over, but locked: it stays, until the row's button unlocks it.
    void overButLockedItStaysUntilUnlocked(const QString& file)
    {
        editItem(desktop(), u"expiresAt"_s, inMinutes(-1));
        LapsaProcess lapsa;
        QVERIFY(comesTrue([&] { return desktop().trayIcon(); }));
        VirtualDisplay::click(desktop().trayIcon()->center());
        QVERIFY(comesTrue(&DesktopSession::lapsaPanel));
        QVERIFY(QFile::exists(file));
        QVERIFY(succeeds([&] { return unlockedInThePanel(desktop()); }));
        QCOMPARE(lapsa.terminate(), 0);
    }

    /// Over, and not locked any more: the next pass parks it.
    void overItIsParked(const QString& file)
    {
        editItem(desktop(), u"expiresAt"_s, inMinutes(-1));
        LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(parked()), patience);
        QVERIFY(!QFile::exists(file));
        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(desktop().home()), QStringList(), patience);
        QCOMPARE(lapsa.terminate(), 0);
    }

    /// Its time in Recovery is over.
    void parkedItGoesAfterItsTime(const QString& file)
    {
        QJsonArray records = storedList(desktop().home(), u"recovery.json"_s);
        QCOMPARE(records.size(), 1);
        QCOMPARE(records[0][u"originalPath"_s].toString(), file);
        QJsonObject record = records[0].toObject();
        record[u"purgeAfter"_s] = inMinutes(-1);
        records[0] = record;
        desktop().home().writeDataFile(u"recovery.json"_s, QJsonDocument(records).toJson());
        {
            LapsaProcess lapsa;
            QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(parked()), patience);
            QCOMPARE(lapsa.terminate(), 0);
            QCOMPARE(lapsa.standardError(), QByteArray());
        }
        QCOMPARE(storedList(desktop().home(), u"recovery.json"_s).size(), 0);
    }

    static HelperProcess notificationDaemon(const DesktopSession& desktop)
    {
        const QString settings = desktop.home().makeFile(
            u"dunstrc"_s, "[global]\n  mouse_left_click = do_action, close_current\n  origin = top-left\n"
                          "  idle_threshold = 0\n  timeout = 0\n");
        return HelperProcess(u"dunst"_s, {u"-conf"_s, settings});
    }

    static QJsonObject item(const DesktopSession& desktop)
    {
        return storedList(desktop.home(), u"state.json"_s)[0].toObject();
    }

    static void editItem(const DesktopSession& desktop, const QString& key, const QString& value)
    {
        QJsonObject edited = item(desktop);
        QVERIFY(edited.contains(key));
        edited[key] = value;
        desktop.home().writeDataFile(u"state.json"_s, QJsonDocument(QJsonArray{edited}).toJson());
    }

    static qint64 lifespan(const DesktopSession& desktop)
    {
        const auto time = [&desktop](const QString& key) {
            return QDateTime::fromString(item(desktop)[key].toString(), Qt::ISODate);
        };
        return time(u"addedAt"_s).secsTo(time(u"expiresAt"_s));
    }

    /// One try, once the window of the file manager is there: all its files selected, and the hot key.
    static bool addedFromFileManager(const DesktopSession& desktop, const QString& file)
    {
        if (VirtualDisplay::windowOfClass(u"Thunar"_s) && storedPaths(desktop.home()).isEmpty()) {
            // It may be the panel that is in front, after a try that came too early.
            std::ignore = outputOf(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--class"_s, u"Thunar"_s,
                                                  u"windowactivate"_s, u"--sync"_s});
            VirtualDisplay::press(u"ctrl+a"_s);
            VirtualDisplay::press(u"super+shift+y"_s);
            constexpr int saving = 1000;
            std::ignore = QTest::qWaitFor([&] { return !storedPaths(desktop.home()).isEmpty(); }, saving);
        }
        return storedPaths(desktop.home()) == QStringList{file};
    }

    /// One try: a bubble may not take clicks while it still moves.
    static bool lockedByTheWarning(const DesktopSession& desktop)
    {
        if (const std::optional<QRect> bubble = VirtualDisplay::windowOfClass(u"Dunst"_s)) {
            VirtualDisplay::click(bubble->center());
        }
        return item(desktop)[u"locked"_s].toBool();
    }

    /// One try: a row takes clicks as soon as it is laid out. A second click would lock it again.
    static bool unlockedInThePanel(const DesktopSession& desktop)
    {
        const std::optional<QRect> panel = DesktopSession::lapsaPanel();
        if (panel && item(desktop)[u"locked"_s].toBool()) {
            VirtualDisplay::click(panel->topLeft() + lockOfFirstRow);
            constexpr int saving = 2000;
            std::ignore = QTest::qWaitFor([&] { return !item(desktop)[u"locked"_s].toBool(); }, saving);
        }
        return !item(desktop)[u"locked"_s].toBool();
    }

    std::optional<DesktopSession> m_desktop;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::OneFileDesktopTest)

#include "OneFile_desktop_test.moc"
