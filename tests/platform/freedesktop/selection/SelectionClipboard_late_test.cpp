// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HelperProcess.h"
#include "QtPasteboard.h"
#include "SelectionClipboardFixture.h"

#include <QTemporaryFile>
#include <QTest>

#include <thread>

using namespace Qt::StringLiterals;

namespace lapsa::test {

/// What is on the clipboard when a program is late, or never answers.
class SelectionClipboardLateTest final : public SelectionClipboardFixture
{
    Q_OBJECT

private slots:

    void init() { begin(); }

    void cleanup() { end(); }

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
};

} // namespace lapsa::test

int main(int argc, char** argv)
{
    return lapsa::test::runOnVirtualDisplay<lapsa::test::SelectionClipboardLateTest>(argc, argv);
}

#include "SelectionClipboard_late_test.moc"
