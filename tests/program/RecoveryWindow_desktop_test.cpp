// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DesktopSession.h"
#include "LapsaProcess.h"
#include "Settling.h"
#include "StackedWindows.h"

#include <QDateTime>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTest>
#include <QUuid>

#include <optional>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

const QString recoveryFolder = u".local/share/Lapsa/Recovery"_s;
constexpr qint64 day = 24LL * 60 * 60;

} // namespace

/// The Recovery window of the whole program, by its keys, on a real X server with a window manager.
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
        m_desktop->home().writeDataFile(u"recovery.json"_s, QJsonDocument(records).toJson());
        m_lapsa.emplace();
        QVERIFY(succeeds([this] { return m_desktop->bus().hasOwner(u"org.lapsa.Lapsa"_s); }));
    }

    void cleanup()
    {
        m_lapsa.reset();
        m_desktop.reset();
    }

    void nothingOpensByItself() { QVERIFY(!window()); }

    void keysPutBackAndDelete()
    {
        open();

        VirtualDisplay::press(u"Down"_s);
        VirtualDisplay::press(u"shift+Down"_s);
        VirtualDisplay::press(u"Return"_s);
        QVERIFY(succeeds([this] { return QDir(m_desktop->home().path(u"Downloads"_s)).count() == 4; }));

        VirtualDisplay::press(u"Delete"_s);
        const auto question = [this] { return windowTitled(u"Delete “%1” now?"_s.arg(leftOver())); };
        QVERIFY(comesTrue(question));
        VirtualDisplay::press(u"Escape"_s);
        QVERIFY(succeeds([&] { return !question(); }));
        QCOMPARE(m_desktop->home().names(recoveryFolder).size(), 1);

        VirtualDisplay::press(u"Delete"_s);
        QVERIFY(comesTrue(question));
        VirtualDisplay::press(u"Tab"_s);
        VirtualDisplay::press(u"Return"_s);
        QVERIFY(succeeds([this] { return m_desktop->home().names(recoveryFolder).isEmpty(); }));

        VirtualDisplay::press(u"Escape"_s);
        QVERIFY(succeeds([] { return !window(); }));
    }

private:
    [[nodiscard]] static std::optional<ManagedWindow> window() { return windowTitled(u"Recovery"_s); }

    [[nodiscard]] QString leftOver() const { return m_desktop->home().names(recoveryFolder).value(0); }

    void open()
    {
        // The splash would get the clicks.
        QVERIFY(succeeds([] { return VirtualDisplay::windowsOfClass(u"lapsa"_s).isEmpty(); }));
        QProcess action;
        action.start(u"gapplication"_s, {u"action"_s, u"org.lapsa.Lapsa"_s, u"recovery"_s});
        QVERIFY(action.waitForFinished());
        QCOMPARE(action.exitCode(), 0);
        QVERIFY(comesTrue([] { return window().has_value(); }));
    }

    std::optional<DesktopSession> m_desktop;
    std::optional<LapsaProcess> m_lapsa;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::RecoveryWindowDesktopTest)
#include "RecoveryWindow_desktop_test.moc"
