// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QRect>
#include <QString>

namespace lapsa {

/// Where the parts of a row of the Recovery window are.
struct RecoveryRowLayout
{
    enum class Button
    {
        None,
        PutBack,
        Delete,
        /// Ends what is being done.
        Stop,
    };

    /// What a row shows beside its name.
    struct Content
    {
        QString size;
        QString state;
        QString putBack;
        /// A row under way has at most the button that stops it.
        bool underWay = false;
        bool stoppable = false;
    };

    /// Of a row without the room around it.
    QRect row;
    QRect icon;
    QRect name;
    QRect size;
    QRect origin;
    QRect state;
    /// Empty if the row has no such button.
    QRect putBack;
    QRect remove;
    QRect stop;

    /// In the rectangle that the view gives to a row.
    [[nodiscard]] static RecoveryRowLayout of(const QRect& item, const Content& content, Qt::LayoutDirection direction);
    /// The height of that rectangle at the current text size.
    [[nodiscard]] static int itemHeight();
    /// What the rectangle has around the row: room for the ring of the focus, and between the rows.
    static constexpr int around = 4;

    [[nodiscard]] Button buttonAt(const QPoint& point) const;
    [[nodiscard]] QRect rectOf(Button button) const;

private:
    void placeTexts(const QRect& inside, const Content& content);
};

} // namespace lapsa
