// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaProcess.h"
#include "SessionBus.h"
#include "TemporaryHome.h"

#include <QDateTime>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 30'000;

} // namespace

/// The end of a countdown in the real program. The time is turned by editing the state between two starts.
class LapsaAppExpiryTest final : public QObject
{
    Q_OBJECT

private slots:

    void init()
    {
        m_home.emplace();
        m_bus.emplace();
        m_file = m_home->makeFile(u"docs/report.zip"_s, "the report\n");
        LapsaProcess lapsa({m_file});
        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(*m_home), QStringList{m_file}, patience);
        QCOMPARE(lapsa.terminate(), 0);
    }

    void cleanup()
    {
        m_bus.reset();
        m_home.reset();
    }

    void anExpiredFileIsParkedWithItsRecord()
    {
        expire();

        runUntilTheFileIsGone();

        QCOMPARE(m_home->names(u".local/share/Lapsa/Recovery"_s), QStringList{u"report.zip"_s});
        QCOMPARE(contentOf(m_home->dataPath(u"Recovery/report.zip"_s)), "the report\n");
        const QJsonArray records = storedList(*m_home, u"recovery.json"_s);
        QCOMPARE(records.size(), 1);
        QCOMPARE(records[0][u"originalPath"_s].toString(), m_file);
    }

    void anExpiredFileGoesToTheTrashWhereTheSettingsSaySo()
    {
        setSettings({{u"useRecoveryWindow"_s, false}, {u"useTrash"_s, true}});
        expire();

        runUntilTheFileIsGone();

        QCOMPARE(m_home->names(u".local/share/Trash/files"_s), QStringList{u"report.zip"_s});
        QVERIFY(contentOf(m_home->path(u".local/share/Trash/info/report.zip.trashinfo"_s)).contains(m_file.toUtf8()));
        QCOMPARE(m_home->names(u".local/share/Lapsa/Recovery"_s), QStringList());
    }

    void anExpiredFileIsRemovedWhereTheSettingsSaySo()
    {
        setSettings({{u"useRecoveryWindow"_s, false}, {u"useTrash"_s, false}});
        expire();

        runUntilTheFileIsGone();

        QCOMPARE(m_home->names(u".local/share/Lapsa/Recovery"_s), QStringList());
        QCOMPARE(m_home->names(u".local/share/Trash/files"_s), QStringList());
    }

    void anExpiredFileThatIsLockedStays()
    {
        expire({{u"locked"_s, true}});

        LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(m_bus->hasOwner(u"org.lapsa.Lapsa"_s), patience);
        LapsaProcess second;
        QCOMPARE(second.exitCode(), 0);
        QCOMPARE(lapsa.terminate(), 0);

        QVERIFY(QFile::exists(m_file));
        QCOMPARE(storedPaths(*m_home), QStringList{m_file});
    }

private:
    static QByteArray contentOf(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void setSettings(const QVariantMap& values) const
    {
        QJsonObject settings = QJsonDocument::fromJson(m_home->dataFile(u"settings.json"_s)).object();
        for (auto value = values.cbegin(); value != values.cend(); ++value) {
            QVERIFY2(settings.contains(value.key()), qPrintable(value.key()));
            settings[value.key()] = value.value().toJsonValue();
        }
        m_home->writeDataFile(u"settings.json"_s, QJsonDocument(settings).toJson());
    }

    void expire(const QVariantMap& values = {}) const
    {
        QJsonArray items = storedList(*m_home, u"state.json"_s);
        QJsonObject item = items[0].toObject();
        item[u"expiresAt"_s] = u"2020-01-01T00:00:00Z"_s;
        for (auto value = values.cbegin(); value != values.cend(); ++value) {
            item[value.key()] = value.value().toJsonValue();
        }
        items[0] = item;
        m_home->writeDataFile(u"state.json"_s, QJsonDocument(items).toJson());
    }

    void runUntilTheFileIsGone() const
    {
        LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(m_file), patience);
        QTRY_VERIFY_WITH_TIMEOUT(m_bus->hasOwner(u"org.lapsa.Lapsa"_s), patience);
        QCOMPARE(lapsa.terminate(), 0);
        QCOMPARE(lapsa.standardError(), QByteArray());
        QCOMPARE(storedPaths(*m_home), QStringList());
    }

    std::optional<TemporaryHome> m_home;
    std::optional<SessionBus> m_bus;
    QString m_file;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::LapsaAppExpiryTest)
#include "LapsaApp_expiry_test.moc"
