// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DesktopSession.h"
#include "LapsaProcess.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/types.h>

#include <csignal>
#include <cstdio>
#include <memory>
#include <optional>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 60'000;
const QString busName = u"org.lapsa.Lapsa"_s;

/// A file manager of the desktop, and the way through its context menu.
struct Program
{
    QString command;
    QStringList options;
    /// Of its windows.
    QString windowClass;
    /// Whether the entry stands in a submenu, the only one that there is.
    bool submenu;
    /// From the open menu, or submenu, to the entry and into it.
    QStringList keys;
};

const QList<Program> programs{
    {u"thunar"_s, {}, u"Thunar"_s, true, {u"Down"_s, u"Return"_s}},
    {u"pcmanfm"_s, {u"--new-win"_s}, u"Pcmanfm"_s, false, {u"Up"_s, u"Up"_s, u"Return"_s}},
};

/// Stands before the program on the path: tells how it was called, and becomes it.
constexpr const char* tellingProgram = R"(#!/bin/sh
printf '%s %s\n' "$$" "$#" >>"$HOME/calls"
exec '%1' "$@"
)";

} // namespace

/// The entries of the build, installed for real, in the menus of real file managers on a real X server.
class FileManagerEntriesDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void init()
    {
        m_desktop.emplace();
        std::ignore = outputOf(QStringLiteral(CMAKE_PROGRAM), {u"--install"_s, QStringLiteral(ENTRIES_BUILD_FOLDER),
                                                               u"--prefix"_s, home().path(u"installed"_s)});
        // Without any application the menus are the same wherever the test runs.
        for (const QString& name : QDir(u"/usr/share"_s).entryList(QDir::AllEntries | QDir::NoDotAndDotDot)) {
            if (name != u"applications"_s) {
                QFile::link(u"/usr/share/"_s + name, home().makeFolder(u"system"_s) + u'/' + name);
            }
        }
        qputenv("XDG_DATA_DIRS", (home().path(u"installed/share:"_s) + home().path(u"system"_s)).toUtf8());
        const QString program =
            home().makeFile(u"bin/lapsa"_s, QString::fromLatin1(tellingProgram).arg(LapsaProcess::program()).toUtf8());
        QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        m_path = qgetenv("PATH");
        qputenv("PATH", home().path(u"bin"_s).toUtf8() + ':' + m_path);
    }

    void cleanup()
    {
        m_program.reset();
        qputenv("PATH", m_path);
        qunsetenv("XDG_DATA_DIRS");
        m_desktop.reset();
    }

    void theFileIsPutOnCountdown_data() { rows(); }

    void theFileIsPutOnCountdown()
    {
        const LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(m_desktop->bus().hasOwner(busName), patience);
        const QString file = home().makeFile(u"shown/report.zip"_s);

        QVERIFY(entryChosenFor(1));

        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(home()), QStringList{file}, patience);
    }

    void severalFilesAreOneCallInTheOrderShown_data() { rows(); }

    void severalFilesAreOneCallInTheOrderShown()
    {
        const LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(m_desktop->bus().hasOwner(busName), patience);
        const QString third = home().makeFile(u"shown/third.txt"_s);
        const QString first = home().makeFile(u"shown/first.txt"_s);
        const QString second = home().makeFile(u"shown/second.txt"_s);

        QVERIFY(entryChosenFor(3));

        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(home()), QStringList({first, second, third}), patience);
        QCOMPARE(calls().size(), 1);
        QCOMPARE(calls()[0].argumentCount, 3);
    }

    void everyNameArrives_data() { rows(); }

    void everyNameArrives()
    {
        const LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(m_desktop->bus().hasOwner(busName), patience);
        QStringList expected{home().makeFolder(u"shown/folder"_s)};
        for (const QString& name :
             {u"a b.txt"_s, u"100%25.txt"_s, u"%f %F %U.txt"_s, u"it's.txt"_s, u"say \"hi\".txt"_s, u"$HOME `id`.txt"_s,
              u"back\\slash.txt"_s, u"a\nb.txt"_s, u"-rf"_s, u"--help"_s, u"a#b?c&d;e.txt"_s,
              u"perch\u00E9 \u65E5.txt"_s, u"tab\there"_s}) {
            expected.push_back(home().makeFile(u"shown/"_s + name));
        }
        expected.sort();
        // One that is no UTF-8, which Lapsa leaves out, does not keep the others away.
        const QByteArray latin1 = home().path(u"shown"_s).toUtf8() + "/caf\xE9";
        std::FILE* const file = std::fopen(latin1.constData(), "w");
        QVERIFY(file != nullptr);
        std::fclose(file);

        QVERIFY(entryChosenFor(expected.size() + 1));

        const auto sortedPaths = [this] {
            QStringList paths = storedPaths(home());
            paths.sort();
            return paths;
        };
        QTRY_COMPARE_WITH_TIMEOUT(sortedPaths(), expected, patience);
        // No one else could take it away with the folder.
        QCOMPARE(std::remove(latin1.constData()), 0);
    }

    void lapsaIsStartedAndOutlivesTheFileManager_data() { rows(); }

    void lapsaIsStartedAndOutlivesTheFileManager()
    {
        const QString file = home().makeFile(u"shown/report.zip"_s);

        QVERIFY(entryChosenFor(1));

        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(home()), QStringList{file}, patience);
        QVERIFY(m_desktop->bus().hasOwner(busName));
        m_program.reset();
        QVERIFY(m_desktop->bus().hasOwner(busName));
        QCOMPARE(calls().size(), 1);
        QCOMPARE(::kill(calls()[0].pid, SIGTERM), 0);
        QTRY_VERIFY_WITH_TIMEOUT(!m_desktop->bus().hasOwner(busName), patience);
    }

