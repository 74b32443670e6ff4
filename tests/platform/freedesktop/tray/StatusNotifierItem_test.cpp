// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ExampleProgram.h"
#include "PlayedWatcher.h"
#include "ProcessFigures.h"
#include "SessionBus.h"
#include "StatusNotifierItem.h"
#include "TrayStatusItem.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QGuiApplication>
#include <QImage>
#include <QTest>

#include <limits>
#include <memory>
#include <optional>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 20'000;

} // namespace

/// The item towards a tray host, at the protocol. One process has one session bus, so that every test shares it.
class StatusNotifierItemTest final : public QObject
{
    Q_OBJECT

public:
    explicit StatusNotifierItemTest(const SessionBus& bus)
        : m_bus(bus)
    {}

private slots:

    static void initTestCase() { QVERIFY(QDBusConnection::sessionBus().isConnected()); }

    void itIsAnnouncedToAWatcherThatIsThere()
    {
        const PlayedWatcher watcher(bus());
        const StatusNotifierItem item(exampleProgram());

        QVERIFY(item.shown());
        QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, patience);
        QVERIFY(watcher.items.first().startsWith(u"org.kde.StatusNotifierItem-"_s));
    }

    void itIsAnnouncedToEveryWatcherThatComes()
    {
        const StatusNotifierItem item(exampleProgram());
        QVERIFY(!item.shown());
        for (int i = 0; i < 3; ++i) {
            const PlayedWatcher watcher(bus());
            QTRY_VERIFY_WITH_TIMEOUT(item.shown(), patience);
            QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, patience);
        }
        QTRY_VERIFY_WITH_TIMEOUT(!item.shown(), patience);
    }

    void itIsAnnouncedToAWatcherThatTheNamePassesTo()
    {
        auto first = std::make_unique<PlayedWatcher>(bus());
        const PlayedWatcher next(bus(), true, u"next tray host"_s);
        const StatusNotifierItem item(exampleProgram());
        QTRY_COMPARE_WITH_TIMEOUT(first->items.size(), 1, patience);
        QCOMPARE(next.items.size(), 0);

        first.reset();

        QTRY_COMPARE_WITH_TIMEOUT(next.items.size(), 1, patience);
        QVERIFY(item.shown());
    }

    void whatAWatcherDidNotAnswerShowsNothingAfterItsEnd()
    {
        const StatusNotifierItem item(exampleProgram());
        {
            const SilentWatcher watcher(bus());
            QTRY_VERIFY_WITH_TIMEOUT(watcher.wasAsked, patience);
        }
        // The bus tells of the end, and then answers in its place.
        QTRY_VERIFY_WITH_TIMEOUT(!bus().hasOwner(watcherName), patience);
        std::ignore = QDBusConnection::sessionBus().interface()->isServiceRegistered(watcherName).value();
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();

        QVERIFY(!item.shown());
    }

    void aHundredRestartsOfTheBarLeaveNothingBehind()
    {
        constexpr int restarts = 100;
        constexpr qint64 bytesOfNoise = 64 * 1024;
        const StatusNotifierItem item(exampleProgram());
        const auto restart = [this, &item] {
            const PlayedWatcher watcher(bus());
            QTRY_VERIFY_WITH_TIMEOUT(item.shown(), patience);
            QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, patience);
        };
        // The first ones bring every buffer to its size.
        for (int i = 0; i < restarts / 10; ++i) {
            restart();
        }
        QTRY_VERIFY_WITH_TIMEOUT(!item.shown(), patience);
        const ProcessFigures before = ProcessFigures::now();

        for (int i = 0; i < restarts; ++i) {
            restart();
        }
        QTRY_VERIFY_WITH_TIMEOUT(!item.shown(), patience);

        QTRY_COMPARE_WITH_TIMEOUT(ProcessFigures::now().descriptors, before.descriptors, patience);
        const qint64 growth = ProcessFigures::now().allocatedBytes - before.allocatedBytes;
        qInfo("%d restarts: %lld bytes more", restarts, growth);
        QVERIFY2(!ProcessFigures::memoryTells || growth <= bytesOfNoise, qPrintable(QString::number(growth)));
    }

    void aWatcherWithoutABarShowsNothingUntilOneComes()
    {
        PlayedWatcher watcher(bus(), false);
        const StatusNotifierItem item(exampleProgram());
        QTRY_VERIFY_WITH_TIMEOUT(!item.shown(), patience);

        watcher.bringHost();

        QTRY_VERIFY_WITH_TIMEOUT(item.shown(), patience);
    }

    void aClickTellsWhereItWas()
    {
        const PlayedWatcher watcher(bus());
        const StatusNotifierItem item(exampleProgram());
        std::optional<QPoint> place;
        connect(&item, &StatusNotifierItem::activated, this, [&place](const QPoint& point) { place = point; });
        QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, patience);

        std::ignore = watcher.ask(itemPath, itemInterface, u"Activate"_s, {700, 12});

        QCOMPARE(place, std::optional(QPoint(700, 12)));
    }

    void theIconIsSentInNetworkByteOrder()
    {
        const PlayedWatcher watcher(bus());
        StatusNotifierItem item(exampleProgram());
        QImage image(1, 2, QImage::Format_ARGB32);
        image.setPixel(0, 0, 0x11223344);
        image.setPixel(0, 1, 0xFF00FF00);
        item.setIcon({}, {image});
        QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, patience);

        const auto icon = propertyOf<StatusNotifierPixmaps>(watcher, u"IconPixmap"_s);

        QCOMPARE(icon.size(), 1);
        QCOMPARE(icon.first().width, 1);
        QCOMPARE(icon.first().height, 2);
        QCOMPARE(icon.first().bytes, QByteArray::fromHex("11223344ff00ff00"));
    }

    void itIsKnownByTheIdentityOfTheProgram()
    {
        const PlayedWatcher watcher(bus());
        const StatusNotifierItem item(exampleProgram());
        QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, patience);

        QCOMPARE(propertyOf<QString>(watcher, u"Id"_s), u"viewer"_s);
        QCOMPARE(propertyOf<QString>(watcher, u"Title"_s), u"Example Viewer"_s);
    }

    void theToolTipIsItsTitle()
    {
        const PlayedWatcher watcher(bus());
        StatusNotifierItem item(exampleProgram());
        item.setToolTip(u"Lapsa"_s);
        QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, patience);

        QCOMPARE(propertyOf<StatusNotifierToolTip>(watcher, u"ToolTip"_s).title, u"Lapsa"_s);
    }

    void theMenuIsLaidOutWithItsShortcuts_data()
    {
        QTest::addColumn<QByteArray>("desktop");
        QTest::addColumn<QString>("comma");
        QTest::newRow("Xfce") << QByteArray("XFCE") << u"comma"_s;
        QTest::newRow("Plasma") << QByteArray("KDE") << u","_s;
        QTest::newRow("LXQt") << QByteArray("X-Example:LXQt") << u","_s;
    }

    void theMenuIsLaidOutWithItsShortcuts()
    {
        QFETCH(const QByteArray, desktop);
        QFETCH(const QString, comma);
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        const PlayedWatcher watcher(bus());
        StatusNotifierItem item(exampleProgram());
        item.menu().setEntries({{.title = u"A_b"_s, .shortcut = u"Ctrl+,"_s, .action = {}},
                                {},
                                {.title = u"Quit"_s, .shortcut = u"Ctrl+Q"_s, .action = {}}});
        QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, patience);

        const QDBusMessage reply = watcher.ask(menuPath, menuInterface, u"GetLayout"_s, {0, -1, QStringList()});

        const auto layout = qdbus_cast<DBusMenuLayout>(reply.arguments().value(1));
        QCOMPARE(layout.children.size(), 3);
        QCOMPARE(layout.children[0].properties[u"label"_s].toString(), u"A__b"_s);
        QCOMPARE(qdbus_cast<DBusMenuShortcut>(layout.children[0].properties[u"shortcut"_s]),
                 (DBusMenuShortcut{{u"Control"_s, comma}}));
        QCOMPARE(layout.children[1].properties[u"type"_s].toString(), u"separator"_s);
        QCOMPARE(qdbus_cast<DBusMenuShortcut>(layout.children[2].properties[u"shortcut"_s]),
                 (DBusMenuShortcut{{u"Control"_s, u"q"_s}}));
    }

    void shortcutsThatNobodyHearsAreNotShown() // there is no X server here
    {
        const PlayedWatcher watcher(bus());
        TrayStatusItem item(exampleProgram());
        item.setMenu({{.title = u"Quit"_s, .shortcut = u"Ctrl+Q"_s, .action = {}}});
        QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, patience);

        const QDBusMessage reply = watcher.ask(menuPath, menuInterface, u"GetLayout"_s, {0, -1, QStringList()});

        const auto layout = qdbus_cast<DBusMenuLayout>(reply.arguments().value(1));
        QCOMPARE(layout.children.size(), 1);
        QVERIFY(!layout.children[0].properties.contains(u"shortcut"_s));
    }

    void choosingAnEntryRunsItAndNothingElseDoes_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("event");
        QTest::addColumn<int>("runs");
        QTest::newRow("the entry is chosen") << 1 << u"clicked"_s << 1;
        QTest::newRow("the pointer is over it") << 1 << u"hovered"_s << 0;
        QTest::newRow("the separator") << 2 << u"clicked"_s << 0;
        QTest::newRow("the menu itself") << 0 << u"clicked"_s << 0;
        QTest::newRow("an entry that is not there") << 3 << u"clicked"_s << 0;
        QTest::newRow("no entry at all") << -1 << u"clicked"_s << 0;
        QTest::newRow("the largest number") << std::numeric_limits<int>::max() << u"clicked"_s << 0;
    }

    void choosingAnEntryRunsItAndNothingElseDoes()
    {
        QFETCH(const int, id);
        QFETCH(const QString, event);
        QFETCH(const int, runs);
        const PlayedWatcher watcher(bus());
        StatusNotifierItem item(exampleProgram());
        int ran = 0;
        item.menu().setEntries({{.title = u"Run"_s, .shortcut = {}, .action = [&ran] { ++ran; }}, {}});
        QTRY_COMPARE_WITH_TIMEOUT(watcher.items.size(), 1, patience);

        const QDBusMessage reply =
            watcher.ask(menuPath, menuInterface, u"Event"_s,
                        {id, event, QVariant::fromValue(QDBusVariant(u""_s)), QVariant::fromValue(0U)});
        QCoreApplication::processEvents();

        QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
        QCOMPARE(ran, runs);
    }

private:
    [[nodiscard]] const SessionBus& bus() const { return m_bus; }

    template <typename T>
    static T propertyOf(const PlayedWatcher& watcher, const QString& name)
    {
        const QDBusMessage reply =
            watcher.ask(itemPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {itemInterface, name});
        return qdbus_cast<T>(reply.arguments().value(0).value<QDBusVariant>().variant());
    }

    const SessionBus& m_bus;

    inline static const QString itemPath = u"/StatusNotifierItem"_s;
    inline static const QString itemInterface = u"org.kde.StatusNotifierItem"_s;
    inline static const QString menuPath = u"/StatusNotifierItem/Menu"_s;
    inline static const QString menuInterface = u"com.canonical.dbusmenu"_s;
};

} // namespace lapsa::test

int main(int argc, char* argv[])
{
    // Before the application: its session bus is looked up once.
    const lapsa::test::SessionBus bus;
    const QGuiApplication application(argc, argv);
    lapsa::test::StatusNotifierItemTest test(bus);
    return QTest::qExec(&test, argc, argv);
}

#include "StatusNotifierItem_test.moc"
