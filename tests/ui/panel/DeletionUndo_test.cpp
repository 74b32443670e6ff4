// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileListView.h"
#include "FileTree.h"
#include "LinkButton.h"
#include "PanelWorld.h"
#include "Privileges.h"
#include "RowIconButton.h"
#include "TextLabel.h"

#include <QFile>
#include <QTest>

#include <unistd.h>

#include <chrono>

using namespace Qt::StringLiterals;

namespace lapsa::test {

/// "Delete now" and what brings the file back, on real files.
class DeletionUndoTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void init() { m_world.emplace(); }

    void cleanup() { m_world.reset(); }

    void theMessageNamesTheFileAndTheLinkPutsItBack_data()
    {
        QTest::addColumn<bool>("useRecovery");
        QTest::addColumn<QByteArray>("locale");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("linkText");

        QTest::newRow("Recovery") << true << QByteArray("C.UTF-8") << u"report.zip is in Recovery."_s << u"Put back"_s;
        QTest::newRow("the Trash") << false << QByteArray("C.UTF-8") << u"report.zip is in the Trash."_s
                                   << u"Put back"_s;
    }

    void theMessageNamesTheFileAndTheLinkPutsItBack()
    {
        QFETCH(const bool, useRecovery);
        QFETCH(const QString, message);
        QFETCH(const QString, linkText);
        setWay(useRecovery, true);
        const QString file = m_world->home.makeFile(u"report.zip"_s, "the report");
        list(file);

        deleteRow();

        QVERIFY(!QFile::exists(file));
        QCOMPARE(shownMessage(), message);
        QVERIFY(link().isVisible());
        QCOMPARE(link().accessibleName(), linkText);
        QTest::mouseClick(&link(), Qt::LeftButton);
        PanelWorld::settle();
        QCOMPARE(contentOf(file), QByteArray("the report"));
        QCOMPARE(m_world->store().items().size(), 0);
        QCOMPARE(m_world->store().recoveryItems().size(), 0);
        QCOMPARE(trashed(), QStringList());
        QVERIFY(!link().isVisible());
    }

    void inItalianToo()
    {
        m_world.reset();
        const Language italian("it_IT.UTF-8");
        m_world.emplace();
        list(m_world->home.makeFile(u"report.zip"_s));

        QTest::mouseClick(&m_world->button(0, u"Elimina ora"_s), Qt::LeftButton);
        PanelWorld::settle();

        QCOMPARE(shownMessage(), u"report.zip è in Recupero."_s);
        QCOMPARE(link().text(), u"Ripristina"_s);
    }

    void controlZDoesTheSame()
    {
        const QString file = m_world->home.makeFile(u"a.txt"_s);
        list(file);
        deleteRow();

        QTest::keyClick(&m_world->panel, Qt::Key_Z, Qt::ControlModifier);
        PanelWorld::settle();

        QVERIFY(QFile::exists(file));
        QCOMPARE(m_world->store().items().size(), 0);
    }

    void twoDeletionsAreNamedAndUndoneTogether()
    {
        setWay(false, true);
        const QString one = m_world->home.makeFile(u"one.txt"_s);
        const QString two = m_world->home.makeFile(u"two.txt"_s);
        list(one);
        list(two);
        deleteRow();
        deleteRow();

        QCOMPARE(shownMessage(), u"one.txt and two.txt are in the Trash."_s);
        QTest::keyClick(&m_world->panel, Qt::Key_Z, Qt::ControlModifier);
        PanelWorld::settle();

        QVERIFY(QFile::exists(one) && QFile::exists(two));
        QCOMPARE(trashed(), QStringList());
    }

