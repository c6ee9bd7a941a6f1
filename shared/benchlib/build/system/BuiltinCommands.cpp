// The commands that the build carries out itself.

#include "base/Path.h"
#include "base/QTx.h"
#include "build/system/StandardBuildSystem.h"
#include "projects/solution/Builder.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace {

struct BuiltinArguments {
    QString directory;
    const QStringList& words;

    QString word(int index) const { return words.value(index); }
    QString path(int index) const
    {
        return QDir::cleanPath(QDir(directory).absoluteFilePath(word(index)));
    }
};

QString copy(const BuiltinArguments& arguments)
{
    const QString source = arguments.path(1);
    const QString destination = arguments.path(2);
    QDir().mkpath(QFileInfo(destination).path());
    if (source != destination)
        QTx::removeFile(destination);
    if (source != destination && QTx::copyFile(source, destination, true))
        return {};
    return u"cp failed: can't copy \"%1\" to \"%2\""_s.arg(source, destination);
}

QString changeMode(const BuiltinArguments& arguments)
{
    const QString path = arguments.path(2);
    if (QTx::setWritable(path, arguments.word(1) == u"+w"))
        return {};
    return u"chmod failed: can't make \"%1\" writable"_s.arg(path);
}

QString remove(const BuiltinArguments& arguments)
{
    const QString path = arguments.path(1);
    if (QTx::removeFile(path))
        return {};
    return u"rm failed: can't remove \"%1\" writable"_s.arg(path);
}

QString generateDocumentation(const BuiltinArguments& arguments)
{
    return u"docgen failed: can't generate documentation of \"%1\""_s.arg(arguments.path(1));
}

struct Builtin {
    const char* word;
    int arguments; ///< that it needs
    QString (*run)(const BuiltinArguments&);
};
constexpr Builtin Builtins[] = {{"cp", 2, copy},
                                {"chmod", 2, changeMode},
                                {"docgen", 2, generateDocumentation},
                                {"rm", 1, remove}};

bool isOwnProgram(const QString& word) { return word == u"kxc" || word == u"kmh"; }

QString quoted(const QString& path) { return u'"' + Path(path).osPath() + u'"'; }

} // namespace

bool StandardBuildSystem::builtinCommand(const QString& directory, QStringList& command,
                                         QString& errorText)
{
    const QString word = command.value(0);
    if (isOwnProgram(word)) {
        command[0] = macroSystem->systemMacro(u"BenchDir"_s) + u"/bin/"_s + word;
        return false;
    }
    for (const Builtin& builtin : Builtins) {
        if (word != QLatin1String(builtin.word))
            continue;
        errorText = command.size() > builtin.arguments
            ? builtin.run({directory, command})
            : u"%1 failed: arguments are missing"_s.arg(word);
        m_fileTimes.clear();
        return true;
    }
    return false;
}

bool StandardBuildSystem::getExportableBuiltinCommand(const QStringList& command, QString& text)
{
    const QString word = command.value(0);
    text.clear();
    if (word == u"cp")
        text = u"cp -f "_s + quoted(command.value(1)) + u' ' + quoted(command.value(2));
    else if (word == u"rm")
        text = u"rm -f "_s + quoted(command.value(1));
    else if (word == u"chmod" || word == u"docgen")
        return false;
    else if (!isOwnProgram(word))
        text = Builder::commandLine(command);
    return true;
}
