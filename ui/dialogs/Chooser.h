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
    /// The added files and folders, in the order shown; empty until then.
    [[nodiscard]] QList<QUrl> chosen() const { return m_chosen; }

    /// The absolute path of the current folder.
    [[nodiscard]] QString folder() const { return m_folder; }

protected:
    struct Purpose
    {
        QString title;
        /// The label before the path field.
        QString fieldLabel;
        /// Whether to choose one folder instead of several files and folders.
        bool oneFolder = false;
    };

    /// Opens in `startFolder`, or in the home folder if it no longer exists.
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

    /// Shows a folder; ignores a path that is not a folder. `byUser` is false for the initial folder.
    void showFolder(const QString& folder, bool byUser);
    /// Like showFolder(), but remembers the previous folder for goBack().
    void goTo(const QString& folder);
    void goUp();
    void goBack();
    void goForward();
    /// Return or a double click on the selection.
    void enterSelected();
    /// Return in the field.
    void openTyped();
    void add();
    void fillField();
    void refreshButtons();

    /// The absolute paths that the button would add; may be empty.
    [[nodiscard]] QStringList choice() const;
    [[nodiscard]] QStringList selectedPaths() const;
    /// The absolute path of the field's text; empty if it does not exist.
    [[nodiscard]] QString typedPath() const;

    bool m_oneFolder;
    /// Whether the user navigated to the current folder.
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
