#include "projects/settings/SettingDefaults.h"

#include "base/QTx.h"
#include "base/TargetConstants.h"
#include "projects/macros/MacroSystem.h"

using namespace Qt::Literals::StringLiterals;

namespace {

struct CodeTemplate {
    QStringView abbreviation;
    QStringView description;
    QStringView text; ///< the caret goes to "|"
};

constexpr CodeTemplate CodeTemplates[] = {
    {u"co", u"comment", u"/* | */"},
    {u"cb", u"comment block",
     u"//--------------------------------------------------------------------"},
    {u"dh", u"doxygen header", u"/*! \\brief |\n*/"},
    {u"if", u"if", u"if (|)\n  {\n  }"},
    {u"If", u"if without braces", u"if (|)\n  ;"},
    {u"ife", u"if-else", u"if (|)\n  {\n  }\nelse\n  {\n  }"},
    {u"Ife", u"if-else without braces", u"if (|)\n  ;\nelse\n  ;"},
    {u"ifd", u"#ifdef-#endif", u"#ifdef |\n#endif"},
    {u"ifde", u"#ifdef-#else-#endif", u"#ifdef |\n#else\n#endif"},
    {u"wh", u"while", u"while (|)\n  {\n  }"},
    {u"while", u"while", u"while (|)\n  {\n  }"},
    {u"Wh", u"while without braces", u"while (|)\n  ;"},
    {u"While", u"while without braces", u"while (|)\n  ;"},
    {u"fo", u"for", u"for (|)\n  {\n  }"},
    {u"for", u"for", u"for (|)\n  {\n  }"},
    {u"Fo", u"for without braces", u"for (|)\n  ;"},
    {u"For", u"for without braces", u"for (|)\n  ;"},
    {u"do", u"do", u"do (|)\n  {\n  } while ();"},
    {u"st", u"struct", u"struct {\n  |\n};"},
    {u"struct", u"struct", u"struct {\n  |\n};"},
    {u"sw", u"switch", u"switch (|)\n  {\n  case :\n    break;\n  case :\n    break;\n  }"},
    {u"switch", u"switch", u"switch (|)\n  {\n  case :\n    break;\n  case :\n    break;\n  }"},
    {u"Inc", u"#include", u"#include <|>"},
    {u"inc", u"#include", u"#include \"|\""},
};

} // namespace

QString SettingDefaults::solutionDirectoryDefault()
{
    return QTx::userDocumentsDirectory() + "/Gantry Projects"_L1;
}

QString SettingDefaults::httpProxyPortDefault()
{
    QString server;
    int port = 8080;
    QTx::getProxyServerAndPort(server, port);
    return QString::number(port);
}

QString SettingDefaults::packageSourceUrlDefault()
{
    return "https://downloads.gantrybench.example/"_L1 + Get_PLATFORM().toLower() + "/packages"_L1;
}

QString SettingDefaults::codeTemplatesDefault()
{
    QStringList list;
    for (const CodeTemplate& row : CodeTemplates)
        for (const QStringView text : {row.abbreviation, row.description, row.text})
            list.append(text.toString());
    return MacroSystem::stringFromStringList(list);
}
