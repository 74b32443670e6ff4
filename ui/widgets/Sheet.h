// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPointer>
#include <QVariantAnimation>
#include <QWidget>

namespace lapsa {

/// A sheet over its parent, which is dimmed and cannot be used meanwhile; the focus stays inside. It shows itself at
/// once, and deletes itself when it is dismissed.
class Sheet final : public QWidget
{
    Q_OBJECT

public:
    /// Takes ownership of `content`, which is centred and keeps its size hint.
    Sheet(QWidget& parent, QWidget* content);

    [[nodiscard]] QWidget& content() const { return *m_content; }

    /// Closes the sheet; `dismissed` is emitted at once, before the animation.
    void dismiss();

signals:
    void dismissed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void place();

    QWidget* m_content;
    QVariantAnimation m_progress;
    bool m_leaving = false;
};

} // namespace lapsa
