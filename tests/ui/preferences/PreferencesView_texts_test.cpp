// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PanelWorld.h"
#include "PreferencesWorld.h"
#include "PushButton.h"
#include "Stepper.h"
#include "SymbolTabBar.h"
#include "TextLabel.h"
#include "Toggle.h"

#include <QLineEdit>
#include <QRadioButton>
#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

/// The texts that a tab shows, its names of fields and placeholders too, in the order in which its controls were made.
QStringList textsOf(PreferencesWorld& world, PreferencesView::Tab tab)
{
    world.view.showTab(tab);
    world.settle();
    QStringList texts;
    for (const QWidget* const widget : world.view.findChildren<QWidget*>()) {
        if (!widget->isVisible()) {
            continue;
        }
        if (const auto* const label = qobject_cast<const TextLabel*>(widget)) {
            texts.push_back(label->text());
        } else if (const auto* const field = qobject_cast<const QLineEdit*>(widget)) {
            texts.push_back(field->placeholderText());
        } else if (qobject_cast<const Toggle*>(widget) != nullptr || qobject_cast<const Stepper*>(widget) != nullptr) {
            texts.push_back(widget->accessibleName());
        } else if (const auto* const button = qobject_cast<const QAbstractButton*>(widget)) {
            texts.push_back(button->text());
        }
    }
    return texts;
}

/// What of `wanted` a tab does not show.
QStringList missing(const QStringList& shown, QStringList wanted)
{
    wanted.removeIf([&shown](const QString& text) { return shown.contains(text); });
    return wanted;
}

constexpr char english[] = "en_GB.UTF-8";
constexpr char italian[] = "it_IT.UTF-8";

QStringList generalTabInEnglish()
{
    return {
        u"General"_s,
        u"Default expiry"_s,
        u"2h"_s,
        u"Days"_s,
        u"0 d"_s,
        u"Hours"_s,
        u"2 h"_s,
        u"Minutes"_s,
        u"0 min"_s,
        u"Use Trash instead of permanent delete"_s,
        u"Pause all countdowns"_s,
        u"Keep panel open until I click the icon again"_s,
        u"Theme"_s,
        u"System"_s,
        u"Dark"_s,
        u"Light"_s,
        u"Notifications"_s,
        u"Notify before expiry"_s,
        u"5min"_s,
        u"5 min"_s,
        u"0 h"_s,
        u"Recovery"_s,
        u"Use recovery window before final cleanup"_s,
        u"Expired files are moved to an internal Recovery folder and then purged after "
        u"the selected period."_s,
        u"Recovery retention"_s,
        u"Recovery retention: 24 h"_s,
    };
}

QStringList generalTabInItalian()
{
    return {
        u"Generale"_s,
        u"Scadenza predefinita"_s,
        u"2h"_s,
        u"Giorni"_s,
        u"0 g"_s,
        u"Ore"_s,
        u"2 h"_s,
        u"Minuti"_s,
        u"0 min"_s,
        u"Usa Cestino invece di eliminare definitivamente"_s,
        u"Metti in pausa tutti i countdown"_s,
        u"Tieni aperto il pannello finché non clicco l'icona"_s,
        u"Tema"_s,
        u"Sistema"_s,
        u"Dark"_s,
        u"Light"_s,
        u"Notifiche"_s,
        u"Avvisa prima della scadenza"_s,
        u"5min"_s,
        u"5 min"_s,
        u"0 h"_s,
        u"Recupero"_s,
        u"Usa finestra di recupero prima dell’eliminazione"_s,
        u"I file scaduti vengono spostati in una cartella Recupero interna e poi "
        u"eliminati dopo il periodo scelto."_s,
        u"Conservazione recupero"_s,
        u"Conservazione recupero: 24 h"_s,
    };
}

} // namespace

