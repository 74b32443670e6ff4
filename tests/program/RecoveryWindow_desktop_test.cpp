// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DesktopSession.h"
#include "FileTree.h"
#include "LapsaProcess.h"
#include "Settling.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTest>
#include <QUuid>

#include <algorithm>
#include <functional>
#include <optional>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

const QString recoveryFolder = u".local/share/Lapsa/Recovery"_s;
/// Seen from the window's top left corner: the button "Put back" of its first row.
constexpr QPoint firstPutBack(430, 95);
constexpr QSize extent(520, 420);
constexpr qint64 day = 24LL * 60 * 60;

} // namespace

/// The Recovery window of the whole program, by mouse and by keys, on a real X server with a window manager.
class RecoveryWindowDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void init()
    {
        m_desktop.emplace();
        QJsonArray records;
        for (const QString& name : {u"old.txt"_s, u"middle.txt"_s, u"new.txt"_s}) {
            m_desktop->home().makeFile(recoveryFolder + u'/' + name, name.toUtf8());
            const QDateTime deletedAt = QDateTime::currentDateTimeUtc().addSecs(-100 + 10 * records.size());
            records.push_back(QJsonObject{
                {u"id"_s, QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper()},
                {u"originalPath"_s, m_desktop->home().path(u"Downloads/"_s + name)},
                {u"recoveryPath"_s, m_desktop->home().path(recoveryFolder + u'/' + name)},
                {u"displayName"_s, name},
                {u"deletedAt"_s, deletedAt.toString(Qt::ISODate)},
                {u"purgeAfter"_s, deletedAt.addSecs(day).toString(Qt::ISODate)},
            });
        }
        m_desktop->home().writeDataFile(u"state.json"_s, "[]\n");
        m_desktop->home().writeDataFile(u"recovery.json"_s, QJsonDocument(records).toJson());
        m_lapsa.emplace();
        // The splash would get the clicks.
        QVERIFY(succeeds([] { return VirtualDisplay::windowOfClass(u"lapsa"_s); }));
        QVERIFY(comesTrue([] { return !VirtualDisplay::windowOfClass(u"lapsa"_s); }));
    }

    void cleanup()
    {
        m_lapsa.reset();
        m_desktop.reset();
    }

    void nothingOpensByItself() { QVERIFY(!isOpen()); }

    void aClickPutsAFileBack()
    {
        open();

        click(firstPutBack);

        QVERIFY(succeeds([this] { return contentOf(back(u"new.txt"_s)) == "new.txt"; }));
        QVERIFY(succeeds([this] { return storedList(m_desktop->home(), u"recovery.json"_s).size() == 2; }));
        QVERIFY(!QFile::exists(back(u"middle.txt"_s)));
    }

    void keysPutBackAndDelete()
    {
        open();

        VirtualDisplay::press(u"Down"_s);
        VirtualDisplay::press(u"shift+Down"_s);
        VirtualDisplay::press(u"Return"_s);
        QVERIFY(succeeds([this] { return QDir(m_desktop->home().path(u"Downloads"_s)).count() == 4; }));

        pressUntil(u"Delete"_s, &RecoveryWindowDesktopTest::asks);
        QVERIFY(comesTrue(&RecoveryWindowDesktopTest::asks));
        VirtualDisplay::press(u"Escape"_s);
        QVERIFY(succeeds([] { return !asks(); }));
        QCOMPARE(m_desktop->home().names(recoveryFolder).size(), 1);

        pressUntil(u"Delete"_s, &RecoveryWindowDesktopTest::asks);
        QVERIFY(comesTrue(&RecoveryWindowDesktopTest::asks));
        VirtualDisplay::press(u"Tab"_s);
        VirtualDisplay::press(u"Return"_s);
        QVERIFY(succeeds([this] { return m_desktop->home().names(recoveryFolder).isEmpty(); }));

        pressUntil(u"Escape"_s, [] { return !isOpen(); });
    }

private:
    [[nodiscard]] static bool isOpen()
    {
        const QList<QRect> windows = VirtualDisplay::windowsOfClass(u"lapsa"_s);
        return std::ranges::find(windows, extent, &QRect::size) != windows.cend();
    }

    /// A real click at a point seen from the window's top left corner, inside its frame.
    static void click(const QPoint& point)
    {
        QCOMPARE(QProcess::execute(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--class"_s, u"lapsa"_s,
                                                  u"mousemove"_s, u"--window"_s, u"%1"_s, QString::number(point.x()),
                                                  QString::number(point.y()), u"click"_s, u"1"_s}),
                 0);
    }

    /// Whether the question before a deletion is open.
    [[nodiscard]] static bool asks() { return VirtualDisplay::windowsOfClass(u"lapsa"_s).size() == 2; }

    [[nodiscard]] QString back(const QString& name) const { return m_desktop->home().path(u"Downloads/"_s + name); }

    /// Again while a window manager moves the focus: a key may get lost then, and does no harm here.
    static void pressUntil(const QString& keys, const std::function<bool()>& seen)
    {
        QVERIFY(succeeds([&] {
            if (!seen()) {
                VirtualDisplay::press(keys);
            }
            return seen();
        }));
    }

    void open()
    {
        QProcess action;
        action.start(u"gapplication"_s, {u"action"_s, u"org.lapsa.Lapsa"_s, u"recovery"_s});
        QVERIFY(action.waitForFinished());
        QCOMPARE(action.exitCode(), 0);
        QVERIFY(comesTrue(&RecoveryWindowDesktopTest::isOpen));
    }

    std::optional<DesktopSession> m_desktop;
    std::optional<LapsaProcess> m_lapsa;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::RecoveryWindowDesktopTest)
#include "RecoveryWindow_desktop_test.moc"
