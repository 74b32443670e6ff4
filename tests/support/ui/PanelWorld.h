// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileIconSource.h"
#include "ItemWorkSource.h"
#include "LapsaPanelView.h"
#include "StoreWorld.h"

#include <QColor>
#include <QHash>
#include <QImage>

#include <optional>

namespace lapsa {

class FileListView;
class FileRowView;
class RowIconButton;

} // namespace lapsa

namespace lapsa::test {

/// Gives every file the same square, and every folder another one.
class RecordingIcons final : public FileIconSource
{
public:
    [[nodiscard]] QIcon icon(const QUrl& url, ItemKind kind) override;

    const QColor color = Qt::magenta;
    const QColor folderColor = Qt::cyan;
};

/// What the lanes seem to be doing: real work is over too soon.
class PlayedWork final : public ItemWorkSource
{
public:
    [[nodiscard]] std::optional<ItemWork> workOn(const QString& id) const override;

    [[nodiscard]] bool isWorking() const override { return working; }

    /// By the ids of the items.
    QHash<QString, ItemWork> works;
    bool working = false;
};

/// The shown panel over the real store. Call once before it: setUpApplication().
class PanelWorld : public StoreWorld
{
public:
    PanelWorld();

    /// Style, palette and font as the program sets them.
    static void setUpApplication();

    /// Puts a file (or, with a slash at its end, a folder) on countdown and lets the panel see it.
    LapsaItem addItem(const QString& name, std::int64_t minutes = 120);
    /// Lets the queued redraws pass.
    static void settle();

    [[nodiscard]] FileListView& list();
    [[nodiscard]] FileRowView& row(qsizetype index);
    /// The row's button with that tooltip; ends the test program when there is none.
    [[nodiscard]] RowIconButton& button(qsizetype row, const QString& help);

    RecordingIcons icons;
    PlayedWork work;
    int preferencesOpened = 0;
    LapsaPanelView panel;
};

/// The child of a type whose accessible name is `name`; ends the test program when there is none.
template <typename T>
[[nodiscard]] T& named(const QWidget& parent, const QString& name)
{
    for (T* const child : parent.findChildren<T*>()) {
        if (child->accessibleName() == name || child->property("text").toString() == name) {
            return *child;
        }
    }
    qFatal("there is no %s named %s", T::staticMetaObject.className(), qPrintable(name));
}

/// Speaks another language until it goes.
class Language final
{
public:
    explicit Language(const char* locale);
    Language(const Language&) = delete;
    Language& operator=(const Language&) = delete;
    ~Language();

private:
    QByteArray m_before;
};

} // namespace lapsa::test
