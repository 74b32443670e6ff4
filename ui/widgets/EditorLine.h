// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QLayout>

#include <memory>
#include <vector>

namespace lapsa {

class DurationEditor;
class PushButton;

/// An editor with the button that removes what it edits at the end of its line, or below it if the line is too short
/// for both.
class EditorLine final : public QLayout
{
    Q_OBJECT

public:
    EditorLine(DurationEditor* editor, PushButton* button);
    ~EditorLine() override;

    void addItem(QLayoutItem* item) override;
    [[nodiscard]] int count() const override;
    [[nodiscard]] QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSize() const override;

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }

    [[nodiscard]] int heightForWidth(int width) const override;
    void setGeometry(const QRect& rect) override;

private:
    /// The positions of both for a line width, in left-to-right coordinates.
    struct Places
    {
        QRect editor;
        QRect button;
    };

    [[nodiscard]] Places placesFor(int width) const;

    std::vector<std::unique_ptr<QLayoutItem>> m_items;
    DurationEditor* m_editor;
    PushButton* m_button;
};

} // namespace lapsa
