// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HelperProcess.h"
#include "SelectionQuestions.h"
#include "VirtualDisplay.h"

#include <QGuiApplication>
#include <QTest>

#include <chrono>
#include <memory>
#include <thread>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

/// The question, with file managers, owners of the clipboard and other programs that are played.
class FileManagerSelectionTest final : public QObject
{
    Q_OBJECT

private slots:

    void init()
    {
        noActiveWindow();
        // The toolkit notices that it has lost the clipboard only as long as another has it.
        PlayedProgram passing(ownerOf({}));
        passing.copy();
        QTRY_VERIFY_WITH_TIMEOUT(!ownedByUs(), patience);
        m_selection = std::make_unique<X11FileManagerSelection>();
    }

    void cleanup() { m_selection.reset(); }

    void whatIsCopiedIsTheAnswer_data()
    {
        QTest::addColumn<Forms>("forms");
        QTest::addColumn<Paths>("paths");

        QTest::newRow("two files, in the order of the file manager") << twoFiles << twoPaths;
        QTest::newRow("only the list of one kind of file managers")
            << Forms{{"x-special/gnome-copied-files", "copy\nfile:///home/b.txt\nfile:///home/a.txt"}} << twoPaths;
        QTest::newRow("the plain list counts more")
            << Forms{{"x-special/gnome-copied-files", "copy\nfile:///other"}, {"text/uri-list", "file:///a\r\n"}}
            << Paths{u"/a"_s};
        QTest::newRow("the other list where the plain one is garbage")
            << Forms{{"text/uri-list", "\xff\xfe"}, {"x-special/gnome-copied-files", "copy\nfile:///a"}}
            << Paths{u"/a"_s};
        QTest::newRow("files in a remote place")
            << Forms{{"text/uri-list", "sftp://host/a\r\nfile:///b\r\ntrash:///c\r\n"}}
            << Paths{std::nullopt, u"/b"_s, std::nullopt};
        QTest::newRow("a name that is not UTF-8")
            << Forms{{"text/uri-list", "file:///a%E9\r\nfile:///b\r\n"}} << Paths{std::nullopt, u"/b"_s};
    }

    void whatIsCopiedIsTheAnswer()
    {
        QFETCH(Forms, forms);
        QFETCH(Paths, paths);
        PlayedProgram fileManager({.forms = forms});
        fileManager.activate();

        const Asked asked = ask(*m_selection);

        QVERIFY(std::holds_alternative<Paths>(asked.answer));
        QCOMPARE(std::get<Paths>(asked.answer), paths);
        QVERIFY2(asked.milliseconds <= limit + tolerance, QByteArray::number(asked.milliseconds));
        QTRY_VERIFY_WITH_TIMEOUT(!fileManager.ownsClipboard(), patience);
    }

    void withoutAFileNothingIsAnswered_data()
    {
        QTest::addColumn<Forms>("forms");
        QTest::newRow("nothing is copied") << Forms();
        QTest::newRow("plain text is copied") << Forms{{"UTF8_STRING", "file:///home/a.txt"}};
        QTest::newRow("garbage is copied") << Forms{{"text/uri-list", "\xff\xfe nothing"}};
        QTest::newRow("an empty list is copied")
            << Forms{{"text/uri-list", ""}, {"x-special/gnome-copied-files", "copy\n"}};
    }

    void withoutAFileNothingIsAnswered()
    {
        QFETCH(Forms, forms);
        PlayedProgram owner(ownerOf({{"UTF8_STRING", theirText}}));
        owner.copy();
        PlayedProgram fileManager({.forms = forms});
        fileManager.activate();

        const Asked asked = ask(*m_selection);

        QVERIFY(std::holds_alternative<Nothing>(asked.answer));
        QCOMPARE(fileManager.keys().size(), 2);
        QVERIFY2(asked.milliseconds <= limit + tolerance, QByteArray::number(asked.milliseconds));
        QTRY_COMPARE_WITH_TIMEOUT(clipboardOfOthers(u"UTF8_STRING"_s), theirText, patience);
    }

    void withoutPingsTheLimitTellsThatNothingIsCopied()
    {
        PlayedProgram fileManager({.forms = {}, .answersPings = false});
        fileManager.activate();

        const Asked asked = ask(*m_selection);

        QVERIFY(std::holds_alternative<Nothing>(asked.answer));
        QVERIFY2(asked.milliseconds <= limit + tolerance, QByteArray::number(asked.milliseconds));
    }

    void theClassInAnyCaseDecidesWhoIsAFileManager_data()
    {
        QTest::addColumn<QByteArray>("windowClass");
        QTest::addColumn<bool>("known");
        for (const char* const name : {"Thunar", "thunar", "Pcmanfm", "pcmanfm-qt", "org.gnome.Nautilus", "Nautilus",
                                       "Nemo", "nemo-desktop", "Caja", "Xfdesktop"}) {
            QTest::newRow(name) << QByteArray(name) << true;
        }
        for (const char* const name :
             {"XTerm", "Gnome-terminal", "konsole", "thunar-terminal", "Thuna", "", "firefox"}) {
            QTest::newRow(*name == '\0' ? "no class" : name) << QByteArray(name) << false;
        }
    }