private:
    struct Call
    {
        pid_t pid = 0;
        int argumentCount = 0;
    };

    static void rows()
    {
        QTest::addColumn<int>("program");
        for (int i = 0; i < programs.size(); ++i) {
            QTest::newRow(qPrintable(programs[i].command)) << i;
        }
    }

    [[nodiscard]] const TemporaryHome& home() const { return m_desktop->home(); }

    /// The calls of the program in the order in which they came.
    [[nodiscard]] QList<Call> calls() const
    {
        QList<Call> found;
        QFile file(home().path(u"calls"_s));
        const QByteArray written = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        for (const QByteArray& line : written.first(written.lastIndexOf('\n') + 1).split('\n')) {
            const QList<QByteArray> words = line.split(' ');
            if (words.size() == 2) {
                found.push_back({.pid = words[0].toInt(), .argumentCount = words[1].toInt()});
            }
        }
        return found;
    }

    /// Opens the folder "shown", selects the `count` files in it and chooses the entry, in the file manager of the row.
    [[nodiscard]] bool entryChosenFor(qsizetype count)
    {
        QFETCH(const int, program);
        const Program& chosen = programs[program];
        m_program =
            std::make_unique<HelperProcess>(chosen.command, chosen.options + QStringList{home().path(u"shown"_s)});
        const auto called = [this] { return !calls().isEmpty(); };
        // On a machine under load a menu may open later than looked for; then all of it again, with more time.
        for (int opening = 1000; opening <= patience / 2; opening *= 2) {
            const auto allSelected = [&chosen, count] { return selected(chosen) == count; };
            if (!QTest::qWaitFor(allSelected, patience)) {
                return false;
            }
            if (entryChosen(chosen, opening) && QTest::qWaitFor(called, 2 * opening)) {
                return true;
            }
        }
        return false;
    }

    [[nodiscard]] static bool entryChosen(const Program& chosen, int opening)
    {
        if (!opens(chosen, u"Menu"_s, opening) || (chosen.submenu && !submenuOpens(chosen, opening))) {
            return false;
        }
        for (const QString& key : chosen.keys) {
            VirtualDisplay::press(key);
        }
        return true;
    }

    /// Goes down in the open menu to the one entry that leads on.
    [[nodiscard]] static bool submenuOpens(const Program& chosen, int opening)
    {
        constexpr int longestMenu = 12;
        for (int i = 0; i < longestMenu; ++i) {
            VirtualDisplay::press(u"Down"_s);
            if (opens(chosen, u"Right"_s, opening)) {
                return true;
            }
        }
        return false;
    }

    /// Presses a key, and whether a menu opens by it in so many milliseconds.
    [[nodiscard]] static bool opens(const Program& chosen, const QString& key, int milliseconds)
    {
        const auto windows = [&chosen] { return VirtualDisplay::windowsOfClass(chosen.windowClass).size(); };
        const qsizetype before = windows();
        VirtualDisplay::press(key);
        return QTest::qWaitFor([&] { return windows() > before; }, milliseconds);
    }

    /// How many files are selected after all have been: what a copy of them tells. Menus are closed before.
    [[nodiscard]] static qsizetype selected(const Program& chosen)
    {
        constexpr QPoint aboveTheStatusBar(100, 100);
        for (const QString& key : {u"Escape"_s, u"Escape"_s}) {
            VirtualDisplay::press(key);
        }
        const std::optional<QRect> window = VirtualDisplay::windowOfClass(chosen.windowClass);
        constexpr int leastWidth = 400; // there are small helper windows of the same class, and menus
        if (!window || window->width() < leastWidth) {
            return 0;
        }
        VirtualDisplay::click(window->bottomRight() - aboveTheStatusBar);
        VirtualDisplay::press(u"ctrl+a"_s);
        VirtualDisplay::press(u"ctrl+c"_s);
        return outputOf(u"xclip"_s, {u"-o"_s, u"-selection"_s, u"clipboard"_s, u"-t"_s, u"text/uri-list"_s})
            .count("file://");
    }

    std::optional<DesktopSession> m_desktop;
    std::unique_ptr<HelperProcess> m_program;
    QByteArray m_path;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::FileManagerEntriesDesktopTest)

#include "FileManagerEntries_desktop_test.moc"
