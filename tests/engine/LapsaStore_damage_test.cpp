// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileTree.h"
#include "JSONEncoder.h"
#include "LogCapture.h"
#include "StoreWorld.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <array>
#include <functional>

using namespace lapsa;
using namespace Qt::StringLiterals;

namespace {

constexpr std::array names{"settings.json", "state.json", "recovery.json"};

/// A home with files of the user, and a sound data folder whose records lead to them.
class FullWorld
{
public:
    FullWorld()
    {
        const QString mine = world.home.makeFile(u"mine/thesis.odt"_s);
        world.home.makeFile(u"mine/folder/photo.png"_s);
        const QString parked = world.home.makeFile(u".local/share/Lapsa/Recovery/parked.txt"_s);
        LapsaSettings settings;
        settings.autoCleanFolders.push_back({.folderPath = world.home.path(u"mine/folder"_s)});
        write("settings.json", JSONEncoder::lapsa().encode(settings));
        write("state.json", JSONEncoder::lapsa().encode(QList<LapsaItem>{{.id = newItemId(),
                                                                          .path = mine,
                                                                          .displayName = u"thesis.odt"_s,
                                                                          .addedAt = distantPast,
                                                                          .expiresAt = distantFuture}}));
        write("recovery.json", JSONEncoder::lapsa().encode(
                                   QList<LapsaRecoveryItem>{{.id = QUuid::createUuid(),
                                                             .originalPath = world.home.path(u"mine/parked.txt"_s),
                                                             .recoveryPath = parked,
                                                             .displayName = u"parked.txt"_s,
                                                             .deletedAt = distantPast,
                                                             .purgeAfter = distantFuture}}));
        m_mine = test::treeAt(world.home.path(u"mine"_s));
        m_parked = test::treeAt(world.home.dataPath(u"Recovery"_s));
    }

    void write(const char* name, const QByteArray& bytes)
    {
        world.home.writeDataFile(QString::fromLatin1(name), bytes);
        m_files[name] = bytes;
    }

    /// Starts on the damaged file. Tells what is wrong; nothing when the file was replaced as a whole, the others but
    /// those that go with it are what they were, copies are kept of what was replaced, and every file of the user is
    /// untouched.
    QByteArray startWith(const char* name, const QByteArray& damaged)
    {
        for (const auto& [other, bytes] : m_files.asKeyValueRange()) {
            world.home.writeDataFile(QString::fromLatin1(other), bytes);
        }
        world.home.writeDataFile(QString::fromLatin1(name), damaged);
        const test::LogCapture log;
        world.start();
        world.letSavesPass();
        const bool settingsLost = name == names[0];
        const bool itemsLost = name == names[1];
        const bool recordsLost = itemsLost || name == names[2];
        if (world.store().settings().autoCleanFolders.isEmpty() != settingsLost) {
            return "the settings";
        }
        if (world.store().items().isEmpty() != itemsLost || world.store().recoveryItems().isEmpty() != recordsLost) {
            return "the lists";
        }
        QList<QByteArray> replaced;
        if (!damaged.isEmpty()) {
            replaced.push_back(damaged);
        }
        if (itemsLost) {
            replaced.push_back(m_files[names[2]]);
        }
        return filesAfter(name, recordsLost) + (keptAsToldBy(log.lines()) == replaced ? "" : "the copies");
    }

    test::StoreWorld world{false};

private:
    /// What the copies hold that the log tells about.
    static QList<QByteArray> keptAsToldBy(const QStringList& lines)
    {
        QList<QByteArray> kept;
        for (const QString& line : lines) {
            QFile file(line.section(u", a copy is kept: "_s, 1));
            kept.push_back(file.open(QIODevice::ReadOnly) ? file.readAll() : line.toUtf8());
        }
        return kept;
    }

    QByteArray filesAfter(const char* name, bool recordsLost)
    {
        const QByteArray now = world.home.dataFile(QString::fromLatin1(name));
        if (name == names[0] ? now != JSONEncoder::lapsa().encode(LapsaSettings::defaults()) : now != "[]\n") {
            return "the file itself: " + now;
        }
        for (const auto& [other, bytes] : m_files.asKeyValueRange()) {
            const QByteArray expected = recordsLost && other == names[2] ? "[]\n" : bytes;
            if (other != name && world.home.dataFile(QString::fromLatin1(other)) != expected) {
                return "another file: " + other;
            }
        }
        if (test::treeAt(world.home.path(u"mine"_s)) != m_mine) {
            return "a file of the user";
        }
        return test::treeAt(world.home.dataPath(u"Recovery"_s)) == m_parked ? "" : "a parked file";
    }

