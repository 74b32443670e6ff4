// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DesktopSession.h"
#include "LapsaProcess.h"
#include "ScreenReader.h"
#include "Settling.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTest>

#include <optional>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

/// Whether all of `parts` were said, in that order; other words may come between them.
bool includes(const QStringList& said, const QStringList& parts)
{
    const QString speech = said.join(u' ');
    qsizetype from = 0;
    for (const QString& part : parts) {
        const qsizetype place = speech.indexOf(part, from);
        if (place < 0) {
            return false;
        }
        from = place + part.size();
    }
    return true;
}

} // namespace

/// What somebody hears who cannot see the screen: the whole program, used by its keys alone, through a real screen
/// reader. Compared are Lapsa's own words and the numbers; roles and states, which are the reader's words, in English
/// only.
class OrcaDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void cleanup()
    {
        m_lapsa.reset();
        m_reader.reset();
        m_desktop.reset();
        qputenv("LC_ALL", m_language);
    }

    void thePanelIsHeard_data() { addLanguages(); }

    void thePanelIsHeard()
    {
        begin();

        openPanel();
        press(u"Down"_s, {u"alpha.txt"_s, u"1 "_s, u" 3"_s, text(u"2h left"_s, u"2h rimanenti"_s)});
        press(u"Down"_s, {u"beta.pdf"_s, u"2 "_s, u" 3"_s, text(u"2h left"_s, u"2h rimanenti"_s)});
        press(u"Tab"_s, {text(u"Change timer"_s, u"Cambia scadenza"_s), role(u"push button"_s)});
        press(u"Tab"_s, {text(u"Lock"_s, u"Blocca"_s), role(u"push button"_s)});
        press(u"Tab"_s, {text(u"Remove from list"_s, u"Rimuovi dalla lista"_s), role(u"push button"_s)});
        press(u"Tab"_s, {text(u"Delete now"_s, u"Elimina ora"_s), role(u"push button"_s)});
    }

    void theTimeSheetIsHeard_data() { addLanguages(); }

    void theTimeSheetIsHeard()
    {
        begin();
        openPanel();
        press(u"Down"_s, {u"alpha.txt"_s});
        press(u"Tab"_s, {text(u"Change timer"_s, u"Cambia scadenza"_s)});

        press(u"Return"_s, {text(u"File timer"_s, u"Scadenza file"_s), text(u"Days"_s, u"Giorni"_s), u"0"_s,
                            role(u"spin button"_s)});
        press(u"Tab"_s, {text(u"Hours"_s, u"Ore"_s)});
        press(u"Tab"_s, {text(u"Minutes"_s, u"Minuti"_s)});
        press(u"Tab"_s, {u"10m"_s, role(u"push button"_s)});
        press(u"Tab"_s, {u"2h"_s});
        press(u"Tab"_s, {u"1d"_s});
        press(u"Tab"_s, {u"7d"_s});
        press(u"Tab"_s, {text(u"Cancel"_s, u"Annulla"_s), role(u"push button"_s)});
        press(u"Tab"_s, {text(u"Save"_s, u"Salva"_s), role(u"push button"_s)});
        press(u"Return"_s, {u"alpha.txt"_s, u"1 "_s, u" 3"_s, text(u"1h 59min left"_s, u"1h 59min rimanenti"_s)});
    }

    void thePreferencesAreHeard_data() { addLanguages(); }

    void thePreferencesAreHeard()
    {
        begin();
        openPanel();
        press(u"shift+Tab"_s, {text(u"Drop files or folders"_s, u"Trascina file o cartelle"_s)});
        press(u"shift+Tab"_s, {text(u"Preferences"_s, u"Preferenze"_s)});

        press(u"Return"_s,
              {text(u"Preferences"_s, u"Preferenze"_s), text(u"General"_s, u"Generale"_s), role(u"tab"_s)});
        press(u"Tab"_s, {text(u"Default expiry"_s, u"Scadenza predefinita"_s), text(u"Days"_s, u"Giorni"_s), u"0"_s,
                         role(u"spin button"_s)});
        press(u"Tab"_s, {text(u"Hours"_s, u"Ore"_s), u"2"_s});
        press(u"Tab"_s, {text(u"Minutes"_s, u"Minuti"_s), u"0"_s});
        press(u"Tab"_s,
              {text(u"Use Trash instead of permanent delete"_s, u"Usa Cestino invece di eliminare definitivamente"_s),
               role(u"check box checked"_s)});
        press(u"space"_s, {role(u"not checked"_s)});
        press(u"Tab"_s, {text(u"Pause all countdowns"_s, u"Metti in pausa tutti i countdown"_s),
                         role(u"check box not checked"_s)});
        press(u"Tab"_s, {text(u"Keep panel open until I click the icon again"_s,
                              u"Tieni aperto il pannello finché non clicco l'icona"_s),
                         role(u"check box checked"_s)});
        press(u"Tab"_s, {text(u"Theme"_s, u"Tema"_s), text(u"System"_s, u"Sistema"_s), role(u"radio button"_s), u"1 "_s,
                         u" 3"_s});
        press(u"Right"_s, {u"Dark"_s, u"2 "_s, u" 3"_s});
    }

    void theFilterOfThePanelIsHeard_data() { addLanguages(); }

    void theFilterOfThePanelIsHeard()
    {
        begin();
        openPanel();

        press(u"b"_s, {text(u"Filter by name"_s, u"Filtra per nome"_s), text(u"1 of 3"_s, u"1 di 3"_s)});
        press(u"Down"_s, {u"beta.pdf"_s, u"1 "_s, u" 1"_s});
    }

    void theRecoveryWindowIsHeard_data() { addLanguages(); }

    void theRecoveryWindowIsHeard()
    {
        begin();
        QCOMPARE(m_lapsa->terminate(), 0);
        letFirstFileExpireIn(-60);
        m_lapsa.emplace();
        QVERIFY(succeeds([this] { return storedList(m_desktop->home(), u"recovery.json"_s).size() == 1; }));
        const qsizetype before = m_reader->said().size();

        QCOMPARE(QProcess::execute(u"gapplication"_s, {u"action"_s, u"org.lapsa.Lapsa"_s, u"recovery"_s}), 0);

        hear(before, {text(u"Recovery"_s, u"Recupero"_s)});
        press(u"Down"_s, {u"alpha.txt"_s, text(u"removed in"_s, u"rimosso tra"_s)});
        press(u"Return"_s, {text(u"alpha.txt is back in"_s, u"alpha.txt è di nuovo in"_s)});
    }

    void aFileThatGoesByItselfIsHeard_data()
    {
        QTest::addColumn<bool>("italian");
        QTest::newRow("in English") << false;
    }

    void aFileThatGoesByItselfIsHeard()
    {
        begin();
        QCOMPARE(m_lapsa->terminate(), 0);
        letFirstFileExpireIn(40);
        m_lapsa.emplace();
        QVERIFY(succeeds([this] { return m_desktop->bus().hasOwner(u"org.lapsa.Lapsa"_s); }));
        openPanel();

        // With the pass that comes a minute after the start.
        constexpr int twoPasses = 120'000;
        const QString announcement = u"“alpha.txt” has left the list"_s;
        QVERIFY(QTest::qWaitFor([&] { return includes(m_reader->said(), {announcement}); }, twoPasses));
    }