    void nothingIsOfferedForWhatIsGoneForGood()
    {
        setWay(false, false);
        list(m_world->home.makeFile(u"a.txt"_s));

        deleteRow();

        QVERIFY(!m_world->store().lastMessage());
        QVERIFY(!link().isVisible());
        QTest::keyClick(&m_world->panel, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(m_world->store().items().size(), 0);
    }

    void theNextAddEndsTheOffer()
    {
        const QString file = m_world->home.makeFile(u"a.txt"_s);
        list(file);
        deleteRow();

        list(m_world->home.makeFile(u"b.txt"_s));

        QVERIFY(!link().isVisible());
        QTest::keyClick(&m_world->panel, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(!QFile::exists(file));
    }

    void closingThePanelEndsTheOffer()
    {
        const QString file = m_world->home.makeFile(u"a.txt"_s);
        list(file);
        deleteRow();

        m_world->panel.hide();
        m_world->panel.show();
        PanelWorld::settle();

        QVERIFY(!link().isVisible());
        QTest::keyClick(&m_world->panel, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(!QFile::exists(file));
    }

    void aFileOfThatNameIsNeverOverwritten_data() { addWays(); }

    void aFileOfThatNameIsNeverOverwritten()
    {
        QFETCH(const bool, useRecovery);
        setWay(useRecovery, true);
        const QString file = m_world->home.makeFile(u"a.txt"_s, "old");
        list(file);
        deleteRow();
        m_world->home.makeFile(u"a.txt"_s, "new");

        undo();

        QCOMPARE(contentOf(file), QByteArray("new"));
        QCOMPARE(contentOf(m_world->home.path(u"a-1.txt"_s)), QByteArray("old"));
        QCOMPARE(shownMessage(), u"a.txt is back as a-1.txt."_s);
    }

    /// An entry that somebody else put there under the same name is not what was deleted.
    void onlyTheEntryThatWasMadeIsTakenFromTheTrash()
    {
        setWay(false, true);
        const QString file = m_world->home.makeFile(u"a.txt"_s, "mine");
        list(file);
        deleteRow();
        const QString entry = m_world->home.path(u".local/share/Trash/files/a.txt"_s);
        QVERIFY(QFile::rename(entry, entry + u"-moved"_s));
        m_world->home.makeFile(u".local/share/Trash/files/a.txt"_s, "another's");

        undo();

        QVERIFY(!QFile::exists(file));
        QCOMPARE(contentOf(entry), QByteArray("another's"));
        QVERIFY2(shownMessage().startsWith(u"a.txt could not be put back: "_s), qUtf8Printable(shownMessage()));
    }

    void theTrashOfAnotherDiskGivesItBackToo()
    {
        if (!PrivateMounts::available()) {
            QSKIP("a second file system is mounted for this test, which needs root");
        }
        PrivateMounts mounts;
        mounts.mountTemporary(m_world->home.makeFolder(u"other"_s));
        setWay(false, true);
        const QString file = m_world->home.makeFile(u"other/a.txt"_s, "mine");
        const QString trash = u"other/.Trash-%1/"_s.arg(::geteuid());
        list(file);
        deleteRow();
        QVERIFY(!QFile::exists(file));
        QCOMPARE(m_world->home.names(trash + u"files"_s), QStringList{u"a.txt"_s});

        undo();

        QCOMPARE(contentOf(file), QByteArray("mine"));
        QCOMPARE(m_world->home.names(trash + u"files"_s), QStringList());
        QCOMPARE(m_world->home.names(trash + u"info"_s), QStringList());
    }

    void anEntryWhoseRecordIsAnothersStays()
    {
        setWay(false, true);
        const QString file = m_world->home.makeFile(u"a.txt"_s);
        list(file);
        deleteRow();
        const QString record = m_world->home.path(u".local/share/Trash/info/a.txt.trashinfo"_s);
        QVERIFY(QFile::rename(record, record + u"-moved"_s));
        m_world->home.makeFile(u".local/share/Trash/info/a.txt.trashinfo"_s, "[Trash Info]\n");

        undo();

        QVERIFY(!QFile::exists(file));
        QCOMPARE(trashed(), QStringList{u"a.txt"_s});
    }

    void theLinkIsReachedByTab()
    {
        list(m_world->home.makeFile(u"a.txt"_s));
        list(m_world->home.makeFile(u"b.txt"_s));
        deleteRow();
        m_world->panel.activateWindow();
        m_world->list().setFocus();

        for (int presses = 0; presses < 30 && !link().hasFocus(); ++presses) {
            QTest::keyClick(m_world->panel.focusWidget(), Qt::Key_Tab);
        }

        QVERIFY(link().hasFocus());
        QTest::keyClick(&link(), Qt::Key_Return);
        PanelWorld::settle();
        QVERIFY(QFile::exists(m_world->home.path(u"a.txt"_s)));
        QVERIFY(m_world->list().isAncestorOf(m_world->panel.focusWidget()) ||
                m_world->panel.focusWidget() == &m_world->list());
    }

private:
    static void addWays()
    {
        QTest::addColumn<bool>("useRecovery");
        QTest::newRow("Recovery") << true;
        QTest::newRow("the Trash") << false;
    }

    void setWay(bool useRecovery, bool useTrash)
    {
        m_world->changeSettings([=](LapsaSettings& settings) {
            settings.useRecoveryWindow = useRecovery;
            settings.useTrash = useTrash;
        });
    }

    void list(const QString& file)
    {
        m_world->add(file);
        PanelWorld::settle();
    }

    void deleteRow()
    {
        QTest::mouseClick(&m_world->button(0, u"Delete now"_s), Qt::LeftButton);
        PanelWorld::settle();
    }

    void undo()
    {
        QTest::mouseClick(&link(), Qt::LeftButton);
        PanelWorld::settle();
    }

    [[nodiscard]] LinkButton& link() { return *m_world->panel.findChild<LinkButton*>(); }

    [[nodiscard]] QString shownMessage() { return m_world->store().lastMessage().value_or(QString()); }

    [[nodiscard]] QStringList trashed() { return m_world->home.names(u".local/share/Trash/files"_s); }

    std::optional<PanelWorld> m_world;
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::DeletionUndoTest)
#include "DeletionUndo_test.moc"
