// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaItem.h"
#include "LapsaRecoveryItem.h"
#include "LapsaSettings.h"
#include "StoreWorld.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>

namespace lapsa::test {

/// The Recovery folder, relative to the home.
inline const QString recoveryFolder = QStringLiteral(".local/share/Lapsa/Recovery");

/// An item with an identifier of its own, put on countdown long ago.
[[nodiscard]] LapsaItem itemAt(const QString& path, TimePoint expiresAt, bool locked = false);
/// A record with an identifier of its own, of a copy parked long ago.
[[nodiscard]] LapsaRecoveryItem recordAt(const QString& recoveryPath, TimePoint purgeAfter,
                                         const QString& originalPath = QStringLiteral("/a"));

/// Writes both lists, starts, and lets every pending save pass.
void startWith(StoreWorld& world, const QList<LapsaRecoveryItem>& records, const QList<LapsaItem>& items = {});

/// Settles where what has run out goes: to Recovery, else to the Trash, else nowhere.
void setDisposal(StoreWorld& world, bool useRecoveryWindow, bool useTrash);
/// Lets a day pass, then runs a sweep.
void expire(StoreWorld& world);
/// Makes a file and parks it as a sweep does; returns its record.
LapsaRecoveryItem park(StoreWorld& world, const QString& relative, const QByteArray& content = "bytes");
/// Watches the folder "watched" of the home with a rule made long ago of the defaults and `change`.
void watch(StoreWorld& world, const std::function<void(LapsaAutoCleanFolderRule&)>& change = {});

[[nodiscard]] QList<QUrl> urlsOf(const QStringList& paths);

} // namespace lapsa::test
