// The XML preprocessor over both trees.

#include "projects/xml/XMLPP2.h"
#include "projects/xml/XmlPP.h"

#include <QtDebug>

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QString directory = QStringLiteral("/nowhere");
    XMLPP2().loadFromBytes(bytes, directory, QStringLiteral("a=1;b=$(a)"), true);
    XMLPP2().loadFromBytes(bytes, directory, {}, false);
    XmlPP().loadFromString(QString::fromUtf8(bytes), true);
    return 0;
}
