// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>
#include <QList>
#include <QStringList>
#include <QUrl>

class QHBoxLayout;
class QLineEdit;
class QTreeView;

namespace lapsa {

class ChooserModel;
class ChooserPlaces;
class ElidedLabel;
class PushButton;
class SymbolButton;

/// The dialog in which the user browses folders and chooses. It changes no file: it has no action that could. Return
/// opens a folder and never adds one; the button adds.
class Chooser : public QDialog
{
    Q_OBJECT

public:
    /// What was added, in the order in which it was shown; empty until then.
    [[nodiscard]] QList<QUrl> chosen() const { return m_chosen; }

    /// The folder that is shown, as an absolute path.
    [[nodiscard]] QString folder() const { return m_folder; }

protected:
    struct Purpose
    {
        QString title;
        /// Stands before the field for a path.
        QString fieldLabel;
        /// One folder, or else several files and folders.
        bool oneFolder = false;
    };

    /// Opens in `startFolder`, or in the home folder where that one is no more.
    Chooser(const Purpose& purpose, const QString& startFolder, QWidget* parent);

    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QHBoxLayout* makePathRow();
    [[nodiscard]] QHBoxLayout* makeListRow();
    [[nodiscard]] QHBoxLayout* makeFieldRow(const QString& label);
    [[nodiscard]] QHBoxLayout* makeButtonRow();
    void setUpNames();
    void makeShortcuts();

    /// Shows a folder; what is none is passed over. `byUser` is false for the one that it opens with.
    void showFolder(const QString& folder, bool byUser);
    /// The same, with the folder before it kept for goBack().
    void goTo(const QString& folder);
    void goUp();
    void goBack();
    void goForward();
    /// Return, or a double click, on what is selected.
    void enterSelected();
    /// Return in the field.
    void openTyped();
    void add();
    void fillField();
    void refreshButtons();

    /// Absolute paths of what the button would add; empty when that is nothing.
    [[nodiscard]] QStringList choice() const;
    [[nodiscard]] QStringList selectedPaths() const;
    /// The absolute path of what is in the field; empty when there is no such thing.
    [[nodiscard]] QString typedPath() const;

    bool m_oneFolder;
    /// Whether the user came to the folder that is shown, instead of finding it there.
    bool m_cameByUser = false;
    QString m_folder;
    QStringList m_back;
    QStringList m_forward;
    QList<QUrl> m_chosen;
    ChooserModel* m_model;
    SymbolButton* m_backButton = nullptr;
    SymbolButton* m_forwardButton = nullptr;
    SymbolButton* m_upButton = nullptr;
    ElidedLabel* m_path = nullptr;
    ChooserPlaces* m_places = nullptr;
    QTreeView* m_names = nullptr;
    QLineEdit* m_field = nullptr;
    PushButton* m_add = nullptr;
};

} // namespace lapsa
