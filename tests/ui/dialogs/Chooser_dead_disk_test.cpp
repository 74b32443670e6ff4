// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ElidedLabel.h"
#include "FileChooser.h"
#include "PanelWorld.h"
#include "QtMainQueue.h"
#include "SteeredDisk.h"
#include "TemporaryHome.h"
#include "ThreadLanes.h"

#include <QFile>
#include <QLineEdit>
#include <QTest>
#include <QTreeView>

#include <algorithm>
#include <chrono>
#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

/// A chooser with real lanes, on a mount that stops answering.
class ChooserDeadDiskTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        if (!SteeredDisk::available()) {
            QSKIP("no steered disk");
        }
        PanelWorld::setUpApplication();
    }

    void aFolderThatHangsLeavesTheDialogUsable_data()
    {
        QTest::addColumn<QString>("way");

        QTest::newRow("by its own path") << u"disk"_s;
        QTest::newRow("by a link") << u"link"_s;
    }

    void aFolderThatHangsLeavesTheDialogUsable()
    {
        QFETCH(const QString, way);
        const TemporaryHome home;
        home.makeFile(u"behind/far.txt"_s);
        home.makeFile(u"here/near.txt"_s);
        const Language english("en_US.UTF-8");
        QtMainQueue queue;
        SteeredDisk disk(home.path(u"behind"_s), home.makeFolder(u"disk"_s));
        QVERIFY(QFile::link(home.path(u"disk"_s), home.path(u"link"_s)));
        ThreadLanes lanes(queue, {.hangsAfter = 50ms});
        FileChooser chooser({lanes, queue}, home.path(way), nullptr);
        chooser.show();
        QTRY_COMPARE(shown(chooser), QStringList{u"far.txt"_s});

        disk.stopAnswering();
        go(chooser, home.path(way + u"/far.txt"_s));
        disk.awaitStoppedCall();
        QTRY_VERIFY(waits(chooser));
        go(chooser, home.path(u"here"_s));
        QTRY_COMPARE(shown(chooser), QStringList{u"near.txt"_s});
        QTRY_VERIFY(!waits(chooser));
        QTest::keyClick(&chooser, Qt::Key_Left, Qt::AltModifier);
        QTRY_VERIFY(waits(chooser));
        disk.answerAgain();

        QTRY_COMPARE(shown(chooser), QStringList{u"far.txt"_s});
        QTRY_VERIFY(!waits(chooser));
        lanes.finish(10s);
    }

private:
    static QStringList shown(const FileChooser& chooser)
    {
        QStringList shown;
        const QAbstractItemModel& model = *chooser.findChild<QTreeView*>()->model();
        for (int row = 0; row < model.rowCount(); ++row) {
            shown.push_back(model.index(row, 0).data().toString());
        }
        return shown;
    }

    static bool waits(const FileChooser& chooser)
    {
        const QList<ElidedLabel*> labels = chooser.findChildren<ElidedLabel*>();
        return std::ranges::any_of(labels, [](const auto* label) { return label->text() == u"Waiting for the disk"; });
    }

    static void go(const FileChooser& chooser, const QString& path)
    {
        auto* const field = chooser.findChild<QLineEdit*>();
        field->setText(path);
        QTest::keyClick(field, Qt::Key_Return);
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::ChooserDeadDiskTest)
#include "Chooser_dead_disk_test.moc"
