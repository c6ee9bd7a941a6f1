#pragma once

#include <QString>

/// Names and values of properties as XML files give them. The workspace must be there.
namespace PropertyCheck {

/// What is wrong with a property; empty if nothing is. A value with macros in it isn't looked at.
/// The names of property groups are those of the group files in use.
QString fault(const QString& name, const QString& value);

/// Takes the group file that projects have by default into use.
void useDefaultGroupFile();

} // namespace PropertyCheck