/// Every text of the preferences, letter by letter.
class PreferencesViewTextsTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void theGeneralTabReadsAsGiven_data()
    {
        QTest::addColumn<QByteArray>("locale");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("English") << QByteArray(english) << generalTabInEnglish();
        QTest::newRow("Italian") << QByteArray(italian) << generalTabInItalian();
    }

    void theGeneralTabReadsAsGiven()
    {
        QFETCH(const QByteArray, locale);
        QFETCH(const QStringList, texts);
        const Language language(locale.constData());
        PreferencesWorld world;
        world.changeElsewhere([](LapsaSettings& settings) { settings.recoveryRetentionHours = 24; });

        const QStringList shown = textsOf(world, PreferencesView::Tab::General);

        QCOMPARE(missing(shown, texts).join(u'\n'), QString());
        QCOMPARE(missing(texts, shown).join(u'\n'), QString()); // and nothing else
    }

    void theRulesTabReadsAsGiven_data()
    {
        QTest::addColumn<QByteArray>("locale");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("English") << QByteArray(english)
                                 << QStringList{u"File type rules"_s, u"Add rule"_s, u"New rule"_s,
                                                u"Extensions, e.g. .pdf,.png"_s, u"Remove rule"_s};
        QTest::newRow("Italian") << QByteArray(italian)
                                 << QStringList{u"Regole per tipo file"_s, u"Aggiungi regola"_s, u"Nuova regola"_s,
                                                u"Estensioni, esempio .pdf,.png"_s, u"Rimuovi regola"_s};
    }

    void theRulesTabReadsAsGiven()
    {
        QFETCH(const QByteArray, locale);
        QFETCH(const QStringList, texts);
        const Language language(locale.constData());
        PreferencesWorld world;
        world.store().addFileTypeRule();

        QCOMPARE(missing(textsOf(world, PreferencesView::Tab::Rules), texts).join(u'\n'), QString());
    }

    void theFoldersTabReadsAsGiven_data()
    {
        QTest::addColumn<QByteArray>("locale");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("English") << QByteArray(english)
                                 << QStringList{u"Auto-clean folders"_s,
                                                u"Add folder"_s,
                                                u"Folder not set"_s,
                                                u"Include existing files"_s,
                                                u"Apply file type rules"_s,
                                                u"By the rules; other files 2h."_s,
                                                u"This folder cannot be read now."_s,
                                                u"Remove folder"_s};
        QTest::newRow("Italian") << QByteArray(italian)
                                 << QStringList{u"Pulizia automatica cartelle"_s,
                                                u"Aggiungi cartella"_s,
                                                u"Cartella non impostata"_s,
                                                u"Includi file già presenti"_s,
                                                u"Applica regole per tipo file"_s,
                                                u"Secondo le regole; altri file 2h."_s,
                                                u"Questa cartella ora non è leggibile."_s,
                                                u"Rimuovi cartella"_s};
    }

    void theFoldersTabReadsAsGiven()
    {
        QFETCH(const QByteArray, locale);
        QFETCH(const QStringList, texts);
        const Language language(locale.constData());
        PreferencesWorld world;
        world.changeElsewhere([](LapsaSettings& settings) {
            settings.autoCleanFolders = {LapsaAutoCleanFolderRule(), {.folderPath = u"/srv/gone"_s}};
        });

        QCOMPARE(missing(textsOf(world, PreferencesView::Tab::Folders), texts).join(u'\n'), QString());
    }

    void theEmptyFoldersTabExplainsItselfInBothLanguages()
    {
        for (const auto& [locale, text] :
             {std::pair(english, u"Every new file in a folder that you add here starts a countdown by itself. Files "
                                 u"that are already there are left alone until you include them."_s),
              std::pair(italian, u"Ogni nuovo file in una cartella aggiunta qui avvia da solo un conto alla rovescia. "
                                 u"I file già presenti restano esclusi finché non li includi."_s)}) {
            const Language language(locale);
            PreferencesWorld world;

            QVERIFY(textsOf(world, PreferencesView::Tab::Folders).contains(text));
        }
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::PreferencesViewTextsTest)
#include "PreferencesView_texts_test.moc"
