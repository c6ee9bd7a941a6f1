#pragma once

#include <QString>
#include <QStringList>

#include <span>
#include <string>
#include <utility>
#include <vector>

/// The words of `gantry build`.
struct BuildOptions {
    enum class Kind { Build, Rebuild, Clean };

    QString solution;
    QStringList configurations; ///< empty for the first public one
    QString project;            ///< empty for all
    bool batch = false;
    Kind kind = Kind::Build;
    bool commandLines = false;
    bool exported = false;
    std::vector<std::pair<QString, QString>> properties; ///< name and value

    /// Throws UsageError.
    static BuildOptions parse(std::span<const std::string> arguments);
};
