#include "packages/archive/CompressedFile.h"

#include <QFile>
#include <QSaveFile>
#include <QtEndian>

namespace {

constexpr char compressedFileHeader[] = {0x7A, '\xF4', 0x31, '\xB2', 0x01, 0x00, 0x00, 0x00};
constexpr qsizetype HeaderLength = sizeof compressedFileHeader;
constexpr qsizetype LengthLength = 4;

/// No zlib stream grows by more than this (zlib's technical notes, "Maximum Compression Factor").
constexpr qint64 MaximumRatio = 1032;

const QByteArray& header()
{
    static const QByteArray bytes = QByteArray::fromRawData(compressedFileHeader, HeaderLength);
    return bytes;
}

bool readFile(const QString& path, QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    bytes = file.readAll();
    return file.error() == QFileDevice::NoError;
}

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

} // namespace

bool QTx::isCompressedFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(HeaderLength) == header();
}

bool QTx::compressFile(const QString& in, const QString& out)
{
    QByteArray bytes;
    return readFile(in, bytes) && writeFile(out, header() + qCompress(bytes));
}

bool QTx::decompressFile(const QString& in, const QString& out)
{
    QByteArray wrapped, original;
    return readFile(in, wrapped) && decompressBytes(wrapped, original) && writeFile(out, original);
}

bool QTx::decompressBytes(const QByteArray& wrapped, QByteArray& original)
{
    if (!wrapped.startsWith(header()) || wrapped.size() < HeaderLength + LengthLength)
        return false;
    const QByteArray body = wrapped.mid(HeaderLength);
    const qint64 length = qFromBigEndian<quint32>(body.constData());
    // An empty file has no stream, and qUncompress tells it from a failure by nothing.
    if (length == 0) {
        original.clear();
        return body.size() == LengthLength;
    }
    if (length > (body.size() - LengthLength) * MaximumRatio)
        return false;
    original = qUncompress(body);
    return original.size() == length;
}
