// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HoverButton.h"

#include <QList>
#include <QPen>
#include <QUrl>

namespace lapsa {

class TextLabel;

/// A large button that files can be dropped on. It accepts every drop, whatever it contains.
class DropZone final : public HoverButton
{
    Q_OBJECT

public:
    struct Look
    {
        QColor fill;
        QPen border;
    };

    explicit DropZone(QWidget* parent = nullptr);

    /// Shows the lifespan that new items get.
    void setDefaultExpiry(std::int64_t minutes);

    /// `strength`, 0 to 1, is the hover progress.
    [[nodiscard]] static Look lookFor(bool draggedOver, double strength, const QPalette& palette);

    [[nodiscard]] QSize sizeHint() const override;

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }

    [[nodiscard]] int heightForWidth(int width) const override;

signals:
    /// The file URLs of a drop, in order; may be empty.
    void filesDropped(const QList<QUrl>& urls);

protected:
    void paintEvent(QPaintEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void setDraggedOver(bool draggedOver);

    TextLabel* m_title;
    TextLabel* m_caption;
    bool m_draggedOver = false;
};

} // namespace lapsa
