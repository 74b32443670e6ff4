// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "EventTime.h"
#include "HelperProcess.h"
#include "PlayedProgram.h"
#include "QtPasteboard.h"
#include "VirtualDisplay.h"
#include "X11FileManagerSelection.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QMimeData>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryFile>
#include <QTest>

#include <memory>
#include <thread>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

using Answer = FileManagerSelection::Answer;
using Nothing = FileManagerSelection::Nothing;
using Paths = FileManagerSelection::Paths;
using Failure = FileManagerSelection::Failure;
using Forms = QList<std::pair<QByteArray, QByteArray>>;

constexpr int patience = 30'000;
/// What a question may take.
constexpr int limit = 300;
/// What a machine under load may add to it. A question without a limit would take 5000 ms and more.
constexpr int tolerance = 700;

const Forms twoFiles{{"x-special/gnome-copied-files", "copy\nfile:///home/b.txt\nfile:///home/a.txt"},
                     {"text/uri-list", "file:///home/b.txt\r\nfile:///home/a.txt\r\n"},
                     {"UTF8_STRING", "/home/b.txt\n/home/a.txt"}};
const Paths twoPaths{u"/home/b.txt"_s, u"/home/a.txt"_s};
const QByteArray theirText = "their text, perch\xC3\xA9";

