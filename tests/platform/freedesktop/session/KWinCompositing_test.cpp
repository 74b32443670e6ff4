// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "KWinCompositing.h"
#include "PlayedService.h"
#include "SessionBus.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 20'000;

} // namespace

/// KWin's compositing, as it is on the bus in Plasma 5.
class PlayedKWin final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.kwin.Compositing")
    Q_PROPERTY(bool active READ active SCRIPTABLE true)

public:
    PlayedKWin(const QString& address, bool active)
        : m_connection(QDBusConnection::connectToBus(address, u"kwin-%1"_s.arg(++s_count)))
        , m_active(active)
    {
        m_connection.registerObject(
            path, this, QDBusConnection::ExportScriptableProperties | QDBusConnection::ExportScriptableSignals);
        if (!m_connection.registerService(u"org.kde.KWin"_s)) {
            qFatal("the name is taken");
        }
    }

    ~PlayedKWin() override { leaveBus(this, path, m_connection); }

    [[nodiscard]] bool active() const { return m_active; }

    void toggle()
    {
        m_active = !m_active;
        emit compositingToggled(m_active);
    }

signals:
    Q_SCRIPTABLE void compositingToggled(bool active);

private:
    inline static const QString path = u"/Compositor"_s;
    static inline int s_count = 0;
    QDBusConnection m_connection;
    bool m_active;
};

class KWinCompositingTest final : public QObject
{
    Q_OBJECT

public:
    explicit KWinCompositingTest(const SessionBus& bus)
        : m_bus(bus)
    {}

private slots:

    void itSaysWhatKWinSaysAtTheStart_data()
    {
        QTest::addColumn<bool>("active");
        QTest::newRow("composites") << true;
        QTest::newRow("its drawing failed") << false;
    }

    void itSaysWhatKWinSaysAtTheStart()
    {
        QFETCH(const bool, active);
        const PlayedKWin kwin(m_bus.address(), active);
        const KWinCompositing compositing;

        QTRY_COMPARE_WITH_TIMEOUT(compositing.active(), std::optional(active), patience);
    }

    void itFollowsLive()
    {
        PlayedKWin kwin(m_bus.address(), true);
        const KWinCompositing compositing;
        QTRY_COMPARE_WITH_TIMEOUT(compositing.active(), std::optional(true), patience);
        const QSignalSpy changes(&compositing, &KWinCompositing::activeChanged);

        kwin.toggle();
        QTRY_COMPARE_WITH_TIMEOUT(compositing.active(), std::optional(false), patience);
        kwin.toggle();
        QTRY_COMPARE_WITH_TIMEOUT(compositing.active(), std::optional(true), patience);

        QCOMPARE(changes.size(), 2);
    }

    void itForgetsAKWinThatEndsAndAsksTheNext()
    {
        const KWinCompositing compositing;
        {
            const PlayedKWin kwin(m_bus.address(), false);
            QTRY_COMPARE_WITH_TIMEOUT(compositing.active(), std::optional(false), patience);
        }
        QTRY_COMPARE_WITH_TIMEOUT(compositing.active(), std::nullopt, patience);

        const PlayedKWin next(m_bus.address(), true);

        QTRY_COMPARE_WITH_TIMEOUT(compositing.active(), std::optional(true), patience);
    }

private:
    const SessionBus& m_bus;
};

} // namespace lapsa::test

int main(int argc, char* argv[])
{
    // Before the application: its session bus is looked up once.
    const lapsa::test::SessionBus bus;
    const QCoreApplication application(argc, argv);
    lapsa::test::KWinCompositingTest test(bus);
    return QTest::qExec(&test, argc, argv);
}

#include "KWinCompositing_test.moc"
