// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DelegateWorld.h"
#include "InstalledTree.h"
#include "SplashView.h"
#include "TemporaryHome.h"

#include <QApplication>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

QString entryPath()
{
    return QStringLiteral(LAPSA_SOURCE_FOLDER) + u"/packaging/org.lapsa.Lapsa.desktop"_s;
}

/// The titles of the menu in the tray, without its separators, in the language of the moment.
QStringList menuTitles()
{
    DelegateWorld program;
    program.start();
    QStringList titles;
    for (const StatusMenuEntry& entry : program.menu()) {
        if (!entry.title.isEmpty()) {
            titles.push_back(entry.title);
        }
    }
    return titles;
}

} // namespace

/// The entry by which launchers, docks and file managers know Lapsa.
class DesktopEntryTest final : public QObject
{
    Q_OBJECT

private slots:

    void itsActionsAreTheEntriesOfTheMenu_data()
    {
        QTest::addColumn<QByteArray>("locale");
        QTest::addColumn<QString>("key");

        QTest::newRow("in English") << QByteArray("en_GB.UTF-8") << u"Name"_s;
        QTest::newRow("in Italian") << QByteArray("it_IT.UTF-8") << u"Name[it]"_s;
    }

    void itsActionsAreTheEntriesOfTheMenu()
    {
        QFETCH(const QByteArray, locale);
        QFETCH(const QString, key);
        const DesktopGroups groups = groupsOf(entryPath());
        QStringList actions = groups[u"Desktop Entry"_s][u"Actions"_s].split(u';', Qt::SkipEmptyParts);
        // The Recovery window opens from here, and has no entry in the menu.
        QCOMPARE(actions.removeAll(u"recovery"_s), 1);
        QStringList names;
        for (const QString& action : actions) {
            names.push_back(groups[u"Desktop Action "_s + action][key]);
        }

        const QByteArray previous = qgetenv("LC_ALL");
        qputenv("LC_ALL", locale);
        const QStringList titles = menuTitles();
        qputenv("LC_ALL", previous);

        QCOMPARE(titles.size(), 5);
        QCOMPARE(names, titles);
    }

    void whoeverReadsItInEnglishReadsItInItalian()
    {
        const DesktopGroups groups = groupsOf(entryPath());

        for (const QString& key : {u"GenericName"_s, u"Comment"_s, u"Keywords"_s}) {
            const QString italian = groups[u"Desktop Entry"_s][key + u"[it]"_s];
            QVERIFY2(!italian.isEmpty(), qPrintable(key));
            QVERIFY2(italian != groups[u"Desktop Entry"_s][key], qPrintable(key));
        }
    }

    void everyActionCallsTheOneOfItsName()
    {
        const DesktopGroups groups = groupsOf(entryPath());

        for (const QString& action : groups[u"Desktop Entry"_s][u"Actions"_s].split(u';', Qt::SkipEmptyParts)) {
            QCOMPARE(groups[u"Desktop Action "_s + action][u"Exec"_s],
                     u"gapplication action org.lapsa.Lapsa "_s + action);
        }
    }

    void itTakesFilesButNeverBecomesTheDefaultForThem_data()
    {
        QTest::addColumn<QString>("type");

        for (const QString& type : {u"inode/directory"_s, u"application/octet-stream"_s, u"text/plain"_s,
                                    u"application/zip"_s, u"application/x-unheard-of"_s}) {
            QTest::newRow(qPrintable(type)) << type;
        }
    }

    /// Beside one other program that opens folders, and no list of defaults: what is installed last, or comes first in
    /// the alphabet, would be taken then.
    void itTakesFilesButNeverBecomesTheDefaultForThem()
    {
        QFETCH(const QString, type);
        const TemporaryHome home;
        const QString applications = home.makeFolder(u"share/applications"_s);
        home.makeFile(u"share/applications/zz-folders.desktop"_s,
                      "[Desktop Entry]\nType=Application\nName=Folders\nExec=true %U\nMimeType=inode/directory;\n");
        QVERIFY(QFile::copy(entryPath(), applications + u"/org.lapsa.Lapsa.desktop"_s));
        QVERIFY(QFile::link(u"/usr/share/mime"_s, home.path(u"share/mime"_s)));
        QCOMPARE(outcomeOf(u"update-desktop-database"_s, {applications}).code, 0);
        QVERIFY(groupsOf(entryPath())[u"Desktop Entry"_s][u"Exec"_s].endsWith(u" %F"_s));

        qputenv("XDG_DATA_DIRS", home.path(u"share"_s).toUtf8());
        qputenv("XDG_CONFIG_DIRS", home.path(u"none"_s).toUtf8());
        qputenv("XDG_CONFIG_HOME", home.path(u"none"_s).toUtf8());
        const Outcome registered = outcomeOf(u"gio"_s, {u"mime"_s, type});
        const Outcome queried = outcomeOf(u"xdg-mime"_s, {u"query"_s, u"default"_s, type});
        for (const char* const name : {"XDG_DATA_DIRS", "XDG_CONFIG_DIRS", "XDG_CONFIG_HOME"}) {
            qunsetenv(name);
        }

        QVERIFY2(!registered.output.contains("Lapsa"), registered.output.constData());
        QVERIFY2(!queried.output.contains("Lapsa"), queried.output.constData());
        if (type == u"inode/directory"_s) {
            QVERIFY2(registered.output.contains("zz-folders.desktop"), registered.output.constData());
        }
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::DesktopEntryTest)
#include "DesktopEntry_test.moc"
