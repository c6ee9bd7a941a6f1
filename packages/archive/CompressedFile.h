#pragma once

#include <QByteArray>
#include <QString>

/// The compressed wrapper around a whole file: an eight-byte header, then what qCompress makes of
/// the file. The files are held in memory.
namespace QTx {

/// True if the file begins with the wrapper's header.
bool isCompressedFile(const QString& path);

/// True on success; on failure an output file that was there before stays as it was.
bool compressFile(const QString& in, const QString& out);
bool decompressFile(const QString& in, const QString& out);

/// What a wrapped file's bytes hold; false if they aren't a sound wrapper.
bool decompressBytes(const QByteArray& wrapped, QByteArray& original);

} // namespace QTx
