// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HelperProcess.h"
#include "QtPasteboard.h"
#include "SelectionClipboardFixture.h"
#include "ServerTimestamp.h"

#include <QMimeData>
#include <QRandomGenerator>
#include <QTemporaryFile>
#include <QTest>

#include <memory>
#include <thread>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

/// What is on the clipboard after the question.
class SelectionClipboardTest final : public SelectionClipboardFixture
{
    Q_OBJECT

private slots:

    void init() { begin(); }

    void cleanup() { end(); }

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
        whenServerTimestampIsFresh(this, [&data] { QGuiApplication::clipboard()->setMimeData(data.release()); });
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

    void textIsPutOverWhatAnotherProgramHasJustCopied()
    {
        bool fresh = false;
        whenServerTimestampIsFresh(this, [&fresh] { fresh = true; });
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
};

} // namespace lapsa::test

int main(int argc, char** argv)
{
    return lapsa::test::runOnVirtualDisplay<lapsa::test::SelectionClipboardTest>(argc, argv);
}

#include "SelectionClipboard_test.moc"
