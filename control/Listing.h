// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QVariantMap>

namespace lapsa {

// How answers are printed. A name is data: whatever it contains, it takes one line and steers no terminal.

/// A JSON array of objects.
[[nodiscard]] QByteArray jsonOf(const QList<QVariantMap>& dictionaries);

/// One line each: the time until the moment (Unix seconds) that stands under a key, "locked" if it is, and the path
/// that stands under another key.
[[nodiscard]] QByteArray tableOf(const QList<QVariantMap>& dictionaries, const QString& timeKey,
                                 const QString& pathKey);

/// One line each: the text that stands under a key.
[[nodiscard]] QByteArray linesOf(const QList<QVariantMap>& dictionaries, const QString& key);

} // namespace lapsa
