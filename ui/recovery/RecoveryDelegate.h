// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "RecoveryRowLayout.h"

#include <QModelIndex>
#include <QPersistentModelIndex>
#include <QStyledItemDelegate>

namespace lapsa {

/// Draws the rows of the Recovery window, with their buttons.
class RecoveryDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// The button that is under the pointer or pressed.
    struct Touched
    {
        QPersistentModelIndex index;
        RecoveryRowLayout::Button button = RecoveryRowLayout::Button::None;
        bool pressed = false;

        friend bool operator==(const Touched&, const Touched&) = default;
    };

    explicit RecoveryDelegate(QObject* parent = nullptr);

    /// The row's parts, in the rectangle that the view gives to it.
    [[nodiscard]] static RecoveryRowLayout layoutOf(const QModelIndex& index, const QRect& item,
                                                    Qt::LayoutDirection direction);
    [[nodiscard]] static QString putBackText();

    void setTouched(const Touched& touched) { m_touched = touched; }

    [[nodiscard]] const Touched& touched() const { return m_touched; }

    /// Whether the current row has the ring of the focus.
    void setRingShown(bool shown) { m_ringShown = shown; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    [[nodiscard]] bool isTouched(const QModelIndex& index, RecoveryRowLayout::Button button) const;
    void paintTexts(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index,
                    const RecoveryRowLayout& layout) const;
    void paintButtons(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index,
                      const RecoveryRowLayout& layout) const;

    Touched m_touched;
    bool m_ringShown = false;
};

} // namespace lapsa
