// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QLineEdit;

namespace lapsa {

class FileListView;
class TextLabel;

/// The field that filters the list by name, with the number of hits. It takes no room until it is opened, by Ctrl+F or
/// by typing: it sees the keys that no control of its parent has used. Escape and its button close it, before Escape
/// closes the panel; so does the panel's closing.
class ListFilterField final : public QWidget
{
    Q_OBJECT

public:
    /// The list must outlive the field.
    ListFilterField(FileListView& list, QWidget* parent);

signals:
    /// What the list shows, in words, after another text.
    void filtered(const QString& result);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// Takes the focus; `typed` is added to what is in the field.
    void open(const QString& typed);
    /// Shows the whole list again. Returns false if the field was not open.
    bool close();
    /// Whether the key belongs to the filter.
    bool take(const QKeyEvent& event);
    void showResult(const QString& filter, qsizetype count, qsizetype total);

    FileListView& m_list;
    QLineEdit* m_field;
    TextLabel* m_result;
};

} // namespace lapsa
