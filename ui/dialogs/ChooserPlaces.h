// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QListWidget>
#include <QString>

namespace lapsa {

class Lanes;

/// A chooser's sidebar of starting places: the home folder, the user's own folders in it, the whole computer.
/// Lanes look whether the user's folders exist.
class ChooserPlaces final : public QListWidget
{
    Q_OBJECT

public:
    /// `lanes` must outlive this object.
    explicit ChooserPlaces(Lanes& lanes, QWidget* parent = nullptr);

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
    struct Place
    {
        QString name;
        QString symbol;
        QString folder;
        /// The order of the places.
        int rank = 0;
    };

    /// Adds the user's own folders that exist, as soon as that is known.
    void lookForFolders();
    void lookAt(const Place& place);
    void addPlace(const Place& place);
    void quieten();
    void tintSymbols();

    Lanes& m_lanes;
    QString m_shown;
};

} // namespace lapsa
