// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ChooserModel.h"
#include "ManualLanes.h"
#include "TemporaryHome.h"

#include <QAbstractItemModelTester>
#include <QFile>
#include <QItemSelectionModel>
#include <QLocale>
#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

/// What a chooser lists, while it is read and sorted.
class ChooserModelTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English)); }

    void aLargeFolderComesInPortions()
    {
        constexpr int files = 1'300;
        for (int file = 0; file < files; ++file) {
            m_home.makeFile(u"large/%1.txt"_s.arg(file), {});
        }
        m_model.showFolder(m_home.path(u"large"_s));
        QList<qsizetype> counts;
        while (m_lanes.waiting() > 0) {
            m_lanes.runNext();
            if (counts.isEmpty() || counts.constLast() != shown().size()) {
                counts.push_back(shown().size());
            }
            if (!m_selection.hasSelection()) {
                m_selection.select(m_model.index(7, 0), QItemSelectionModel::Select);
                m_selected = m_model.index(7, 0).data().toString();
            }
        }

        QCOMPARE(counts, (QList<qsizetype>{500, 1000, files}));
        QCOMPARE(shown().constFirst(), u"0.txt"_s);
        QCOMPARE(shown().constLast(), u"1299.txt"_s);
        QVERIFY(shown().indexOf(u"9.txt"_s) < shown().indexOf(u"10.txt"_s));
        QCOMPARE(selected(), QStringList{m_selected});
    }

    void aColumnIsSortedOnALane()
    {
        m_home.makeFile(u"sizes/large.txt"_s, QByteArray(9'000, 'x'));
        m_home.makeFile(u"sizes/first.txt"_s);
        m_home.makeFolder(u"sizes/inner"_s);
        m_model.showFolder(m_home.path(u"sizes"_s));
        m_lanes.runAll();
        QCOMPARE(shown(), (QStringList{u"inner"_s, u"first.txt"_s, u"large.txt"_s}));
        m_selection.select(m_model.indexOf(u"large.txt"_s), QItemSelectionModel::Select);

        m_model.sort(ChooserModel::Size, Qt::DescendingOrder);
        QCOMPARE(shown(), (QStringList{u"inner"_s, u"first.txt"_s, u"large.txt"_s}));
        m_lanes.runAll();

        QCOMPARE(shown(), (QStringList{u"large.txt"_s, u"first.txt"_s, u"inner"_s}));
        QCOMPARE(selected(), QStringList{u"large.txt"_s});
    }

    void anOrderThatComesTooLateIsIgnored()
    {
        m_home.makeFile(u"orders/large.txt"_s, QByteArray(9'000, 'x'));
        m_home.makeFile(u"orders/small.txt"_s);
        m_model.sort(ChooserModel::Name, Qt::AscendingOrder);
        m_model.showFolder(m_home.path(u"orders"_s));
        m_lanes.runAll();
        m_model.sort(ChooserModel::Size, Qt::AscendingOrder);
        const Lanes::Report late = m_lanes.workOnNext();

        m_home.makeFile(u"orders/another.txt"_s, QByteArray(20'000, 'x'));
        m_model.readAgain();
        m_lanes.runAll();
        late();

        QCOMPARE(shown(), (QStringList{u"small.txt"_s, u"large.txt"_s, u"another.txt"_s}));
    }

    void aLinkIsWhatItLeadsTo()
    {
        m_home.makeFolder(u"links/folder"_s);
        QVERIFY(QFile::link(m_home.path(u"links/folder"_s), m_home.path(u"links/to folder"_s)));
        QVERIFY(QFile::link(m_home.path(u"links/nothing"_s), m_home.path(u"links/to nothing"_s)));
        m_model.sort(ChooserModel::Name, Qt::AscendingOrder);
        m_model.showFolder(m_home.path(u"links"_s));
        m_lanes.runAll();

        QCOMPARE(shown(), (QStringList{u"folder"_s, u"to folder"_s}));
        QVERIFY(m_model.isFolder(m_model.indexOf(u"to folder"_s)));
    }

private:
    [[nodiscard]] QStringList shown() const
    {
        QStringList shown;
        for (int row = 0; row < m_model.rowCount(); ++row) {
            shown.push_back(m_model.index(row, 0).data().toString());
        }
        return shown;
    }

    [[nodiscard]] QStringList selected() const
    {
        QStringList selected;
        for (const QModelIndex& index : m_selection.selectedIndexes()) {
            selected.push_back(index.data().toString());
        }
        return selected;
    }

    TemporaryHome m_home;
    ManualLanes m_lanes;
    ChooserModel m_model{m_lanes, false, nullptr};
    QAbstractItemModelTester m_tester{&m_model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    QItemSelectionModel m_selection{&m_model};
    QString m_selected;
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::ChooserModelTest)
#include "ChooserModel_test.moc"
