// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "StoreWorld.h"

#include <QList>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <string>
#include <vector>

namespace lapsa::bench {

/// How many files are in each source folder.
enum class Spread
{
    OneFolder,
    /// A hundred in each.
    ManyFolders,
};

enum class Names
{
    Different,
    /// The same in every folder, so each file is in a folder of its own.
    Equal,
};

struct Layout
{
    std::int64_t count = 0;
    Names names = Names::Different;
    Spread spread = Spread::OneFolder;
};

/// Absolute paths of the files of a layout below `folder`.
[[nodiscard]] QStringList pathsOf(const Layout& layout, const QString& folder);
/// Creates empty files with these paths, and the folders above them.
void createFiles(const QStringList& paths);

[[nodiscard]] QList<QUrl> urlsOf(const QStringList& paths);
/// The paths in the form that system calls take.
[[nodiscard]] std::vector<std::string> nativePaths(const QStringList& paths);

/// Creates a file of `bytes` bytes, rounded up to whole MiB.
void createLargeFile(const QString& path, std::int64_t bytes);

/// An existing folder on another file system than the temporary folder. Ends the benchmarks if there is none.
[[nodiscard]] QString otherFileSystem();

/// Removes a folder with everything in it, the fast way.
void removeTree(const QString& folder);

/// A home with a store; removes its files at the end, even if there are very many.
class BenchWorld final
{
public:
    BenchWorld() = default;
    BenchWorld(const BenchWorld&) = delete;
    BenchWorld& operator=(const BenchWorld&) = delete;

    ~BenchWorld() { removeTree(world.home.path({})); }

    [[nodiscard]] LapsaStore& store() { return world.store(); }

    /// Creates the files and puts them on countdown for ten minutes.
    QStringList addFiles(const Layout& layout);

    test::StoreWorld world;
};

/// Ends the benchmarks if `condition` is false: a failed operation must not give a figure.
void require(bool condition, const char* what);

} // namespace lapsa::bench
