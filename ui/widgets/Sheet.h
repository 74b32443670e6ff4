// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPointer>
#include <QVariantAnimation>
#include <QWidget>

namespace lapsa {

/// A sheet over its parent: the parent is dimmed and cannot be reached, keys stay inside. It shows at once and deletes
/// itself when it is dismissed.
class Sheet final : public QWidget
{
    Q_OBJECT

public:
    /// Takes `content`, which is centred and keeps its size hint.
    Sheet(QWidget& parent, QWidget* content);

    [[nodiscard]] QWidget& content() const { return *m_content; }

    /// Goes away; `dismissed` is emitted at once.
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
