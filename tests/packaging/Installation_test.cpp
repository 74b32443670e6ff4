// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "InstalledTree.h"

#include <QFileInfo>
#include <QImage>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace lapsa::test {

/// What `cmake --install` puts where, and what those say who check such files.
class InstallationTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { m_tree.emplace(InstalledTree::stagedFor(u"/usr"_s)); }

    void cleanupTestCase() { m_tree.reset(); }

    void everyFileThatIsExpectedIsThereAndNoOther()
    {
        QStringList expected =
            QString::fromUtf8(contentOf(QStringLiteral(LAPSA_SOURCE_FOLDER "/tests/packaging/installed-files.txt")))
                .split(u'\n', Qt::SkipEmptyParts);
        expected.sort();

        QCOMPARE(m_tree->files(), expected);
    }

    void theAutostartEntryStaysBelowAnotherPrefix()
    {
        const InstalledTree tree;

        QVERIFY(QFileInfo::exists(tree.path(u"etc/xdg/autostart/org.lapsa.Lapsa.desktop"_s)));
    }

    void itsCheckerHasNothingToSay_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("file");

        QTest::newRow("the desktop entry")
            << u"desktop-file-validate"_s << QStringList() << u"usr/share/applications/org.lapsa.Lapsa.desktop"_s;
        QTest::newRow("the autostart entry")
            << u"desktop-file-validate"_s << QStringList() << u"etc/xdg/autostart/org.lapsa.Lapsa.desktop"_s;
        const QStringList warnings{u"--warnings"_s, u"-E"_s, u"UTF-8"_s, u"-l"_s, u"-Tutf8"_s, u"-Z"_s};
        QTest::newRow("the man page") << u"man"_s << warnings << u"usr/share/man/man1/lapsa.1"_s;
        QTest::newRow("the Italian man page") << u"man"_s << warnings << u"usr/share/man/it/man1/lapsa.1"_s;
        QTest::newRow("lapsactl's man page") << u"man"_s << warnings << u"usr/share/man/man1/lapsactl.1"_s;
        QTest::newRow("its Italian man page") << u"man"_s << warnings << u"usr/share/man/it/man1/lapsactl.1"_s;
    }

    void itsCheckerHasNothingToSay()
    {
        QFETCH(const QString, program);
        QFETCH(const QStringList, arguments);
        QFETCH(const QString, file);

        // What man writes for a printer goes away; it complains on standard error.
        const Outcome outcome = outcomeOf(u"sh"_s, QStringList{u"-c"_s, u"\"$@\" 2>&1 >/dev/null"_s, u"sh"_s, program} +
                                                       arguments + QStringList{m_tree->path(file)});

        QCOMPARE(outcome.output, QByteArray());
        QCOMPARE(outcome.code, 0);
    }

    void theSoftwareCentresDataIsValid()
    {
        const QStringList validate{u"validate"_s, u"--no-net"_s, u"--no-color"_s,
                                   m_tree->path(u"usr/share/metainfo/org.lapsa.Lapsa.metainfo.xml"_s)};
        // Lapsa has no page of its own; and what newer versions want in place of the developer's name, older ones do
        // not know, nor that they could be told to accept it.
        const QStringList accepting{u"--override"_s, u"url-homepage-missing=pedantic,developer-info-missing=pedantic,"
                                                     u"developer-name-tag-deprecated=pedantic"_s};
        Outcome outcome = outcomeOf(u"appstreamcli"_s, validate + accepting);
        if (outcome.output.contains("is not recognized")) {
            outcome = outcomeOf(u"appstreamcli"_s, validate);
        }

        QVERIFY2(outcome.code == 0, outcome.output.constData());
        for (const char* const severity : {"E: ", "W: ", "I: "}) {
            QVERIFY2(!outcome.output.contains(severity), outcome.output.constData());
        }
    }

    void theVersionIsTheOneOfTheBuildFile_data()
    {
        QTest::addColumn<QString>("file");

        QTest::newRow("man page") << u"usr/share/man/man1/lapsa.1"_s;
        QTest::newRow("Italian man page") << u"usr/share/man/it/man1/lapsa.1"_s;
        QTest::newRow("lapsactl's man page") << u"usr/share/man/man1/lapsactl.1"_s;
        QTest::newRow("its Italian man page") << u"usr/share/man/it/man1/lapsactl.1"_s;
        QTest::newRow("AppStream data") << u"usr/share/metainfo/org.lapsa.Lapsa.metainfo.xml"_s;
    }

    void theVersionIsTheOneOfTheBuildFile()
    {
        QFETCH(const QString, file);
        const QByteArray content = contentOf(m_tree->path(file));

        QVERIFY(content.contains(LAPSA_VERSION));
        QVERIFY(!content.contains('@'));
    }

    void everyPictureHasTheSizeOfItsFolder()
    {
        int pictures = 0;
        for (const QString& file : m_tree->files()) {
            if (file.endsWith(u".png"_s)) {
                const QString size = file.section(u'/', 4, 4);
                const QImage picture(m_tree->path(file));
                QCOMPARE(u"%1x%2"_s.arg(picture.width()).arg(picture.height()), size);
                // Drawn, with corners that let the ground show through.
                QCOMPARE(picture.pixelColor(0, 0).alpha(), 0);
                QCOMPARE(picture.pixelColor(picture.width() / 2, picture.height() / 8).alpha(), 255);
                ++pictures;
            }
        }
        QCOMPARE(pictures, 10);
    }

    /// What is on the list for whoever builds here is what a machine that builds packages installs.
    void thePackageIsBuiltWithWhatTheToolsInstall()
    {
        QStringList listed;
        for (const QString& line :
             QString::fromUtf8(contentOf(QStringLiteral(LAPSA_SOURCE_FOLDER "/tools/packages/build.txt")))
                 .split(u'\n')) {
            // A compiler is there wherever packages are made.
            if (!line.isEmpty() && !line.startsWith(u'#') && line != u"g++"_s) {
                listed.push_back(line);
            }
        }
        const QString control =
            QString::fromUtf8(contentOf(QStringLiteral(LAPSA_SOURCE_FOLDER "/packaging/debian/control")));
        QStringList needed;
        for (const QString& line :
             control.section(u"Build-Depends:\n"_s, 1).section(u"\nStandards"_s, 0, 0).split(u'\n')) {
            const QString package = line.trimmed().section(u' ', 0, 0).remove(u',');
            if (package != u"debhelper-compat"_s) {
                needed.push_back(package);
            }
        }
        listed.sort();
        needed.sort();

        QCOMPARE(needed, listed);
    }

private:
    std::optional<InstalledTree> m_tree;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::InstallationTest)
#include "Installation_test.moc"
