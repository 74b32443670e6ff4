// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HelperProcess.h"
#include "QtPasteboard.h"
#include "VirtualDisplay.h"

#include <QGuiApplication>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 20'000;

/// What another program gets when it asks for the clipboard. Asked without waiting: we are the ones who answer.
QByteArray clipboardOfOthers()
{
    QProcess reader;
    reader.start(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-o"_s});
    const bool ended = QTest::qWaitFor([&reader] { return reader.state() == QProcess::NotRunning; }, patience);
    return ended ? reader.readAllStandardOutput() : QByteArray("no answer");
}

} // namespace

class WorkspaceDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void textOnTheClipboardReachesOtherPrograms()
    {
        QtPasteboard pasteboard;

        pasteboard.setText(u"/data/100% perch\u00E9\nx.txt"_s);
        QTRY_COMPARE_WITH_TIMEOUT(clipboardOfOthers(), u"/data/100% perch\u00E9\nx.txt"_s.toUtf8(), patience);
    }

    void textTakesThePlaceOfWhatAnotherProgramHadThere()
    {
        QProcess owner;
        owner.start(u"xclip"_s, {u"-selection"_s, u"clipboard"_s, u"-i"_s, u"-quiet"_s});
        QVERIFY(owner.waitForStarted(patience));
        owner.write("theirs");
        owner.closeWriteChannel();
        QTRY_COMPARE_WITH_TIMEOUT(clipboardOfOthers(), "theirs", patience);
        QtPasteboard pasteboard;

        pasteboard.setText(u"ours"_s);

        QTRY_COMPARE_WITH_TIMEOUT(clipboardOfOthers(), "ours", patience);
        owner.kill();
        owner.waitForFinished(patience);
    }
};

} // namespace lapsa::test

int main(int argc, char** argv)
{
    // Before the application, which connects to it.
    const lapsa::test::VirtualDisplay display;
    QGuiApplication application(argc, argv);
    lapsa::test::WorkspaceDesktopTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "Workspace_desktop_test.moc"
