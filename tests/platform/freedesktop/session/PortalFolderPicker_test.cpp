// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PlayedService.h"
#include "PortalFolderPicker.h"
#include "SessionBus.h"
#include "TemporaryHome.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QRegularExpression>
#include <QTest>

#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 20'000;
const QString portalPath = u"/org/freedesktop/portal/desktop"_s;
const QString portalInterface = u"org.freedesktop.portal.FileChooser"_s;

/// How the played portal answers.
struct Manner
{
    uint version = 4;
    /// 0 for success, 1 for a user who cancels, 2 for anything else; nothing while the dialog stays open.
    std::optional<uint> response = 0;
    bool fails = false;
    /// Takes every question, and never says a word.
    bool silent = false;
    QStringList uris;
};

/// A portal that is played, on a bus connection of its own.
class PlayedPortal final : public QDBusVirtualObject
{
public:
    PlayedPortal(const QString& address, Manner manner)
        : m_connection(QDBusConnection::connectToBus(address, u"portal-%1"_s.arg(++s_count)))
        , m_manner(std::move(manner))
    {
        m_connection.registerVirtualObject(portalPath, this, QDBusConnection::SubPath);
        if (!m_connection.registerService(u"org.freedesktop.portal.Desktop"_s)) {
            qFatal("the name is taken");
        }
    }

    ~PlayedPortal() override { leaveBus(this, portalPath, m_connection); }

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override
    {
        if (m_manner.silent) {
            return true;
        }
        if (message.member() == u"Get"_s) {
            m_connection.send(message.createReply(QVariant::fromValue(QDBusVariant(m_manner.version))));
        } else if (message.interface() == portalInterface && message.member() == u"OpenFile"_s) {
            openFile(message);
        } else if (message.member() == u"Close"_s) {
            ++closed;
        } else {
            return false;
        }
        return true;
    }

    int opened = 0;
    int closed = 0;
    QString window;
    QString title;
    QVariantMap options;

private:
    void openFile(const QDBusMessage& message)
    {
        ++opened;
        window = message.arguments().value(0).toString();
        title = message.arguments().value(1).toString();
        options = qdbus_cast<QVariantMap>(message.arguments().value(2));
        if (m_manner.fails) {
            m_connection.send(message.createErrorReply(QDBusError::AccessDenied, u"No"_s));
            return;
        }
        const QString path = u"%1/request/%2/%3"_s.arg(portalPath, message.service().remove(u':').replace(u'.', u'_'),
                                                       options[u"handle_token"_s].toString());
        m_connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(path))));
        if (m_manner.response) {
            auto response = QDBusMessage::createSignal(path, u"org.freedesktop.portal.Request"_s, u"Response"_s);
            response << *m_manner.response << QVariantMap{{u"uris"_s, m_manner.uris}};
            m_connection.send(response);
        }
    }

    static inline int s_count = 0;
    QDBusConnection m_connection;
    Manner m_manner;
};

/// A question, and what came of it.
class Asked final
{
public:
    explicit Asked(PortalFolderPicker::Windows windows = PortalFolderPicker::Windows::X11)
        : m_picker(windows)
        , m_question(m_picker.ask({.title = u"Add folder"_s,
                                   .acceptLabel = u"Add"_s,
                                   .startFolder = u"/home/ada/Zürich"_s,
                                   .window = 0x2a0000b},
                                  [this](const FolderPicker::Answer& answer) {
                                      answers.push_back(answer);
                                      m_question.reset();
                                  }))
    {}

    void withdraw() { m_question.reset(); }

    QList<FolderPicker::Answer> answers;

private:
    PortalFolderPicker m_picker;
    std::unique_ptr<FolderQuestion> m_question;
};

} // namespace

class PortalFolderPickerTest final : public QObject
{
    Q_OBJECT

private slots:

    void init() { QTest::failOnWarning(QRegularExpression(u"^(?!QDBusConnection: name )"_s)); }

    void theChosenFolderIsAnswered()
    {
        const TemporaryHome home;
        const QString folder = home.makeFolder(u"In coming"_s);
        const PlayedPortal portal(m_bus.address(), {.uris = {u"file://"_s + home.path(u"In%20coming"_s)}});
        const Asked asked;

        QTRY_COMPARE_WITH_TIMEOUT(asked.answers.size(), 1, patience);

        QCOMPARE(asked.answers[0], FolderPicker::Answer(QUrl::fromLocalFile(folder)));
    }

    void thePortalIsAskedForOneFolderAboveTheWindow()
    {
        const PlayedPortal portal(m_bus.address(), {.response = {}, .uris = {}});
        const Asked asked;

        QTRY_COMPARE_WITH_TIMEOUT(portal.opened, 1, patience);

        QCOMPARE(portal.window, u"x11:2a0000b"_s);
        QCOMPARE(portal.title, u"Add folder"_s);
        QCOMPARE(portal.options[u"directory"_s], true);
        QCOMPARE(portal.options[u"multiple"_s], false);
        QCOMPARE(portal.options[u"accept_label"_s], u"Add"_s);
        QCOMPARE(portal.options[u"current_folder"_s].toByteArray(),
                 QByteArray("/home/ada/Z\xc3\xbcrich\0", sizeof("/home/ada/Z\xc3\xbcrich")));
    }