private:
    void letFirstFileExpireIn(qint64 seconds) const
    {
        const TemporaryHome& home = m_desktop->home();
        QJsonArray items = storedList(home, u"state.json"_s);
        QJsonObject item = items[0].toObject();
        item[u"expiresAt"_s] = QDateTime::currentDateTimeUtc().addSecs(seconds).toString(Qt::ISODate);
        items[0] = item;
        home.writeDataFile(u"state.json"_s, QJsonDocument(items).toJson());
    }

    static void addLanguages()
    {
        QTest::addColumn<bool>("italian");
        QTest::newRow("in English") << false;
        QTest::newRow("in Italian") << true;
    }

    [[nodiscard]] static bool italian()
    {
        QFETCH(const bool, italian);
        return italian;
    }

    [[nodiscard]] static QString text(const QString& english, const QString& italianText)
    {
        return italian() ? italianText : english;
    }

    /// Said by the reader itself.
    [[nodiscard]] static QString role(const QString& english) { return italian() ? QString() : english; }

    /// A desktop, a reader, and Lapsa with three files on its list.
    void begin()
    {
        qputenv("LC_ALL", italian() ? "it_IT.UTF-8" : "C.UTF-8");
        m_desktop.emplace();
        m_reader.emplace();
        const TemporaryHome& home = m_desktop->home();
        m_lapsa.emplace(
            QStringList{home.makeFile(u"alpha.txt"_s), home.makeFile(u"beta.pdf"_s), home.makeFile(u"gamma.png"_s)});
        QVERIFY(succeeds([&] { return storedPaths(home).size() == 3; }));
    }

    void openPanel()
    {
        const qsizetype before = m_reader->said().size();
        LapsaProcess second;
        std::ignore = second.exitCode();
        hear(before, {u"Lapsa"_s, u" 3 "_s}); // its title, and how long its list is
    }

    void press(const QString& keys, const QStringList& parts)
    {
        if (QTest::currentTestFailed()) {
            return;
        }
        const qsizetype before = m_reader->said().size();
        VirtualDisplay::press(keys);
        hear(before, parts);
    }

    void hear(qsizetype before, const QStringList& parts)
    {
        QStringList said;
        const bool heard = succeeds([&] {
            said = m_reader->said().sliced(before);
            return includes(said, parts);
        });
        const QString message = u"expected: %1; heard: %2"_s.arg(parts.join(u" … "_s), said.join(u" | "_s));
        QVERIFY2(heard, qPrintable(message));
    }

    const QByteArray m_language = qgetenv("LC_ALL");
    std::optional<DesktopSession> m_desktop;
    std::optional<ScreenReader> m_reader;
    std::optional<LapsaProcess> m_lapsa;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::OrcaDesktopTest)
#include "Orca_desktop_test.moc"
