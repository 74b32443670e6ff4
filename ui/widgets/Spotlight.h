// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QSet>
#include <QString>
#include <QVariantAnimation>

namespace lapsa {

/// Which items are lit, and by how much at this moment: fully at first, then fading. Where nothing may move they stay
/// lit as long, and are dark again at once.
class Spotlight final : public QObject
{
    Q_OBJECT

public:
    explicit Spotlight(QObject* parent);

    /// Lights the items with these ids, in place of those that are lit.
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