    void theClassInAnyCaseDecidesWhoIsAFileManager()
    {
        QFETCH(QByteArray, windowClass);
        QFETCH(bool, known);
        PlayedProgram program({.windowClass = windowClass, .forms = twoFiles});
        program.activate();

        const Answer answer = m_selection->ask();

        QCOMPARE(std::holds_alternative<Paths>(answer), known);
        QCOMPARE(std::holds_alternative<Nothing>(answer), !known);
        QCOMPARE(program.keys().isEmpty(), !known);
        if (!known) {
            QVERIFY(!program.ownsClipboard());
        }
    }

    void noKeyReachesAnotherProgramThatHasTheKeyboard()
    {
        PlayedProgram terminal({.windowClass = "XTerm", .forms = twoFiles});
        PlayedProgram fileManager({.forms = twoFiles});
        fileManager.sayActive();
        terminal.focus();

        const Asked asked = ask(*m_selection);

        QVERIFY(std::holds_alternative<Nothing>(asked.answer));
        QCOMPARE(terminal.keys(), QList<PlayedProgram::Key>());
        QCOMPARE(fileManager.keys(), QList<PlayedProgram::Key>());
        QVERIFY2(asked.milliseconds <= limit + tolerance, QByteArray::number(asked.milliseconds));
    }

    void withNoActiveWindowNothingIsAnsweredInTime()
    {
        PlayedProgram fileManager({.forms = twoFiles});

        const Asked asked = ask(*m_selection);

        QVERIFY(std::holds_alternative<Nothing>(asked.answer));
        QCOMPARE(fileManager.keys(), QList<PlayedProgram::Key>());
        QVERIFY2(asked.milliseconds <= limit + tolerance, QByteArray::number(asked.milliseconds));
    }

    void aFileManagerThatComesBackToTheFrontIsWaitedFor_data()
    {
        QTest::addColumn<bool>("taskbar");
        QTest::newRow("after a taskbar") << true;
        QTest::newRow("after no window at all") << false;
    }

    void aFileManagerThatComesBackToTheFrontIsWaitedFor()
    {
        QFETCH(bool, taskbar);
        PlayedProgram other({.windowClass = "Taskbar", .taskbar = true, .forms = {}});
        PlayedProgram fileManager({.forms = twoFiles});
        if (taskbar) {
            other.activate();
        }
        // Without a limit on the wait, for a machine where the thread comes late.
        X11FileManagerSelection selection({.focus = std::chrono::milliseconds(patience),
                                           .keeping = std::chrono::milliseconds(2 * patience),
                                           .answer = std::chrono::milliseconds(3 * patience)});

        std::thread later([&fileManager] {
            std::this_thread::sleep_for(std::chrono::milliseconds(30));
            fileManager.activate();
        });
        const Answer answer = selection.ask();
        later.join();

        QVERIFY(std::holds_alternative<Paths>(answer));
        QCOMPARE(other.keys(), QList<PlayedProgram::Key>());
        QTRY_VERIFY_WITH_TIMEOUT(!fileManager.ownsClipboard(), patience);
    }

    void keysThatTheUserHoldsDoNotDisturb()
    {
        PlayedProgram fileManager({.forms = twoFiles});
        fileManager.activate();
        std::ignore =
            outputOf(u"xdotool"_s, {u"keydown"_s, u"Super_L"_s, u"keydown"_s, u"Shift_L"_s, u"keydown"_s, u"y"_s});

        const Answer answer = m_selection->ask();

        std::ignore = outputOf(u"xdotool"_s, {u"keyup"_s, u"y"_s, u"keyup"_s, u"Shift_L"_s, u"keyup"_s, u"Super_L"_s});
        QVERIFY(std::holds_alternative<Paths>(answer));
    }

    void anotherLayoutHasItsOwnC()
    {
        // The key between x and v gives another letter; the c lies where i is on others.
        PlayedProgram fileManager({.forms = {}});
        fileManager.activate();
        std::ignore = m_selection->ask();
        QTRY_COMPARE(fileManager.keys().size(), 2);
        const int usual = fileManager.keys().last().code;
        std::ignore = outputOf(u"setxkbmap"_s, {u"us"_s, u"dvorak"_s});
        const auto back = qScopeGuard([] { std::ignore = outputOf(u"setxkbmap"_s, {u"us"_s}); });

        X11FileManagerSelection selection;
        std::ignore = selection.ask();

        QTRY_COMPARE(fileManager.keys().size(), 4);
        QVERIFY(fileManager.keys().last().code != usual);
    }

private:
    std::unique_ptr<X11FileManagerSelection> m_selection;
};

} // namespace lapsa::test

int main(int argc, char** argv)
{
    // Before the application, which connects to it.
    const lapsa::test::VirtualDisplay display;
    QGuiApplication application(argc, argv);
    lapsa::test::FileManagerSelectionTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "FileManagerSelection_test.moc"
