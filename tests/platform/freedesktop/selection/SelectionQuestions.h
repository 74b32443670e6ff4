// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "PlayedProgram.h"
#include "X11FileManagerSelection.h"

#include <QByteArray>
#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QList>
#include <QProcess>
#include <QString>
#include <QTest>

#include <utility>
#include <variant>

// What the tests of the question about the selection share.

namespace lapsa::test {

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

inline const Forms twoFiles{{"x-special/gnome-copied-files", "copy\nfile:///home/b.txt\nfile:///home/a.txt"},
                            {"text/uri-list", "file:///home/b.txt\r\nfile:///home/a.txt\r\n"},
                            {"UTF8_STRING", "/home/b.txt\n/home/a.txt"}};
inline const Paths twoPaths{QStringLiteral("/home/b.txt"), QStringLiteral("/home/a.txt")};
inline const QByteArray theirText = "their text, perch\xC3\xA9";

/// What another program gets when it asks for the clipboard. Asked without waiting: we may be the ones who answer.
inline QByteArray clipboardOfOthers(const QString& target, int limitOfOne = patience)
{
    QProcess reader;
    reader.start(QStringLiteral("xclip"), {QStringLiteral("-selection"), QStringLiteral("clipboard"),
                                           QStringLiteral("-o"), QStringLiteral("-t"), target});
    const bool ended = QTest::qWaitFor([&reader] { return reader.state() == QProcess::NotRunning; }, limitOfOne);
    if (!ended) {
        reader.kill();
        reader.waitForFinished();
        return "no answer";
    }
    return reader.readAllStandardOutput();
}

inline bool ownedByUs()
{
    return QGuiApplication::clipboard()->ownsClipboard();
}

inline PlayedProgram::Part ownerOf(const Forms& forms)
{
    return {.windowClass = "Owner", .forms = forms};
}

/// A question, how long it took, and whether it kept the limit.
struct Asked
{
    Answer answer;
    qint64 milliseconds = 0;
};

inline Asked ask(FileManagerSelection& selection)
{
    QElapsedTimer timer;
    timer.start();
    Answer answer = selection.ask();
    return {std::move(answer), timer.elapsed()};
}

inline bool failed(const Answer& answer)
{
    return std::holds_alternative<Failure>(answer);
}

} // namespace lapsa::test
