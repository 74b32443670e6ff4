// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecoveryModel.h"

#include "Clock.h"
#include "FileName.h"
#include "LapsaStore.h"
#include "Localized.h"
#include "RecoveryOverview.h"
#include "RecoveryTexts.h"
#include "TextStyle.h"
#include "WorkTexts.h"

#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

RecoveryModel::RecoveryModel(Environment environment, QObject* parent)
    : QAbstractListModel(parent)
    , m_environment(std::move(environment))
{}

void RecoveryModel::reload()
{
    QList<LapsaRecoveryItem> entries = m_environment.overview.entries();
    if (entries == m_entries) {
        if (!m_entries.isEmpty()) {
            emit dataChanged(index(0), index(rowCount() - 1));
        }
        return;
    }
    beginResetModel();
    m_entries = std::move(entries);
    show();
    endResetModel();
}

void RecoveryModel::setFilter(const QString& text)
{
    if (text != m_filter) {
        beginResetModel();
        m_filter = text;
        show();
        endResetModel();
    }
}

void RecoveryModel::show()
{
    m_shown.clear();
    m_shown.reserve(m_entries.size());
    for (qsizetype place = 0; place < m_entries.size(); ++place) {
        if (m_filter.isEmpty() || m_entries[place].displayName.contains(m_filter, Qt::CaseInsensitive)) {
            m_shown.push_back(place);
        }
    }
}

int RecoveryModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

QVariant RecoveryModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const int row = index.row();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return singleLine(recordAt(row).displayName);
    case Qt::AccessibleDescriptionRole: {
        QStringList parts{originAt(row), stateAt(row), sizeAt(row)};
        parts.removeAll(QString());
        return parts.join(u", "_s);
    }
    default:
        return {};
    }
}

std::optional<RecoveryCopy> RecoveryModel::copyAt(int row) const
{
    return m_environment.overview.copyOf(recordAt(row).id);
}

QIcon RecoveryModel::iconAt(int row) const
{
    const std::optional<RecoveryCopy> copy = copyAt(row);
    const bool isFolder = copy && copy->isFolder;
    // Never equal to an extension.
    const QString key = isFolder ? u"/"_s : FileName::of(recordAt(row).displayName).extension.toLower();
    QIcon& icon = m_icons[key];
    if (icon.isNull()) {
        icon = m_environment.icons(recordAt(row).displayName, isFolder);
    }
    return icon;
}

bool RecoveryModel::isUnderWay(int row) const
{
    return m_environment.store.recoveryActions().isUnderWay(recordAt(row).id);
}

std::optional<ItemWork> RecoveryModel::workAt(int row) const
{
    return m_environment.store.recoveryActions().workOn(recordAt(row).id);
}

QString RecoveryModel::originAt(int row) const
{
    const LapsaRecoveryItem& record = recordAt(row);
    return singleLine(recoveryTexts::originText(record, m_environment.overview.isWithoutRecord(record.id)));
}

QString RecoveryModel::stateAt(int row) const
{
    if (const std::optional<ItemWork> work = workAt(row)) {
        return workTexts::textFor(*work);
    }
    const LapsaRecoveryItem& record = recordAt(row);
    return recoveryTexts::remainingText(record, m_environment.overview.isWithoutRecord(record.id),
                                        m_environment.clock.now());
}

QString RecoveryModel::sizeAt(int row) const
{
    const std::optional<RecoveryCopy> copy = copyAt(row);
    return copy && copy->bytes ? Localized::dataSize(*copy->bytes) : QString();
}

} // namespace lapsa
