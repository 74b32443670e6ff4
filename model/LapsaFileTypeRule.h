// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QUuid>

#include <cstdint>

namespace lapsa {

class JSONEncoder;
class JSONObject;

/// Gives files with the listed extensions their own lifespan.
struct LapsaFileTypeRule
{
    QUuid id = QUuid::createUuid();
    /// Extensions with their leading dots, separated by commas, for example ".zip,.rar,.7z".
    QString extensionsCSV;
    std::int64_t lifespanMinutes = 120;
    /// A disabled rule is kept but never matches.
    bool enabled = true;

    friend bool operator==(const LapsaFileTypeRule&, const LapsaFileTypeRule&) = default;
};

void write(JSONEncoder& encoder, const LapsaFileTypeRule& rule);
void read(const JSONObject& object, LapsaFileTypeRule& rule);

} // namespace lapsa
