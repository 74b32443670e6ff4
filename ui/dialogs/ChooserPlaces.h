// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QListWidget>

namespace lapsa {

/// A chooser's sidebar of starting places: the home folder, the user's own folders in it, the whole computer.
class ChooserPlaces final : public QListWidget
{
    Q_OBJECT

public:
    explicit ChooserPlaces(QWidget* parent = nullptr);

    /// Marks `folder` if it is one of the places; otherwise marks none.
    void showPlace(const QString& folder);

    [[nodiscard]] QSize sizeHint() const override;

signals:
    /// The user asks for a place, by its absolute path.
    void chosen(const QString& folder);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void addPlace(const QString& name, const QString& symbol, const QString& folder);
    void quieten();
    void tintSymbols();
};

} // namespace lapsa
