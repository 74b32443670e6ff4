// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileManagerWindow.h"

#include "VirtualDisplay.h"

#include <QTest>

#include <optional>
#include <tuple>
#include <variant>

using namespace Qt::StringLiterals;

namespace lapsa::test {

const QList<FileManagerProgram>& fileManagerPrograms()
{
    static const QList<FileManagerProgram> programs{
        {u"thunar"_s, {}, u"Thunar"_s, true, true},
        {u"pcmanfm"_s, {u"--new-win"_s}, u"Pcmanfm"_s, true, true},
        {u"pcmanfm-qt"_s, {u"--new-window"_s}, u"pcmanfm-qt"_s, true, true},
        {u"nautilus"_s, {u"--new-window"_s}, u"org.gnome.Nautilus"_s},
        {u"dolphin"_s, {u"--new-window"_s}, u"dolphin"_s, false},
        {u"nemo"_s, {u"--no-desktop"_s}, u"Nemo"_s},
        {u"caja"_s, {u"--no-desktop"_s, u"--browser"_s}, u"Caja"_s},
    };
    return programs;
}

void xdotool(const QStringList& arguments)
{
    // It writes nothing.
    std::ignore = outputOf(u"xdotool"_s, arguments);
}

QByteArray told(const FileManagerSelection::Answer& answer)
{
    if (const auto* const failure = std::get_if<FileManagerSelection::Failure>(&answer)) {
        return failure->description.toUtf8();
    }
    QByteArray text = std::holds_alternative<FileManagerSelection::Nothing>(answer) ? "nothing" : "";
    if (const auto* const paths = std::get_if<FileManagerSelection::Paths>(&answer)) {
        for (const std::optional<QString>& path : *paths) {
            text += path.value_or(u"(no path)"_s).toUtf8() + '|';
        }
    }
    return text;
}

QStringList sortedPaths(const FileManagerSelection::Answer& answer)
{
    QStringList found;
    if (const auto* const paths = std::get_if<FileManagerSelection::Paths>(&answer)) {
        for (const std::optional<QString>& path : *paths) {
            found.push_back(path.value_or(QString()));
        }
    }
    found.sort();
    return found;
}

FileManagerWindow::FileManagerWindow(const FileManagerProgram& program, const QString& folder)
    : m_class(program.windowClass)
    , m_process(program.command, program.options + QStringList{folder})
{}

bool FileManagerWindow::appears(int patience) const
{
    constexpr int leastWidth = 200; // there are small helper windows of the same class
    return QTest::qWaitFor(
        [this] { return VirtualDisplay::windowOfClass(m_class).value_or(QRect()).width() > leastWidth; }, patience);
}

void FileManagerWindow::clickInTheView()
{
    constexpr int aboveTheStatusBar = 100;
    // Never twice at the same place, or it is a double click.
    m_clickPlace = m_clickPlace == aboveTheStatusBar ? 2 * aboveTheStatusBar : aboveTheStatusBar;
    const QRect window = VirtualDisplay::windowOfClass(m_class).value_or(QRect());
    VirtualDisplay::click(window.bottomRight() - QPoint(m_clickPlace, aboveTheStatusBar));
}

void FileManagerWindow::selectAll()
{
    clickInTheView();
    xdotool({u"key"_s, u"ctrl+a"_s});
}

} // namespace lapsa::test
