// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HotKeyManager.h"
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

    void theKeyIsSuperShiftY_data()
    {
        QTest::addColumn<QByteArray>("locale");
        QTest::addColumn<QString>("description");

        QTest::newRow("English") << QByteArray("en_GB.UTF-8") << u"Add Finder selection"_s;
        QTest::newRow("Italian") << QByteArray("it_IT.UTF-8") << u"Aggiungi selezione Finder"_s;
    }

    void theKeyIsSuperShiftY()
    {
        QFETCH(const QByteArray, locale);
        QFETCH(const QString, description);
        qputenv("LC_ALL", locale);
        RecordingHotKeys hotKeys;
        HotKeyManager manager(hotKeys, [] {});

        manager.registerHotKey();

        QCOMPARE(hotKeys.registered.size(), 1);
        QCOMPARE(
            hotKeys.registered[0],
            (HotKey{
                .identifier = u"CHX1-1"_s, .description = description, .letter = 'y', .super = true, .shift = true}));
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

    void unregisteringWhatNeverWasRegisteredDoesNotSpoilALaterRegistration()
    {
        RecordingHotKeys hotKeys;
        int presses = 0;
        HotKeyManager manager(hotKeys, [&presses] { ++presses; });

        manager.unregister();
        manager.registerHotKey();
        hotKeys.press();

        QCOMPARE(presses, 1);
        QCOMPARE(hotKeys.released, 0);
    }

    void registeringAfterUnregisteringTakesTheKeyAgain()
    {
        RecordingHotKeys hotKeys;
        int presses = 0;
        HotKeyManager manager(hotKeys, [&presses] { ++presses; });
        manager.registerHotKey();
        manager.unregister();

        manager.registerHotKey();
        hotKeys.press();

        QCOMPARE(hotKeys.registered.size(), 2);
        QCOMPARE(hotKeys.released, 1);
        QCOMPARE(presses, 1);
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
