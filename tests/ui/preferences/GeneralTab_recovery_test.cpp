// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PanelWorld.h"
#include "PreferencesWorld.h"
#include "PushButton.h"
#include "StoreSetup.h"
#include "TextLabel.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

bool shows(const QWidget& view, const QString& text)
{
    const QList<TextLabel*> labels = view.findChildren<TextLabel*>();
    return std::ranges::any_of(labels, [&text](const TextLabel* label) { return label->text() == text; });
}

} // namespace

/// The row that leads to the Recovery window.
class GeneralTab_recovery_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void whatIsInRecoveryIsCountedOnlyWhileThereIsSomething()
    {
        PreferencesWorld world;
        auto& show = named<PushButton>(world.view, u"Show…"_s);
        QVERIFY(!show.isVisible());

        park(world, u"a.txt"_s);
        world.settle();
        QVERIFY(show.isVisible());
        QVERIFY(shows(world.view, u"In Recovery: 1 file, 5 bytes"_s));
        QSignalSpy requests(&world.view, &PreferencesView::recoveryRequested);
        show.setFocus();
        pressKey(world.view, Qt::Key_Space);
        QCOMPARE(requests.size(), 1);

        world.store().restoreRecoveryItem(world.store().recoveryItems().constFirst());
        world.settle();
        QVERIFY(!show.isVisible());
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::GeneralTab_recovery_test)
#include "GeneralTab_recovery_test.moc"
