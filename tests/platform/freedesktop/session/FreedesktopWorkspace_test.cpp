// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FreedesktopWorkspace.h"
#include "HelperProcess.h"
#include "LogCapture.h"
#include "PlayedService.h"
#include "SessionBus.h"
#include "TemporaryHome.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QFile>
#include <QTest>
#include <QUrl>

#include <memory>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 20'000;

} // namespace

/// A file manager that is played, on a bus connection of its own.
class PlayedFileManager final : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    explicit PlayedFileManager(const QString& address)
        : m_connection(QDBusConnection::connectToBus(address, u"file-manager-%1"_s.arg(++s_count)))
    {
        m_connection.registerObject(u"/org/freedesktop/FileManager1"_s, this, QDBusConnection::ExportScriptableSlots);
        if (!m_connection.registerService(u"org.freedesktop.FileManager1"_s)) {
            qFatal("the name is taken");
        }
    }

    ~PlayedFileManager() override { leaveBus(this, u"/org/freedesktop/FileManager1"_s, m_connection); }

    QList<QStringList> revealed;
    bool refuses = false;

public slots:

    Q_SCRIPTABLE void ShowItems(const QStringList& uris, const QString& /*startupId*/)
    {
        revealed.push_back(uris);
        if (refuses) {
            sendErrorReply(QDBusError::Failed);
        }
    }

private:
    static inline int s_count = 0;
    QDBusConnection m_connection;
};

/// Opens with a default application that writes down what it was given; while there is a file "hold", and for ten
/// seconds at most, it waits before. DISPLAY is only named, never reached.
class FreedesktopWorkspaceTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        qputenv("XDG_CONFIG_HOME", m_home.path(u".config"_s).toUtf8());
        qunsetenv("XDG_CURRENT_DESKTOP");
        qunsetenv("DESKTOP_SESSION");
        const QString recorder =
            m_home.makeFile(u"recorder"_s, "#!/bin/sh\ntries=0\n"
                                           "while [ -e \"$HOME/hold\" ] && [ $tries -lt 100 ]; do\n"
                                           "    tries=$((tries + 1))\n    sleep 0.1\ndone\n"
                                           "printf '%s\\n' \"$1\" > \"$HOME/opened.new\"\n"
                                           "mv \"$HOME/opened.new\" \"$HOME/opened\"\n");
        QFile::setPermissions(recorder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        m_home.makeFile(u".local/share/applications/recorder.desktop"_s,
                        "[Desktop Entry]\nType=Application\nName=Recorder\nMimeType=text/plain;inode/directory;\n"
                        "Exec=" +
                            recorder.toUtf8() + " %f\n");
        m_home.makeFile(u".config/mimeapps.list"_s, "[Default Applications]\ntext/plain=recorder.desktop\n"
                                                    "inode/directory=recorder.desktop\n");
    }

    void init()
    {
        qputenv("DISPLAY", ":4711");
        QFile::remove(m_home.path(u"opened"_s));
    }

    void aFileIsOpenedWithItsDefaultApplication_data()
    {
        QTest::addColumn<QString>("name");

        QTest::newRow("plain") << u"notes.txt"_s;
        QTest::newRow("blanks, a percent sign and letters beyond ASCII") << u"100%41 perch\u00E9.txt"_s;
        QTest::newRow("quotes and a dollar sign") << u"it's $HOME.txt"_s;
        QTest::newRow("a leading dash") << u"-n.txt"_s;
    }

    void aFileIsOpenedWithItsDefaultApplication()
    {
        QFETCH(const QString, name);
        const QString file = m_home.makeFile(u"docs/"_s + name);
        FreedesktopWorkspace workspace;

        workspace.open(QUrl::fromLocalFile(file));

        QTRY_COMPARE_WITH_TIMEOUT(openedPath(), file, patience);
    }

    void openingDoesNotWaitForTheApplication()
    {
        const QString file = m_home.makeFile(u"docs/notes.txt"_s);
        const QString hold = m_home.makeFile(u"hold"_s);
        FreedesktopWorkspace workspace;

        workspace.open(QUrl::fromLocalFile(file));

        QCOMPARE(openedPath(), QString());
        QVERIFY(QFile::remove(hold));
        QTRY_COMPARE_WITH_TIMEOUT(openedPath(), file, patience);
    }

    void theFileManagerIsAskedToShowTheFile()
    {
        const PlayedFileManager fileManager(m_bus.address());
        FreedesktopWorkspace workspace;

        workspace.reveal(QUrl::fromLocalFile(u"/data/100% #1?\n\u00E9.txt"_s));

        QTRY_COMPARE_WITH_TIMEOUT(fileManager.revealed.size(), 1, patience);
        QCOMPARE(fileManager.revealed[0], QStringList{u"file:///data/100%25%20%231%3F%0A%C3%A9.txt"_s});
        QCOMPARE(openedPath(), QString());
    }

    void withoutAFileManagerOnTheBusTheFolderIsOpened()
    {
        const QString file = m_home.makeFile(u"docs/notes.txt"_s);
        FreedesktopWorkspace workspace;

        workspace.reveal(QUrl::fromLocalFile(file));

        QTRY_COMPARE_WITH_TIMEOUT(openedPath(), m_home.path(u"docs"_s), patience);
    }

    void whereTheFileManagerRefusesTheFolderIsOpened()
    {
        PlayedFileManager fileManager(m_bus.address());
        fileManager.refuses = true;
        const QString file = m_home.makeFile(u"docs/notes.txt"_s);
        FreedesktopWorkspace workspace;

        workspace.reveal(QUrl::fromLocalFile(file));

        QTRY_COMPARE_WITH_TIMEOUT(openedPath(), m_home.path(u"docs"_s), patience);
    }

    void withoutADisplayAndWithAFileThatIsGoneAllIsSilent()
    {
        const LogCapture log;
        const PlayedFileManager fileManager(m_bus.address());
        qunsetenv("DISPLAY");
        FreedesktopWorkspace workspace;

        workspace.open(QUrl::fromLocalFile(m_home.path(u"gone.txt"_s)));
        workspace.open(QUrl(u"https://example.org"_s));
        workspace.reveal(QUrl::fromLocalFile(m_home.path(u"gone.txt"_s)));
        QTRY_COMPARE_WITH_TIMEOUT(fileManager.revealed.size(), 1, patience);

        QCOMPARE(log.lines(), QStringList());
    }

private:
    QString openedPath() const
    {
        QFile file(m_home.path(u"opened"_s));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).chopped(1) : QString();
    }

    TemporaryHome m_home;
    SessionBus m_bus;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::FreedesktopWorkspaceTest)
#include "FreedesktopWorkspace_test.moc"
