// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PlayedProgram.h"
#include "PlayedService.h"
#include "SessionBus.h"
#include "VirtualDisplay.h"
#include "X11FileManagerSelection.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QGuiApplication>
#include <QTest>
#include <QThread>

#include <cstdint>
#include <memory>
#include <variant>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

using Answer = FileManagerSelection::Answer;
using Failure = FileManagerSelection::Failure;
using Paths = FileManagerSelection::Paths;

constexpr int patience = 30'000;
const QByteArray theirText = "their text";
const QString rootPath = u"/dolphin"_s;

bool failed(const Answer& answer)
{
    return std::holds_alternative<Failure>(answer);
}

} // namespace

/// What Dolphin has on the session bus, beside its window, which is played in this process too.
class DolphinOnTheBus final : public QDBusVirtualObject
{
public:
    DolphinOnTheBus(const QString& address, PlayedProgram& window, bool busy)
        : m_bus(QDBusConnection::connectToBus(address, u"dolphin"_s))
        , m_window(window)
        , m_busy(busy)
    {
        m_bus.registerVirtualObject(rootPath, this, QDBusConnection::SubPath);
        m_bus.registerService(u"org.kde.dolphin-%1"_s.arg(QCoreApplication::applicationPid()));
    }

    DolphinOnTheBus(const DolphinOnTheBus&) = delete;
    DolphinOnTheBus& operator=(const DolphinOnTheBus&) = delete;

    ~DolphinOnTheBus() override { leaveBus(this, rootPath, m_bus); }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return u"<node name=\"Dolphin_1\"/>"_s; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        if (message.member() == u"winId"_s) {
            return connection.send(message.createReply(qlonglong(m_window.window())));
        }
        if (message.member() != u"activateAction"_s) {
            return false;
        }
        if (m_busy) {
            message.setDelayedReply(true);
            return true;
        }
        m_window.copy();
        return connection.send(message.createReply(true));
    }

private:
    QDBusConnection m_bus;
    PlayedProgram& m_window;
    bool m_busy;
};

/// In a thread of its own: while the selection is asked for, ours waits.
class PlayedDolphin final
{
public:
    PlayedDolphin(const QString& address, bool busy)
        : m_window({.windowClass = "dolphin",
                    .forms = {{"text/uri-list", "file:///home/a.txt\r\n"}},
                    .processId = std::uint32_t(QCoreApplication::applicationPid())})
    {
        m_thread.start();
        QObject starter;
        starter.moveToThread(&m_thread);
        QMetaObject::invokeMethod(
            &starter, [&] { m_service = std::make_unique<DolphinOnTheBus>(address, m_window, busy); },
            Qt::BlockingQueuedConnection);
        m_window.activate();
    }

    PlayedDolphin(const PlayedDolphin&) = delete;
    PlayedDolphin& operator=(const PlayedDolphin&) = delete;

    ~PlayedDolphin()
    {
        QMetaObject::invokeMethod(
            m_service.get(), [this] { m_service.reset(); }, Qt::BlockingQueuedConnection);
        m_thread.quit();
        m_thread.wait();
    }

    [[nodiscard]] PlayedProgram& window() { return m_window; }

private:
    PlayedProgram m_window;
    QThread m_thread;
    std::unique_ptr<DolphinOnTheBus> m_service;
};

/// Dolphin is asked over the session bus.
class DolphinSelectionTest final : public QObject
{
    Q_OBJECT

public:
    explicit DolphinSelectionTest(const SessionBus& bus)
        : m_bus(bus)
    {}

private slots:

    void init()
    {
        noActiveWindow();
        m_owner = std::make_unique<PlayedProgram>(
            PlayedProgram::Part{.windowClass = "Owner", .forms = {{"UTF8_STRING", theirText}}});
        m_owner->copy();
    }

    void cleanup() { m_owner.reset(); }

    void whatItCopiesIsTheAnswer()
    {
        PlayedDolphin dolphin(m_bus.address(), false);
        X11FileManagerSelection selection;

        const Answer answer = selection.ask();

        const auto* const paths = std::get_if<Paths>(&answer);
        QVERIFY(paths != nullptr);
        QCOMPARE(*paths, Paths{u"/home/a.txt"_s});
        QTRY_VERIFY_WITH_TIMEOUT(!dolphin.window().ownsClipboard(), patience);
    }

    void aCopyThatABusyOneMakesLateIsUndone()
    {
        PlayedDolphin dolphin(m_bus.address(), true);
        dolphin.window().hang();
        X11FileManagerSelection selection;

        QVERIFY(failed(selection.ask()));
        // It is still waited for: that one fails as well.
        QVERIFY(failed(selection.ask()));
        QVERIFY(m_owner->ownsClipboard());
        dolphin.window().copy();
        QTRY_VERIFY_WITH_TIMEOUT(!dolphin.window().ownsClipboard(), patience);

        QCOMPARE(QGuiApplication::clipboard()->text().toUtf8(), theirText);
    }

private:
    const SessionBus& m_bus;
    std::unique_ptr<PlayedProgram> m_owner;
};

} // namespace lapsa::test

int main(int argc, char** argv)
{
    // Before the application, which connects to them.
    const lapsa::test::SessionBus bus;
    const lapsa::test::VirtualDisplay display;
    const QGuiApplication application(argc, argv);
    lapsa::test::DolphinSelectionTest test(bus);
    return QTest::qExec(&test, argc, argv);
}

#include "DolphinSelection_test.moc"
