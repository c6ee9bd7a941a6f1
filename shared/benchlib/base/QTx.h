#pragma once

#include <QDateTime>
#include <QString>

/// Small helpers of the platform. The operations on files answer whether they succeeded.
namespace QTx {

/// The folder of the running program.
QString applicationDirectory();

/// The root of the installation, found from the program's own path.
QString rootDirectory();

/// The directory for what is kept of a name, such as "Owner/Product": in the home directory, behind
/// a ".", in lower case, with "_" for blanks. It need not exist.
QString userLocalAppDataDirectory(const QString& name);

QString userDocumentsDirectory();

/// Makes the directory with those above it; true if it is there already.
bool makeDir(const QString& path);

/// False if there was no file.
bool removeFile(const QString& path);

/// Copies a file's bytes and permissions; the copy can always be written by its owner. An existing
/// file is replaced if `overwrite`, when the copy is whole; otherwise it stays, and that is a
/// failure. A file isn't copied onto itself.
bool copyFile(const QString& source, const QString& destination, bool overwrite);

/// Gives the owner the right to write the file, or takes it from everyone.
bool setWritable(const QString& path, bool writable);

/// The time of a file's last change in UTC; an invalid time if it doesn't exist.
QDateTime getUTCModificationTime(const QString& path);

/// Sets the times of last change and last access.
bool setFileTimes(const QString& path, const QDateTime& time);

/// Date and time in the short form of the user's language, in local time; empty for an invalid one.
QString shortDateTime(const QDateTime& time);

/// The path without superfluous elements: "a//b/./../c" is "a/c". Symbolic links aren't looked at.
QString simplifyPath(const QString& path);

/// The proxy that the environment names in http_proxy. False, with both as they were, if there is
/// none.
bool getProxyServerAndPort(QString& server, int& port);

} // namespace QTx
