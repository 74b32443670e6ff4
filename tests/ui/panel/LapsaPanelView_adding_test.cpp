// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DropZone.h"
#include "Drops.h"
#include "PanelWorld.h"
#include "TextLabel.h"

#include <QApplication>
#include <QTest>

#include <algorithm>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

namespace {

void drop(PanelWorld& world, const QStringList& paths)
{
    dropFiles(*world.panel.findChild<DropZone*>(), paths);
}

/// Whether the panel shows that text.
bool shows(const PanelWorld& world, const QString& text)
{
    const QList<TextLabel*> labels = world.panel.findChildren<TextLabel*>();
    return std::ranges::any_of(labels,
                               [&text](const TextLabel* label) { return label->isVisible() && label->text() == text; });
}

} // namespace

/// What the panel says about what was put into it.
class LapsaPanelView_adding_test final : public QObject
{
    Q_OBJECT

private slots:

    void init() { PanelWorld::setUpApplication(); }

    void aDropIsSpokenOfAsAWhole()
    {
        PanelWorld world;
        QStringList folders;
        for (int number = 1; number <= 5; ++number) {
            folders += world.home.makeFolder(QString::number(number));
            world.home.makeFile(u"%1/file"_s.arg(number));
        }

        drop(world, folders);

        QCOMPARE(world.store().items().size(), 5);
        QVERIFY(shows(world, u"5 folders go as a whole: 5 files."_s));
    }

    void aRefusalIsSaidWhateverComesAfterIt()
    {
        PanelWorld world;
        const QString home = world.home.path(u"."_s).chopped(2);

        drop(world, {home, world.home.makeFile(u"a.txt"_s)});

        QCOMPARE(world.listedNames(), QStringList{u"a.txt"_s});
        QVERIFY(shows(world, u"Your home folder cannot be put on countdown."_s));
    }

    void theNextAddOfFilesClearsTheMessage()
    {
        PanelWorld world;
        drop(world, {world.home.makeFolder(u"folder"_s)});
        QVERIFY(world.store().lastMessage());

        drop(world, {world.home.makeFile(u"a.txt"_s)});

        QCOMPARE(world.store().lastMessage(), std::nullopt);
    }

    void theMessageGoesWithThePanelThatShowedIt()
    {
        PanelWorld world;
        drop(world, {world.home.makeFolder(u"folder"_s)});
        QVERIFY(shows(world, u"“folder” goes as a whole: no files yet."_s));

        world.panel.hide();

        QCOMPARE(world.store().lastMessage(), std::nullopt);
    }

    void aMessageThatWasNotSeenYetWaitsForThePanel()
    {
        PanelWorld world;
        world.panel.hide();
        world.store().setLastMessage(u"waits"_s);
        PanelWorld::settle();

        world.panel.show();

        QVERIFY(shows(world, u"waits"_s));
    }
};

QTEST_MAIN(LapsaPanelView_adding_test)

#include "LapsaPanelView_adding_test.moc"
