#pragma once

#include "projects/properties/PropertyClass.h"

/// The default of a setting in stored form, or the function that computes it.
struct SettingDefault {
    constexpr SettingDefault(const char16_t* literal) : text(literal) { }
    constexpr SettingDefault(QString (*function)()) : compute(function) { }

    QString value() const { return compute != nullptr ? compute() : text.toString(); }

    QStringView text;
    QString (*compute)() = nullptr;
};

/// A row of a table of settings. The functions below make the kinds of rows that there are.
struct SettingDescription {
    enum class Kind {
        Described,
        Keyed,   ///< its texts and default come from the string provider
        Internal ///< in no dialog
    };

    Kind kind = Kind::Described;
    PropertyClass::Type type = PropertyClass::Type::String;
    QStringView key = u"";
    SettingDefault defaultValue = u"";
    QStringView page = u"";
    QStringView group = u"";
    QStringView label = u"";
    QStringView help = u"";
    QStringView choices = u""; ///< separated by ";"
    int minimum = 0;
    int maximum = 0;
    QStringView suffix = u"";
};

namespace SettingRows {

using enum PropertyClass::Type;
using Type = PropertyClass::Type;
using Text = QStringView;

inline constexpr Text EnvironmentPage = u"Environment";
inline constexpr Text TextEditorPage = u"Text Editor";
inline constexpr Text BuildingPage = u"Building";
inline constexpr Text DebuggingPage = u"Debugging";
inline constexpr Text WindowsPage = u"Windows";
inline constexpr Text SourceControlPage = u"Source Control";
/// In the order of the options dialog.
inline constexpr Text Pages[] = {EnvironmentPage, TextEditorPage, BuildingPage,
                                 DebuggingPage,   WindowsPage,    SourceControlPage};

constexpr SettingDescription internal(Type type, Text key, SettingDefault value = u"")
{
    constexpr Text mark = u"(Internal)";
    return {SettingDescription::Kind::Internal, type, key, value, mark, mark, mark, mark};
}
constexpr SettingDescription keyed(Type type, Text key)
{
    return {SettingDescription::Kind::Keyed, type, key};
}
constexpr SettingDescription keyedRange(Text key, int minimum, int maximum)
{
    SettingDescription row = keyed(IntegerRange, key);
    row.minimum = minimum;
    row.maximum = maximum;
    return row;
}
constexpr SettingDescription text(Type type, Text key, SettingDefault value, Text page, Text group,
                                  Text label, Text help)
{
    return {SettingDescription::Kind::Described, type, key, value, page, group, label, help};
}
constexpr SettingDescription yesNo(Text key, SettingDefault value, Text page, Text group,
                                   Text label, Text help)
{
    return text(Boolean, key, value, page, group, label, help);
}
constexpr SettingDescription choice(Text key, SettingDefault value, Text choices, Text page,
                                    Text group, Text label, Text help)
{
    SettingDescription row = text(Enumeration, key, value, page, group, label, help);
    row.choices = choices;
    return row;
}
constexpr SettingDescription range(Text key, SettingDefault value, int minimum, int maximum,
                                   Text suffix, Text page, Text group, Text label, Text help)
{
    SettingDescription row = text(IntegerRange, key, value, page, group, label, help);
    row.minimum = minimum;
    row.maximum = maximum;
    row.suffix = suffix;
    return row;
}

} // namespace SettingRows
