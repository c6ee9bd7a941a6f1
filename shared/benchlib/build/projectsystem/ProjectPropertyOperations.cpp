#include "build/projectsystem/ProjectPropertyOperations.h"

#include "base/Path.h"
#include "build/system/BuildSystem.h"
#include "projects/solution/ProjectSystem.h"

using namespace Qt::Literals::StringLiterals;

namespace {

const QString UseInherited = u"Use &Inherited Value"_s;
const QString OpenFile = u"&Open"_s;

void useInherited(ProjectPropertyValue* value)
{
    if (auto* group = dynamic_cast<PropertyValueGroupValue*>(value))
        group->removeProperty();
    else
        projectSystem->removeProperty(value->node(), value->propertyClass(),
                                      value->configuration());
}

} // namespace

QStringList ProjectPropertyOperations::operations(const PropertyValue* value) const
{
    QStringList names;
    if (!value->inherited())
        names << UseInherited;
    const PropertyClass::Type type = value->propertyClass()->type();
    const bool isFile =
        type == PropertyClass::Type::FileName || type == PropertyClass::Type::ProjFileName;
    if (isFile && !value->toString().isEmpty())
        names << OpenFile;
    return names;
}

void ProjectPropertyOperations::doOperation(PropertyValue* value, const QString& name)
{
    auto* setting = dynamic_cast<ProjectPropertyValue*>(value);
    if (!setting)
        return;
    if (name == UseInherited) {
        useInherited(setting);
    } else if (name == OpenFile && m_open) {
        const QString path = buildSystem->replaceMacros(setting->node(), setting->toString(),
                                                        setting->configuration());
        m_open(Path(path).absolute(setting->node()->projectDirectory()).osPath());
    }
}