    QMap<QByteArray, QByteArray> m_files;
    QList<QByteArray> m_mine;
    QList<QByteArray> m_parked;
};

/// Values of every type but that of `value`.
QList<QJsonValue> valuesOfOtherTypes(const QJsonValue& value)
{
    QList<QJsonValue> values{QJsonValue::Null, true, 7, 1.5, u"text"_s, QJsonArray{1}, QJsonObject{{u"a"_s, 1}}};
    // A fraction has the type of a number for the one who writes it, and is none for us.
    values.removeIf([&value](const QJsonValue& other) { return other.type() == value.type() && other != 1.5; });
    return values;
}

using Visit = std::function<void(const QJsonValue& changed)>;

void damageEach(const QJsonArray& array, const Visit& visit);

/// Every object that differs from this one in one key that is missing, or one value of another type, at any depth.
void damageEach(const QJsonObject& object, const Visit& visit)
{
    for (const QString& key : object.keys()) {
        QJsonObject changed = object;
        changed.remove(key);
        visit(changed);
        for (const QJsonValue& value : valuesOfOtherTypes(object[key])) {
            changed[key] = value;
            visit(changed);
        }
        damageEach(object[key].toArray(), [&](const QJsonValue& list) {
            changed[key] = list;
            visit(changed);
        });
    }
}

void damageEach(const QJsonArray& array, const Visit& visit)
{
    for (qsizetype index = 0; index < array.size(); ++index) {
        QJsonArray changed = array;
        damageEach(array[index].toObject(), [&](const QJsonValue& record) {
            changed[index] = record;
            visit(changed);
        });
        for (const QJsonValue& value : valuesOfOtherTypes(array[index])) {
            changed[index] = value;
            visit(changed);
        }
    }
}

/// Every document that differs from this one in one place.
QList<QByteArray> damagedDocuments(const QByteArray& bytes)
{
    QList<QByteArray> documents;
    const QJsonDocument whole = QJsonDocument::fromJson(bytes);
    const auto keep = [&documents](const QJsonValue& root) {
        documents += (root.isArray() ? QJsonDocument(root.toArray()) : QJsonDocument(root.toObject())).toJson();
    };
    whole.isArray() ? damageEach(whole.array(), keep) : damageEach(whole.object(), keep);
    return documents;
}

} // namespace

/// A start on each of the three files, damaged in one place after the other.
class LapsaStore_damage_test final : public QObject
{
    Q_OBJECT

private slots:

    void aFileCutOffAnywhereIsReplacedAndNothingElseIsTouched_data() { addFileRows(); }

    void aFileCutOffAnywhereIsReplacedAndNothingElseIsTouched()
    {
        QFETCH(const int, file);
        const char* const name = names.at(size_t(file));
        FullWorld full;
        const QByteArray whole = full.world.home.dataFile(QString::fromLatin1(name));
        // The last byte is the line break after the document.
        for (qsizetype length = 0; length < whole.size() - 1; ++length) {
            const QByteArray wrong = full.startWith(name, whole.first(length));

            QVERIFY2(wrong.isEmpty(), QByteArray::number(length) + " bytes: " + wrong);
        }
    }

    void aFileWithAnyKeyMissingOrAnyValueOfAnotherTypeIsReplaced_data() { addFileRows(); }

    void aFileWithAnyKeyMissingOrAnyValueOfAnotherTypeIsReplaced()
    {
        QFETCH(const int, file);
        const char* const name = names.at(size_t(file));
        FullWorld full;
        const QList<QByteArray> documents = damagedDocuments(full.world.home.dataFile(QString::fromLatin1(name)));
        constexpr qsizetype fewestFields = 6;
        constexpr qsizetype damagesEach = 7;
        QVERIFY(documents.size() >= fewestFields * damagesEach);
        for (const QByteArray& document : documents) {
            const QByteArray wrong = full.startWith(name, document);

            QVERIFY2(wrong.isEmpty(), wrong + " after\n" + document);
        }
    }

private:
    static void addFileRows()
    {
        QTest::addColumn<int>("file");
        for (int file = 0; file < int(names.size()); ++file) {
            QTest::newRow(names.at(size_t(file))) << file;
        }
    }
};

QTEST_GUILESS_MAIN(LapsaStore_damage_test)
#include "LapsaStore_damage_test.moc"
