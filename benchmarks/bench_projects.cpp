// Solutions of many files: loading and saving them against QDomDocument's reading and writing of
// the same file, and look-ups of settings against look-ups in Qt's own containers.

#include "base/Path.h"
#include "projects/macros/MacroSystem.h"
#include "projects/solution/ProjectElement.h"
#include "projects/solution/ProjectSystem.h"

#include <QDomDocument>
#include <QFile>
#include <QHash>
#include <QMap>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <vector>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int FilesOfFolder = 20;
constexpr int FilesOfProject = 200;

/// A file of a solution whose files stand in projects and folders. One in four has a setting of its
/// own.
QString writeSolution(const QTemporaryDir& folder, int files)
{
    QString text = u"<!DOCTYPE GantryBench_Project_File>\n<solution Name=\"s\" version=\"2\">\n"
                   "  <configuration Name=\"Debug\" build_debug_information=\"Yes\"/>\n"_s;
    for (int file = 0; file < files; ++file) {
        if (file % FilesOfProject == 0)
            text += u"  <project Name=\"p%1\">\n    <configuration Name=\"Common\" "
                    "c_preprocessor_definitions=\"PROJECT=%1\" project_directory=\"p%1\"/>\n"_s.arg(
                        file / FilesOfProject);
        if (file % FilesOfFolder == 0)
            text += u"    <folder Name=\"Source Files %1\">\n"_s.arg(file);
        text += u"      <file file_name=\"source%1.c\""_s.arg(file);
        text += file % 4 == 0 ? u">\n        <configuration Name=\"Common\" "
                                "file_codec=\"UTF-8\"/>\n      </file>\n"_s
                              : u"/>\n"_s;
        const bool last = file + 1 == files;
        if (last || (file + 1) % FilesOfFolder == 0)
            text += u"    </folder>\n"_s;
        if (last || (file + 1) % FilesOfProject == 0)
            text += u"  </project>\n"_s;
    }
    text += u"</solution>\n"_s;
    const QString path = folder.filePath(u"s.kvp"_s);
    QFile out(path);
    if (!out.open(QIODevice::WriteOnly) || out.write(text.toUtf8()) < 0)
        qFatal("can't write %s", qUtf8Printable(path));
    return path;
}

/// A solution of that many files, on disk.
class Fixture {
public:
    explicit Fixture(const benchmark::State& state)
        : path(writeSolution(m_folder, static_cast<int>(state.range(0))))
    {
        macroSystem = &m_macros;
        projectSystem = &projects;
    }
    ~Fixture()
    {
        projectSystem = nullptr;
        macroSystem = nullptr;
    }
    Fixture(const Fixture&) = delete;
    Fixture& operator=(const Fixture&) = delete;

    void load() { projects.loadSolution(path, nullptr, nullptr); }
    static void report(benchmark::State& state)
    {
        state.counters["files/s"] = benchmark::Counter(
            static_cast<double>(state.range(0)), benchmark::Counter::kIsIterationInvariantRate);
    }

private:
    QTemporaryDir m_folder;
    MacroSystem m_macros;

public:
    const QString path;
    ProjectSystem projects;
};

void loadSolution(benchmark::State& state)
{
    Fixture fixture(state);
    for ([[maybe_unused]] auto _ : state)
        fixture.load();
    Fixture::report(state);
}

void saveSolution(benchmark::State& state)
{
    Fixture fixture(state);
    fixture.load();
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(
            fixture.projects.saveProjectFile(fixture.projects.solutionElement()));
    Fixture::report(state);
}

void readWithDom(benchmark::State& state, QDomDocument& document, const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || !document.setContent(&file))
        state.SkipWithError("the file can't be read");
}

void loadWithDom(benchmark::State& state)
{
    const Fixture fixture(state);
    for ([[maybe_unused]] auto _ : state) {
        QDomDocument document;
        readWithDom(state, document, fixture.path);
    }
    Fixture::report(state);
}

void saveWithDom(benchmark::State& state)
{
    const Fixture fixture(state);
    QDomDocument document;
    readWithDom(state, document, fixture.path);
    for ([[maybe_unused]] auto _ : state) {
        QFile file(fixture.path);
        if (!file.open(QIODevice::WriteOnly) || file.write(document.toByteArray(2)) < 0)
            state.SkipWithError("the file can't be written");
    }
    Fixture::report(state);
}

// Look-ups

void collectFiles(ProjectElement* element, std::vector<ProjectElement*>& files)
{
    for (ProjectElement* child = element->firstChild(); child; child = child->nextSibling()) {
        if (child->isFile())
            files.push_back(child);
        collectFiles(child, files);
    }
}

/// The value of a property for each file in turn: the first stands on one file in four.
void lookUpSetting(benchmark::State& state, const QString& name)
{
    Fixture fixture(state);
    fixture.load();
    const PropertyClass* propertyClass = fixture.projects.propertyClass(name);
    std::vector<ProjectElement*> files;
    collectFiles(fixture.projects.solutionElement(), files);
    std::size_t at = 0;
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(fixture.projects.settingFor(files[at], propertyClass, u"Debug"_s));
        at = at + 1 < files.size() ? at + 1 : 0;
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}

/// One look-up by name in a container of as many names.
template <typename Container> void lookUpName(benchmark::State& state)
{
    Container values;
    QStringList names;
    for (int i = 0; i < state.range(0); ++i)
        names << u"source%1.c"_s.arg(i);
    for (const QString& name : names)
        values.insert(name, name);
    qsizetype at = 0;
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(values.value(names[at]));
        at = at + 1 < names.size() ? at + 1 : 0;
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}

void sizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(100)->Arg(1000)->Arg(10000);
}

constexpr int LookUps = 1'000'000;

BENCHMARK(loadSolution)->Apply(sizes)->Unit(benchmark::kMillisecond);
BENCHMARK(loadWithDom)->Apply(sizes)->Unit(benchmark::kMillisecond);
BENCHMARK(saveSolution)->Apply(sizes)->Unit(benchmark::kMillisecond);
BENCHMARK(saveWithDom)->Apply(sizes)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(lookUpSetting, ofFile, u"file_codec"_s)->Apply(sizes)->Iterations(LookUps);
BENCHMARK_CAPTURE(lookUpSetting, byDefault, u"file_open_with"_s)->Apply(sizes)->Iterations(LookUps);
BENCHMARK_CAPTURE(lookUpSetting, aggregate, u"macros"_s)->Apply(sizes)->Iterations(LookUps);
BENCHMARK(lookUpName<QHash<QString, QString>>)->Apply(sizes)->Iterations(LookUps);
BENCHMARK(lookUpName<QMap<QString, QString>>)->Apply(sizes)->Iterations(LookUps);

} // namespace

BENCHMARK_MAIN();
