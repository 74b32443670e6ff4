// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HelperProcess.h"
#include "TemporaryHome.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

/// The entries in the menus of file managers, as they are installed.
class FileManagerEntriesTest final : public QObject
{
    Q_OBJECT

private slots:

    void everyEntryIsThereInBothLanguages_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("english");
        QTest::addColumn<QByteArray>("italian");
        const QByteArray english = "\nName=Add to Lapsa\n";
        const QByteArray italian = "\nName[it]=Aggiungi a Lapsa\n";
        QTest::newRow("Thunar") << u"Thunar/sendto/org.lapsa.Lapsa.desktop"_s << english << italian;
        QTest::newRow("PCManFM") << u"file-manager/actions/org.lapsa.Lapsa.desktop"_s << english << italian;
        QTest::newRow("Dolphin") << u"kio/servicemenus/org.lapsa.Lapsa.desktop"_s << english << italian;
        QTest::newRow("Nemo") << u"nemo/actions/org.lapsa.Lapsa.nemo_action"_s << english << italian;
        const QByteArray englishText = R"("en": "Add to Lapsa")";
        const QByteArray italianText = R"("it": "Aggiungi a Lapsa")";
        QTest::newRow("Nautilus") << u"nautilus-python/extensions/lapsa.py"_s << englishText << italianText;
        QTest::newRow("Caja") << u"caja-python/extensions/lapsa.py"_s << englishText << italianText;
    }

    void everyEntryIsThereInBothLanguages()
    {
        QFETCH(const QString, path);
        QFETCH(const QByteArray, english);
        QFETCH(const QByteArray, italian);
        QFile file(installed(u"/usr"_s) + u"/share/"_s + path);
        QVERIFY(file.open(QIODevice::ReadOnly));

        const QByteArray content = file.readAll();

        QVERIFY(content.contains(english));
        QVERIFY(content.contains(italian));
        QVERIFY(!content.contains('@'));
    }

    void onlyInAHomeIsTheMenuOfDolphinExecutable_data()
    {
        QTest::addColumn<QString>("prefix");
        QTest::addColumn<bool>("executable");
        QTest::newRow("of the system") << u"/usr"_s << false;
        QTest::newRow("of an administrator") << u"/usr/local"_s << false;
        QTest::newRow("in a home") << u"/home/ada/.local"_s << true;
    }

    void onlyInAHomeIsTheMenuOfDolphinExecutable()
    {
        QFETCH(const QString, prefix);
        QFETCH(const bool, executable);

        const QFileInfo menu(installed(prefix) + u"/share/kio/servicemenus/org.lapsa.Lapsa.desktop"_s);

        QVERIFY(menu.exists());
        QCOMPARE(menu.permissions().testFlag(QFile::ExeOwner), executable);
    }

private:
    /// Installs under a prefix, below a folder for all of them; returns where the prefix is then.
    [[nodiscard]] QString installed(const QString& prefix) const
    {
        const QString stage = m_home.path(u"stage"_s);
        std::ignore = outputOf(u"env"_s, {u"DESTDIR="_s + stage, QStringLiteral(CMAKE_PROGRAM), u"--install"_s,
                                          QStringLiteral(ENTRIES_BUILD_FOLDER), u"--prefix"_s, prefix});
        return stage + prefix;
    }

    TemporaryHome m_home;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::FileManagerEntriesTest)

#include "FileManagerEntries_test.moc"
