// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HoverButton.h"

#include <QColor>
#include <QPalette>

namespace lapsa {

/// One of the small buttons of a row: a symbol in a rounded square. The row sets its tooltip.
class RowIconButton final : public HoverButton
{
    Q_OBJECT

public:
    struct Look
    {
        QColor foreground;
        QColor background;

        friend bool operator==(const Look&, const Look&) = default;
    };

    /// `systemName` is the symbol's name; `danger` marks an action that cannot be undone.
    RowIconButton(const QString& systemName, bool danger, QWidget* parent = nullptr);

    /// The colours of a button in each state.
    [[nodiscard]] static Look lookFor(bool danger, bool hovered, const QPalette& palette);

    void setSystemName(const QString& systemName);

    [[nodiscard]] const QString& systemName() const { return m_systemName; }

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    QString m_systemName;
    bool m_danger;
};

} // namespace lapsa
