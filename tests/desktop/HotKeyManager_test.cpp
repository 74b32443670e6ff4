// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HotKeyManager.h"
#include "Localized.h"
#include "RecordingDesktop.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

class HotKeyManagerTest final : public QObject
{
    Q_OBJECT

private slots:

    void nothingIsRegisteredBeforeItIsAskedFor()
    {
        RecordingHotKeys hotKeys;
        const HotKeyManager manager(hotKeys, [] {});

        QCOMPARE(hotKeys.registered.size(), 0);
    }

    void theKeyIsSuperShiftY()
    {
        RecordingHotKeys hotKeys;
        HotKeyManager manager(hotKeys, [] {});

        manager.registerHotKey();

        QCOMPARE(hotKeys.registered.size(), 1);
        QCOMPARE(hotKeys.registered[0], (HotKey{.identifier = u"CHX1-1"_s,
                                                .description = Localized::addFinderSelection(),
                                                .letter = 'y',
                                                .super = true,
                                                .shift = true}));
    }

    void everyPressRunsTheHandler()
    {
        RecordingHotKeys hotKeys;
        int presses = 0;
        HotKeyManager manager(hotKeys, [&presses] { ++presses; });
        manager.registerHotKey();

        hotKeys.press();
        hotKeys.press();

        QCOMPARE(presses, 2);
    }

    void afterUnregisterTheHandlerIsNotRun()
    {
        RecordingHotKeys hotKeys;
        int presses = 0;
        HotKeyManager manager(hotKeys, [&presses] { ++presses; });
        manager.registerHotKey();

        manager.unregister();
        hotKeys.press();

        QCOMPARE(hotKeys.released, 1);
        QCOMPARE(presses, 0);
    }

    void unregisteringTwiceGivesTheKeyBackOnce()
    {
        RecordingHotKeys hotKeys;
        HotKeyManager manager(hotKeys, [] {});
        manager.registerHotKey();

        manager.unregister();
        manager.unregister();

        QCOMPARE(hotKeys.released, 1);
    }

    void unregisteringWhatNeverWasRegisteredDoesNothing()
    {
        RecordingHotKeys hotKeys;
        HotKeyManager manager(hotKeys, [] {});

        manager.unregister();

        QCOMPARE(hotKeys.released, 0);
    }

    void theKeyGoesBackWithTheManager()
    {
        RecordingHotKeys hotKeys;
        {
            HotKeyManager manager(hotKeys, [] {});
            manager.registerHotKey();
        }

        QCOMPARE(hotKeys.released, 1);
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::HotKeyManagerTest)
#include "HotKeyManager_test.moc"
