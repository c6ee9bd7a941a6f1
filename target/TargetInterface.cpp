#include "target/TargetInterface.h"

#include "base/TargetConstants.h"

#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace {

void doNothing() { }

const PropertyClass& deviceTypeClass()
{
    static const auto made = [] {
        auto property = std::make_unique<PropertyClass>(
            u"device_id"_s, PropertyClass::Type::String, QString(), u"Target"_s, u"Device Type"_s,
            u"The detected type of the currently connected target device."_s);
        property->setReadOnly(true);
        return property;
    }();
    return *made;
}

const PropertyClass& eraseAllClass()
{
    static const PropertyClass made(
        u"loaderEraseAll"_s, QString(), u"Loader"_s, u"Erase All"_s,
        u"Erase all erasable memory rather than individual segments when downloading."_s, false);
    return made;
}

} // namespace

TargetInterface::TargetInterface(QString title, unsigned capabilities,
                                 TargetInterfaceHelperFunctions* host)
    : ESClass(u"TargetInterface"_s),
      m_title(std::move(title)),
      m_capabilities(capabilities),
      m_deviceType(&deviceTypeClass()),
      m_eraseAll(&eraseAllClass()),
      m_host(host != nullptr ? host : targetInterfaceHelperFunctions()),
      m_progressing(doNothing)
{
}

TargetInterface::~TargetInterface() = default;

void TargetInterface::setCapability(unsigned bits, bool on)
{
    m_capabilities = on ? m_capabilities | bits : m_capabilities & ~bits;
}

void TargetInterface::debugBegin()
{
    m_inDebugSession = true;
    executeDebugBeginScript();
}

void TargetInterface::debugEnd()
{
    executeDebugEndScript();
    m_inDebugSession = false;
}

void TargetInterface::reconnect()
{
    if (!isConnected())
        return;
    disconnect();
    connect(true);
}

void TargetInterface::getProperties(PropertyValueList& list)
{
    if (isConnected())
        list.appendUnique(&m_deviceType);
    if ((capabilities() & TargetCapability::Erase) != 0)
        list.appendUnique(&m_eraseAll);
}

QString TargetInterface::addressString(unsigned address)
{
    return QString::asprintf(Get_ADDRESS_FORMAT(), address);
}

void TargetInterface::syncSettingsWithProject(ProjectElement* project, const QString& configuration)
{
    m_project = TargetProject(project, configuration);
}

QString TargetInterface::memoryMapFile() const { return m_project.value("linker_memory_map_file"); }

bool TargetInterface::memoryMap(QString& text) const
{
    QFile file(memoryMapFile());
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly))
        return false;
    text = QString::fromUtf8(file.readAll());
    return true;
}

void TargetInterface::setProgressing(void (*progressing)())
{
    m_progressing = progressing != nullptr ? progressing : doNothing;
}
