#pragma once

#include <QMap>
#include <QString>

/// Names and values that conditions in our XML files ask for.
using XmlDefinitions = QMap<QString, QString>;

/// What a fresh loader defines: the product, its release and the host.
XmlDefinitions defaultXmlDefinitions();
