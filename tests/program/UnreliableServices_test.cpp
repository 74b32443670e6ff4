// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaProcess.h"
#include "PlayedService.h"
#include "SessionBus.h"
#include "TemporaryHome.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 60'000;
/// A pass comes every minute.
constexpr int passPatience = 150'000;
/// A call on the bus is given up after 25 seconds: what takes less did not wait for an answer.
constexpr int unhinderedPatience = 20'000;

const QString lapsaName = u"org.lapsa.Lapsa"_s;
const QString portal = u"org.freedesktop.portal.Desktop"_s;
const QString notifications = u"org.freedesktop.Notifications"_s;
const QString trayWatcher = u"org.kde.StatusNotifierWatcher"_s;
const QString fileManager = u"org.freedesktop.FileManager1"_s;

} // namespace

/// Services that take every call and answer none, for as long as they live.
class HangingServices final : public QDBusVirtualObject
{
    Q_OBJECT

public:
    HangingServices(const QString& address, const QStringList& names)
        : m_bus(QDBusConnection::connectToBus(address, u"hanging"_s))
    {
        m_bus.registerVirtualObject(u"/"_s, this, QDBusConnection::SubPath);
        for (const QString& name : names) {
            if (!m_bus.registerService(name)) {
                qFatal("the name is taken");
            }
        }
    }

    HangingServices(const HangingServices&) = delete;
    HangingServices& operator=(const HangingServices&) = delete;

    ~HangingServices() override { leaveBus(this, u"/"_s, m_bus); }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) override
    {
        calls.push_back(message.interface() + u'.' + message.member());
        // Taken, and kept for ever.
        message.setDelayedReply(true);
        return true;
    }

    QStringList calls;

private:
    QDBusConnection m_bus;
};

/// The program as a whole beside services of the session that die or hang.
class UnreliableServicesTest final : public QObject
{
    Q_OBJECT

private slots:

    void init()
    {
        m_home.emplace();
        m_bus.emplace();
    }

    void cleanup()
    {
        m_bus.reset();
        m_home.reset();
    }

    void aBusThatDiesChangesNothingButTheServices()
    {
        const QString due = m_home->makeFile(u"due.txt"_s);
        const QString warned = m_home->makeFile(u"warned.txt"_s);
        // The first is due, and the second is to be warned about, in the second pass: then the bus is gone.
        constexpr int afterTheFirstPass = 50;
        constexpr int leadSeconds = 300;
        store({{due, afterTheFirstPass}, {warned, leadSeconds + afterTheFirstPass}});
        LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(m_bus->hasOwner(lapsaName), patience);
        // Its handlers stand: a second start is answered.
        QCOMPARE(LapsaProcess().exitCode(), 0);
        QVERIFY(QFile::exists(due));

        m_bus->kill();

        QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(due), passPatience);
        QVERIFY(lapsa.running());
        QCOMPARE(m_home->names(u".local/share/Lapsa/Recovery"_s), QStringList{u"due.txt"_s});
        QCOMPARE(lapsa.terminate(), 0);
        QCOMPARE(lapsa.standardError(), QByteArray());
        QCOMPARE(storedPaths(*m_home), QStringList{warned});
        QVERIFY(storedList(*m_home, u"state.json"_s)[0][u"fiveMinuteWarningSent"_s].toBool());
    }

    void afterTheDeathOfTheBusTheDataFolderIsStillHeld()
    {
        const QString file = m_home->makeFile(u"first.txt"_s);
        LapsaProcess lapsa({file});
        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(*m_home), QStringList{file}, patience);
        m_bus->kill();

        LapsaProcess second({m_home->makeFile(u"second.txt"_s)});

        QCOMPARE(second.exitCode(), 1);
        QCOMPARE(second.standardError().count('\n'), 1);
        QCOMPARE(lapsa.terminate(), 0);
        QCOMPARE(lapsa.standardError(), QByteArray());
        QCOMPARE(storedPaths(*m_home), QStringList{file});
    }

    void aServiceThatNeverAnswersHoldsNothingUp_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QString>("called");

        QTest::newRow("the settings portal") << QStringList{portal} << u"org.freedesktop.portal.Settings.ReadOne"_s;
        QTest::newRow("the notification daemon") << QStringList{notifications} << notifications + u".Notify"_s;
        QTest::newRow("the tray") << QStringList{trayWatcher} << trayWatcher + u".RegisterStatusNotifierItem"_s;
        QTest::newRow("all of them") << QStringList{portal, notifications, trayWatcher, fileManager}
                                     << notifications + u".Notify"_s;
    }

    void aServiceThatNeverAnswersHoldsNothingUp()
    {
        QFETCH(const QStringList, names);
        QFETCH(const QString, called);
        const HangingServices services(m_bus->address(), names);
        const QString due = m_home->makeFile(u"due.txt"_s);
        const QString warned = m_home->makeFile(u"warned.txt"_s);
        const QString handedOver = m_home->makeFile(u"handed.txt"_s);
        store({{due, -1}, {warned, 200}});

        QElapsedTimer timer;
        timer.start();
        LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(due), unhinderedPatience);
        QTRY_VERIFY_WITH_TIMEOUT(services.calls.contains(called), unhinderedPatience);
        LapsaProcess second({handedOver});
        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(*m_home), QStringList({warned, handedOver}), unhinderedPatience);

        QVERIFY(lapsa.running());
        QCOMPARE(second.exitCode(), 0);
        QCOMPARE(lapsa.terminate(), 0);
        QVERIFY2(timer.elapsed() < unhinderedPatience, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(lapsa.standardError(), QByteArray());
        QCOMPARE(m_home->names(u".local/share/Lapsa/Recovery"_s), QStringList{u"due.txt"_s});
    }

private:
    /// An item each, with so many seconds left.
    void store(const QList<std::pair<QString, int>>& files) const
    {
        const QDateTime now = QDateTime::currentDateTimeUtc();
        QJsonArray items;
        for (const auto& [path, seconds] : files) {
            items.push_back(QJsonObject{{u"id"_s, path},
                                        {u"path"_s, path},
                                        {u"displayName"_s, path.section(u'/', -1)},
                                        {u"addedAt"_s, now.toString(Qt::ISODate)},
                                        {u"expiresAt"_s, now.addSecs(seconds).toString(Qt::ISODate)},
                                        {u"locked"_s, false},
                                        {u"fiveMinuteWarningSent"_s, false}});
        }
        m_home->writeDataFile(u"state.json"_s, QJsonDocument(items).toJson());
    }

    std::optional<TemporaryHome> m_home;
    std::optional<SessionBus> m_bus;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::UnreliableServicesTest)
#include "UnreliableServices_test.moc"
