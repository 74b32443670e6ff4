// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QSet>
#include <QString>
#include <QVariantAnimation>

namespace lapsa {

/// Which items are highlighted, and how strongly at this moment: fully at first, then fading. Without animations they
/// stay highlighted for the same time, then stop at once.
class Spotlight final : public QObject
{
    Q_OBJECT

public:
    explicit Spotlight(QObject* parent);

    /// Highlights the items with these ids instead of the current ones.
    void light(const QSet<QString>& ids);

    /// 0 to 1.
    [[nodiscard]] double strengthOf(const QString& id) const;

signals:
    void changed();

private:
    QSet<QString> m_ids;
    QVariantAnimation m_animation;
};

} // namespace lapsa
