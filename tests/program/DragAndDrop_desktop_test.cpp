// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HelperProcess.h"
#include "LapsaProcess.h"
#include "SessionBus.h"
#include "Settling.h"
#include "TemporaryHome.h"
#include "VirtualDisplay.h"
#include "WindowManager.h"

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QTest>
#include <QTimer>
#include <QUrl>
#include <QWidget>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 30'000;
/// The panel in its corner, and the middle of its drop zone.
constexpr QRect panelPlace(850, 0, 430, 560);
constexpr QPoint zoneCentre(850 + 215, 24 + 36 + 18 + 60);
constexpr QRect sourcePlace(20, 700, 200, 200);

const QString sourceProgram = u"drag-source"_s;
const QString withText = u"text"_s;
/// What the source says.
const QString ready = u"ready"_s;
const QString begun = u"begun"_s;
const QString welcome = u"welcome"_s;
const QString taken = u"taken"_s;
const QString refused = u"refused"_s;

void say(const QString& line)
{
    std::puts(qPrintable(line));
    std::fflush(stdout);
}

/// The window of a file manager, as far as it matters here: what is pressed is dragged.
class SourceWindow final : public QWidget
{
public:
    explicit SourceWindow(const QStringList& dragged)
        : m_dragged(dragged)
    {
        setGeometry(sourcePlace);
    }

protected:
    void mousePressEvent(QMouseEvent*) override
    {
        auto* const mime = new QMimeData;
        if (m_dragged.first() == withText) {
            mime->setText(u"some text"_s);
        } else {
            QList<QUrl> urls;
            for (const QString& path : m_dragged) {
                urls.push_back(QUrl::fromLocalFile(path));
            }
            mime->setUrls(urls);
        }
        auto* const drag = new QDrag(this); // deletes itself
        drag->setMimeData(mime);
        connect(drag, &QDrag::actionChanged, this, [](Qt::DropAction action) {
            if (action == Qt::CopyAction) {
                say(welcome);
            }
        });
        QTimer::singleShot(0, this, [] { say(begun); }); // once the drag handles the mouse
        say(drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction) == Qt::CopyAction ? taken : refused);
    }

private:
    QStringList m_dragged;
};

void mouse(const QStringList& commands)
{
    // It writes nothing.
    std::ignore = outputOf(u"xdotool"_s, commands);
}

/// The mouse, as a hand holds it that waits for something: never quite still.
QStringList aroundTheZone()
{
    constexpr int times = 400;
    QStringList commands;
    for (int time = 0; time < times; ++time) {
        const QPoint point = zoneCentre + QPoint(time % 2, 0);
        commands << u"mousemove"_s << QString::number(point.x()) << QString::number(point.y()) << u"sleep"_s
                 << u"0.05"_s;
    }
    return commands;
}

/// Takes what `source` has to the drop zone with the mouse; whether it was taken there.
bool dragToThePanel(HelperProcess& source)
{
    mouse({u"mousemove"_s, QString::number(sourcePlace.center().x()), QString::number(sourcePlace.center().y()),
           u"mousedown"_s, u"1"_s});
    if (source.readLine() != begun) {
        return false;
    }
    {
        const HelperProcess hand(u"xdotool"_s, aroundTheZone());
        if (source.readLine() != welcome) {
            return false;
        }
    }
    mouse({u"mouseup"_s, u"1"_s});
    return source.readLine() == taken;
}

std::optional<QRect> shownWindow()
{
    return VirtualDisplay::windowOfClass(u"lapsa"_s);
}

} // namespace

/// Another program, the mouse and the whole of Lapsa, on a real X server with a window manager.
class DragAndDropDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        QTRY_VERIFY_WITH_TIMEOUT(!outputOf(u"xdotool"_s, {u"get_num_desktops"_s}).trimmed().isEmpty(), patience);
    }

    void init()
    {
        m_home.emplace();
        m_lapsa.emplace();
        // After the splash, or there are two windows to tell apart.
        QVERIFY(succeeds([] { return shownWindow(); }));
        QVERIFY(comesTrue([] { return !shownWindow(); }));
        LapsaProcess second;
        QCOMPARE(second.exitCode(), 0);
        QCOMPARE(settled(&shownWindow, std::optional(panelPlace)), std::optional(panelPlace));
    }

    void cleanup()
    {
        m_lapsa.reset();
        m_home.reset();
    }

    void threeFilesDraggedFromAnotherProgramAreThreeItemsInTheirOrder()
    {
        const QStringList files{m_home->makeFile(u"b.txt"_s), m_home->makeFile(u"c d%41.txt"_s),
                                m_home->makeFile(u"a.txt"_s)};
        const auto source = sourceOf(files);

        QVERIFY(dragToThePanel(*source));

        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(*m_home), files, patience);
        QCOMPARE(m_lapsa->terminate(), 0);
        QCOMPARE(storedPaths(*m_home), files);
        QCOMPARE(m_lapsa->standardError(), QByteArray());
    }

    void plainTextDraggedFromAnotherProgramIsTakenAndAddsNothing()
    {
        const auto source = sourceOf({withText});

        QVERIFY(dragToThePanel(*source));

        QCOMPARE(m_lapsa->terminate(), 0);
        QCOMPARE(storedPaths(*m_home), QStringList());
        QCOMPARE(m_lapsa->standardError(), QByteArray());
    }

private:
    /// The other program, its window on the screen.
    [[nodiscard]] static std::unique_ptr<HelperProcess> sourceOf(const QStringList& data)
    {
        auto source =
            std::make_unique<HelperProcess>(QCoreApplication::applicationFilePath(), QStringList{sourceProgram} + data);
        if (source->readLine() != ready) {
            qFatal("the other program does not come up");
        }
        return source;
    }

    std::optional<TemporaryHome> m_home;
    std::optional<LapsaProcess> m_lapsa;
};

namespace {

int runSource(int argc, char** argv)
{
    const QApplication application(argc, argv);
    SourceWindow window(QCoreApplication::arguments().sliced(2));
    window.show();
    if (!QTest::qWaitForWindowActive(&window, patience)) {
        return EXIT_FAILURE;
    }
    say(ready);
    return QApplication::exec();
}

int run(int argc, char** argv)
{
    const SessionBus bus;
    const VirtualDisplay display;
    const HelperProcess settings(u"/usr/lib/x86_64-linux-gnu/xfce4/xfconf/xfconfd"_s);
    const WindowManager windowManager;
    const QCoreApplication application(argc, argv);
    DragAndDropDesktopTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

} // namespace lapsa::test

int main(int argc, char** argv)
{
    const bool source = argc > 1 && QString::fromLocal8Bit(argv[1]) == lapsa::test::sourceProgram;
    return source ? lapsa::test::runSource(argc, argv) : lapsa::test::run(argc, argv);
}

#include "DragAndDrop_desktop_test.moc"