/// What another program gets when it asks for the clipboard. Asked without waiting: we may be the ones who answer.
QByteArray clipboardOfOthers(const QString& target, int limitOfOne = patience)
{
    QProcess reader;
    reader.start(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-o"_s, u"-t"_s, target});
    const bool ended = QTest::qWaitFor([&reader] { return reader.state() == QProcess::NotRunning; }, limitOfOne);
    if (!ended) {
        reader.kill();
        reader.waitForFinished();
        return "no answer";
    }
    return reader.readAllStandardOutput();
}

bool ownedByUs()
{
    return QGuiApplication::clipboard()->ownsClipboard();
}

PlayedProgram::Part ownerOf(const Forms& forms)
{
    return {.windowClass = "Owner", .forms = forms};
}

/// A question, how long it took, and whether it kept the limit.
struct Asked
{
    Answer answer;
    qint64 milliseconds = 0;
};

Asked ask(FileManagerSelection& selection)
{
    QElapsedTimer timer;
    timer.start();
    Answer answer = selection.ask();
    return {std::move(answer), timer.elapsed()};
}

bool failed(const Answer& answer)
{
    return std::holds_alternative<Failure>(answer);
}

} // namespace

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
        QTest::addColumn<bool>("panel");
        QTest::newRow("after a panel") << true;
        QTest::newRow("after no window at all") << false;
    }

    void aFileManagerThatComesBackToTheFrontIsWaitedFor()
    {
        QFETCH(bool, panel);
        PlayedProgram other({.windowClass = "Panel", .panel = true, .forms = {}});
        PlayedProgram fileManager({.forms = twoFiles});
        if (panel) {
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

    void theUsersClipboardIsAsItWas_data()
    {
        QTest::addColumn<Forms>("forms");
        QTest::newRow("text") << Forms{{"UTF8_STRING", theirText}, {"STRING", "their text, perch\xE9"}};
        QTest::newRow("text with what no editor shows") << Forms{{"UTF8_STRING", QByteArray("\r\n\0\xff\t ", 6)}};
        QTest::newRow("HTML") << Forms{{"text/html", "<p>their&nbsp;text</p>"},
                                       {"text/plain;charset=utf-8", theirText},
                                       {"UTF8_STRING", theirText}};
        QTest::newRow("a picture in two forms")
            << Forms{{"image/png", QByteArray("\x89PNG\0\r\n", 7)}, {"image/bmp", QByteArray("BM\0\0\1", 5)}};
        QTest::newRow("files that wait to be moved")
            << Forms{{"x-special/gnome-copied-files", "cut\nfile:///a%E9,b\nfile:///c"},
                     {"text/uri-list", QByteArray("file:///a%E9,b\r\nfile:///c\0", 26)},
                     {"application/x-kde-cutselection", "1"}};
        QTest::newRow("an empty text") << Forms{{"UTF8_STRING", ""}};
    }

    void theUsersClipboardIsAsItWas()
    {
        QFETCH(Forms, forms);
        PlayedProgram owner(ownerOf(forms));
        owner.copy();
        PlayedProgram fileManager({.forms = twoFiles});
        fileManager.activate();

        const Answer answer = m_selection->ask();

        QVERIFY(std::holds_alternative<Paths>(answer));
        QTRY_VERIFY_WITH_TIMEOUT(ownedByUs(), patience);
        for (const auto& [target, bytes] : forms) {
            QCOMPARE(clipboardOfOthers(QString::fromLatin1(target)), bytes);
        }
    }

    void aClipboardWithoutAnOwnerHasNoneAfterwards()
    {
        PlayedProgram fileManager({.forms = twoFiles});
        fileManager.activate();

        const Answer answer = m_selection->ask();

        QVERIFY(std::holds_alternative<Paths>(answer));
        QTRY_VERIFY_WITH_TIMEOUT(!fileManager.ownsClipboard(), patience);
        QCOMPARE(outputOf(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-o"_s, u"-t"_s, u"TARGETS"_s}), QByteArray());
    }

    void ourOwnClipboardIsAsItWas()
    {
        auto data = std::make_unique<QMimeData>();
        data->setText(QString::fromUtf8(theirText));
        data->setData(u"text/html"_s, "<p>");
        whenEventTimeIsFresh(this, [&data] { QGuiApplication::clipboard()->setMimeData(data.release()); });
        QTRY_VERIFY_WITH_TIMEOUT(ownedByUs(), patience);
        PlayedProgram fileManager({.forms = twoFiles});
        fileManager.activate();

        const Answer answer = m_selection->ask();

        QVERIFY(std::holds_alternative<Paths>(answer));
        QTRY_VERIFY_WITH_TIMEOUT(!fileManager.ownsClipboard(), patience);
        QCOMPARE(clipboardOfOthers(u"UTF8_STRING"_s), theirText);
        QCOMPARE(clipboardOfOthers(u"text/html"_s), "<p>");
    }

    void aFileManagerMayLookAtOurClipboardBeforeItCopies_data()
    {
        QTest::addColumn<Forms>("forms");
        QTest::newRow("and copies") << twoFiles;
        QTest::newRow("and copies nothing") << Forms();
    }

    void aFileManagerMayLookAtOurClipboardBeforeItCopies()
    {
        QFETCH(Forms, forms);
        QtPasteboard().setText(QString::fromUtf8(theirText));
        QTRY_VERIFY_WITH_TIMEOUT(ownedByUs(), patience);
        PlayedProgram fileManager({.forms = forms, .looksFirst = true});
        fileManager.activate();

        const Answer answer = m_selection->ask();

        QCOMPARE(std::holds_alternative<Paths>(answer), !forms.isEmpty());
        QVERIFY(!failed(answer));
        QTRY_VERIFY_WITH_TIMEOUT(!fileManager.ownsClipboard(), patience);
        QTRY_COMPARE_WITH_TIMEOUT(clipboardOfOthers(u"UTF8_STRING"_s), theirText, patience);
    }

    void questionAfterQuestionKeepsTheClipboard()
    {
        constexpr int questions = 5;
        PlayedProgram owner(ownerOf({{"UTF8_STRING", theirText}}));
        owner.copy();
        PlayedProgram fileManager({.forms = twoFiles});
        fileManager.activate();

        for (int i = 0; i < questions; ++i) {
            const Answer answer = m_selection->ask();
            QVERIFY(std::holds_alternative<Paths>(answer));
            QTRY_VERIFY_WITH_TIMEOUT(!fileManager.ownsClipboard(), patience);
        }

        QCOMPARE(clipboardOfOthers(u"UTF8_STRING"_s), theirText);
    }

    void aQuestionBeforeTheClipboardIsBackFailsAndLosesNothing()
    {
        PlayedProgram owner(ownerOf({{"UTF8_STRING", theirText}}));
        owner.copy();
        PlayedProgram fileManager({.forms = twoFiles});
        fileManager.activate();

        const Answer first = m_selection->ask();
        const Answer second = m_selection->ask();

        QVERIFY(std::holds_alternative<Paths>(first));
        QVERIFY(failed(second));
        QTRY_VERIFY_WITH_TIMEOUT(!fileManager.ownsClipboard(), patience);
        QCOMPARE(clipboardOfOthers(u"UTF8_STRING"_s), theirText);
    }

    void aLargePictureIsKeptWholeOrNotTouched()
    {
        constexpr int words = 30 * 1024 * 1024 / 4;
        QList<quint32> noise(words);
        QRandomGenerator::global()->fillRange(noise.data(), noise.size());
        const QByteArray picture(reinterpret_cast<const char*>(noise.constData()), noise.size() * 4);
        QTemporaryFile file;
        QVERIFY(file.open());
        QCOMPARE(file.write(picture), picture.size());
        QVERIFY(file.flush());
        const HelperProcess owner(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-t"_s, u"image/png"_s, u"-i"_s,
                                               u"-quiet"_s, file.fileName()});
        QTRY_VERIFY_WITH_TIMEOUT(clipboardOfOthers(u"TARGETS"_s).contains("image/png"), patience);
        PlayedProgram fileManager({.forms = twoFiles});
        fileManager.activate();

        const Asked asked = ask(*m_selection);

        qInfo("30 MB: %lld ms, %s", asked.milliseconds, failed(asked.answer) ? "not touched" : "kept");
        QVERIFY2(asked.milliseconds <= limit + tolerance, QByteArray::number(asked.milliseconds));
        QCOMPARE(fileManager.keys().isEmpty(), failed(asked.answer));
        QTRY_VERIFY_WITH_TIMEOUT(!fileManager.ownsClipboard(), patience);
        // An owner of this kind does not hear the next question before it is done with the last one.
        QTRY_VERIFY_WITH_TIMEOUT(clipboardOfOthers(u"image/png"_s) == picture, 4 * patience);
        QVERIFY(owner.running() || ownedByUs());
    }

    void aSecondQuestionLeavesTheTransferOfTheFirstToItsEnd()
    {
        constexpr qsizetype tooMuch = 130 * 1024 * 1024;
        QTemporaryFile file;
        QVERIFY(file.open());
        QVERIFY(file.resize(tooMuch));
        const HelperProcess owner(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-t"_s, u"image/png"_s, u"-i"_s,
                                               u"-quiet"_s, file.fileName()});
        QTRY_VERIFY_WITH_TIMEOUT(clipboardOfOthers(u"TARGETS"_s).contains("image/png"), patience);
        PlayedProgram fileManager({.forms = twoFiles});
        fileManager.activate();

        QVERIFY(failed(m_selection->ask()));
        QVERIFY(failed(m_selection->ask()));

        // It hears others when it is done with us, and ends when what it sends to is gone.
        constexpr int oneTry = 1000;
        QTRY_VERIFY_WITH_TIMEOUT(clipboardOfOthers(u"TARGETS"_s, oneTry).contains("image/png"), 4 * patience);
        QVERIFY(owner.running());
        QCOMPARE(fileManager.keys(), QList<PlayedProgram::Key>());
    }

    void withAnOwnerThatNeverAnswersNoKeyIsPressed()
    {
        PlayedProgram owner({.windowClass = "Owner", .forms = {{"UTF8_STRING", theirText}}, .handsOut = false});
        owner.copy();
        PlayedProgram fileManager({.forms = twoFiles});
        fileManager.activate();

        const Asked asked = ask(*m_selection);

        QVERIFY(failed(asked.answer));
        QVERIFY2(asked.milliseconds <= limit + tolerance, QByteArray::number(asked.milliseconds));
        QCOMPARE(fileManager.keys(), QList<PlayedProgram::Key>());
        QVERIFY(owner.ownsClipboard());
    }

    void aListThatIsNeverHandedOutIsAFailure()
    {
        PlayedProgram owner(ownerOf({{"UTF8_STRING", theirText}}));
        owner.copy();
        PlayedProgram fileManager({.forms = twoFiles, .handsOut = false});
        fileManager.activate();

        const Asked asked = ask(*m_selection);

        QVERIFY(failed(asked.answer));
        QVERIFY2(asked.milliseconds <= limit + tolerance, QByteArray::number(asked.milliseconds));
        QTRY_VERIFY_WITH_TIMEOUT(!fileManager.ownsClipboard(), patience);
        QCOMPARE(clipboardOfOthers(u"UTF8_STRING"_s), theirText);
    }

    void aCopyThatComesLateIsUndone()
    {
        PlayedProgram owner(ownerOf({{"UTF8_STRING", theirText}}));
        owner.copy();
        PlayedProgram fileManager({.forms = twoFiles});
        fileManager.activate();
        fileManager.hang();

        const Asked asked = ask(*m_selection);
        QVERIFY(failed(asked.answer));
        QVERIFY2(asked.milliseconds <= limit + tolerance, QByteArray::number(asked.milliseconds));
        QVERIFY(owner.ownsClipboard());
        QVERIFY(failed(m_selection->ask()));
        fileManager.resume();

        QTRY_VERIFY_WITH_TIMEOUT(ownedByUs(), patience);
        QCOMPARE(clipboardOfOthers(u"UTF8_STRING"_s), theirText);
        QCOMPARE(fileManager.keys().size(), 2);
        QVERIFY(std::holds_alternative<Paths>(m_selection->ask()));
    }

    void aCopyThatComesLateLeavesOurOwnClipboardAsItWas()
    {
        QtPasteboard pasteboard;
        pasteboard.setText(QString::fromUtf8(theirText));
        QTRY_VERIFY_WITH_TIMEOUT(ownedByUs(), patience);
        PlayedProgram fileManager({.forms = twoFiles});
        fileManager.activate();
        fileManager.hang();
        QVERIFY(failed(m_selection->ask()));
        fileManager.resume();
        // That the answer was late, and that the copy came: both are known by the time the event loop runs.
        while (!fileManager.ownsClipboard()) {
            std::this_thread::yield();
        }

        QTRY_VERIFY_WITH_TIMEOUT(!fileManager.ownsClipboard(), patience);

        QCOMPARE(clipboardOfOthers(u"UTF8_STRING"_s), theirText);
    }

    void whatIsCopiedInLapsaMeanwhileIsThereAfterALateCopy()
    {
        PlayedProgram owner(ownerOf({{"UTF8_STRING", theirText}}));
        owner.copy();
        PlayedProgram fileManager({.forms = twoFiles});
        fileManager.activate();
        fileManager.hang();
        QVERIFY(failed(m_selection->ask()));
        QtPasteboard().setText(u"a path"_s);
        QTRY_VERIFY_WITH_TIMEOUT(ownedByUs(), patience);
        // With the time of now: by that of the key press the server would refuse it.
        fileManager.copy();
        QVERIFY(fileManager.ownsClipboard());

        QTRY_VERIFY_WITH_TIMEOUT(!fileManager.ownsClipboard(), patience);

        QCOMPARE(clipboardOfOthers(u"UTF8_STRING"_s), "a path");
    }

    void whatAFileManagerCopiedLateIsNotTakenForTheUsers()
    {
        PlayedProgram owner(ownerOf({{"UTF8_STRING", theirText}}));
        owner.copy();
        PlayedProgram fileManager({.forms = {}});
        fileManager.activate();
        QVERIFY(std::holds_alternative<Nothing>(m_selection->ask()));
        fileManager.copy();

        QVERIFY(failed(m_selection->ask()));

        QTRY_VERIFY_WITH_TIMEOUT(!fileManager.ownsClipboard(), patience);
        QCOMPARE(clipboardOfOthers(u"UTF8_STRING"_s), theirText);
    }

    void whatAnotherProgramCopiesMeanwhileIsLeftAlone()
    {
        PlayedProgram owner(ownerOf({{"UTF8_STRING", theirText}}));
        owner.copy();
        PlayedProgram newer(ownerOf({{"UTF8_STRING", "newer"}}));
        PlayedProgram fileManager({.forms = twoFiles});
        fileManager.activate();
        fileManager.hang();
        QVERIFY(failed(m_selection->ask()));

        newer.copy();
        // Until it has been noticed, a question fails, as one is open.
        QTRY_VERIFY_WITH_TIMEOUT(!failed(m_selection->ask()) || newer.ownsClipboard(), patience);
        QCOMPARE(clipboardOfOthers(u"UTF8_STRING"_s), "newer");
        fileManager.resume();

        QTRY_VERIFY_WITH_TIMEOUT(fileManager.keys().size() >= 2, patience);
        QVERIFY(!owner.ownsClipboard());
        QVERIFY(clipboardOfOthers(u"UTF8_STRING"_s) != theirText);
    }

    void textIsPutOverWhatAnotherProgramHasJustCopied()
    {
        bool fresh = false;
        whenEventTimeIsFresh(this, [&fresh] { fresh = true; });
        QTRY_VERIFY_WITH_TIMEOUT(fresh, patience);
        PlayedProgram other(ownerOf({{"UTF8_STRING", theirText}}));
        // The server's time goes on, and the toolkit, which sees no event of it, does not notice.
        std::ignore = outputOf(u"xdotool"_s, {u"getmouselocation"_s});
        other.copy();
        while (!other.ownsClipboard()) {
            std::this_thread::yield();
        }
        QtPasteboard pasteboard;

        pasteboard.setText(u"ours"_s);

        QTRY_VERIFY_WITH_TIMEOUT(!other.ownsClipboard(), patience);
        QCOMPARE(clipboardOfOthers(u"UTF8_STRING"_s), "ours");
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
