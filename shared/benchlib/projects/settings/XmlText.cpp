#include "projects/settings/XmlText.h"

#include <algorithm>
#include <array>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr char16_t ControlBase = 0xFDD0;
constexpr char16_t ControlCount = 0x20;
/// In front of text that is all white space, which readers drop. It is the place of tab, which
/// needs none as it can be written.
constexpr char16_t Guard = ControlBase + u'\t';

struct NamedReference {
    QStringView name;
    char16_t character;
};
constexpr std::array NamedReferences = {
    NamedReference{u"lt", u'<'},   NamedReference{u"gt", u'>'},    NamedReference{u"amp", u'&'},
    NamedReference{u"quot", u'"'}, NamedReference{u"apos", u'\''},
};

QString numericReference(char16_t character)
{
    return u"&#%1;"_s.arg(static_cast<uint>(character));
}

/// What the text of a reference, without "&" and ";", stands for.
std::optional<QString> resolve(QStringView reference)
{
    const auto named = std::ranges::find(NamedReferences, reference, &NamedReference::name);
    if (named != NamedReferences.end())
        return QString(QChar(named->character));
    if (!reference.startsWith(u'#'))
        return {};
    const bool hexadecimal = reference.startsWith("#x"_L1);
    bool valid = false;
    const uint code = reference.mid(hexadecimal ? 2 : 1).toUInt(&valid, hexadecimal ? 16 : 10);
    if (!valid || code > QChar::LastValidCodePoint)
        return {};
    const char32_t character = code;
    return QString::fromUcs4(&character, 1);
}

/// A reference for what has to be one, U+FFFD for what can't be written.
void appendEscaped(QString& result, const QString& text, qsizetype at)
{
    const QChar character = text[at];
    const char16_t code = character.unicode();
    const auto named = std::ranges::find(NamedReferences, code, &NamedReference::character);
    if (named != NamedReferences.end() && code != u'\'')
        result += u'&' + named->name.toString() + u';';
    else if (code == u'\t' || code == u'\n' || code == u'\r')
        result += numericReference(code);
    else if (code < ControlCount)
        result += QChar(static_cast<char16_t>(ControlBase + code));
    else if (code == 0xFFFE || code == 0xFFFF
             || (character.isHighSurrogate()
                 && (at + 1 == text.size() || !text[at + 1].isLowSurrogate()))
             || (character.isLowSurrogate() && (at == 0 || !text[at - 1].isHighSurrogate())))
        result += QChar(QChar::ReplacementCharacter);
    else
        result += character;
}

} // namespace

QString xmlEscape(const QString& text)
{
    QString result;
    result.reserve(text.size());
    if (!text.isEmpty() && text.trimmed().isEmpty())
        result += QChar(Guard);
    for (qsizetype at = 0; at < text.size(); ++at)
        appendEscaped(result, text, at);
    return result;
}

QString xmlUnescapeEntities(const QString& text)
{
    QString result;
    result.reserve(text.size());
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (text[at] == u'&') {
            const qsizetype end = text.indexOf(u';', at);
            if (const auto resolved =
                    end < 0 ? std::nullopt : resolve(QStringView(text).mid(at + 1, end - at - 1))) {
                result += *resolved;
                at = end;
                continue;
            }
        }
        result += text[at];
    }
    return result;
}

QString xmlRestoreControls(QString text)
{
    if (text.startsWith(QChar(Guard)))
        text.remove(0, 1);
    for (QChar& character : text)
        if (character >= QChar(ControlBase)
            && character < QChar(char16_t(ControlBase + ControlCount)))
            character = QChar(static_cast<char16_t>(character.unicode() - ControlBase));
    return text;
}
