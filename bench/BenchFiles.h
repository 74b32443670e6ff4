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

/// How many files lie in each source folder.
enum class Spread
{
    OneFolder,
    /// A hundred in each.
    ManyFolders,
};

enum class Names
{
    Different,
    /// The same in every folder, so each file has a folder of its own.
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
/// Creates empty files there, and the folders above them.
void createFiles(const QStringList& paths);

[[nodiscard]] QList<QUrl> urlsOf(const QStringList& paths);
/// The paths as system calls take them.
[[nodiscard]] std::vector<std::string> nativePaths(const QStringList& paths);

/// Fills a file with so many bytes.
void createLargeFile(const QString& path, std::int64_t bytes);

/// A folder on another file system than the temporary one, with all it holds for as long as this lives.
[[nodiscard]] QString otherFileSystem();

/// Everything below a folder is gone, the fast way.
void removeTree(const QString& folder);

/// A home with a store; the files go with it, also where there are very many.
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

/// Ends the benchmarks when something did not work: what failed is no figure.
void require(bool condition, const char* what);

} // namespace lapsa::bench