    void whereWindowsHaveNoNamesNoneIsTold()
    {
        const PlayedPortal portal(m_bus.address(), {.response = {}, .uris = {}});
        const Asked asked(PortalFolderPicker::Windows::Unnamed);

        QTRY_COMPARE_WITH_TIMEOUT(portal.opened, 1, patience);

        QCOMPARE(portal.window, QString());
    }

    void aPortalThatCannotIsUnavailable_data()
    {
        QTest::addColumn<uint>("version");
        QTest::addColumn<bool>("fails");
        QTest::addColumn<uint>("response");

        QTest::newRow("too old for folders") << 2U << false << 0U;
        QTest::newRow("refuses the call") << 4U << true << 0U;
        QTest::newRow("ends the request") << 4U << false << 2U;
    }

    void aPortalThatCannotIsUnavailable()
    {
        QFETCH(const uint, version);
        QFETCH(const bool, fails);
        QFETCH(const uint, response);
        const PlayedPortal portal(
            m_bus.address(), {.version = version, .response = response, .fails = fails, .uris = {u"file:///tmp"_s}});
        const Asked asked;

        QTRY_COMPARE_WITH_TIMEOUT(asked.answers.size(), 1, patience);

        QCOMPARE(asked.answers[0], FolderPicker::Answer(FolderPicker::Unavailable()));
        QCOMPARE(portal.opened, version < 3 ? 0 : 1);
    }

    void withoutAPortalThereIsNoDialog()
    {
        const Asked asked;

        QTRY_COMPARE_WITH_TIMEOUT(asked.answers.size(), 1, patience);

        QCOMPARE(asked.answers[0], FolderPicker::Answer(FolderPicker::Unavailable()));
    }

    void aPortalThatGoesAwayIsUnavailable()
    {
        std::optional<PlayedPortal> portal;
        portal.emplace(m_bus.address(), Manner{.response = {}, .uris = {}});
        const Asked asked;
        QTRY_COMPARE_WITH_TIMEOUT(portal->opened, 1, patience);

        portal.reset();

        QTRY_COMPARE_WITH_TIMEOUT(asked.answers.size(), 1, patience);
        QCOMPARE(asked.answers[0], FolderPicker::Answer(FolderPicker::Unavailable()));
    }

    void aPortalThatSaysNothingIsUnavailable()
    {
        const PlayedPortal portal(m_bus.address(), {.silent = true, .uris = {}});
        const Asked asked;

        QTRY_COMPARE_WITH_TIMEOUT(asked.answers.size(), 1, patience);

        QCOMPARE(asked.answers[0], FolderPicker::Answer(FolderPicker::Unavailable()));
        QCOMPARE(portal.opened, 0);
    }

    void whatIsNoFolderOfThisMachineIsNotAnswered_data()
    {
        QTest::addColumn<uint>("response");
        QTest::addColumn<QString>("uri");

        QTest::newRow("cancelled") << 1U << u"file:///tmp"_s;
        QTest::newRow("nothing chosen") << 0U << QString();
        QTest::newRow("a remote place") << 0U << u"sftp://host/tmp"_s;
        QTest::newRow("a folder of another machine") << 0U << u"file://elsewhere.example/tmp"_s;
        QTest::newRow("a file") << 0U << u"file:///etc/passwd"_s;
        QTest::newRow("what is not there") << 0U << u"file:///nowhere/at/all"_s;
        QTest::newRow("a path that is no URI") << 0U << u"/tmp"_s;
    }

    void whatIsNoFolderOfThisMachineIsNotAnswered()
    {
        QFETCH(const uint, response);
        QFETCH(const QString, uri);
        const PlayedPortal portal(m_bus.address(), {.response = response, .uris = {uri}});
        const Asked asked;

        QTRY_COMPARE_WITH_TIMEOUT(asked.answers.size(), 1, patience);

        QCOMPARE(asked.answers[0], FolderPicker::Answer(FolderPicker::Cancelled()));
    }

    void aWithdrawnQuestionClosesTheDialogAndIsNotAnswered()
    {
        const PlayedPortal portal(m_bus.address(), {.response = {}, .uris = {}});
        Asked asked;
        QTRY_COMPARE_WITH_TIMEOUT(portal.opened, 1, patience);

        asked.withdraw();

        QTRY_COMPARE_WITH_TIMEOUT(portal.closed, 1, patience);
        QVERIFY(asked.answers.isEmpty());
    }

private:
    SessionBus m_bus;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::PortalFolderPickerTest)
#include "PortalFolderPicker_test.moc"
